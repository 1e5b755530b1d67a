#include "support/secondscreen.h"

#include <QImage>
#include <qpa/qplatformscreen.h>
#include <qpa/qwindowsysteminterface.h>

class SecondScreen::Screen : public QPlatformScreen {
public:
    explicit Screen(const QRect &geometry) : m_geometry(geometry) {}

    QRect geometry() const override { return m_geometry; }
    int depth() const override { return 32; }
    QImage::Format format() const override { return QImage::Format_RGB32; }
    QDpi logicalDpi() const override { return {96, 96}; }

private:
    QRect m_geometry;
};

SecondScreen::SecondScreen(const QRect &geometry) : m_screen(new Screen(geometry)) {
    QWindowSystemInterface::handleScreenAdded(m_screen);
}

SecondScreen::~SecondScreen() {
    QWindowSystemInterface::handleScreenRemoved(m_screen);
}
