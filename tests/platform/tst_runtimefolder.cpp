#include "platform/localserversocket.h"
#include "platform/namedlock.h"
#include "platform/sharedimageblock.h"
#include "support/administrator.h"

#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr uid_t stranger = 65534;

bool setMode(const QString &path, mode_t mode) {
    return ::chmod(QFile::encodeName(path).constData(), mode) == 0;
}

int modeOf(const QString &path) {
    struct stat info = {};
    ::lstat(QFile::encodeName(path).constData(), &info);
    return info.st_mode & 07777;
}

} // namespace

/// Each test has a temporary folder, a home and a session folder of its own.
class Tst_RuntimeFolder : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void sessionFolderOfOursIsTaken();
    void unfitSessionFolderIsLeft_data();
    void unfitSessionFolderIsLeft();
    void substituteIsPrivateAndStays();
    void blockedNameIsPassedOver_data();
    void blockedNameIsPassedOver();
    void substituteStaysWhenABlockedNameGetsFree();
    void homeServesWhenAllNamesAreBlocked();
    void openTemporaryFolderIsNotTrusted();
    void folderAboveTheTemporaryOneIsLookedAt_data();
    void folderAboveTheTemporaryOneIsLookedAt();
    void systemsFolderOfTheUserComesBeforeSubstitutes_data();
    void systemsFolderOfTheUserComesBeforeSubstitutes();
    void withoutAFolderThereIsNoSocket();
    void strangersFolderIsPassedOver();
    void socketAndBlockStandInTheFolder();
    void absoluteSocketNamesStay();

private:
    QString path(const char *name) const { return m_scratch->filePath(QString::fromLatin1(name)); }
    QString substitute(const QString &suffix = QString()) const {
        return path("tmp") + QStringLiteral("/tindra-%1").arg(::geteuid()) + suffix;
    }

    std::unique_ptr<QTemporaryDir> m_scratch;
};

void Tst_RuntimeFolder::init() {
    m_scratch = std::make_unique<QTemporaryDir>(QStringLiteral("/tmp/tst-runtime-XXXXXX"));
    QVERIFY(m_scratch->isValid());
    for (const char *name : {"run", "tmp", "cache"}) {
        QVERIFY(QDir().mkpath(path(name)));
        QVERIFY(setMode(path(name), 0700));
    }
    // As the system's own: everybody may write, nobody may touch the other's.
    QVERIFY(setMode(path("tmp"), 01777));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(path("run")));
    qputenv("TINDRA_USER_FOLDERS", QFile::encodeName(path("users")));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(path("cache")));
    qputenv("TMPDIR", QFile::encodeName(path("tmp")));
}

void Tst_RuntimeFolder::cleanup() {
    m_scratch.reset();
}

void Tst_RuntimeFolder::sessionFolderOfOursIsTaken() {
    QCOMPARE(platform::privateRuntimeFolder(), path("run"));
}

