#include "platform/configuration.h"
#include "services/httptransfer.h"
#include "services/tracelog.h"
#include "support/endingprogram.h"
#include "support/httpserver.h"

#include <QElapsedTimer>
#include <QProgressBar>
#include <QSslConfiguration>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

namespace {

QSslCertificate certificate(const char *name) {
    return QSslCertificate::fromPath(QStringLiteral(TINDRA_CERTIFICATES "/") + QLatin1String(name)).value(0);
}

QSslKey serverKey() {
    QFile file(QStringLiteral(TINDRA_CERTIFICATES "/server.key"));
    return file.open(QIODevice::ReadOnly) ? QSslKey(file.readAll(), QSsl::Rsa) : QSslKey();
}

QByteArray contentOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Tag and message of each line of the log.
QStringList logLines() {
    QStringList texts;
    const QStringList lines =
        QString::fromUtf8(contentOf(TraceLog::filePath())).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    for (const QString &line : lines)
        texts.append(line.mid(line.indexOf(QLatin1Char(')')) + 2));
    return texts;
}

/// Each value that the bar showed, with its range.
class WatchedBar : public QProgressBar {
public:
    WatchedBar() {
        connect(this, &QProgressBar::valueChanged, this, [this](int value) {
            shown.append({value, maximum()});
        });
    }
    QVector<QPair<int, int>> shown;
};

} // namespace

class Tst_HttpTransfer : public QObject {
    Q_OBJECT
private slots:
    void init();
    void downloadWritesWhatTheServerSends();
    void bigFileArrivesPieceByPiece();
    void emptyNamesAreRefused_data();
    void emptyNamesAreRefused();
    void unwritableTargetIsRefused();
    void errorIsTraced_data();
    void errorIsTraced();
    void fullDiskIsNoArrival();
    void redirectEndsInOneFile_data();
    void redirectEndsInOneFile();
    void redirectElsewhereIsRefused_data();
    void redirectElsewhereIsRefused();
    void manyRedirectsAreFollowed();
    void unknownLengthLeavesTheBarBusy();
    void cancelEndsTheCall();
    void endOfTheProgramIsNoArrival_data();
    void endOfTheProgramIsNoArrival();
    void dataIsNotThereWhenTheProgramEnds();
    void cancelWithoutATransferDoesNothing();
    void dataArrivesInMemory();
    void dataWithoutAUrlIsRefused();
    void dataErrorIsTraced();
    void dataTimesOut();
    void redirectedDataGetsTenSeconds();
    void redirectedDataEndsAfterTenSeconds();
    void endlessDataIsRefused();
    void certificates_data();
    void certificates();
    void redirectedDataIsVerified();

private:
    QString target() const { return m_folder->filePath(QStringLiteral("file")); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<HttpServer> m_server;
};

void Tst_HttpTransfer::init() {
    QCoreApplication::setApplicationName(QStringLiteral("Tindra"));
    m_folder = std::make_unique<QTemporaryDir>();
    m_server = std::make_unique<HttpServer>();
    setTraceLevel(2);
    QFile::remove(TraceLog::filePath());
}

void Tst_HttpTransfer::downloadWritesWhatTheServerSends() {
    m_server->answer(QStringLiteral("/a"), "200 OK", "content");
    QFile old(target());
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("something longer than the content");
    old.close();
    HttpTransfer transfer;
    QVERIFY(transfer.download(m_server->url(QStringLiteral("/a")), target(), true, nullptr, false));
    QCOMPARE(contentOf(target()), QByteArray("content"));
    QCOMPARE(logLines(), QStringList{QStringLiteral("Download : RedirectURL: ")});
}

void Tst_HttpTransfer::bigFileArrivesPieceByPiece() {
    const QByteArray body = QByteArray("0123456789abcdef").repeated(1 << 18); // 4 MiB
    m_server->answer(QStringLiteral("/big"), "200 OK", body);
    WatchedBar bar;
    HttpTransfer transfer;
    QVERIFY(transfer.download(m_server->url(QStringLiteral("/big")), target(), true, &bar, false));
    QVERIFY(contentOf(target()) == body);
    QCOMPARE(bar.minimum(), 0);
    QCOMPARE(bar.maximum(), body.size());
    QCOMPARE(bar.value(), body.size());
}

void Tst_HttpTransfer::emptyNamesAreRefused_data() {
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("destination");
    QTest::addColumn<QString>("line");
    QTest::newRow("url") << QString() << QStringLiteral("x")
                         << QStringLiteral("Download : [ERROR]Source url is empty_");
    QTest::newRow("destination") << QStringLiteral("http://127.0.0.1:1/") << QString()
                                 << QStringLiteral("Download : [ERROR]Dest filename is empty_");
}

void Tst_HttpTransfer::emptyNamesAreRefused() {
    QFETCH(QString, url);
    QFETCH(QString, destination);
    setTraceLevel(1);
    HttpTransfer transfer;
    QVERIFY(!transfer.download(url, destination, true, nullptr, false));
    QTEST(logLines().join(QLatin1Char('|')), "line");
}

void Tst_HttpTransfer::unwritableTargetIsRefused() {
    const QString path = m_folder->filePath(QStringLiteral("no folder/file"));
    HttpTransfer transfer;
    QVERIFY(!transfer.download(m_server->url(QStringLiteral("/a")), path, true, nullptr, false));
    QCOMPARE(logLines(), QStringList{QStringLiteral("Download : [ERROR]Open file fail_(%1)").arg(path)});
    QVERIFY(m_server->requests.isEmpty());
}

void Tst_HttpTransfer::errorIsTraced_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("code");
    QTest::newRow("not found") << QStringLiteral("/nothing") << int(QNetworkReply::ContentNotFoundError);
    QTest::newRow("server's fault") << QStringLiteral("/broken") << int(QNetworkReply::InternalServerError);
    QTest::newRow("broken off") << QStringLiteral("/short") << int(QNetworkReply::RemoteHostClosedError);
}

