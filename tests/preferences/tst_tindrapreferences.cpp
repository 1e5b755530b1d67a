#include "platform/configuration.h"
#include "preferences/tindrapreferences.h"

#include <QLockFile>
#include <QtTest>

#include <cstdio>
#include <cstdlib>

namespace {

using P = TindraPreferences;

const QString Key = QStringLiteral("SOFTWARE\\Norvane\\Tindra\\Config");

// Colours as they stand in the settings: alpha, blue, green, red from the highest byte down.
constexpr int Red = int(0xFF0000FF);
constexpr int Highlight = int(0xFF00F0FF);

void store(const QString &name, const QVariant &value) {
    ConfigurationLocation(Key).setValue(name, value);
}

QVariant stored(const QString &name) {
    return ConfigurationLocation(Key).value(name);
}

P *fresh() {
    P::resetForTesting();
    P::instance()->Init();
    return P::instance();
}

QStringList fileLines() {
    QFile file(ConfigurationLocation(Key).fileName());
    return file.open(QIODevice::ReadOnly)
               ? QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)
               : QStringList();
}

/// Built before the preferences and so destroyed after them.
struct AfterTheEnd {
    ~AfterTheEnd() {
        if (!isArmed || !P::instance())
            return;
        std::fputs("FAIL! preferences are still there after the end of the process\n", stdout);
        std::fflush(stdout);
        std::_Exit(1);
    }
    bool isArmed = false;
} afterTheEnd;

} // namespace

class Tst_TindraPreferences : public QObject {
    Q_OBJECT
private slots:
    void init();
    void itemHasIdNameTypeAndDefault_data();
    void itemHasIdNameTypeAndDefault();
    void namedItemsOnly();
    void initRunsOnce();
    void firstSaveWritesAllNamedItems();
    void secondSaveWritesNothing();
    void oldHideOptionIsReplaced();
    void withoutOldHideOptionNothingIsReplaced();
    void presetsEndAtTheFirstGap_data();
    void presetsEndAtTheFirstGap();
    void savingPresetsRemovesOldGroups();
    void onlySixPresetsAreSaved();
    void colorsEndAtTheFirstGap();
    void colorsAreForgottenUnlessSaved();
    void onlyFourColorsAreSaved();
    void savingFewerColorsRemovesOldGroups();
    void colorListsAreSeparate();
    void colorsAreAppended();
    void invalidColorsAreLeftOut();
    void unknownColorKeyGivesNothing();
    void colorKeysAreLocations();
    void storedColorsComeBackWithAlpha();
    void colorFromNumber_data();
    void colorFromNumber();
    void colorOfItem();
    void defaultOfItem();
    void reloadBringsWhatOthersSaved();
    void garbageFileGivesDefaults();
    void garbageNumberEndsTheList_data();
    void garbageNumberEndsTheList();
    void refusedSaveIsRefusedAsAWhole();
};

void Tst_TindraPreferences::init() {
    // One folder for each test, below the private one of this run.
    static int count = 0;
    const QString folder = QStringLiteral("%1/%2").arg(QDir::tempPath()).arg(count++);
    qputenv("XDG_CONFIG_HOME", folder.toLocal8Bit());
    P::resetForTesting();
}

