#pragma once

#include <QFileIconProvider>
#include <QIcon>
#include <QObject>

/// The pictures of folders and files in the program's file dialogs.
///
/// A file dialog reads them from a thread of its own until it is gone, so there is one provider, which the
/// application owns; get it in the GUI thread.
class FileIcons : public QObject, public QFileIconProvider {
    Q_OBJECT
public:
    static FileIcons *instance();

    QIcon icon(IconType type) const override;
    QIcon icon(const QFileInfo &info) const override;

private:
    explicit FileIcons(QObject *parent);

    // Made once: an icon parses its file.
    const QIcon m_computer;
    const QIcon m_drive;
    const QIcon m_file;
    const QIcon m_folder;
    const QIcon m_home;
    const QString m_homePath;
};