void Tst_HttpTransfer::errorIsTraced() {
    QFETCH(QString, path);
    QFETCH(int, code);
    setTraceLevel(1);
    m_server->answer(QStringLiteral("/broken"), "500 Broken", "a page");
    m_server->breakOff(QStringLiteral("/short"), "four", 400);
    HttpTransfer transfer;
    QVERIFY(!transfer.download(m_server->url(path), target(), true, nullptr, false));
    QCOMPARE(logLines().size(), 1);
    const QString start = QStringLiteral("Download : [ERROR](%1)").arg(code);
    QVERIFY2(logLines().first().startsWith(start), qPrintable(logLines().first()));
    QVERIFY(logLines().first().size() > start.size());
}

void Tst_HttpTransfer::fullDiskIsNoArrival() {
    if (!QFileInfo::exists(QStringLiteral("/dev/full")))
        QSKIP("this system has no device that is always full");
    m_server->answer(QStringLiteral("/a"), "200 OK", QByteArray(100000, 'x'));
    HttpTransfer transfer;
    QVERIFY(!transfer.download(m_server->url(QStringLiteral("/a")), QStringLiteral("/dev/full"), true,
                               nullptr, false));
    QVERIFY(logLines().join(QLatin1Char('|')).contains(QStringLiteral("Download : [ERROR](")));
}

void Tst_HttpTransfer::redirectEndsInOneFile_data() {
    QTest::addColumn<QString>("location");
    QTest::newRow("absolute") << QStringLiteral("%1/b/there");
    QTest::newRow("relative to the host") << QStringLiteral("/b/there");
    QTest::newRow("relative to the page") << QStringLiteral("there");
}

void Tst_HttpTransfer::redirectEndsInOneFile() {
    QFETCH(QString, location);
    if (location.contains(QLatin1Char('%')))
        location = location.arg(m_server->url(QString()));
    m_server->redirect(QStringLiteral("/b/here"), location, "Moved, and this page is longer than the file.");
    m_server->answer(QStringLiteral("/b/there"), "200 OK", "the file");
    WatchedBar bar;
    HttpTransfer transfer;
    QVERIFY(transfer.download(m_server->url(QStringLiteral("/b/here")), target(), true, &bar, false));
    QCOMPARE(contentOf(target()), QByteArray("the file"));
    QCOMPARE(m_server->requests, (QStringList{QStringLiteral("/b/here"), QStringLiteral("/b/there")}));
    for (const auto &[value, maximum] : bar.shown)
        QVERIFY2(value <= 8 && maximum == 8, "the bar follows the second transfer only");
    QCOMPARE(bar.value(), 8);
    QCOMPARE(logLines(), (QStringList{QStringLiteral("Download : RedirectURL: ") +
                                          m_server->url(QStringLiteral("/b/there")),
                                      QStringLiteral("Download : RedirectURL: ")}));
}

