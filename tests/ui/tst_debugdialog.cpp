#include "platform/configuration.h"
#include "services/tracelog.h"
#include "support/openedurls.h"
#include "ui/aboutdialog.h"
#include "ui/debugdialog.h"

#include <QGroupBox>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

namespace {

ConfigurationLocation settings() {
    return ConfigurationLocation(QStringLiteral("SOFTWARE\\Norvane\\Tindra\\FuncTrace"));
}

QString storedLevel() {
    return settings().value(QStringLiteral("trace")).toString();
}

QByteArray logText() {
    QFile file(TraceLog::filePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void click(QDialog *dialog, const char *name) {
    auto *button = dialog->findChild<QAbstractButton *>(QLatin1String(name));
    QVERIFY2(button, name);
    button->click();
}

} // namespace

class Tst_DebugDialog : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { QCoreApplication::setApplicationName(QStringLiteral("Tindra")); }
    void init();
    void currentLevelIsChecked_data();
    void currentLevelIsChecked();
    void textsAreThese();
    void okStoresAndTracesTheChoice_data();
    void okStoresAndTracesTheChoice();
    void okWithoutAChoiceChangesNothing();
    void closeAppliesNothing();
    void escapeAppliesNothing();
    void openLogOpensTheFile();
    void modeIsToggledToldAndRemembered();
    void aboutDialogGivesWayToIt();
};

void Tst_DebugDialog::init() {
    QFile::remove(TraceLog::filePath());
    settings().remove(QStringLiteral("trace"));
    loadTraceSettings();
}

void Tst_DebugDialog::currentLevelIsChecked_data() {
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("checked");
    QTest::newRow("off") << -1 << QString();
    QTest::newRow("0") << 0 << QStringLiteral("logLevel0_");
    QTest::newRow("1") << 1 << QStringLiteral("logLevel1_");
    QTest::newRow("2") << 2 << QStringLiteral("logLevel2_");
    QTest::newRow("3") << 3 << QStringLiteral("logLevelMax_");
    QTest::newRow("set by hand") << 9 << QString();
}

void Tst_DebugDialog::currentLevelIsChecked() {
    QFETCH(int, level);
    setTraceLevel(level);
    DebugDialog dialog;
    QString checked;
    const QList<QRadioButton *> buttons = dialog.findChildren<QRadioButton *>();
    for (const QRadioButton *button : buttons) {
        if (button->isChecked())
            checked += button->objectName();
    }
    QCOMPARE(buttons.size(), 4);
    QTEST(checked, "checked");
}

void Tst_DebugDialog::textsAreThese() {
    DebugDialog dialog;
    QCOMPARE(dialog.windowTitle(), QStringLiteral("DebugDialog"));
    QVERIFY(dialog.testAttribute(Qt::WA_DeleteOnClose));
    const auto title = [&](const char *name) {
        return dialog.findChild<QGroupBox *>(QLatin1String(name))->title();
    };
    const auto text = [&](const char *name) {
        return dialog.findChild<QAbstractButton *>(QLatin1String(name))->text();
    };
    QCOMPARE(title("logLevelGroup_"), QStringLiteral("Log level"));
    QCOMPARE(title("featureGroup_"), QStringLiteral("Feature"));
    QCOMPARE(text("logLevel0_"), QStringLiteral("log_level_0"));
    QCOMPARE(text("logLevel1_"), QStringLiteral("log_level_1"));
    QCOMPARE(text("logLevel2_"), QStringLiteral("log_level_2"));
    QCOMPARE(text("logLevelMax_"), QStringLiteral("log_level_max"));
    QCOMPARE(text("openLog_"), QStringLiteral("Open log"));
    QCOMPARE(text("ok_"), QStringLiteral("Ok"));
    QCOMPARE(text("close_"), QStringLiteral("Close"));
}

void Tst_DebugDialog::okStoresAndTracesTheChoice_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("level");
    QTest::newRow("0") << QStringLiteral("logLevel0_") << 0;
    QTest::newRow("1") << QStringLiteral("logLevel1_") << 1;
    QTest::newRow("2") << QStringLiteral("logLevel2_") << 2;
    QTest::newRow("max") << QStringLiteral("logLevelMax_") << 3;
}

