#include "app/banners.h"

#include "app/bannerframe.h"
#include "app/toolbar.h"
#include "services/programfolder.h"
#include "ui/uistyler.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QLayout>
#include <QMainWindow>
#include <QPushButton>

#include <initializer_list>

namespace {

BannerSettings readSettings() {
    return BannerSettings::read(QDir(programFolder()).filePath(QStringLiteral("rconfig.json")));
}

QRect inWindow(const QWidget *widget, const QWidget *window) {
    return {widget->mapTo(window, QPoint(0, 0)), widget->size()};
}

} // namespace

Banners::Banners(BannerLibrary *library, Toolbar *toolbar, QWidget *canvas, QMainWindow *window)
    : QObject(window), m_window(window), m_toolbar(toolbar), m_canvas(canvas),
      m_close(new QPushButton(window)) {
    const BannerSettings settings = readSettings();
    m_toolbarBanner = new BannerFrame(BannerFrame::Toolbar, settings, library, window);
    m_bottomBanner = new BannerFrame(BannerFrame::Bottom, settings, library, window);
    m_close->setObjectName(QStringLiteral("bannerClose_"));
    m_close->setCursor(Qt::PointingHandCursor);
    m_close->setAccessibleName(tr("Close banner"));
    m_close->hide();
    connectToolbarBanner();
    connectBottomBanner();
    // Its height depends on whether there is a banner, and its layout settles later.
    m_toolbar->installEventFilter(this);
    // Another scale gives the buttons another width, whether the window's changes or not.
    UIStyler::setScaleCallback(m_toolbar, [this](double) { layOutToolbar(); });
}

void Banners::connectToolbarBanner() {
    for (const auto signal :
         {&BannerFrame::sig_showEvent, &BannerFrame::sig_hideEvent, &BannerFrame::sig_updateSize})
        connect(m_toolbarBanner, signal, this, &Banners::layOutToolbar, Qt::QueuedConnection);
}

void Banners::connectBottomBanner() {
    for (const auto signal : {&BannerFrame::sig_showEvent, &BannerFrame::sig_updateSize})
        connect(m_bottomBanner, signal, this, &Banners::placeAtBottom, Qt::QueuedConnection);
    connect(m_bottomBanner, &BannerFrame::sig_showEvent, m_close, &QWidget::show);
    connect(m_bottomBanner, &BannerFrame::sig_hideEvent, m_close, &QWidget::hide);
    connect(m_close, &QPushButton::clicked, m_bottomBanner, &BannerFrame::onClickCloseBanner);
}

void Banners::show() {
    if (!m_toolbarBanner)
        return;
    m_toolbarBanner->show();
    if (m_bottomBanner->mayShow())
        m_bottomBanner->show();
    // What that has queued, the layout with a banner, the end of it and the layout without it, is due before
    // the window is painted: nobody must see the toolbar become higher and lower again.
    for (QObject *receiver : std::initializer_list<QObject *>{this, m_toolbarBanner, m_bottomBanner, this})
        QCoreApplication::sendPostedEvents(receiver, QEvent::MetaCall);
}

void Banners::hide() {
    if (m_toolbarBanner)
        m_toolbarBanner->hide();
    if (m_bottomBanner)
        m_bottomBanner->hide();
}

int Banners::widthInToolbar() const {
    return m_toolbarBanner && m_toolbarBanner->isVisible() ? m_toolbarBanner->width() : 0;
}

void Banners::layOutToolbar() {
    if (widthInToolbar() > 0) {
        placeInToolbar();
        // Under the bubble at the AI tools, which follows the layout and raises itself.
        m_toolbarBanner->raise();
    } else if (m_toolbarBanner) {
        m_toolbarBanner->hide();
    }
    m_toolbar->layOut(widthInToolbar());
    m_window->layout()->activate();
    m_toolbar->layout()->activate();
}

void Banners::placeInToolbar() {
    const QRect toolbar = inWindow(m_toolbar, m_window);
    m_toolbarBanner->move(m_window->width() - m_toolbarBanner->width(),
                          toolbar.y() + (toolbar.height() - m_toolbarBanner->height()) / 2);
}

void Banners::placeAtBottom() {
    if (!m_bottomBanner || !m_bottomBanner->isVisible())
        return;
    const QRect canvas = inWindow(m_canvas, m_window);
    m_bottomBanner->move(canvas.x() + (canvas.width() - m_bottomBanner->width()) / 2,
                         canvas.y() + canvas.height() - m_bottomBanner->height());
    m_bottomBanner->raise();
    m_close->ensurePolished();
    m_close->adjustSize();
    m_close->move(m_bottomBanner->x() + m_bottomBanner->width() - m_close->width(), m_bottomBanner->y());
    m_close->raise();
}

void Banners::forget() {
    hide();
    m_toolbarBanner = nullptr;
    m_bottomBanner = nullptr;
}

bool Banners::eventFilter(QObject *watched, QEvent *event) {
    if (watched == m_toolbar && event->type() == QEvent::Resize && widthInToolbar() > 0)
        placeInToolbar();
    return QObject::eventFilter(watched, event);
}
