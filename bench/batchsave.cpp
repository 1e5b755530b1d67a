// usage: bench_batchsave CAPTURES RUNS
//
// Saves that many 3840x2160 captures, each a file, as PNG: one by one, and all in a batch as the button does.
// Prints, tab-separated, the medians of the seconds that each takes and of the ratio, each pair taken in one
// run.

#include "history/batchsave.h"

#include "canvas/editor.h"
#include "ipc/imageprovider.h"
#include "measuring.h"
#include "output/filenameutil.h"
#include "preferences/tindrapreferences.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>

namespace {

constexpr QSize CaptureSize(3840, 2160);
constexpr int FormatQuality = -1;

template <class Job> double seconds(Job job) {
    QElapsedTimer clock;
    clock.start();
    job();
    return clock.nsecsElapsed() / 1e9;
}

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
    std::vector<std::unique_ptr<Editor>> editors;
    QVector<QPointer<Editor>> captures;
    for (int i = 0; i < count; ++i) {
        const QString path = folder.filePath(QStringLiteral("capture-%1.png").arg(i));
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write(encoded(drawCapture(CaptureSize, QColor(i, i, i))));
        editors.push_back(std::make_unique<Editor>());
        editors.back()->setImageKey(path);
        captures.append(editors.back().get());
    }

    std::vector<double> single, batch, ratio;
    for (int run = 0; run < runs; ++run) {
        single.push_back(seconds([&] {
            for (int i = 0; i < count; ++i) {
                if (!captures[i]->saveFlattened(
                        folder.filePath(QStringLiteral("single-%1-%2.png").arg(run).arg(i)), true,
                        FormatQuality))
                    qFatal("a capture cannot be saved");
            }
        }));
        batch.push_back(seconds([&] {
            BatchSave save(folder.filePath(QStringLiteral("batch-%1").arg(run)), FormatQuality);
            if (save.run(captures) != count)
                qFatal("a batch cannot be saved");
        }));
        ratio.push_back(single.back() / batch.back());
    }
    std::printf("%.2f\t%.2f\t%.2f\n", median(single), median(batch), median(ratio));
    return 0;
}
