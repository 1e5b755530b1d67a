#include "app/windowtest.h"

namespace {
constexpr int NoQuit = 99;
}

void WindowTest::init() {
    m_session = std::make_unique<Session>();
    m_target = std::make_unique<QTemporaryDir>();
    preferences()->SetString(TindraPreferences::AutoSavePath, m_target->path());
    preferences()->SetString(TindraPreferences::FilePath, m_target->path());
    start();
}

void WindowTest::start() {
    m_window = std::make_unique<TindraEditor>();
    QCoreApplication::processEvents(); // the last run's captures come back
    m_session->usage.clear();
}

void WindowTest::cleanup() {
    m_window.reset();
    m_session.reset();
}

TestEditor *WindowTest::addFake(const QString &name) {
    auto *editor = new TestEditor;
    editor->setParent(list());
    editor->setImageKey(capture(name));
    list()->insertHistory(History(editor), true, 0);
    return editor;
}

void WindowTest::sendMouse(QEvent::Type type, const QPointF &pos) {
    const QPoint viewPos = view()->mapFromScene(pos);
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, viewPos, view()->viewport()->mapToGlobal(viewPos), button, held, Qt::NoModifier);
    QCoreApplication::sendEvent(view()->viewport(), &event);
}

void WindowTest::drawStroke() {
    m_window->onPenSelected(Qt::blue);
    sendMouse(QEvent::MouseButtonPress, {5, 5});
    sendMouse(QEvent::MouseMove, {15, 15});
    sendMouse(QEvent::MouseMove, {25, 10});
    sendMouse(QEvent::MouseButtonRelease, {25, 10});
    QCoreApplication::processEvents();
}

void WindowTest::makeWide() {
    m_window->show();
    m_window->resize(1800, 400);
    QCoreApplication::processEvents();
}

void WindowTest::endSession() {
    // The receiver looks at nothing of the manager, which only the desktop can make.
    std::aligned_storage_t<64, alignof(std::max_align_t)> manager;
    emit qApp->commitDataRequest(reinterpret_cast<QSessionManager &>(manager));
}

void WindowTest::activate() {
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

bool WindowTest::quits(const std::function<void()> &action) {
    QTimer patience;
    connect(&patience, &QTimer::timeout, this, [] { QCoreApplication::exit(NoQuit); });
    // The action may take its time: only what comes behind it is waited for.
    QTimer::singleShot(0, this, [&] {
        action();
        patience.start(400);
    });
    return QApplication::exec() != NoQuit;
}
