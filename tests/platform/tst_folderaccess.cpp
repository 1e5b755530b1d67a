#include "platform/folderaccess.h"
#include "support/administrator.h"
#include "support/ordinaryuser.h"

#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

namespace {

int modeOf(const QString &path) {
    struct stat info;
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? int(info.st_mode & 07777) : -1;
}

void setMode(const QString &path, int mode) {
    ::chmod(QFile::encodeName(path).constData(), mode_t(mode));
}

} // namespace

class Tst_FolderAccess : public QObject {
    Q_OBJECT
private slots:
    void writableNeedsAllRights_data();
    void writableNeedsAllRights();
    void onlyFoldersAreWritable_data();
    void onlyFoldersAreWritable();
    void newFoldersArePrivate();
    void rightsOfOthersAreTaken_data();
    void rightsOfOthersAreTaken();
    void folderOfSomebodyElseIsRefused();
    void linkIsFollowedOnlyWhenOurs();
    void whatIsNoFolderIsRefused_data();
    void whatIsNoFolderIsRefused();
};

void Tst_FolderAccess::writableNeedsAllRights_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("expected");
    QTest::newRow("all") << 0700 << true;
    QTest::newRow("no writing") << 0500 << false;
    QTest::newRow("no reading") << 0300 << false;
    QTest::newRow("no searching") << 0600 << false;
    QTest::newRow("only others") << 0077 << false;
}

void Tst_FolderAccess::writableNeedsAllRights() {
    QFETCH(int, mode);
    QFETCH(bool, expected);
    const int result = asOrdinaryUser([mode](const QString &folder) {
        const QString path = folder + QStringLiteral("/target");
        QDir().mkdir(path);
        setMode(path, mode);
        const bool isWritable = isDirectoryWritable(path);
        setMode(path, 0700);
        return isWritable ? 1 : 0;
    });
    QCOMPARE(result, expected ? 1 : 0);
}

void Tst_FolderAccess::onlyFoldersAreWritable_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("expected");
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("missing") << QStringLiteral("/no/such/folder") << false;
    QTest::newRow("file") << QCoreApplication::applicationFilePath() << false;
    QTest::newRow("device") << QStringLiteral("/dev/null") << false;
    QTest::newRow("folder") << QDir::tempPath() << true;
    QTest::newRow("trailing slash") << QDir::tempPath() + QLatin1Char('/') << true;
}

void Tst_FolderAccess::onlyFoldersAreWritable() {
    QFETCH(QString, path);
    QTEST(isDirectoryWritable(path), "expected");
}

void Tst_FolderAccess::newFoldersArePrivate() {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a/b/c"));
    const mode_t usual = ::umask(0);
    QVERIFY(platform::makePrivateFolder(path));
    ::umask(usual);
    QCOMPARE(modeOf(path), 0700);
    QCOMPARE(modeOf(folder.filePath(QStringLiteral("a/b"))), 0700);
    QCOMPARE(modeOf(folder.filePath(QStringLiteral("a"))), 0700);
}

void Tst_FolderAccess::rightsOfOthersAreTaken_data() {
    QTest::addColumn<int>("before");
    QTest::newRow("open to read") << 0755;
    QTest::newRow("open to write") << 01777;
    QTest::newRow("group") << 0770;
}

void Tst_FolderAccess::rightsOfOthersAreTaken() {
    QFETCH(int, before);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("work"));
    QVERIFY(QDir().mkdir(path));
    setMode(path, before);
    QVERIFY(platform::makePrivateFolder(path));
    QCOMPARE(modeOf(path), 0700);
    QCOMPARE(modeOf(folder.path()), 0700); // what stands above is not ours to change
}

void Tst_FolderAccess::folderOfSomebodyElseIsRefused() {
    if (!isAdministrator())
        QSKIP("only an administrator can give a folder away");
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("squatted"));
    QVERIFY(QDir().mkdir(path));
    QCOMPARE(::chown(QFile::encodeName(path).constData(), 12345, 12345), 0);
    QVERIFY(!platform::makePrivateFolder(path));
}

void Tst_FolderAccess::linkIsFollowedOnlyWhenOurs() {
    const QTemporaryDir folder;
    const QString target = folder.filePath(QStringLiteral("elsewhere"));
    const QString link = folder.filePath(QStringLiteral("work"));
    QVERIFY(QDir().mkdir(target));
    QVERIFY(QFile::link(target, link));
    QVERIFY(platform::makePrivateFolder(link));
    if (!isAdministrator())
        QSKIP("only an administrator can give a link away");
    QCOMPARE(::lchown(QFile::encodeName(link).constData(), 12345, 12345), 0);
    QVERIFY(!platform::makePrivateFolder(link));
}

void Tst_FolderAccess::whatIsNoFolderIsRefused_data() {
    QTest::addColumn<QString>("path");
    QTest::newRow("empty") << QString();
    QTest::newRow("file") << QCoreApplication::applicationFilePath();
    QTest::newRow("below a file") << QCoreApplication::applicationFilePath() + QStringLiteral("/work");
    QTest::newRow("below a device") << QStringLiteral("/dev/null/work");
}

void Tst_FolderAccess::whatIsNoFolderIsRefused() {
    QFETCH(QString, path);
    QVERIFY(!platform::makePrivateFolder(path));
}

QTEST_GUILESS_MAIN(Tst_FolderAccess)
#include "tst_folderaccess.moc"
