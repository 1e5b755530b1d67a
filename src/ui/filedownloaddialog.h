#pragma once

#include "services/httptransfer.h"

#include <QDialog>

class QProgressBar;

/// Downloads one file while a progress bar shows how far it is; starts by itself when it is first shown.
///
/// `exec` returns 1 when the file is there, otherwise 0. Keys and clicks wait while the transfer runs.
class FileDownloadDialog : public QDialog {
    Q_OBJECT
public:
    FileDownloadDialog(const QString &url, const QString &destination, QWidget *parent = nullptr);

public slots:
    void onStart();
    void onCancel();
    /// Escape and the frame's button cancel as well.
    void reject() override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void build();

    bool m_isFirstShow = true;
    /// The transfer's own end comes after that of the user.
    bool m_isCancelled = false;
    QString m_destination;
    QString m_url;
    HttpTransfer m_transfer;
    QProgressBar *m_progressBar;
};
