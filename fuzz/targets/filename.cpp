// How files are named: style, format, circumstances, moment, then the user's text. Whatever he wrote, the
// name is that of one file in the chosen folder.

#include "fuzz/support/input.h"
#include "fuzz/support/scratchfolder.h"
#include "output/filenameutil.h"
#include "output/reservedpaths.h"
#include "preferences/tindrapreferences.h"

#include <algorithm>

namespace {

enum Circumstance { SlashBehindFolder = 1, Numbered = 2, BirdsTaken = 4, SlowWorker = 8 };

QDateTime momentFrom(Input *input) {
    const QDate day = QDate(1, 1, 1).addDays(input->word() * 50);
    return QDateTime(day, QTime(0, 0).addSecs(input->word()).addMSecs(input->word()));
}

/// `path` is where a file of that folder and of no other can be made; makes it.
void makeFile(const QString &path, const QDir &folder) {
    require(QFileInfo(path).absolutePath() == folder.absolutePath(), "a file goes into the chosen folder");
    require(!QFileInfo::exists(path), "no file goes over another");
    QFile file(path);
    require(file.open(QIODevice::WriteOnly), "a file of that name can be made");
    require(folder.entryList(QDir::Files | QDir::Hidden).contains(QFileInfo(path).fileName()),
            "the file has the name that was asked for");
}

/// All names of birds, as single files and as the first of a batch have them.
QStringList birdPaths(const QDir &folder) {
    QStringList paths;
    for (const QString &bird : FileNameUtil::birdNames()) {
        for (const char *behind : {"", "_1"})
            paths.append(folder.filePath(bird + QLatin1String(behind) + QLatin1Char('.') +
                                         FileNameUtil::currentFileSuffix()));
    }
    return paths;
}

/// Two files, the first of which is there at once or when the second one's name is waited for.
void makeBatch(const QString &base, bool isSlow, const QDir &folder) {
    const QString first = FileNameUtil::batchFileName(base, {});
    bool isMade = false;
    const auto work = [&] {
        require(!isMade, "nobody waits for a file that is there");
        makeFile(first, folder);
        isMade = true;
    };
    FileNameUtil::setBatchWait(work);
    if (!isSlow)
        work();
    const QString second = FileNameUtil::batchFileName(base, {first});
    FileNameUtil::setBatchWait({});
    if (!isMade)
        work();
    makeFile(second, folder);
}

void checkRow(int type, const QString &format) {
    const int row = FileNameUtil::indexOfFormat(type, format);
    const QList<FileNameUtil::FormatEntry> &entries = FileNameUtil::formatEntries();
    const auto isMeant = [&](const FileNameUtil::FormatEntry &entry) {
        return type != FileNameUtil::Custom && entry.type == type && entry.format == format;
    };
    require(row < 0 ? std::none_of(entries.begin(), entries.end(), isMeant) : isMeant(entries[row]),
            "the settings dialog shows the format that is stored");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    Input input(data, size);
    TindraPreferences *preferences = TindraPreferences::instance();
    preferences->Init();
    const int type = input.number(-1, 4);
    preferences->SetInt(TindraPreferences::FileNameType, type);
    preferences->SetInt(TindraPreferences::FileFormat, input.number(0, 4));
    const int circumstances = input.byte();
    const QDateTime moment = momentFrom(&input);
    FileNameUtil::setClock([moment] { return moment; });
    const QString text = QString::fromUtf8(input.rest());
    preferences->SetString(TindraPreferences::FileNameTamplate, text);
    checkRow(type, text);

    const ScratchFolder scratch;
    const QDir folder(scratch.path());
    const QString place =
        circumstances & SlashBehindFolder ? scratch.path() + QLatin1Char('/') : scratch.path();
    require(FileNameUtil::folderOrDefault(place) == place, "a folder that was chosen is the folder");
    const ReservedPaths taken(circumstances & BirdsTaken ? birdPaths(folder) : QStringList());
    const QString name = FileNameUtil::generateFileName(place, circumstances & Numbered);
    const QString single = name + QLatin1Char('.') + FileNameUtil::currentFileSuffix();
    makeFile(FileNameUtil::uniqueFilePath(single), folder);
    makeFile(FileNameUtil::uniqueFilePath(single), folder);
    makeBatch(FileNameUtil::generateFileName(place, false), circumstances & SlowWorker, folder);
    return 0;
}
