// usage: bench_batchsave CAPTURES RUNS
//
// Saves that many 3840x2160 captures, each a file, as PNG: one by one, and all in a batch as the button does.
// The ratio of each pair is taken in one run.

#include "history/batchsave.h"

#include "canvas/editor.h"
#include "figures.h"
#include "measuring.h"
#include "output/filenameutil.h"
#include "preferences/tindrapreferences.h"
#include "runningeditor.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <memory>
#include <vector>

namespace {

constexpr QSize CaptureSize(3840, 2160);
constexpr int FormatQuality = -1;
constexpr double LeastRatio = 1.7;

} // namespace

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    if (argc != 3)
        qFatal("usage: bench_batchsave CAPTURES RUNS");
    const int count = atoi(argv[1]), runs = atoi(argv[2]);
    TindraPreferences::instance()->Init();
    TindraPreferences::instance()->SetInt(TindraPreferences::FileFormat, 0);
    TindraPreferences::instance()->SetInt(TindraPreferences::FileNameType, FileNameUtil::Custom);
    TindraPreferences::instance()->SetString(TindraPreferences::FileNameTamplate, QStringLiteral("shot"));
    FileNameUtil::initialize();

    const QTemporaryDir folder;
    const QString original = MarkedCapture(CaptureSize, 0).toFile();
    std::vector<std::unique_ptr<Editor>> editors;
    QVector<QPointer<Editor>> captures;
    for (int i = 0; i < count; ++i) {
        const QString path = folder.filePath(QStringLiteral("capture-%1.png").arg(i));
        if (!QFile::copy(original, path))
            qFatal("a capture cannot be written");
        editors.push_back(std::make_unique<Editor>());
        editors.back()->setImageKey(path);
        captures.append(editors.back().get());
    }

    QVector<double> single, batch, ratio;
    for (int run = 0; run < runs; ++run) {
        single.append(clockMs([&] {
            for (int i = 0; i < count; ++i) {
                if (!captures[i]->saveFlattened(
                        folder.filePath(QStringLiteral("single-%1-%2.png").arg(run).arg(i)), true,
                        FormatQuality))
                    qFatal("a capture cannot be saved");
            }
        }));
        batch.append(clockMs([&] {
            BatchSave save(folder.filePath(QStringLiteral("batch-%1").arg(run)), FormatQuality);
            if (save.run(captures) != count)
                qFatal("a batch cannot be saved");
        }));
        ratio.append(single.last() / batch.last());
    }
    figures::print(QStringLiteral("%1 of 3840x2160 as PNG: singly (%2 s) to a batch (%3 s)")
                       .arg(count)
                       .arg(median(single) / 1000, 0, 'f', 2)
                       .arg(median(batch) / 1000, 0, 'f', 2),
                   median(ratio), "x", LeastRatio, figures::AtLeast);
    return 0;
}