void Tst_HttpTransfer::redirectElsewhereIsRefused_data() {
    QTest::addColumn<QString>("location");
    QTest::newRow("a file of this machine") << QStringLiteral("file:///etc/hostname");
    QTest::newRow("inline data") << QStringLiteral("data:text/plain,hello");
    QTest::newRow("another protocol") << QStringLiteral("ftp://127.0.0.1/file");
    QTest::newRow("a resource of the program") << QStringLiteral("qrc:/style/editor.qss");
}

void Tst_HttpTransfer::redirectElsewhereIsRefused() {
    QFETCH(QString, location);
    m_server->redirect(QStringLiteral("/a"), location);
    HttpTransfer transfer;
    QVERIFY(!transfer.download(m_server->url(QStringLiteral("/a")), target(), true, nullptr, false));
    QCOMPARE(contentOf(target()), QByteArray());
    QCOMPARE(logLines().last(), QStringLiteral("Download : [ERROR]Redirect refused_(%1)").arg(location));
    QByteArray data;
    QVERIFY(!transfer.getData(m_server->url(QStringLiteral("/a")), data, true, 5000, false));
    QCOMPARE(data, QByteArray());
    QCOMPARE(logLines().last(), QStringLiteral("Get : [ERROR]Redirect refused_(%1)").arg(location));
}

void Tst_HttpTransfer::manyRedirectsAreFollowed() {
    constexpr int Hops = 120; // more than any client's habitual limit
    for (int i = 0; i < Hops; ++i)
        m_server->redirect(QStringLiteral("/%1").arg(i), QStringLiteral("/%1").arg(i + 1));
    m_server->answer(QStringLiteral("/%1").arg(Hops), "200 OK", "at last");
    HttpTransfer transfer;
    QVERIFY(transfer.download(m_server->url(QStringLiteral("/0")), target(), true, nullptr, false));
    QCOMPARE(contentOf(target()), QByteArray("at last"));
}

void Tst_HttpTransfer::unknownLengthLeavesTheBarBusy() {
    m_server->keepSending(QStringLiteral("/a"), QByteArray(300000, 'x'));
    QProgressBar bar;
    HttpTransfer transfer;
    transfer.OnDownloadProgress(1, 2); // without a transfer it does nothing
    QCOMPARE(bar.maximum(), 100);
    QPair<int, int> range(-1, -1);
    qint64 written = -1;
    QTimer::singleShot(600, &transfer, [&] {
        range = {bar.minimum(), bar.maximum()};
        written = QFileInfo(target()).size();
        transfer.cancelTransfer();
    });
    QVERIFY(!transfer.download(m_server->url(QStringLiteral("/a")), target(), true, &bar, false));
    QCOMPARE(range, qMakePair(0, 0)); // the bar's way to say that something goes on
    QVERIFY2(written > 0, "data is written as it arrives");
}

void Tst_HttpTransfer::cancelEndsTheCall() {
    m_server->stall(QStringLiteral("/a"));
    HttpTransfer transfer;
    QTimer::singleShot(50, &transfer, &HttpTransfer::cancelTransfer);
    QVERIFY(!transfer.download(m_server->url(QStringLiteral("/a")), target(), true, nullptr, false));
    const QString start =
        QStringLiteral("Download : [ERROR](%1)").arg(int(QNetworkReply::OperationCanceledError));
    QVERIFY2(logLines().value(0).startsWith(start), qPrintable(logLines().value(0)));
}

void Tst_HttpTransfer::endOfTheProgramIsNoArrival_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("delay");
    QTest::newRow("while the server is silent") << QStringLiteral("/silent") << 100;
    QTest::newRow("in the middle of the file") << QStringLiteral("/torn") << 600;
}

void Tst_HttpTransfer::endOfTheProgramIsNoArrival() {
    QFETCH(QString, path);
    QFETCH(int, delay);
    m_server->stall(QStringLiteral("/silent"));
    m_server->keepSending(QStringLiteral("/torn"), QByteArray(1000, 'x'));
    HttpTransfer transfer;
    bool hasArrived = true;
    inProgramThatEnds(
        delay, [&] { hasArrived = transfer.download(m_server->url(path), target(), true, nullptr, false); });
    QVERIFY(!hasArrived);
    const QString start =
        QStringLiteral("Download : [ERROR](%1)").arg(int(QNetworkReply::OperationCanceledError));
    QVERIFY2(logLines().value(0).startsWith(start), qPrintable(logLines().value(0)));
    // Nothing of it goes on: the next call is not disturbed.
    m_server->answer(QStringLiteral("/a"), "200 OK", "content");
    QVERIFY(transfer.download(m_server->url(QStringLiteral("/a")), target(), true, nullptr, false));
    QCOMPARE(contentOf(target()), QByteArray("content"));
}

