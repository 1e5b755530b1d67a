#include "app/temporaryfiles.h"
#include "services/workfolder.h"

#include <QtTest>

class Tst_TemporaryFiles : public QObject {
    Q_OBJECT
private slots:
    void withoutAWorkFolderNothingIsTouched();
};

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
    removeTemporaryFiles();
    QVERIFY(QFile::exists(folder.filePath(QStringLiteral("holiday.png"))));
    QVERIFY(QFile::exists(folder.filePath(QStringLiteral("AIRemoveBeta"))));
    QDir::setCurrent(QDir::rootPath());
}

QTEST_GUILESS_MAIN(Tst_TemporaryFiles)
#include "tst_temporaryfiles.moc"
