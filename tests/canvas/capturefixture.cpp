#include "canvas/capturefixture.h"

#include "ipc/imageprovider.h"
#include "preferences/tindrapreferences.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QWidget>

namespace capture {

QImage picture(const QSize &size) {
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(x * 7 % 256, y * 5 % 256, (x * 3 + y * 11) % 256));
    }
    return image;
}

void load(Editor &editor, const QString &key, const QImage &picture) {
    ImageProvider::instance()->insert(key, QPixmap::fromImage(picture));
    editor.setImageKey(key);
    editor.flatten(false, true);
}

void resetWorld() {
    ImageProvider::resetForTesting();
    TindraPreferences::resetForTesting();
    TindraPreferences::instance()->Init();
}

void Mouse::press(const QPoint &pos, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
    m_buttons |= button;
    send(QEvent::MouseButtonPress, pos, button, modifiers);
}

void Mouse::move(const QPoint &pos, Qt::KeyboardModifiers modifiers) {
    send(QEvent::MouseMove, pos, Qt::NoButton, modifiers);
}

void Mouse::release(const QPoint &pos, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
    m_buttons &= ~Qt::MouseButtons(button);
    send(QEvent::MouseButtonRelease, pos, button, modifiers);
}

void Mouse::drag(const QVector<QPoint> &points, Qt::KeyboardModifiers modifiers) {
    press(points.first(), Qt::LeftButton, modifiers);
    for (int i = 1; i < points.size(); ++i)
        move(points.at(i), modifiers);
    release(points.last(), Qt::LeftButton, modifiers);
}

void Mouse::click(const QPoint &pos, Qt::MouseButton button) {
    press(pos, button);
    release(pos, button);
}

void Mouse::send(QEvent::Type type, const QPoint &pos, Qt::MouseButton button,
                 Qt::KeyboardModifiers modifiers) {
    QMouseEvent event(type, pos, m_viewport->mapToGlobal(pos), button, m_buttons, modifiers);
    QCoreApplication::sendEvent(m_viewport, &event);
}

} // namespace capture
