#include "services/workfolder.h"
#include "support/administrator.h"

#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

namespace {

int modeOf(const QString &path) {
    struct stat info;
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? int(info.st_mode & 0777) : -1;
}

} // namespace

class Tst_WorkFolder : public QObject {
    Q_OBJECT
private slots:
    void init();
    void firstUsablePlaceIsTaken_data();
    void firstUsablePlaceIsTaken();
    void noUsablePlaceGivesNothing();
    void folderIsPrivate();
    void contentStays();
    void temporaryPlaceOfSomebodyElseIsPassedOver();
    void realPathLeadsWhereAFileWouldLand_data();
    void realPathLeadsWhereAFileWouldLand();
    void placesInTheFolderAreKnown_data();
    void placesInTheFolderAreKnown();
    void withoutAFolderNothingLiesInIt();

private:
    /// Makes the place unusable, for an administrator too.
    void block(const QString &name);

    std::unique_ptr<QTemporaryDir> m_folder;
};

void Tst_WorkFolder::init() {
    m_folder = std::make_unique<QTemporaryDir>(QStringLiteral("/tmp/tindra-work-XXXXXX"));
    qputenv("XDG_DATA_HOME", m_folder->filePath(QStringLiteral("data")).toLocal8Bit());
    qputenv("TMPDIR", m_folder->filePath(QStringLiteral("tmp")).toLocal8Bit());
    qputenv("HOME", m_folder->filePath(QStringLiteral("home")).toLocal8Bit());
}

void Tst_WorkFolder::block(const QString &name) {
    QFile file(m_folder->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
}

void Tst_WorkFolder::firstUsablePlaceIsTaken_data() {
    QTest::addColumn<QStringList>("blocked");
    QTest::addColumn<QString>("expected");
    const QString data = QStringLiteral("data");
    const QString tmp = QStringLiteral("tmp");
    QTest::newRow("data folder") << QStringList() << data;
    QTest::newRow("temporary folder") << QStringList{data} << tmp;
    QTest::newRow("home") << QStringList{data, tmp} << QStringLiteral("home");
}

void Tst_WorkFolder::firstUsablePlaceIsTaken() {
    QFETCH(QStringList, blocked);
    QFETCH(QString, expected);
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("tmp")));
    for (const QString &name : blocked) {
        QDir(m_folder->path()).rmdir(name);
        block(name);
    }
    QCOMPARE(workFolder(), m_folder->filePath(expected + QStringLiteral("/Norvane/Tindra")));
    QVERIFY(QFileInfo(workFolder()).isDir());
}

void Tst_WorkFolder::noUsablePlaceGivesNothing() {
    for (const char *name : {"data", "tmp", "home"})
        block(QLatin1String(name));
    QCOMPARE(workFolder(), QString());
}

void Tst_WorkFolder::folderIsPrivate() {
    const mode_t usual = ::umask(0);
    const QString folder = workFolder();
    ::umask(usual);
    QCOMPARE(modeOf(folder), 0700);
    QCOMPARE(modeOf(QFileInfo(folder).path()), 0700);
    QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 0755), 0);
    QCOMPARE(workFolder(), folder);
    QCOMPARE(modeOf(folder), 0700);
}

void Tst_WorkFolder::contentStays() {
    QFile file(workFolder() + QStringLiteral("/left-over.png"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(QFile::exists(workFolder() + QStringLiteral("/left-over.png")));
}

void Tst_WorkFolder::temporaryPlaceOfSomebodyElseIsPassedOver() {
    if (!isAdministrator())
        QSKIP("only an administrator can give a folder away");
    block(QStringLiteral("data"));
    const QString squatted = m_folder->filePath(QStringLiteral("tmp/Norvane"));
    QVERIFY(QDir().mkpath(squatted));
    QCOMPARE(::chown(QFile::encodeName(squatted).constData(), 12345, 12345), 0);
    QCOMPARE(workFolder(), m_folder->filePath(QStringLiteral("home/Norvane/Tindra")));
    QVERIFY(QDir(squatted).isEmpty());
}

void Tst_WorkFolder::realPathLeadsWhereAFileWouldLand_data() {
    QTest::addColumn<QString>("path"); // below the folder of the test, like the other
    QTest::addColumn<QString>("expected");
    QTest::newRow("file") << "a/file"
                          << "a/file";
    QTest::newRow("no file yet") << "a/new"
                                 << "a/new";
    QTest::newRow("detour") << "a/../a/./new"
                            << "a/new";
    QTest::newRow("folder") << "a"
                            << "a";
    QTest::newRow("link to a file") << "tofile"
                                    << "a/file";
    QTest::newRow("link to a file that is missing") << "tonew"
                                                    << "a/new";
    QTest::newRow("below a link to a folder") << "tofolder/new"
                                              << "a/new";
    QTest::newRow("folders that are missing") << "tofolder/b/c/new"
                                              << "a";
}

void Tst_WorkFolder::realPathLeadsWhereAFileWouldLand() {
    QFETCH(QString, path);
    QFETCH(QString, expected);
    const QDir folder(QFileInfo(m_folder->path()).canonicalFilePath());
    QVERIFY(folder.mkdir(QStringLiteral("a")));
    QVERIFY(QFile(folder.filePath(QStringLiteral("a/file"))).open(QIODevice::WriteOnly));
    const auto link = [&folder](const char *to, const char *name) {
        QVERIFY(QFile::link(folder.filePath(QLatin1String(to)), folder.filePath(QLatin1String(name))));
    };
    link("a/file", "tofile");
    link("a/new", "tonew");
    link("a", "tofolder");
    QCOMPARE(realPath(folder.path() + QLatin1Char('/') + path), folder.filePath(expected));
}

void Tst_WorkFolder::placesInTheFolderAreKnown_data() {
    QTest::addColumn<QString>("path"); // below the work folder
    QTest::addColumn<bool>("expected");
    QTest::newRow("the folder") << "" << true;
    QTest::newRow("new file") << "/shot.png" << true;
    QTest::newRow("new folders") << "/pin/new/folder" << true;
    QTest::newRow("link that leads out") << "/out" << true;
    QTest::newRow("link that leads in") << "/../in/shot.png" << true;
    QTest::newRow("the folder above") << "/.." << false;
    QTest::newRow("a neighbour with a longer name") << "2/shot.png" << false;
}

void Tst_WorkFolder::placesInTheFolderAreKnown() {
    QFETCH(QString, path);
    QFETCH(bool, expected);
    const QString folder = workFolder();
    QVERIFY(QDir().mkpath(folder + QLatin1Char('2')));
    QVERIFY(QFile::link(m_folder->path(), folder + QStringLiteral("/out")));
    QVERIFY(QFile::link(folder, folder + QStringLiteral("/../in")));
    QCOMPARE(isInWorkFolder(folder + path), expected);
}

void Tst_WorkFolder::withoutAFolderNothingLiesInIt() {
    for (const QString &name : {QStringLiteral("data"), QStringLiteral("tmp"), QStringLiteral("home")})
        block(name);
    QCOMPARE(workFolder(), QString());
    QVERIFY(!isInWorkFolder(m_folder->filePath(QStringLiteral("shot.png"))));
    QVERIFY(!isInWorkFolder(QString()));
}

int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Tindra"));
    Tst_WorkFolder test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_workfolder.moc"
