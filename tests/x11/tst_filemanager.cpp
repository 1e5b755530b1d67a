#include "platform/filemanager.h"
#include "platform/platform.h"
#include "support/openedurls.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QTest>
#include <QUrl>

namespace {

const QString Service = QStringLiteral("org.freedesktop.FileManager1");
const QString Path = QStringLiteral("/media/pictures/한글 #1 %20.png");

} // namespace

/// A file manager on the session bus, with a connection of its own.
class FakeFileManager : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")
public:
    enum Manner { Answers, Refuses, StaysSilent };

    explicit FakeFileManager(Manner manner)
        : m_manner(manner),
          m_connection(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("fake"))) {
        m_connection.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), this,
                                    QDBusConnection::ExportAllSlots);
        m_connection.registerService(Service);
    }
    ~FakeFileManager() override { QDBusConnection::disconnectFromBus(QStringLiteral("fake")); }

    QStringList shown;

public slots:
    void ShowItems(const QStringList &urls, const QString &) {
        shown += urls;
        if (m_manner == Refuses)
            sendErrorReply(QDBusError::Failed, QStringLiteral("no"));
        else if (m_manner == StaysSilent)
            setDelayedReply(true);
    }

private:
    Manner m_manner;
    QDBusConnection m_connection;
};

class Tst_FileManager : public QObject {
    Q_OBJECT
private slots:
    void init() { Platform::setInstance(nullptr); }

    void selectsTheFile();
    void nobodyThere();
    void refusalOpensTheFolder();
    void silenceDoesNotHoldUs();
    void emptyPath();
    void withoutABusNothingIsTouched_data();
    void withoutABusNothingIsTouched();

private:
    static bool show(const QString &path) { return Platform::instance().fileManager().showFile(path); }
};

void Tst_FileManager::selectsTheFile() {
    FakeFileManager manager(FakeFileManager::Answers);
    OpenedUrls opened;
    QVERIFY(show(Path));
    QTRY_COMPARE(manager.shown.size(), 1);
    // Percent-encoded, as the interface wants it.
    QCOMPARE(manager.shown.first(),
             QStringLiteral("file:///media/pictures/%ED%95%9C%EA%B8%80%20%231%20%2520.png"));
    QTest::qWait(50);
    QVERIFY(opened.urls.isEmpty());
}

void Tst_FileManager::nobodyThere() {
    OpenedUrls opened;
    QVERIFY(!show(Path));
    QVERIFY(opened.urls.isEmpty()); // that is the caller's to do
}

void Tst_FileManager::refusalOpensTheFolder() {
    FakeFileManager manager(FakeFileManager::Refuses);
    OpenedUrls opened;
    QVERIFY(show(Path));
    QTRY_COMPARE(opened.urls, QVector<QUrl>{QUrl::fromLocalFile(QStringLiteral("/media/pictures"))});
}

void Tst_FileManager::silenceDoesNotHoldUs() {
    // It runs in this thread, so a call that waited for it would never return.
    FakeFileManager manager(FakeFileManager::StaysSilent);
    OpenedUrls opened;
    QVERIFY(show(Path));
    QVERIFY(manager.shown.isEmpty());
    QTRY_COMPARE(manager.shown.size(), 1);
    QVERIFY(opened.urls.isEmpty());
}

void Tst_FileManager::emptyPath() {
    FakeFileManager manager(FakeFileManager::Answers);
    QVERIFY(!show(QString()));
    QTest::qWait(50);
    QVERIFY(manager.shown.isEmpty());
}

void Tst_FileManager::withoutABusNothingIsTouched_data() {
    QTest::addColumn<QByteArray>("address");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("one to be launched") << QByteArray("autolaunch:");
    QTest::newRow("a dead one") << QByteArray("unix:path=/nonexistent/bus");
}

void Tst_FileManager::withoutABusNothingIsTouched() {
    QFETCH(QByteArray, address);
    FakeFileManager manager(FakeFileManager::Answers);
    const QByteArray before = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    if (address.isEmpty())
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    else
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    const bool shown = show(Path);
    qputenv("DBUS_SESSION_BUS_ADDRESS", before);
    QVERIFY(!shown);
    QTest::qWait(50);
    QVERIFY(manager.shown.isEmpty());
}

QTEST_MAIN(Tst_FileManager)
#include "tst_filemanager.moc"
