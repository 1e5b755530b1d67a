// How files are named: style, format, form of the folder, moment, then the user's text. Whatever he wrote,
// the name is that of one file in the chosen folder.

#include "fuzz/support/input.h"
#include "fuzz/support/scratchfolder.h"
#include "output/filenameutil.h"
#include "preferences/tindrapreferences.h"

namespace {

constexpr int BatchSize = 2;

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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    Input input(data, size);
    TindraPreferences *preferences = TindraPreferences::instance();
    preferences->Init();
    preferences->SetInt(TindraPreferences::FileNameType, input.number(-1, 4));
    preferences->SetInt(TindraPreferences::FileFormat, input.number(0, 4));
    const bool isSlashed = input.flag();
    const QDateTime moment = momentFrom(&input);
    FileNameUtil::setClock([moment] { return moment; });
    preferences->SetString(TindraPreferences::FileNameTamplate, QString::fromUtf8(input.rest()));

    const ScratchFolder scratch;
    const QDir folder(scratch.path());
    const QString place = isSlashed ? scratch.path() + QLatin1Char('/') : scratch.path();
    const QString base = FileNameUtil::generateFileName(place, false);
    const QString single = base + QLatin1Char('.') + FileNameUtil::currentFileSuffix();
    makeFile(FileNameUtil::uniqueFilePath(single), folder);
    makeFile(FileNameUtil::uniqueFilePath(single), folder);

    QStringList used;
    for (int i = 0; i < BatchSize; ++i) {
        used.append(FileNameUtil::batchFileName(base, used));
        makeFile(used.last(), folder);
    }
    return 0;
}
