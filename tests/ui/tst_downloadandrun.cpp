#include "platform/filesignature.h"
#include "support/httpserver.h"
#include "support/literals.h"
#include "support/openedurls.h"
#include "support/tracedby.h"
#include "ui/downloadandrun.h"
#include "ui/filedownloaddialog.h"

#include <QDesktopServices>
#include <QDir>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <sys/stat.h>

namespace {

QByteArray fixture(const char *name) {
    QFile file(QStringLiteral(TINDRA_SIGNATURES "/") + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList installers() {
    return QDir(QDir::tempPath()).entryList({"*.exe"_qs}, QDir::Files);
}

} // namespace

class Tst_DownloadAndRun : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void makersInstallerIsStarted();
    void startedFileIsNobodyElses();
    void otherFilesAreNotStarted_data();
    void otherFilesAreNotStarted();
    void whatDoesNotArriveIsNotStarted();
    void cancelledOneIsNotStarted();
    void refusedByTheDesktopIsDeleted();
    void nothingWithoutATemporaryFolder();
    void nothingWhereOthersMayExchangeIt_data();
    void nothingWhereOthersMayExchangeIt();

private:
    std::unique_ptr<HttpServer> m_server;
};

void Tst_DownloadAndRun::initTestCase() {
    platform::setTrustedRoots(QStringLiteral(TINDRA_SIGNATURES "/root.pem"));
}

void Tst_DownloadAndRun::init() {
    m_server = std::make_unique<HttpServer>();
}

void Tst_DownloadAndRun::cleanup() {
    QDir temporary(QDir::tempPath());
    const QStringList left = installers();
    for (const QString &name : left)
        temporary.remove(name);
}

void Tst_DownloadAndRun::makersInstallerIsStarted() {
    const QByteArray installer = fixture("norvane.dll");
    QVERIFY(!installer.isEmpty());
    m_server->answer("/setup"_qs, "200 OK", installer);
    const OpenedUrls opened;
    QVERIFY(downloadAndRun(m_server->url("/setup"_qs)));
    QCOMPARE(opened.urls.size(), 1);
    const QFileInfo started(opened.urls.first().toLocalFile());
    QCOMPARE(started.path(), QDir::tempPath());
    static const QRegularExpression name("^[A-Za-z0-9]{6}\\.exe$"_qs);
    QVERIFY2(name.match(started.fileName()).hasMatch(), qPrintable(started.fileName()));
    // Still there, whenever the desktop gets to it.
    QFile file(started.filePath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), installer);
    QCOMPARE(m_server->requests, QStringList{"/setup"_qs});
}

void Tst_DownloadAndRun::startedFileIsNobodyElses() {
    m_server->answer("/setup"_qs, "200 OK", fixture("norvane.dll"));
    const OpenedUrls opened;
    QVERIFY(downloadAndRun(m_server->url("/setup"_qs)));
    const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                      QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    QVERIFY(!(QFile::permissions(opened.urls.first().toLocalFile()) & others));
}

void Tst_DownloadAndRun::otherFilesAreNotStarted_data() {
    QTest::addColumn<QByteArray>("content");
    QByteArray changed = fixture("norvane.dll");
    changed[600] = char(changed[600] ^ 1);
    QTest::newRow("unsigned") << fixture("unsigned.dll");
    QTest::newRow("changed since") << changed;
    QTest::newRow("of another maker") << fixture("other.dll");
    QTest::newRow("vouches for itself") << fixture("self.dll");
    QTest::newRow("expired") << fixture("expired.dll");
    QTest::newRow("half of it") << fixture("norvane.dll").left(1000);
    QTest::newRow("no program") << QByteArray("<html>Sorry</html>");
    QTest::newRow("nothing") << QByteArray();
}

void Tst_DownloadAndRun::otherFilesAreNotStarted() {
    QFETCH(QByteArray, content);
    m_server->answer("/setup"_qs, "200 OK", content);
    const OpenedUrls opened;
    bool started = true;
    const QByteArray log = tracedBy([&] { started = downloadAndRun(m_server->url("/setup"_qs)); });
    QVERIFY(!started);
    QCOMPARE(opened.urls, QVector<QUrl>());
    QCOMPARE(installers(), QStringList());
    const QByteArray why = " DownloadAndRun : [ERROR]Not signed by an accepted maker_(" +
                           m_server->url("/setup"_qs).toUtf8() + ")";
    QVERIFY2(log.contains(why), log);
}

void Tst_DownloadAndRun::whatDoesNotArriveIsNotStarted() {
    const OpenedUrls opened;
    const QByteArray log = tracedBy([&] { QVERIFY(!downloadAndRun(m_server->url("/nothing"_qs))); });
    QCOMPARE(opened.urls, QVector<QUrl>());
    QCOMPARE(installers(), QStringList());
    QVERIFY(log.contains("[ERROR]Download fail_("));
}

void Tst_DownloadAndRun::cancelledOneIsNotStarted() {
    m_server->stall("/slow"_qs);
    const OpenedUrls opened;
    QTimer::singleShot(100, this, [] {
        QApplication::activeModalWidget()->findChild<QPushButton *>("cancel_"_qs)->click();
    });
    QVERIFY(!downloadAndRun(m_server->url("/slow"_qs)));
    QCOMPARE(opened.urls, QVector<QUrl>());
    QCOMPARE(installers(), QStringList());
}

void Tst_DownloadAndRun::refusedByTheDesktopIsDeleted() {
    m_server->answer("/setup"_qs, "200 OK", fixture("norvane.dll"));
    // Nobody opens anything here: there is no desktop, and no program for such files.
    const QByteArray programs = qgetenv("PATH");
    qputenv("PATH", "/nonexistent");
    const bool started = downloadAndRun(m_server->url("/setup"_qs));
    qputenv("PATH", programs);
    QVERIFY(!started);
    QCOMPARE(installers(), QStringList());
}

void Tst_DownloadAndRun::nothingWithoutATemporaryFolder() {
    const QByteArray folder = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/proc");
    const bool started = downloadAndRun(m_server->url("/setup"_qs));
    qputenv("TMPDIR", folder);
    QVERIFY(!started);
    QCOMPARE(m_server->requests, QStringList());
}

void Tst_DownloadAndRun::nothingWhereOthersMayExchangeIt_data() {
    QTest::addColumn<uint>("mode");
    QTest::addColumn<bool>("starts");
    QTest::newRow("own") << 0700U << true;
    QTest::newRow("everybody's, who keep what is theirs") << 01777U << true;
    QTest::newRow("everybody's") << 0777U << false;
    QTest::newRow("a group's") << 0770U << false;
}

void Tst_DownloadAndRun::nothingWhereOthersMayExchangeIt() {
    QFETCH(uint, mode);
    m_server->answer("/setup"_qs, "200 OK", fixture("norvane.dll"));
    const QByteArray folder = qgetenv("TMPDIR");
    const QTemporaryDir shared;
    QCOMPARE(::chmod(QFile::encodeName(shared.path()).constData(), mode), 0);
    const OpenedUrls opened;
    qputenv("TMPDIR", QFile::encodeName(shared.path()));
    const bool started = downloadAndRun(m_server->url("/setup"_qs));
    qputenv("TMPDIR", folder);
    QTEST(started, "starts");
    QCOMPARE(m_server->requests.isEmpty(), !started);
}

QTEST_MAIN(Tst_DownloadAndRun)
#include "tst_downloadandrun.moc"