void Tst_RuntimeFolder::unfitSessionFolderIsLeft_data() {
    QTest::addColumn<QString>("kind");
    for (const char *kind :
         {"unset", "missing", "relative", "readable by others", "writable by a group", "link", "stranger's"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void Tst_RuntimeFolder::unfitSessionFolderIsLeft() {
    QFETCH(QString, kind);
    if (kind == QLatin1String("unset"))
        qunsetenv("XDG_RUNTIME_DIR");
    else if (kind == QLatin1String("missing"))
        QVERIFY(QDir().rmdir(path("run")));
    else if (kind == QLatin1String("relative"))
        qputenv("XDG_RUNTIME_DIR", "run");
    else if (kind == QLatin1String("readable by others"))
        QVERIFY(setMode(path("run"), 0755));
    else if (kind == QLatin1String("writable by a group"))
        QVERIFY(setMode(path("run"), 0720));
    else if (kind == QLatin1String("link")) {
        QVERIFY(QFile::link(path("run"), path("link")));
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(path("link")));
    } else if (!isAdministrator())
        QSKIP("only root can give a folder away");
    else
        QCOMPARE(::chown(QFile::encodeName(path("run")).constData(), stranger, stranger), 0);
    QCOMPARE(platform::privateRuntimeFolder(), substitute());
}

void Tst_RuntimeFolder::substituteIsPrivateAndStays() {
    qunsetenv("XDG_RUNTIME_DIR");
    const mode_t mask = ::umask(0);
    const QString first = platform::privateRuntimeFolder();
    ::umask(mask);
    QCOMPARE(first, substitute());
    QCOMPARE(modeOf(first), 0700);
    QCOMPARE(platform::privateRuntimeFolder(), first);
}

void Tst_RuntimeFolder::blockedNameIsPassedOver_data() {
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"file", "link to a folder of ours", "dangling link", "folder open to others"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void Tst_RuntimeFolder::blockedNameIsPassedOver() {
    QFETCH(QString, kind);
    qunsetenv("XDG_RUNTIME_DIR");
    const QString name = substitute();
    if (kind == QLatin1String("file")) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
    } else if (kind == QLatin1String("link to a folder of ours")) {
        QVERIFY(QFile::link(path("run"), name));
    } else if (kind == QLatin1String("dangling link")) {
        QVERIFY(QFile::link(path("nothing"), name));
    } else {
        QVERIFY(QDir().mkdir(name));
        QVERIFY(setMode(name, 0777));
    }
    QCOMPARE(platform::privateRuntimeFolder(), substitute(QStringLiteral("-1")));
}

void Tst_RuntimeFolder::substituteStaysWhenABlockedNameGetsFree() {
    qunsetenv("XDG_RUNTIME_DIR");
    QVERIFY(QFile::link(path("nothing"), substitute()));
    const QString chosen = platform::privateRuntimeFolder();
    QCOMPARE(chosen, substitute(QStringLiteral("-1")));
    QVERIFY(QFile::remove(substitute()));
    QCOMPARE(platform::privateRuntimeFolder(), chosen);
}

void Tst_RuntimeFolder::homeServesWhenAllNamesAreBlocked() {
    qunsetenv("XDG_RUNTIME_DIR");
    QVERIFY(QFile::link(path("nothing"), substitute()));
    for (int i = 1; i < 1000; ++i)
        QVERIFY(QFile::link(path("nothing"), substitute(QStringLiteral("-%1").arg(i))));
    const QString chosen = platform::privateRuntimeFolder();
    QCOMPARE(chosen, path("cache") + QStringLiteral("/tindra-%1").arg(::geteuid()));
    QCOMPARE(modeOf(chosen), 0700);
}

void Tst_RuntimeFolder::openTemporaryFolderIsNotTrusted() {
    qunsetenv("XDG_RUNTIME_DIR");
    // Without the sticky bit anybody could rename our folder and put another in its place.
    QVERIFY(setMode(path("tmp"), 0777));
    QCOMPARE(platform::privateRuntimeFolder(), path("cache") + QStringLiteral("/tindra-%1").arg(::geteuid()));
}

void Tst_RuntimeFolder::folderAboveTheTemporaryOneIsLookedAt_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("linked");
    QTest::addColumn<bool>("trusted");
    QTest::newRow("ours alone") << 0755 << false << true;
    QTest::newRow("everybody may write, nobody may move") << 01777 << false << true;
    QTest::newRow("everybody may move its entries") << 0777 << false << false;
    QTest::newRow("a group may move its entries") << 0770 << false << false;
    QTest::newRow("by way of a link") << 0777 << true << false;
}

void Tst_RuntimeFolder::folderAboveTheTemporaryOneIsLookedAt() {
    QFETCH(int, mode);
    QFETCH(bool, linked);
    QFETCH(bool, trusted);
    qunsetenv("XDG_RUNTIME_DIR");
    QVERIFY(QDir().mkpath(path("above/between/tmp")));
    QVERIFY(setMode(path("above"), mode_t(mode)));
    QString temporary = path("above/between/tmp");
    if (linked) {
        QVERIFY(QFile::link(temporary, path("link")));
        temporary = path("link");
    }
    qputenv("TMPDIR", QFile::encodeName(temporary));
    const QString name = QStringLiteral("/tindra-%1").arg(::geteuid());
    QCOMPARE(platform::privateRuntimeFolder(), (trusted ? temporary : path("cache")) + name);
}

void Tst_RuntimeFolder::systemsFolderOfTheUserComesBeforeSubstitutes_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("taken");
    QTest::newRow("private") << 0700 << true;
    QTest::newRow("open") << 0755 << false;
}

void Tst_RuntimeFolder::systemsFolderOfTheUserComesBeforeSubstitutes() {
    QFETCH(int, mode);
    QFETCH(bool, taken);
    const QString users = path("users") + QStringLiteral("/%1").arg(::geteuid());
    QVERIFY(QDir().mkpath(users));
    QVERIFY(setMode(users, mode_t(mode)));
    QCOMPARE(platform::privateRuntimeFolder(), path("run"));
    qunsetenv("XDG_RUNTIME_DIR");
    QCOMPARE(platform::privateRuntimeFolder(), taken ? users : substitute());
}

void Tst_RuntimeFolder::withoutAFolderThereIsNoSocket() {
    qunsetenv("XDG_RUNTIME_DIR");
    QVERIFY(setMode(path("tmp"), 0777));
    QVERIFY(QDir().rmdir(path("cache")));
    QVERIFY(QFile::link(path("nothing"), path("cache")));
    QCOMPARE(platform::privateRuntimeFolder(), QString());
    QCOMPARE(platform::localSocketPath(QStringLiteral("TNDEMutex")), QString());
    QVERIFY(!platform::NamedLock(QStringLiteral("TNDEMutex")).lock());
}

void Tst_RuntimeFolder::strangersFolderIsPassedOver() {
    if (!isAdministrator())
        QSKIP("only root can give a folder away");
    qunsetenv("XDG_RUNTIME_DIR");
    QVERIFY(QDir().mkdir(substitute()));
    QVERIFY(setMode(substitute(), 0700));
    QCOMPARE(::chown(QFile::encodeName(substitute()).constData(), stranger, stranger), 0);
    QCOMPARE(platform::privateRuntimeFolder(), substitute(QStringLiteral("-1")));
}

void Tst_RuntimeFolder::socketAndBlockStandInTheFolder() {
    QCOMPARE(platform::localSocketPath(QStringLiteral("TNDEMutex")), path("run/TNDEMutex"));
    const platform::SharedImageBlock block = platform::sharedImageBlock();
    QCOMPARE(block.nativeKey, path("run/TindraImageMemory"));
    platform::NamedLock lock(block.lockName);
    QVERIFY(lock.lock());
    QVERIFY(QFile::exists(path("run/TindraImageMemory.lock")));
    QCOMPARE(modeOf(path("run/TindraImageMemory.lock")), 0600);
}

void Tst_RuntimeFolder::absoluteSocketNamesStay() {
    QCOMPARE(platform::localSocketPath(QStringLiteral("/a/b")), QStringLiteral("/a/b"));
}

QTEST_GUILESS_MAIN(Tst_RuntimeFolder)
#include "tst_runtimefolder.moc"