void Tst_TindraPreferences::itemHasIdNameTypeAndDefault_data() {
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("number");
    QTest::addColumn<QVariant>("value");
    const auto row = [](int id, int number, const char *name, const QVariant &value) {
        QTest::newRow(name) << id << number << value;
    };
    const QVariant on = true;
    const QVariant off = false;
    const QString empty = QStringLiteral("");
    row(P::CopyToClipboard, 0, "CopyToClipboard", on);
    row(P::HideEditor, 1, "HideEditor", off);
    row(P::ShowOverlay, 2, "ShowOverlay", on);
    row(P::TrayMode, 3, "TrayMode", on);
    row(P::AutoStart, 4, "AutoStart", on);
    row(P::HotKeyMod, 5, "HotKeyMod", 6);
    row(P::HotKeyChar, 6, "HotKeyChar", int('C'));
    row(P::HideButtons, 7, "HideButtons", off);
    row(P::FileFormat, 8, "FileFormat", 0);
    row(P::FileNameTamplate, 9, "FileNameTamplate", QStringLiteral("%Y%m%d_%H%M%S"));
    row(P::FileNameType, 10, "FileNameType", 1);
    row(P::ToolFileName, 11, "ToolFileName", empty);
    row(P::LineColor, 12, "LineColor", Red);
    row(P::DrawLine, 13, "DrawLine", off);
    row(P::SkipEditorNotice, 16, "SkipEditorNotice", off);
    row(P::SkipTip, 17, "SkipTip", off);
    row(P::FilePath, 18, "FilePath", empty);
    row(P::CaptureIncludeCursor, 19, "CaptureIncludeCursor", off);
    row(P::UsePrintScreen, 20, "UsePrintScreen", on);
    row(P::PrintScreenCaptureMode, 21, "PrintScreenCaptureMode", 0);
    row(P::JpgQuality, 22, "JpgQuality", QStringLiteral("100"));
    row(P::ShowPostSaveDlg, 23, "ShowPostSaveDlg", on);
    row(P::ShowPostSaveAllDlg, 24, "ShowPostSaveAllDlg", on);
    row(P::UseHotKey, 25, "UseHotKey", on);
    row(P::UseHotKey_W, 26, "UseHotKey_W", on);
    row(P::UseHotKey_C, 27, "UseHotKey_C", on);
    row(P::UseHotKey_F, 28, "UseHotKey_F", on);
    row(P::UseHotKey_S, 29, "UseHotKey_S", on);
    row(P::UseHotKey_FR, 30, "UseHotKey_FR", on);
    row(P::HotKeyChar_W, 31, "HotKeyChar_W", int('W'));
    row(P::HotKeyChar_C, 32, "HotKeyChar_C", int('D'));
    row(P::HotKeyChar_F, 33, "HotKeyChar_F", int('A'));
    row(P::HotKeyChar_S, 34, "HotKeyChar_S", int('S'));
    row(P::HotKeyChar_FR, 35, "HotKeyChar_FR", int('F'));
    row(P::HotKeyMod_W, 36, "HotKeyMod_W", 6);
    row(P::HotKeyMod_C, 37, "HotKeyMod_C", 6);
    row(P::HotKeyMod_F, 38, "HotKeyMod_F", 6);
    row(P::HotKeyMod_S, 39, "HotKeyMod_S", 6);
    row(P::HotKeyMod_FR, 40, "HotKeyMod_FR", 6);
    row(P::LastSelRectTop, 41, "LastSelRectTop", -1);
    row(P::LastSelRectLeft, 42, "LastSelRectLeft", -1);
    row(P::LastSelRectWidth, 43, "LastSelRectWidth", 400);
    row(P::LastSelRectHeight, 44, "LastSelRectHeight", 300);
    row(P::LockCaptureSize, 45, "LockCaptureSize", off);
    row(P::LockedSizeCx, 46, "LockedSizeCx", -1);
    row(P::LockedSizeCy, 47, "LockedSizeCy", -1);
    row(P::AutoSave, 48, "AutoSave", off);
    row(P::ShowFileDlgAfterCapture, 50, "ShowFileDlgAfterCapture", off);
    row(P::SkipEditorWnd, 51, "SkipEditorWnd", off);
    row(P::AutoSavePath, 52, "AutoSavePath", empty);
    row(P::NotifyDeleteHistory, 53, "NotifyDeleteHistory", on);
    row(P::NotifyDeleteAllHistory, 54, "NotifyDeleteAllHistory", on);
    row(P::SkipExplainReceiveToPC, 55, "SkipExplainReceiveToPC", off);
    row(P::SkipExplainSendToMobile, 56, "SkipExplainSendToMobile", off);
    row(P::ShowInformationDialog, 57, "ShowInformationDialog", on);
    row(P::ShowHistoryBar, 58, "ShowHistoryBar", on);
    row(P::AutoHistoryDelete, 59, "AutoHistoryDelete", off);
    row(P::LastDrawingItem, 60, "LastDrawingItem", 5);
    row(P::FigureType, 61, "FigureType", 5);
    row(P::FigureLineType, 62, "FigureLineType", 1);
    row(P::FigureLineColor, 63, "FigureLineColor", Red);
    row(P::FigureFillColor, 64, "FigureFillColor", 0);
    row(P::PenColor, 65, "PenColor", Red);
    row(P::HighlighterColor, 66, "HighlighterColor", Highlight);
    row(P::LineWidth, 67, "LineWidth", 3);
    row(P::TextSize, 68, "TextSize", 14);
    row(P::TextColor, 69, "TextColor", Red);
    row(P::TextStyle, 70, "TextStyle", 0);
    row(P::MosaicStrength, 71, "MosaicStrength", 6);
    row(P::PrinterName, 72, "PrinterName", empty);
    row(P::PrinterPageSize, 73, "PrinterPageSize", 9);
    row(P::PrinterCopies, 74, "PrinterCopies", 1);
    row(P::PrinterPageOrientation, 75, "PrinterPageOrientation", 1);
    row(P::PrinterScale, 76, "PrinterScale", 1);
    row(P::PrinterScaleValue, 77, "PrinterScaleValue", 1);
    row(P::PrinterHCenter, 78, "PrinterHCenter", off);
    row(P::PrinterVCenter, 79, "PrinterVCenter", off);
    row(P::PrinterPageLeftMargin, 80, "PrinterPageLeftMargin", 10);
    row(P::PrinterPageRightMargin, 81, "PrinterPageRightMargin", 10);
    row(P::PrinterPageTopMargin, 82, "PrinterPageTopMargin", 10);
    row(P::PrinterPageBottomMargin, 83, "PrinterPageBottomMargin", 10);
    row(P::PrinterDrawGrayscale, 84, "PrinterDrawGrayscale", off);
    row(P::PrinterDrawBorder, 85, "PrinterDrawBorder", off);
    row(P::OnceAiToolsCoachmark, 86, "OnceAiToolsCoachmark", off);
}

