#include "services/httptransfer.h"
#include "support/httpserver.h"
#include "ui/filedownloaddialog.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>
#include <QtTest>

#include <functional>

/// Real keys of a real keyboard while a transfer runs.
class Tst_TransferInput : public QObject {
    Q_OBJECT
private slots:
    void keysWaitUnlessAllowed_data();
    void keysWaitUnlessAllowed();
    void dialogsTransferIsNotCancelledByKeys();
};

namespace {

class KeyCounter : public QWidget {
public:
    int keys = 0;

protected:
    void keyPressEvent(QKeyEvent *) override { ++keys; }
};

/// Types a key once `isTime`, and calls `afterwards` some time later, so that the key had every chance to
/// come.
class Typist : public QObject {
public:
    Typist(const QString &key, std::function<bool()> isTime, const std::function<void()> &afterwards) {
        connect(&m_clock, &QTimer::timeout, this, [this, key, isTime] {
            if (!isTime())
                return;
            m_clock.stop();
            m_process.start(QStringLiteral("xdotool"), {QStringLiteral("key"), key});
        });
        connect(&m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
                [this, afterwards] { QTimer::singleShot(300, this, afterwards); });
        m_clock.start(20);
    }

private:
    QTimer m_clock;
    QProcess m_process;
};

using Transfer = bool (*)(HttpTransfer &transfer, const QString &url, bool allowed);

bool download(HttpTransfer &transfer, const QString &url, bool allowed) {
    const QTemporaryDir folder;
    return transfer.download(url, folder.filePath(QStringLiteral("file")), true, nullptr, allowed);
}

bool getData(HttpTransfer &transfer, const QString &url, bool allowed) {
    QByteArray data;
    return transfer.getData(url, data, true, 60000, allowed);
}

} // namespace

Q_DECLARE_METATYPE(Transfer)

void Tst_TransferInput::keysWaitUnlessAllowed_data() {
    QTest::addColumn<Transfer>("transferOf");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("allowed");
    QTest::addColumn<int>("keys");
    const QString direct = QStringLiteral("/a"), redirected = QStringLiteral("/to-a");
    QTest::newRow("download, waiting") << Transfer(download) << direct << false << 0;
    QTest::newRow("download, allowed") << Transfer(download) << direct << true << 1;
    QTest::newRow("redirected download, allowed") << Transfer(download) << redirected << true << 1;
    QTest::newRow("data, waiting") << Transfer(getData) << direct << false << 0;
    QTest::newRow("data, allowed") << Transfer(getData) << direct << true << 1;
    QTest::newRow("redirected data, allowed for the first hop only")
        << Transfer(getData) << redirected << true << 0;
}

void Tst_TransferInput::keysWaitUnlessAllowed() {
    QFETCH(Transfer, transferOf);
    QFETCH(QString, path);
    QFETCH(bool, allowed);
    HttpServer server;
    server.redirect(QStringLiteral("/to-a"), QStringLiteral("/a"));
    server.stall(QStringLiteral("/a"));
    KeyCounter window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    HttpTransfer transfer;
    int during = -1;
    const Typist typist(
        QStringLiteral("x"), [&] { return server.requests.contains(QStringLiteral("/a")); },
        [&] {
            during = window.keys;
            transfer.cancelTransfer();
        });
    QVERIFY(!transferOf(transfer, server.url(path), allowed));
    QTEST(during, "keys");
    QTRY_COMPARE(window.keys, 1); // nothing of the user's is lost
}

void Tst_TransferInput::dialogsTransferIsNotCancelledByKeys() {
    const QTemporaryDir folder;
    auto server = std::make_unique<HttpServer>();
    server->stall(QStringLiteral("/a"));
    FileDownloadDialog dialog(server->url(QStringLiteral("/a")), folder.filePath(QStringLiteral("file")));
    bool isGoingOn = false;
    const Typist typist(
        QStringLiteral("Escape"), [&] { return !server->requests.isEmpty() && dialog.isActiveWindow(); },
        [&] {
            isGoingOn = dialog.isVisible();
            server.reset(); // breaks the transfer off
        });
    QCOMPARE(dialog.exec(), 0);
    QVERIFY(isGoingOn);
}

QTEST_MAIN(Tst_TransferInput)
#include "tst_transferinput.moc"
