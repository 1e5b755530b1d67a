#include "services/httptransfer.h"
#include "support/httpserver.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>
#include <QtTest>

/// Real keys of a real keyboard while a transfer runs.
class Tst_TransferInput : public QObject {
    Q_OBJECT
private slots:
    void keysWaitUnlessAllowed_data();
    void keysWaitUnlessAllowed();
};

namespace {

class KeyCounter : public QWidget {
public:
    int keys = 0;

protected:
    void keyPressEvent(QKeyEvent *) override { ++keys; }
};

} // namespace

void Tst_TransferInput::keysWaitUnlessAllowed_data() {
    QTest::addColumn<bool>("allowed");
    QTest::newRow("waiting") << false;
    QTest::newRow("allowed") << true;
}

void Tst_TransferInput::keysWaitUnlessAllowed() {
    QFETCH(bool, allowed);
    QTemporaryDir folder;
    HttpServer server;
    server.stall(QStringLiteral("/a"));
    KeyCounter window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    HttpTransfer transfer;
    int during = -1;
    QProcess typist;
    // Some time after the key has been sent, so that it had every chance to come.
    connect(&typist, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &transfer, [&] {
        QTimer::singleShot(300, &transfer, [&] {
            during = window.keys;
            transfer.cancelTransfer();
        });
    });
    typist.start(QStringLiteral("xdotool"), {QStringLiteral("key"), QStringLiteral("x")});
    QVERIFY(!transfer.download(server.url(QStringLiteral("/a")), folder.filePath(QStringLiteral("file")),
                               true, nullptr, allowed));
    QCOMPARE(during, allowed ? 1 : 0);
    QTRY_COMPARE(window.keys, 1); // nothing of the user's is lost
}

QTEST_MAIN(Tst_TransferInput)
#include "tst_transferinput.moc"
