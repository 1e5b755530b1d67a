#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

/// Turns the naming preferences and a folder into the name of the next file.
///
/// Paths come without extension unless a function says otherwise. What `ReservedPaths` holds counts as a file
/// that exists. GUI thread only.
class FileNameUtil {
public:
    enum NameType { Custom = 0, Date = 1, Serial = 2, Bird = 3 };

    struct FormatEntry {
        int type;
        QString format;
        QString display;
    };

    /// Fills the tables of formats and bird names with the texts of the installed translation.
    static void initialize();
    static const QList<FormatEntry> &formatEntries();
    static const QStringList &birdNames();

    static QString currentFileSuffix();
    static void normalizeTemplate(QString &text);
    static QString generateFileName(const QString &folder, bool numbered);
    static QString serialFileName(const QString &folder);
    static QString birdFileName(const QString &folder, bool numbered);
    /// A path that does not exist yet, by a number in brackets.
    static QString uniqueFilePath(const QString &path);
    /// Full path, extension included, of the next image of a batch; `used` are the paths it gave before.
    /// With serial names it does not return before the file of the last one exists.
    static QString batchFileName(const QString &base, const QStringList &used);
    /// Row of `formatEntries`, or -1.
    static int indexOfFormat(int type, const QString &format);
    /// The folder, or the user's pictures folder if it is empty.
    static QString folderOrDefault(const QString &folder);

    /// Other sources of time and chance, for tests; empty functions bring the real ones back.
    static void setClock(std::function<QDateTime()> now);
    static void setRandom(std::function<int()> random);
    /// What `batchFileName` does between two looks for the file of the last name.
    static void setBatchWait(std::function<void()> wait);
};