void Tst_DebugDialog::okStoresAndTracesTheChoice() {
    QFETCH(QString, button);
    QFETCH(int, level);
    QPointer<DebugDialog> dialog = new DebugDialog;
    dialog->show();
    click(dialog, button.toLatin1().constData());
    QCOMPARE(storedLevel(), QString());
    click(dialog, "ok_");
    QCOMPARE(TraceLog::threshold(), level);
    QCOMPARE(storedLevel(), QString::number(level));
    // The line is of level 1 and obeys the new threshold.
    QCOMPARE(logText().contains("DebugDialog : Set log level: " + QByteArray::number(level) + "\r\n"),
             level >= 1);
    QTRY_VERIFY(!dialog);
}

void Tst_DebugDialog::okWithoutAChoiceChangesNothing() {
    QPointer<DebugDialog> dialog = new DebugDialog;
    dialog->show();
    click(dialog, "ok_");
    QCOMPARE(TraceLog::threshold(), -1);
    QVERIFY(!QFile::exists(TraceLog::filePath()));
    QTRY_VERIFY(!dialog);
}

void Tst_DebugDialog::closeAppliesNothing() {
    QPointer<DebugDialog> dialog = new DebugDialog;
    dialog->show();
    click(dialog, "logLevel2_");
    click(dialog, "close_");
    QTRY_VERIFY(!dialog);
    QCOMPARE(storedLevel(), QString());
    QCOMPARE(TraceLog::threshold(), -1);
}

void Tst_DebugDialog::escapeAppliesNothing() {
    DebugDialog dialog;
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    dialog.show();
    click(&dialog, "logLevel2_");
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(TraceLog::threshold(), -1);
}

void Tst_DebugDialog::openLogOpensTheFile() {
    OpenedUrls opened;
    DebugDialog dialog;
    click(&dialog, "openLog_");
    QCOMPARE(opened.urls, QVector<QUrl>{QUrl::fromLocalFile(TraceLog::filePath())});
}

void Tst_DebugDialog::modeIsToggledToldAndRemembered() {
    const auto text = [](DebugDialog &dialog) {
        return dialog.findChild<QPushButton *>(QStringLiteral("fileMemoryMode_"))->text();
    };
    {
        DebugDialog dialog;
        QSignalSpy told(&dialog, &DebugDialog::fileMemoryModeChanged);
        QCOMPARE(text(dialog), QStringLiteral("To memory mode"));
        click(&dialog, "fileMemoryMode_");
        QCOMPARE(told.takeFirst().at(0).toBool(), true);
        QCOMPARE(text(dialog), QStringLiteral("To file mode"));
    }
    // The capture process is still in memory mode.
    DebugDialog dialog;
    QSignalSpy told(&dialog, &DebugDialog::fileMemoryModeChanged);
    QCOMPARE(text(dialog), QStringLiteral("To file mode"));
    click(&dialog, "fileMemoryMode_");
    QCOMPARE(told.takeFirst().at(0).toBool(), false);
    QCOMPARE(text(dialog), QStringLiteral("To memory mode"));
}

void Tst_DebugDialog::aboutDialogGivesWayToIt() {
    QPointer<AboutDialog> about = new AboutDialog;
    about->setAttribute(Qt::WA_DeleteOnClose);
    QSignalSpy told(about.data(), &AboutDialog::fileMemoryModeChanged);
    about->show();
    QVERIFY(QTest::qWaitForWindowActive(about));
    bool isAboutVisible = true;
    QTimer::singleShot(0, this, [&] {
        auto *dialog = qobject_cast<DebugDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        isAboutVisible = about && about->isVisible();
        click(dialog, "fileMemoryMode_");
        click(dialog, "fileMemoryMode_");
        click(dialog, "close_");
    });
    QTest::keyClick(about.data(), Qt::Key_D, Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier);
    QVERIFY(!isAboutVisible);
    QCOMPARE(told.size(), 2);
    QTRY_VERIFY(!about);
}

QTEST_MAIN(Tst_DebugDialog)
#include "tst_debugdialog.moc"