void Tst_TindraPreferences::itemHasIdNameTypeAndDefault() {
    QFETCH(int, id);
    QFETCH(QVariant, value);
    QTEST(id, "number");
    const P *preferences = fresh();
    QCOMPARE(preferences->Name(id), QString::fromLatin1(QTest::currentDataTag()));
    switch (value.type()) {
    case QVariant::Bool:
        QCOMPARE(preferences->Type(id), 2);
        QCOMPARE(preferences->GetBool(id, !value.toBool()), value.toBool());
        QCOMPARE(P::defaultBool(P::Id(id)), value.toBool());
        break;
    case QVariant::Int:
        QCOMPARE(preferences->Type(id), 1);
        QCOMPARE(preferences->GetInt(id, 12345), value.toInt());
        QCOMPARE(P::defaultInt(P::Id(id)), value.toInt());
        break;
    default:
        QCOMPARE(preferences->Type(id), 3);
        QCOMPARE(preferences->GetString(id, QStringLiteral("?")), value.toString());
        QCOMPARE(P::defaultString(P::Id(id)), value.toString());
        // An item that began with a null text could never be set.
        P::instance()->SetString(id, QStringLiteral("changed"));
        QCOMPARE(preferences->GetString(id, QStringLiteral("?")), QStringLiteral("changed"));
        break;
    }
}

void Tst_TindraPreferences::namedItemsOnly() {
    const P *preferences = fresh();
    for (int id : {14, 15, 49}) {
        QVERIFY(preferences->Name(id).isEmpty());
        QCOMPARE(preferences->Type(id), 0);
    }
    QVERIFY(preferences->Name(87).isNull());
}

void Tst_TindraPreferences::initRunsOnce() {
    P *preferences = fresh();
    preferences->SetInt(P::LineWidth, 12);
    QVERIFY(preferences->Init());
    QCOMPARE(preferences->GetInt(P::LineWidth, 0), 12);
}

void Tst_TindraPreferences::firstSaveWritesAllNamedItems() {
    fresh()->SaveAll();
    QStringList lines = fileLines();
    QCOMPARE(lines.takeFirst(), QStringLiteral("[Config]"));
    QCOMPARE(lines.size(), 84); // 87 less the three without a name
    QVERIFY(lines.contains(QStringLiteral("TrayMode=1")));
    QVERIFY(lines.contains(QStringLiteral("PenColor=-16776961")));
    QVERIFY(lines.contains(QStringLiteral("FileNameTamplate=%Y%m%d_%H%M%S")));
}

