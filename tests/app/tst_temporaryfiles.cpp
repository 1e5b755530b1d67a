#include "app/temporaryfiles.h"
#include "services/workfolder.h"

#include <QtTest>

class Tst_TemporaryFiles : public QObject {
    Q_OBJECT
private slots:
    void clearsWhatWasListedAndNothingThatCameLater();
    void withoutAWorkFolderNothingIsTouched();
};

void Tst_TemporaryFiles::clearsWhatWasListedAndNothingThatCameLater() {
    const QDir folder(workFolder());
    const auto put = [&folder](const char *name) {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    };
    put("early.png");
    put("notes.txt");
    QVERIFY(folder.mkpath(QStringLiteral("AIRemoveBeta/deep")));
    QVERIFY(folder.mkpath(QStringLiteral("pin")));
    put("pin/0.png");
    const QStringList files = filesToClear();
    put("late.png"); // handed to the next editor already
    removeTemporaryFiles(files);
    QVERIFY(!folder.exists(QStringLiteral("early.png")));
    QVERIFY(folder.exists(QStringLiteral("late.png")));
    QVERIFY(folder.exists(QStringLiteral("notes.txt")));
    QVERIFY(folder.exists(QStringLiteral("pin/0.png")));
    QVERIFY(!folder.exists(QStringLiteral("AIRemoveBeta")));
}

// An empty path means the current directory to Qt.
void Tst_TemporaryFiles::withoutAWorkFolderNothingIsTouched() {
    QVERIFY(ownsWorkFolder()); // from when there was one
    const QTemporaryDir folder;
    const QString blocked = folder.filePath(QStringLiteral("blocked"));
    QVERIFY(QFile(blocked).open(QIODevice::WriteOnly));
    QVERIFY(QDir::setCurrent(folder.path()));
    QVERIFY(QDir().mkpath(QStringLiteral("AIRemoveBeta")));
    QVERIFY(QFile(QStringLiteral("holiday.png")).open(QIODevice::WriteOnly));
    for (const char *name : {"XDG_DATA_HOME", "TMPDIR", "HOME"})
        qputenv(name, QFile::encodeName(blocked));
    QVERIFY(workFolder().isEmpty());

    QVERIFY(temporaryCaptures().isEmpty());
    QVERIFY(filesToClear().isEmpty());
    removeTemporaryFiles(filesToClear());
    QVERIFY(QFile::exists(folder.filePath(QStringLiteral("holiday.png"))));
    QVERIFY(QFile::exists(folder.filePath(QStringLiteral("AIRemoveBeta"))));
    QDir::setCurrent(QDir::rootPath());
}

QTEST_GUILESS_MAIN(Tst_TemporaryFiles)
#include "tst_temporaryfiles.moc"
