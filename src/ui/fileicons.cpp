#include "ui/fileicons.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>

FileIcons *FileIcons::instance() {
    static QPointer<FileIcons> icons;
    if (!icons)
        icons = new FileIcons(qApp);
    return icons;
}

FileIcons::FileIcons(QObject *parent)
    : QObject(parent), m_computer(QStringLiteral(":/res/common/files/computer.svg")),
      m_drive(QStringLiteral(":/res/common/files/drive.svg")),
      m_file(QStringLiteral(":/res/common/files/file.svg")),
      m_folder(QStringLiteral(":/res/common/files/folder.svg")),
      m_home(QStringLiteral(":/res/common/files/home.svg")), m_homePath(QDir::homePath()) {}

QIcon FileIcons::icon(IconType type) const {
    switch (type) {
    case Computer:
    case Network:
        return m_computer;
    case Drive:
        return m_drive;
    case File:
        return m_file;
    case Desktop:
    case Trashcan:
    case Folder:
        break;
    }
    return m_folder;
}

QIcon FileIcons::icon(const QFileInfo &info) const {
    if (info.isRoot())
        return m_drive;
    if (info.absoluteFilePath() == m_homePath)
        return m_home;
    return info.isDir() ? m_folder : m_file;
}
