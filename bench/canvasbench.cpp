#include "canvasbench.h"

#include "ipc/imageprovider.h"

#include <QCoreApplication>
#include <QMouseEvent>

namespace {

constexpr QSize ViewSize(1920, 1080);
constexpr int ShownAfter = 500; // milliseconds

} // namespace

CanvasBench::CanvasBench() {
    m_view.setFrameShape(QFrame::NoFrame);
    m_view.setWindowFlag(Qt::FramelessWindowHint);
    m_view.resize(ViewSize);
    m_view.show();
    m_view.viewport()->installEventFilter(&m_counter);
    settle(ShownAfter);
}

CanvasBench::~CanvasBench() {
    m_view.setEditor(nullptr);
}

void CanvasBench::show(Editor &editor) {
    m_view.setEditor(nullptr);
    m_view.setEditor(&editor);
    settle(SmoothAfter);
}

void CanvasBench::send(QEvent::Type type, const QPoint &pos, Qt::MouseButton held) {
    const bool move = type == QEvent::MouseMove;
    const bool up = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, pos, m_view.viewport()->mapToGlobal(pos), move ? Qt::NoButton : Qt::LeftButton,
                      up ? Qt::NoButton : held, Qt::NoModifier);
    QCoreApplication::sendEvent(m_view.viewport(), &event);
}

double CanvasBench::untilPainted(const std::function<void()> &action) {
    return costOf([&] {
        action();
        m_counter.waitForPaint();
    });
}

void loadCapture(Editor &editor, const QString &key, const QSize &size) {
    ImageProvider::instance()->insert(key, QPixmap::fromImage(patternedCapture(size)));
    editor.setImageKey(key);
}