void Tst_TindraPreferences::secondSaveWritesNothing() {
    P *preferences = fresh();
    preferences->SaveAll();
    store(QStringLiteral("LineWidth"), 8);
    preferences->SaveAll();
    QCOMPARE(stored(QStringLiteral("LineWidth")).toInt(), 8);
}

void Tst_TindraPreferences::oldHideOptionIsReplaced() {
    store(QStringLiteral("HideEditor"), 1);
    store(QStringLiteral("CopyToClipboard"), 0);
    P *preferences = fresh();
    QCOMPARE(preferences->GetBool(P::HideEditor, true), false);
    QCOMPARE(preferences->GetBool(P::SkipEditorWnd, false), true);
    QCOMPARE(preferences->GetBool(P::ShowFileDlgAfterCapture, false), true);
    QCOMPARE(preferences->GetBool(P::CopyToClipboard, false), true);
    QCOMPARE(stored(QStringLiteral("HideEditor")).toInt(), 1); // not before the next save
    preferences->SaveAll();
    QCOMPARE(stored(QStringLiteral("HideEditor")).toString(), QStringLiteral("0"));
    QCOMPARE(stored(QStringLiteral("SkipEditorWnd")).toString(), QStringLiteral("1"));
    QCOMPARE(stored(QStringLiteral("ShowFileDlgAfterCapture")).toString(), QStringLiteral("1"));
    QCOMPARE(stored(QStringLiteral("CopyToClipboard")).toString(), QStringLiteral("1"));
}

void Tst_TindraPreferences::withoutOldHideOptionNothingIsReplaced() {
    store(QStringLiteral("HideEditor"), 0);
    store(QStringLiteral("CopyToClipboard"), 0);
    const P *preferences = fresh();
    QCOMPARE(preferences->GetBool(P::CopyToClipboard, true), false);
    QCOMPARE(preferences->GetBool(P::SkipEditorWnd, true), false);
}

void Tst_TindraPreferences::presetsEndAtTheFirstGap_data() {
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<int>("expected");
    const auto both = [](int group) {
        return QStringList{QStringLiteral("%1/width").arg(group), QStringLiteral("%1/height").arg(group)};
    };
    QTest::newRow("none") << QStringList() << 0;
    QTest::newRow("0, 1 and 3") << both(0) + both(1) + both(3) << 2;
    QTest::newRow("first missing") << both(1) + both(2) << 0;
    QTest::newRow("width missing") << both(0) + QStringList{QStringLiteral("1/height")} + both(2) << 1;
    QTest::newRow("height missing") << both(0) + both(1) + QStringList{QStringLiteral("2/width")} << 2;
    QTest::newRow("all six") << both(0) + both(1) + both(2) + both(3) + both(4) + both(5) << 6;
    QTest::newRow("seventh") << both(0) + both(1) + both(2) + both(3) + both(4) + both(5) + both(6) << 6;
}

void Tst_TindraPreferences::presetsEndAtTheFirstGap() {
    QFETCH(QStringList, names);
    for (const QString &name : names)
        store(QStringLiteral("SizePresets/") + name, name.endsWith(QLatin1String("width")) ? 640 : 480);
    QList<QSize> presets{QSize(1, 1)}; // is replaced
    fresh()->GetSizePresets(presets);
    QTEST(presets.size(), "expected");
    for (const QSize &preset : presets)
        QCOMPARE(preset, QSize(640, 480));
}

void Tst_TindraPreferences::savingPresetsRemovesOldGroups() {
    P *preferences = fresh();
    preferences->SetSizePresets({QSize(1, 2), QSize(3, 4), QSize(5, 6)});
    preferences->SaveAll();
    QCOMPARE(stored(QStringLiteral("SizePresets/2/height")).toInt(), 6);
    preferences->SetSizePresets({QSize(7, 8)});
    preferences->SaveAll();
    const QStringList lines = fileLines().filter(QStringLiteral("SizePresets"));
    QCOMPARE(lines, (QStringList{QStringLiteral("SizePresets\\0\\height=8"),
                                 QStringLiteral("SizePresets\\0\\width=7")}));
}

