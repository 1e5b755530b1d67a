#include "support/endingprogram.h"
#include "support/httpserver.h"
#include "ui/filedownloaddialog.h"

#include <QProgressBar>
#include <QPushButton>
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

} // namespace

class Tst_FileDownloadDialog : public QObject {
    Q_OBJECT
private slots:
    void init();
    void arrivedFileAccepts();
    void missingFileRejects();
    void nothingStartsBeforeTheFirstShow();
    void secondShowStartsNothing();
    void cancelledBeforeTheStartNothingStarts();
    void peerIsVerified_data();
    void peerIsVerified();
    void endOfTheProgramRejects();
    void cancelAbortsAndRejects_data();
    void cancelAbortsAndRejects();
    void textsAreThese();

private:
    QString target() const { return m_folder->filePath(QStringLiteral("file")); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<HttpServer> m_server;
};

void Tst_FileDownloadDialog::init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_server = std::make_unique<HttpServer>();
    m_server->answer(QStringLiteral("/a"), "200 OK", "content");
}

void Tst_FileDownloadDialog::arrivedFileAccepts() {
    FileDownloadDialog dialog(m_server->url(QStringLiteral("/a")), target());
    QCOMPARE(dialog.exec(), 1);
    QCOMPARE(contentOf(target()), QByteArray("content"));
    QCOMPARE(dialog.findChild<QProgressBar *>()->value(), 7);
}

void Tst_FileDownloadDialog::missingFileRejects() {
    FileDownloadDialog dialog(m_server->url(QStringLiteral("/nothing")), target());
    QCOMPARE(dialog.exec(), 0);
}

void Tst_FileDownloadDialog::nothingStartsBeforeTheFirstShow() {
    FileDownloadDialog dialog(m_server->url(QStringLiteral("/a")), target());
    QTest::qWait(50);
    QVERIFY(m_server->requests.isEmpty());
    QCOMPARE(dialog.findChild<QProgressBar *>()->value(), 0);
}

void Tst_FileDownloadDialog::secondShowStartsNothing() {
    FileDownloadDialog dialog(m_server->url(QStringLiteral("/a")), target());
    dialog.exec();
    dialog.show();
    QTest::qWait(50);
    QCOMPARE(m_server->requests.size(), 1);
}

void Tst_FileDownloadDialog::cancelledBeforeTheStartNothingStarts() {
    FileDownloadDialog dialog(m_server->url(QStringLiteral("/a")), target());
    dialog.show();
    dialog.onCancel();
    QTest::qWait(50);
    QVERIFY(m_server->requests.isEmpty());
    QVERIFY(!QFile::exists(target()));
    QCOMPARE(dialog.result(), 0);
}

void Tst_FileDownloadDialog::peerIsVerified_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("arrives");
    QTest::newRow("good") << QByteArray("good.pem") << true;
    QTest::newRow("vouches for itself") << QByteArray("selfsigned.pem") << false;
}

void Tst_FileDownloadDialog::peerIsVerified() {
    QFETCH(QByteArray, name);
    QFETCH(bool, arrives);
    QSslConfiguration trusting = QSslConfiguration::defaultConfiguration();
    trusting.setCaCertificates({certificate("root.pem")});
    QSslConfiguration::setDefaultConfiguration(trusting);
    m_server->encrypt(certificate(name.constData()), serverKey());
    FileDownloadDialog dialog(m_server->url(QStringLiteral("/a")), target());
    QCOMPARE(dialog.exec(), arrives ? 1 : 0);
    QCOMPARE(contentOf(target()), QByteArray(arrives ? "content" : ""));
    QCOMPARE(m_server->requests.size(), arrives ? 1 : 0);
}

void Tst_FileDownloadDialog::endOfTheProgramRejects() {
    m_server->stall(QStringLiteral("/slow"));
    FileDownloadDialog dialog(m_server->url(QStringLiteral("/slow")), target());
    int result = -1;
    inProgramThatEnds(100, [&] { result = dialog.exec(); });
    QCOMPARE(result, 0);
}

void Tst_FileDownloadDialog::cancelAbortsAndRejects_data() {
    QTest::addColumn<bool>("button");
    QTest::newRow("button") << true;
    QTest::newRow("the frame's button") << false;
}

void Tst_FileDownloadDialog::cancelAbortsAndRejects() {
    QFETCH(bool, button);
    m_server->stall(QStringLiteral("/slow"));
    FileDownloadDialog dialog(m_server->url(QStringLiteral("/slow")), target());
    QTimer::singleShot(100, &dialog, [&] {
        if (button)
            dialog.findChild<QPushButton *>(QStringLiteral("cancel_"))->click();
        else
            dialog.close();
    });
    QCOMPARE(dialog.exec(), 0);
    QCoreApplication::processEvents();
    QCOMPARE(dialog.result(), 0);
    QVERIFY(!dialog.isVisible());
}

void Tst_FileDownloadDialog::textsAreThese() {
    FileDownloadDialog dialog{QString(), QString()};
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Download File"));
    QCOMPARE(dialog.findChild<QPushButton *>(QStringLiteral("cancel_"))->text(), QStringLiteral("Cancel"));
    QVERIFY(dialog.findChild<QProgressBar *>(QStringLiteral("progressBar_")));
}

QTEST_MAIN(Tst_FileDownloadDialog)
#include "tst_filedownloaddialog.moc"
