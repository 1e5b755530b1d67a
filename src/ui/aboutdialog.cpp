#include "ui/aboutdialog.h"

#include "ui/clickablelabel.h"
#include "ui/debugdialog.h"
#include "ui/snaptoscreen.h"
#include "ui/uistyler.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QHBoxLayout>
#include <QShortcut>
#include <QUrl>

namespace {

// At 96 DPI.
constexpr QSize PictureSize(439, 272);
constexpr QSize RoomAround(30, 40); // both sides together
constexpr QMargins PictureMargins(28, 0, 28, 22);

} // namespace

AboutDialog::AboutDialog(QWidget *parent)
    : QDialog(parent), m_picture(new QLabel(this)), m_version(new QLabel(m_picture)),
      m_link(new ClickableLabel(m_picture)) {
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(tr("Program Info"));
    build();
    connect(m_link, &ClickableLabel::clicked, this, &AboutDialog::onUrlClicked);
    connect(m_link, &ClickableLabel::hover, this, &AboutDialog::onUrlHover);
    connect(m_link, &ClickableLabel::leaved, this, &AboutDialog::onUrlLeaved);
    auto *debug = new QShortcut(Qt::CTRL | Qt::ALT | Qt::SHIFT | Qt::Key_D, this);
    connect(debug, &QShortcut::activated, this, &AboutDialog::openDebugDialog);
    UIStyler::setScaleCallback(this, [this](double scale) { applyScale(scale); });
}

void AboutDialog::build() {
    m_picture->setObjectName(QStringLiteral("labelAbout"));
    m_version->setObjectName(QStringLiteral("version_"));
    m_version->setText(tr("Version %1").arg(QCoreApplication::applicationVersion()));
    m_link->setObjectName(QStringLiteral("link_"));
    m_link->setText(QUrl(tr("https://www.norvane.example")).host());

    m_link->setFocusPolicy(Qt::TabFocus);
    // Tab goes to the link; it does not have the focus from the start, where Return would open a page.
    setFocus();

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_picture, 0, Qt::AlignCenter);
    auto *row = new QHBoxLayout(m_picture);
    row->setContentsMargins(PictureMargins);
    row->addWidget(m_version, 0, Qt::AlignLeft | Qt::AlignBottom);
    row->addWidget(m_link, 0, Qt::AlignRight | Qt::AlignBottom);
}

void AboutDialog::applyScale(double scale) {
    const QSize picture(static_cast<int>(PictureSize.width() * scale),
                        static_cast<int>(PictureSize.height() * scale));
    setFixedSize(picture.width() + static_cast<int>(RoomAround.width() * scale),
                 picture.height() + static_cast<int>(RoomAround.height() * scale));
    if (isVisible())
        snapToScreen(this);
}

void AboutDialog::onUrlClicked() {
    QDesktopServices::openUrl(QUrl(tr("https://www.norvane.example")));
}

void AboutDialog::onUrlHover() {
    setCursor(Qt::PointingHandCursor);
}

void AboutDialog::onUrlLeaved() {
    setCursor(Qt::ArrowCursor);
}

void AboutDialog::openDebugDialog() {
    auto *dialog = new DebugDialog(parentWidget());
    connect(dialog, &DebugDialog::fileMemoryModeChanged, this, &AboutDialog::fileMemoryModeChanged);
    // Closing may delete this dialog, which passes the other's signal on.
    hide();
    dialog->exec();
    close();
}
