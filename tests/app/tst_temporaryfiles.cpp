#include "app/temporaryfiles.h"
#include "services/workfolder.h"

#include <QtTest>

#include <sys/inotify.h>
#include <unistd.h>

class Tst_TemporaryFiles : public QObject {
    Q_OBJECT
private slots:
    void clearsWhatWasListedAndNothingThatCameLater();
    void noPinFindsItsNumberTakenWhileFilesGo();
    void knownFilesAreLeftOutHoweverSpelled();
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
    put("qt_temp.aB3xyz"); // the copy of a pin that was killed halfway
    put("qt_temp.txt");
    put("capture-1-2-0-ab3xyz.png.part"); // that of a sender
    put("notes.part");
    QVERIFY(folder.mkpath(QStringLiteral("AIRemoveBeta/deep")));
    QVERIFY(folder.mkpath(QStringLiteral("pin")));
    put("pin/0.png");
    const QStringList files = filesToClear();
    put("late.png"); // handed to the next editor already
    removeTemporaryFiles(files);
    QVERIFY(!folder.exists(QStringLiteral("early.png")));
    QVERIFY(QFile::remove(folder.filePath(QStringLiteral("late.png"))));
    QVERIFY(!folder.exists(QStringLiteral("qt_temp.aB3xyz")));
    QVERIFY(folder.exists(QStringLiteral("qt_temp.txt")));
    QVERIFY(!folder.exists(QStringLiteral("capture-1-2-0-ab3xyz.png.part")));
    QVERIFY(folder.exists(QStringLiteral("notes.part")));
    QVERIFY(folder.exists(QStringLiteral("notes.txt")));
    QVERIFY(folder.exists(QStringLiteral("pin/0.png")));
    QVERIFY(!folder.exists(QStringLiteral("AIRemoveBeta")));
}

// A pin that comes back finds its place taken by a file of its number: none may be left when the first file
// of those that hold the pinned pictures is gone.
void Tst_TemporaryFiles::noPinFindsItsNumberTakenWhileFilesGo() {
    const QDir folder(workFolder());
    const QStringList names{QStringLiteral("0.png"), QStringLiteral("1.png"), QStringLiteral("4.png"),
                            QStringLiteral("a.png")};
    for (const QString &name : names)
        QVERIFY(QFile(folder.filePath(name)).open(QIODevice::WriteOnly));
    const QTemporaryDir elsewhere; // a pinned picture may have been there as well
    const QString outside = elsewhere.filePath(QStringLiteral("outside.png"));
    QVERIFY(QFile(outside).open(QIODevice::WriteOnly));
    const int watch = ::inotify_init1(IN_NONBLOCK);
    QVERIFY(::inotify_add_watch(watch, QFile::encodeName(folder.path()), IN_DELETE | IN_MOVED_FROM) >= 0);
    QVERIFY(::inotify_add_watch(watch, QFile::encodeName(elsewhere.path()), IN_DELETE) >= 0);
    removeTemporaryFiles(QStringList(outside) + filesToClear());

    QSet<QString> present(names.begin(), names.end());
    int deleted = 0;
    alignas(inotify_event) char events[4096];
    const ssize_t size = ::read(watch, events, sizeof events);
    ::close(watch);
    for (ssize_t at = 0; at < size;) {
        const auto *event = reinterpret_cast<const inotify_event *>(events + at);
        at += ssize_t(sizeof(inotify_event) + event->len);
        present.remove(QFile::decodeName(event->name));
        if (!(event->mask & IN_DELETE))
            continue;
        ++deleted;
        QVERIFY2(!present.intersects({names.begin(), names.begin() + 3}), event->name);
    }
    QCOMPARE(deleted, names.size() + 1);
    QCOMPARE(folder.entryList({QStringLiteral("*.png")}), QStringList());
}

void Tst_TemporaryFiles::knownFilesAreLeftOutHoweverSpelled() {
    const QTemporaryDir folder;
    const auto path = [&folder](const char *name) { return folder.filePath(QString::fromLatin1(name)); };
    for (const char *name : {"a.png", "b.png"})
        QVERIFY(QFile(path(name)).open(QIODevice::WriteOnly));
    QVERIFY(QFile::link(path("a.png"), path("link.png")));
    const QStringList all{path("a.png"), path("link.png"), path("b.png"), path("missing.png")};
    const QStringList rest{path("b.png"), path("missing.png")};
    QCOMPARE(withoutFiles(all, {}), all);
    QCOMPARE(withoutFiles(all, {path("./a.png")}), rest);
    // What is missing is no known file, though another one is missing too.
    QCOMPARE(withoutFiles(all, {path("link.png"), path("gone.png")}), rest);
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
    const QString own = folder.filePath(QStringLiteral("own.png"));
    QVERIFY(QFile(own).open(QIODevice::WriteOnly));
    removeTemporaryFiles(filesToClear() + QStringList(own));
    QVERIFY(!QFile::exists(own)); // of a row, so it goes all the same
    QVERIFY(QFile::exists(folder.filePath(QStringLiteral("holiday.png"))));
    QVERIFY(QFile::exists(folder.filePath(QStringLiteral("AIRemoveBeta"))));
    QDir::setCurrent(QDir::rootPath());
}

QTEST_GUILESS_MAIN(Tst_TemporaryFiles)
#include "tst_temporaryfiles.moc"