void Tst_TindraPreferences::onlySixPresetsAreSaved() {
    QList<QSize> presets;
    for (int i = 1; i <= 7; ++i)
        presets.append(QSize(i, i));
    P *preferences = fresh();
    preferences->SetSizePresets(presets);
    preferences->SaveAll();
    QList<QSize> loaded;
    fresh()->GetSizePresets(loaded);
    QCOMPARE(loaded, presets.mid(0, 6));
}

void Tst_TindraPreferences::colorsEndAtTheFirstGap() {
    for (int group : {0, 1, 3})
        store(QStringLiteral("PenCustomColor/%1/CustomColor").arg(group), Red);
    QList<QColor> colors;
    fresh()->GetCustomColors(P::PenCustomColorKey(), colors);
    QCOMPARE(colors, (QList<QColor>{Qt::red, Qt::red}));
}

void Tst_TindraPreferences::colorsAreForgottenUnlessSaved() {
    fresh()->SetCustomColors(P::TextCustomColorKey(), {Qt::red});
    QList<QColor> loaded;
    fresh()->GetCustomColors(P::TextCustomColorKey(), loaded);
    QVERIFY(loaded.isEmpty());
}

void Tst_TindraPreferences::onlyFourColorsAreSaved() {
    const QList<QColor> five{Qt::red, Qt::green, Qt::blue, Qt::white, Qt::black};
    P *preferences = fresh();
    preferences->SetCustomColors(P::TextCustomColorKey(), five);
    QList<QColor> held;
    preferences->GetCustomColors(P::TextCustomColorKey(), held);
    QCOMPARE(held, five);
    preferences->SaveAll();
    QList<QColor> loaded;
    fresh()->GetCustomColors(P::TextCustomColorKey(), loaded);
    QCOMPARE(loaded, five.mid(0, 4));
}

void Tst_TindraPreferences::savingFewerColorsRemovesOldGroups() {
    P *preferences = fresh();
    preferences->SetCustomColors(P::TextCustomColorKey(), {Qt::red, Qt::green});
    preferences->SaveAll();
    preferences->SetCustomColors(P::TextCustomColorKey(), {Qt::blue});
    preferences->SaveAll();
    QCOMPARE(fileLines().filter(QStringLiteral("TextCustomColor")),
             QStringList{QStringLiteral("TextCustomColor\\0\\CustomColor=%1").arg(int(0xFFFF0000))});
}

void Tst_TindraPreferences::colorListsAreSeparate() {
    const QStringList keys{P::FigureFillCustomColorKey(), P::FigureLineCustomColorKey(),
                           P::PenCustomColorKey(), P::HighlighterCustomColorKey(), P::TextCustomColorKey()};
    P *preferences = fresh();
    for (int i = 0; i < keys.size(); ++i)
        preferences->SetCustomColors(keys[i], {QColor(i, 10, 20)});
    preferences->SaveAll();
    preferences = fresh();
    for (int i = 0; i < keys.size(); ++i) {
        QList<QColor> colors;
        preferences->GetCustomColors(keys[i], colors);
        QCOMPARE(colors, QList<QColor>{QColor(i, 10, 20)});
    }
}

void Tst_TindraPreferences::colorsAreAppended() {
    P *preferences = fresh();
    preferences->SetCustomColors(P::PenCustomColorKey(), {Qt::blue});
    QList<QColor> colors{Qt::red};
    preferences->GetCustomColors(P::PenCustomColorKey(), colors);
    QCOMPARE(colors, (QList<QColor>{Qt::red, Qt::blue}));
}

void Tst_TindraPreferences::invalidColorsAreLeftOut() {
    P *preferences = fresh();
    preferences->SetCustomColors(P::PenCustomColorKey(), {Qt::blue, QColor(), Qt::red});
    QList<QColor> colors;
    preferences->GetCustomColors(P::PenCustomColorKey(), colors);
    QCOMPARE(colors, (QList<QColor>{Qt::blue, Qt::red}));
}

void Tst_TindraPreferences::unknownColorKeyGivesNothing() {
    P *preferences = fresh();
    const QString unknown = Key + QStringLiteral("\\OtherCustomColor");
    preferences->SetCustomColors(unknown, {Qt::red});
    QList<QColor> colors;
    preferences->GetCustomColors(unknown, colors);
    QVERIFY(colors.isEmpty());
}