void Tst_HttpTransfer::dataIsNotThereWhenTheProgramEnds() {
    m_server->keepSending(QStringLiteral("/torn"), QByteArray(1000, 'x'));
    HttpTransfer transfer;
    QByteArray data("old");
    bool hasArrived = true;
    inProgramThatEnds(600, [&] {
        hasArrived = transfer.getData(m_server->url(QStringLiteral("/torn")), data, true, 60000, false);
    });
    QVERIFY(!hasArrived);
    QCOMPARE(data, QByteArray("old"));
}

void Tst_HttpTransfer::cancelWithoutATransferDoesNothing() {
    HttpTransfer transfer;
    transfer.cancelTransfer();
    m_server->answer(QStringLiteral("/a"), "200 OK", "content");
    QVERIFY(transfer.download(m_server->url(QStringLiteral("/a")), target(), true, nullptr, false));
    transfer.cancelTransfer();
    QCOMPARE(contentOf(target()), QByteArray("content"));
}

void Tst_HttpTransfer::dataArrivesInMemory() {
    m_server->answer(QStringLiteral("/a"), "200 OK", "content");
    HttpTransfer transfer;
    QByteArray data("old");
    QVERIFY(transfer.getData(m_server->url(QStringLiteral("/a")), data, true, 5000, false));
    QCOMPARE(data, QByteArray("content"));
    QCOMPARE(logLines(), QStringList{QStringLiteral("Get : GetDataLen: 7")});
}

void Tst_HttpTransfer::dataWithoutAUrlIsRefused() {
    HttpTransfer transfer;
    QByteArray data;
    QVERIFY(!transfer.getData(QString(), data, true, 5000, false));
    QCOMPARE(logLines(), QStringList{QStringLiteral("Get : [ERROR]Source url is empty_")});
}

void Tst_HttpTransfer::dataErrorIsTraced() {
    HttpTransfer transfer;
    QByteArray data("old");
    QVERIFY(!transfer.getData(m_server->url(QStringLiteral("/nothing")), data, true, 5000, false));
    QCOMPARE(data, QByteArray("old"));
    QVERIFY(logLines().value(0).startsWith(QStringLiteral("Get : [ERROR] get (203) ")));
    QCOMPARE(logLines().size(), 1);
}

void Tst_HttpTransfer::dataTimesOut() {
    m_server->stall(QStringLiteral("/a"));
    HttpTransfer transfer;
    QByteArray data("old");
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!transfer.getData(m_server->url(QStringLiteral("/a")), data, true, 150, false));
    QVERIFY(timer.elapsed() >= 140);
    QCOMPARE(data, QByteArray("old"));
    QCOMPARE(logLines(), QStringList());
}

void Tst_HttpTransfer::redirectedDataGetsTenSeconds() {
    // The second hop answers later than the first call's limit.
    HttpServer slow;
    m_server->redirect(QStringLiteral("/a"), slow.url(QStringLiteral("/b")));
    slow.answer(QStringLiteral("/b"), "200 OK", "content");
    slow.pauseAccepting();
    // The system takes the connection at once; only its reader is late.
    QTimer::singleShot(900, &slow, &QTcpServer::resumeAccepting);
    HttpTransfer transfer;
    QByteArray data;
    QVERIFY(transfer.getData(m_server->url(QStringLiteral("/a")), data, true, 600, false));
    QCOMPARE(data, QByteArray("content"));
    QCOMPARE(logLines().at(1), QStringLiteral("Get : RedirectURL: ") + slow.url(QStringLiteral("/b")));
}

