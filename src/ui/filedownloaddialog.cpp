#include "ui/filedownloaddialog.h"

#include "ui/negativebutton.h"

#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>

namespace {

// Designed sizes, at 96 DPI.
constexpr int Margin = 16;
constexpr int BarWidth = 320;

} // namespace

FileDownloadDialog::FileDownloadDialog(const QString &url, const QString &destination, QWidget *parent)
    : QDialog(parent), m_destination(destination), m_url(url), m_progressBar(new QProgressBar(this)) {
    setAttribute(Qt::WA_StyledBackground);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(tr("Download File"));
    build();
}

void FileDownloadDialog::build() {
    m_progressBar->setObjectName(QStringLiteral("progressBar_"));
    m_progressBar->setAccessibleName(windowTitle());
    m_progressBar->setMinimumWidth(BarWidth);
    m_progressBar->setValue(0);
    auto *cancel = new NegativeButton(tr("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cancel_"));
    cancel->setCursor(Qt::PointingHandCursor);
    connect(cancel, &QPushButton::clicked, this, &FileDownloadDialog::onCancel);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(Margin, Margin, Margin, Margin);
    layout->setSpacing(Margin);
    layout->addWidget(m_progressBar);
    layout->addWidget(cancel, 0, Qt::AlignRight);
}

void FileDownloadDialog::showEvent(QShowEvent *event) {
    QDialog::showEvent(event);
    if (!m_isFirstShow)
        return;
    m_isFirstShow = false;
    QTimer::singleShot(0, this, &FileDownloadDialog::onStart);
}

void FileDownloadDialog::onStart() {
    if (m_isCancelled)
        return;
    const bool hasArrived = m_transfer.download(m_url, m_destination, true, m_progressBar, false);
    if (m_isCancelled)
        return;
    if (!hasArrived)
        m_transfer.cancelTransfer();
    done(hasArrived ? Accepted : Rejected);
}

void FileDownloadDialog::onCancel() {
    m_isCancelled = true;
    m_transfer.cancelTransfer();
    done(Rejected);
}

void FileDownloadDialog::reject() {
    onCancel();
}
