#pragma once

#include <QObject>
#include <QUrl>
#include <QVector>

/// Takes the files, folders and web pages that the program asks the desktop to open, as long as it lives.
class OpenedUrls : public QObject {
    Q_OBJECT
public:
    OpenedUrls();
    ~OpenedUrls() override;

    QVector<QUrl> urls;

public slots:
    void open(const QUrl &url);
};
