// usage: replay FOLDER TARGET
//
// Feeds a fuzz target its seeds (FOLDER/corpus/TARGET) and all inputs that were findings once
// (FOLDER/crashes/TARGET). A finding that comes back ends the process.

#include <QDir>
#include <QFile>

#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

/// The number of files; -1 when one cannot be read.
int replay(const QString &folder) {
    int count = 0;
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo &info : files) {
        QFile file(info.filePath());
        if (!file.open(QIODevice::ReadOnly))
            return -1;
        const QByteArray input = file.readAll();
        // The last line of a run that ends early names the culprit.
        std::printf("%s\n", qPrintable(info.filePath()));
        std::fflush(stdout);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(input.constData()),
                               static_cast<std::size_t>(input.size()));
        ++count;
    }
    return count;
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: replay FOLDER TARGET\n");
        return 2;
    }
    const QDir folder(QFile::decodeName(argv[1]));
    const QString target = QFile::decodeName(argv[2]);
    LLVMFuzzerTestOneInput(nullptr, 0);
    const int seeds = replay(folder.filePath(QStringLiteral("corpus/") + target));
    const int crashes = replay(folder.filePath(QStringLiteral("crashes/") + target));
    if (seeds <= 0 || crashes < 0) {
        std::fprintf(stderr, "replay: no seeds, or an input that cannot be read\n");
        return 1;
    }
    std::printf("%d seeds and %d former findings hold\n", seeds, crashes);
    return 0;
}