void Tst_TindraPreferences::colorKeysAreLocations() {
    const QString start = QStringLiteral("SOFTWARE\\Norvane\\Tindra\\Config\\");
    QCOMPARE(P::FigureFillCustomColorKey(), start + QStringLiteral("FigureFillCustomColor"));
    QCOMPARE(P::FigureLineCustomColorKey(), start + QStringLiteral("FigureLineCustomColor"));
    QCOMPARE(P::PenCustomColorKey(), start + QStringLiteral("PenCustomColor"));
    QCOMPARE(P::HighlighterCustomColorKey(), start + QStringLiteral("HighlighterCustomColor"));
    QCOMPARE(P::TextCustomColorKey(), start + QStringLiteral("TextCustomColor"));
}

void Tst_TindraPreferences::storedColorsComeBackWithAlpha() {
    store(QStringLiteral("PenCustomColor/0/CustomColor"), 0x40302010);
    store(QStringLiteral("PenCustomColor/1/CustomColor"), QStringLiteral("4278190335")); // unsigned writer
    QList<QColor> colors;
    fresh()->GetCustomColors(P::PenCustomColorKey(), colors);
    QCOMPARE(colors, (QList<QColor>{QColor(0x10, 0x20, 0x30, 0x40), QColor(255, 0, 0, 255)}));
}

void Tst_TindraPreferences::colorFromNumber_data() {
    QTest::addColumn<int>("number");
    QTest::addColumn<QColor>("withAlpha");
    QTest::addColumn<QColor>("without");
    QTest::newRow("opaque red") << int(0xFF0000FF) << QColor(255, 0, 0, 255) << QColor(255, 0, 0);
    QTest::newRow("transparent") << 0 << QColor(0, 0, 0, 0) << QColor(0, 0, 0);
    QTest::newRow("green") << int(0xFF00FF00) << QColor(0, 255, 0, 255) << QColor(0, 255, 0);
    QTest::newRow("blue") << int(0xFFFF0000) << QColor(0, 0, 255, 255) << QColor(0, 0, 255);
    QTest::newRow("all different") << 0x01020304 << QColor(4, 3, 2, 1) << QColor(4, 3, 2);
}

void Tst_TindraPreferences::colorFromNumber() {
    QFETCH(int, number);
    QFETCH(QColor, withAlpha);
    QFETCH(QColor, without);
    QCOMPARE(P::colorFromInt(number, true), withAlpha);
    QCOMPARE(P::colorFromInt(number, false), without);
    QCOMPARE(P::colorToInt(withAlpha), number);
}

void Tst_TindraPreferences::colorOfItem() {
    P *preferences = fresh();
    QCOMPARE(preferences->color(P::HighlighterColor), QColor(255, 240, 0, 255));
    QCOMPARE(preferences->color(P::FigureFillColor), QColor(0, 0, 0, 0));
    preferences->SetInt(P::PenColor, 0x01020304);
    QCOMPARE(preferences->color(P::PenColor), QColor(4, 3, 2, 1));
    preferences->SetBool(P::PenColor, true); // no colour any more, so the default applies
    QCOMPARE(preferences->color(P::PenColor), QColor(255, 0, 0, 255));
}

void Tst_TindraPreferences::defaultOfItem() {
    QCOMPARE(P::defaultInt(P::LineWidth), 3);
    QCOMPARE(P::defaultInt(P::TrayMode), 0); // no integer item
    QCOMPARE(P::defaultInt(P::Id(14)), 0);
    QCOMPARE(P::defaultBool(P::TrayMode), true);
    QCOMPARE(P::defaultBool(P::HideButtons), false);
    QCOMPARE(P::defaultBool(P::LineWidth), false); // no switch
    QCOMPARE(P::defaultString(P::JpgQuality), QStringLiteral("100"));
    QVERIFY(P::defaultString(P::LineWidth).isEmpty()); // no text
    QVERIFY(!P::defaultString(P::LineWidth).isNull());
}

