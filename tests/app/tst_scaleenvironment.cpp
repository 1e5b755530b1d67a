#include "app/scaleenvironment.h"

#include <QtTest>

class Tst_ScaleEnvironment : public QObject {
    Q_OBJECT
private slots:
    void init();
    void foldsFactorsIntoTheDpi_data();
    void foldsFactorsIntoTheDpi();
    void takesTheFactorsFromTheEnvironment();
    void leavesTheDpiAloneWithoutFactors();
};

void Tst_ScaleEnvironment::init() {
    for (const char *name :
         {"QT_FONT_DPI", "QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_ENABLE_HIGHDPI_SCALING"})
        qunsetenv(name);
}

void Tst_ScaleEnvironment::foldsFactorsIntoTheDpi_data() {
    QTest::addColumn<QString>("fontDpi");
    QTest::addColumn<QString>("scaleFactor");
    QTest::addColumn<QString>("screenFactors");
    QTest::addColumn<int>("expected"); // 0: nothing
    QTest::newRow("nothing set") << ""
                                 << ""
                                 << "" << 0;
    QTest::newRow("DPI alone") << "120"
                               << ""
                               << "" << 0;
    QTest::newRow("factor") << ""
                            << "2"
                            << "" << 192;
    QTest::newRow("fraction, rounded") << ""
                                       << "1.255"
                                       << "" << 120;
    QTest::newRow("smaller") << ""
                             << "0.5"
                             << "" << 48;
    QTest::newRow("on top of a DPI") << "120"
                                     << "1.5"
                                     << "" << 180;
    QTest::newRow("one screen") << ""
                                << ""
                                << "1.5" << 144;
    QTest::newRow("largest of the screens") << ""
                                            << ""
                                            << "1.25;2;1" << 192;
    QTest::newRow("screens by name") << ""
                                     << ""
                                     << "HDMI-1=1;DP-1=1.75;" << 168;
    QTest::newRow("both multiply") << ""
                                   << "2"
                                   << "1.5" << 288;
    QTest::newRow("no number") << ""
                               << "large"
                               << "" << 0;
    QTest::newRow("zero") << ""
                          << "0"
                          << "" << 0;
    QTest::newRow("negative") << ""
                              << "-2"
                              << "" << 0;
    QTest::newRow("bad factor, good screen") << ""
                                             << "nan"
                                             << "HDMI-1=2" << 192;
    QTest::newRow("bad screens, good factor") << ""
                                              << "2"
                                              << "HDMI-1=;x" << 192;
    QTest::newRow("bad DPI") << "none"
                             << "2"
                             << "" << 192;
    QTest::newRow("beyond use, large") << ""
                                       << "1e9"
                                       << "" << 960;
    QTest::newRow("infinite") << ""
                              << "inf"
                              << "" << 960;
    QTest::newRow("beyond use, small") << ""
                                       << "0.001"
                                       << "" << 24;
}

void Tst_ScaleEnvironment::foldsFactorsIntoTheDpi() {
    QFETCH(QString, fontDpi);
    QFETCH(QString, scaleFactor);
    QFETCH(QString, screenFactors);
    QFETCH(int, expected);
    QCOMPARE(dpiForScaleFactors({fontDpi, scaleFactor, screenFactors}).value_or(0), expected);
}

void Tst_ScaleEnvironment::takesTheFactorsFromTheEnvironment() {
    qputenv("QT_SCALE_FACTOR", "2");
    qputenv("QT_SCREEN_SCALE_FACTORS", "HDMI-1=1.5");
    prepareScaleEnvironment();
    QCOMPARE(qgetenv("QT_FONT_DPI"), QByteArray("288"));
    QVERIFY(!qEnvironmentVariableIsSet("QT_SCALE_FACTOR"));
    QVERIFY(!qEnvironmentVariableIsSet("QT_SCREEN_SCALE_FACTORS"));
    QCOMPARE(qgetenv("QT_ENABLE_HIGHDPI_SCALING"), QByteArray("0"));
}

void Tst_ScaleEnvironment::leavesTheDpiAloneWithoutFactors() {
    prepareScaleEnvironment();
    QVERIFY(!qEnvironmentVariableIsSet("QT_FONT_DPI"));
    qputenv("QT_FONT_DPI", "144");
    prepareScaleEnvironment();
    QCOMPARE(qgetenv("QT_FONT_DPI"), QByteArray("144"));
}

QTEST_GUILESS_MAIN(Tst_ScaleEnvironment)
#include "tst_scaleenvironment.moc"
