#include "app/bannerframe.h"

#include "platform/configuration.h"
#include "services/bannerlibrary.h"
#include "ui/clickablelabel.h"
#include "ui/uistyler.h"

#include <QDateTime>
#include <QDesktopServices>
#include <QVBoxLayout>

namespace {

/// Where the time of the last close stands, in seconds since the epoch, by the area's id.
const char *const closeTimes = "Software\\Norvane\\Quoin2\\CloseButtonClickTime";

} // namespace

const QMap<BannerFrame::Kind, BannerFrame::Record> &BannerFrame::records() {
    static const QMap<Kind, Record> records{
        {Toolbar,
         {QStringLiteral("toolbar"), QStringLiteral("Banner/toolbar_banner_default.png"),
          QStringLiteral("AD_CAP_B02"), QUrl(), QUrl(QStringLiteral("https://www.norvane.example")),
          QSize(234, 60)}},
        {Bottom,
         {QStringLiteral("bottom"), QStringLiteral("Banner/bottom_banner_default.png"),
          QStringLiteral("AD_CAP_B01"), QUrl(), QUrl(QStringLiteral("https://www.brindle.example")),
          QSize(468, 60)}}};
    return records;
}

BannerFrame::BannerFrame(Kind kind, const BannerSettings &settings, BannerLibrary *library,
                         QWidget *mainWindow)
    : QFrame(mainWindow), m_record(records().value(kind)), m_settings(settings), m_library(library),
      m_clock([] { return QDateTime::currentSecsSinceEpoch(); }) {
    setObjectName(m_record.name + QStringLiteral("Banner_"));
    auto *image = new ClickableLabel(this);
    image->setPixmap(QPixmap(QStringLiteral(":/res/") + m_record.defaultImage));
    image->setScaledContents(true);
    image->setCursor(Qt::PointingHandCursor);
    image->setAccessibleName(tr("Banner"));
    connect(image, &ClickableLabel::clicked, this,
            [this] { QDesktopServices::openUrl(m_record.defaultLink); });
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(image);
    // The record alone rules the size.
    UIStyler::setDisadjust(this, true);
    setFixedSize(scaledSize());
    m_debounce.setSingleShot(true);
    m_debounce.setInterval(m_settings.debounce);
    connect(&m_debounce, &QTimer::timeout, this, &BannerFrame::updateSize);
    UIStyler::setScaleCallback(this, [this](double) { m_debounce.start(); });
    hide();
}

QSize BannerFrame::scaledSize() const {
    const double scale = widgetScale(this);
    return {static_cast<int>(m_record.size.width() * scale),
            static_cast<int>(m_record.size.height() * scale)};
}

void BannerFrame::updateSize() {
    const QSize size = scaledSize();
    if (this->size() == size)
        return;
    setFixedSize(size);
    emit sig_updateSize();
}

bool BannerFrame::mayShow() const {
    const QVariant closed = ConfigurationLocation(QLatin1String(closeTimes)).value(m_record.areaId);
    if (!closed.isValid())
        return true;
    // A time that lies ahead, since the clock was set back, must not keep the banner away for longer.
    const qint64 passed = m_clock() - closed.toLongLong();
    return passed < 0 || passed >= m_settings.showInterval;
}

void BannerFrame::onClickCloseBanner() {
    hide();
    if (m_library)
        m_library->deleteArea(m_record.areaId);
    ConfigurationLocation(QLatin1String(closeTimes)).setValue(m_record.areaId, m_clock());
}

void BannerFrame::showEvent(QShowEvent *event) {
    QFrame::showEvent(event);
    emit sig_showEvent();
    // Behind those who were told through the event loop: they lay out with the banner, and then without it.
    QMetaObject::invokeMethod(this, &QWidget::hide, Qt::QueuedConnection);
}

void BannerFrame::hideEvent(QHideEvent *event) {
    QFrame::hideEvent(event);
    emit sig_hideEvent();
}