void Tst_HttpTransfer::redirectedDataEndsAfterTenSeconds() {
    m_server->redirect(QStringLiteral("/a"), QStringLiteral("/b"));
    m_server->stall(QStringLiteral("/b"));
    HttpTransfer transfer;
    QByteArray data;
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!transfer.getData(m_server->url(QStringLiteral("/a")), data, true, 60000, false));
    // The timer may be a twentieth early; late it is only on a busy machine, but never by as much as the
    // first call's limit.
    QVERIFY2(timer.elapsed() >= 9500, qPrintable(QString::number(timer.elapsed())));
    QVERIFY2(timer.elapsed() < 40000, qPrintable(QString::number(timer.elapsed())));
}

void Tst_HttpTransfer::endlessDataIsRefused() {
    constexpr int Most = 16 * 1024 * 1024;
    m_server->answer(QStringLiteral("/most"), "200 OK", QByteArray(Most, 'x'));
    m_server->answer(QStringLiteral("/more"), "200 OK", QByteArray(Most + 1, 'x'));
    m_server->keepSending(QStringLiteral("/endless"), QByteArray(Most, 'x'));
    HttpTransfer transfer;
    QByteArray data;
    QVERIFY(transfer.getData(m_server->url(QStringLiteral("/most")), data, true, 60000, false));
    QCOMPARE(data.size(), Most);
    data.clear();
    QVERIFY(!transfer.getData(m_server->url(QStringLiteral("/more")), data, true, 60000, false));
    QCOMPARE(data.size(), 0);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!transfer.getData(m_server->url(QStringLiteral("/endless")), data, true, 60000, false));
    QVERIFY2(timer.elapsed() < 40000, "it is broken off long before its time is up");
    QCOMPARE(data.size(), 0);
}

void Tst_HttpTransfer::certificates_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("verify");
    QTest::addColumn<bool>("taken");
    QTest::newRow("good") << QByteArray("good.pem") << true << true;
    QTest::newRow("expired") << QByteArray("expired.pem") << true << false;
    QTest::newRow("vouches for itself") << QByteArray("selfsigned.pem") << true << false;
    QTest::newRow("expired, not verified") << QByteArray("expired.pem") << false << true;
    QTest::newRow("vouches for itself, not verified") << QByteArray("selfsigned.pem") << false << true;
}

void Tst_HttpTransfer::certificates() {
    QFETCH(QByteArray, name);
    QFETCH(bool, verify);
    QFETCH(bool, taken);
    QSslConfiguration trusting = QSslConfiguration::defaultConfiguration();
    trusting.setCaCertificates({certificate("root.pem")});
    QSslConfiguration::setDefaultConfiguration(trusting);
    m_server->encrypt(certificate(name.constData()), serverKey());
    m_server->answer(QStringLiteral("/a"), "200 OK", "secret");
    HttpTransfer transfer;
    const QString url = m_server->url(QStringLiteral("/a"));
    QCOMPARE(transfer.download(url, target(), verify, nullptr, false), taken);
    QCOMPARE(contentOf(target()), QByteArray(taken ? "secret" : ""));
    QByteArray data;
    QCOMPARE(HttpTransfer().getData(url, data, verify, 5000, false), taken);
    QCOMPARE(data, QByteArray(taken ? "secret" : ""));
    QCOMPARE(m_server->requests.size(), taken ? 2 : 0);
}

void Tst_HttpTransfer::redirectedDataIsVerified() {
    HttpServer impostor;
    impostor.encrypt(certificate("selfsigned.pem"), serverKey());
    impostor.answer(QStringLiteral("/b"), "200 OK", "forged");
    m_server->redirect(QStringLiteral("/a"), impostor.url(QStringLiteral("/b")));
    HttpTransfer transfer;
    QByteArray data;
    QVERIFY(!transfer.getData(m_server->url(QStringLiteral("/a")), data, false, 5000, false));
    QVERIFY(!data.contains("forged"));
    // A download keeps what its caller chose.
    QVERIFY(transfer.download(m_server->url(QStringLiteral("/a")), target(), false, nullptr, false));
    // And an encrypted road is not left.
    HttpServer secure;
    secure.encrypt(certificate("good.pem"), serverKey());
    m_server->answer(QStringLiteral("/plain"), "200 OK", "plain");
    secure.redirect(QStringLiteral("/down"), m_server->url(QStringLiteral("/plain")));
    QVERIFY(!transfer.download(secure.url(QStringLiteral("/down")), target(), false, nullptr, false));
    QVERIFY(!m_server->requests.contains(QStringLiteral("/plain")));
}

QTEST_MAIN(Tst_HttpTransfer)
#include "tst_httptransfer.moc"