void Tst_TindraPreferences::reloadBringsWhatOthersSaved() {
    P *preferences = fresh();
    preferences->SetSizePresets({QSize(1, 1), QSize(2, 2)});
    preferences->SetCustomColors(P::PenCustomColorKey(), {Qt::red, Qt::red});
    store(QStringLiteral("LineWidth"), 8);
    store(QStringLiteral("SizePresets/0/width"), 10);
    store(QStringLiteral("SizePresets/0/height"), 20);
    store(QStringLiteral("PenCustomColor/0/CustomColor"), int(0xFFFF0000));
    preferences->Reload();
    QList<QSize> presets;
    preferences->GetSizePresets(presets);
    QCOMPARE(presets, QList<QSize>{QSize(10, 20)});
    QList<QColor> colors;
    preferences->GetCustomColors(P::PenCustomColorKey(), colors);
    QCOMPARE(colors, QList<QColor>{Qt::blue});
    QCOMPARE(preferences->GetInt(P::LineWidth, 0), 8);
}

void Tst_TindraPreferences::garbageFileGivesDefaults() {
    const QString path = ConfigurationLocation(Key).fileName();
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("\x7f\x45\x4c\x46 [[[ ]=\n[Config\n\xff\xfe=;\n");
    file.close();
    P *preferences = fresh();
    QCOMPARE(preferences->GetInt(P::LineWidth, 0), 3);
    preferences->SetInt(P::LineWidth, 5);
    preferences->SaveAll();
    QCOMPARE(fresh()->GetInt(P::LineWidth, 0), 5);
}

void Tst_TindraPreferences::garbageNumberEndsTheList_data() {
    QTest::addColumn<QString>("garbage");
    QTest::newRow("word") << QStringLiteral("red");
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("number with a tail") << QStringLiteral("640px");
    QTest::newRow("beyond 32 bits") << QStringLiteral("99999999999");
}

void Tst_TindraPreferences::garbageNumberEndsTheList() {
    QFETCH(QString, garbage);
    for (int group = 0; group < 3; ++group) {
        store(QStringLiteral("SizePresets/%1/width").arg(group), 640);
        store(QStringLiteral("SizePresets/%1/height").arg(group), group == 1 ? QVariant(garbage) : 480);
        store(QStringLiteral("PenCustomColor/%1/CustomColor").arg(group),
              group == 1 ? QVariant(garbage) : Red);
    }
    P *preferences = fresh();
    QList<QSize> presets;
    preferences->GetSizePresets(presets);
    QCOMPARE(presets, QList<QSize>{QSize(640, 480)});
    QList<QColor> colors;
    preferences->GetCustomColors(P::PenCustomColorKey(), colors);
    QCOMPARE(colors, QList<QColor>{QColor(255, 0, 0)});
}

// Each part of the settings that asked for the lock again would wait for it again, and one that got it then
// would save half of them.
void Tst_TindraPreferences::refusedSaveIsRefusedAsAWhole() {
    constexpr qint64 oneWait = 2000; // in milliseconds
    P *preferences = fresh();
    preferences->SetSizePresets({QSize(1, 2)});
    preferences->SetCustomColors(P::PenCustomColorKey(), {QColor(255, 0, 0)});
    const QString file = ConfigurationLocation(Key).fileName();
    QVERIFY(QDir().mkpath(QFileInfo(file).path()));
    QLockFile lock(file + QStringLiteral(".lock"));
    QVERIFY(lock.lock());
    const auto refusedSave = [preferences] {
        QElapsedTimer timer;
        timer.start();
        preferences->SaveAll();
        return timer.elapsed();
    };
    const qint64 waited = refusedSave();
    // A machine under load may be late once.
    QVERIFY(waited < oneWait * 3 / 2 || refusedSave() < oneWait * 3 / 2);
    QCOMPARE(fileLines(), QStringList());
    lock.unlock();
    preferences->SaveAll();
    P *next = fresh();
    QCOMPARE(next->GetInt(P::LineWidth, 0), 3);
    QList<QSize> presets;
    next->GetSizePresets(presets);
    QCOMPARE(presets, QList<QSize>{QSize(1, 2)});
    QVERIFY(fileLines().contains(QStringLiteral("LineWidth=3")));
}

int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    Tst_TindraPreferences test;
    const int failures = QTest::qExec(&test, argc, argv);
    afterTheEnd.isArmed = true;
    return failures;
}

#include "tst_tindrapreferences.moc"
