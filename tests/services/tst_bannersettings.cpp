#include "services/bannersettings.h"
#include "support/literals.h"

#include <QTemporaryDir>
#include <QtTest>

class Tst_BannerSettings : public QObject {
    Q_OBJECT
private slots:
    void readsWhatTheFileSays_data();
    void readsWhatTheFileSays();
    void isDoneWithoutAFile_data();
    void isDoneWithoutAFile();
};

void Tst_BannerSettings::readsWhatTheFileSays_data() {
    constexpr int Debounce = 300;   // milliseconds
    constexpr int Interval = 86400; // a day
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("debounce");
    QTest::addColumn<int>("showInterval");
    QTest::newRow("both") << QByteArray(R"({"bannerDebounce": 50, "bannerShowInterval": 3600})") << 50
                          << 3600;
    QTest::newRow("one") << QByteArray(R"({"bannerShowInterval": 60})") << Debounce << 60;
    QTest::newRow("none") << QByteArray(R"({"other": 1})") << Debounce << Interval;
    QTest::newRow("zero") << QByteArray(R"({"bannerDebounce": 0, "bannerShowInterval": 0})") << 0 << 0;
    QTest::newRow("texts") << QByteArray(R"({"bannerDebounce": "50", "bannerShowInterval": "x"})") << Debounce
                           << Interval;
    QTest::newRow("other kinds") << QByteArray(R"({"bannerDebounce": null, "bannerShowInterval": [60]})")
                                 << Debounce << Interval;
    QTest::newRow("negative") << QByteArray(R"({"bannerDebounce": -1, "bannerShowInterval": -5})") << Debounce
                              << Interval;
    QTest::newRow("fraction") << QByteArray(R"({"bannerDebounce": 1.5})") << Debounce << Interval;
    QTest::newRow("beyond an int") << QByteArray(R"({"bannerShowInterval": 1e12})") << Debounce << Interval;
    QTest::newRow("one wrong, one right")
        << QByteArray(R"({"bannerDebounce": true, "bannerShowInterval": 7})") << Debounce << 7;
    QTest::newRow("list") << QByteArray("[50, 60]") << Debounce << Interval;
    QTest::newRow("torn") << QByteArray(R"({"bannerDebounce": 50)") << Debounce << Interval;
    QTest::newRow("no JSON") << QByteArray("bannerDebounce=50") << Debounce << Interval;
    QTest::newRow("empty") << QByteArray() << Debounce << Interval;
    QTest::newRow("too large") << QByteArray(70000, ' ') + R"({"bannerDebounce": 50})" << Debounce
                               << Interval;
}

void Tst_BannerSettings::readsWhatTheFileSays() {
    QFETCH(QByteArray, content);
    QTemporaryDir folder;
    const QString path = folder.filePath("rconfig.json"_qs);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    const BannerSettings settings = BannerSettings::read(path);
    QTEST(settings.debounce, "debounce");
    QTEST(settings.showInterval, "showInterval");
}

void Tst_BannerSettings::isDoneWithoutAFile_data() {
    QTest::addColumn<QString>("path");
    QTest::newRow("missing") << "/nonexistent/rconfig.json";
    QTest::newRow("folder") << "/tmp";
    QTest::newRow("device") << "/dev/zero";
}

void Tst_BannerSettings::isDoneWithoutAFile() {
    QFETCH(QString, path);
    QCOMPARE(BannerSettings::read(path).debounce, 300);
    QCOMPARE(BannerSettings::read(path).showInterval, 86400);
}

QTEST_GUILESS_MAIN(Tst_BannerSettings)
#include "tst_bannersettings.moc"
