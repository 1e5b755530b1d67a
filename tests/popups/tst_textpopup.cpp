#include "popups/colorselectbutton.h"
#include "popups/colorselectpopup.h"
#include "popups/combobox.h"
#include "popups/itembutton.h"
#include "popups/textpopup.h"
#include "preferences/tindrapreferences.h"
#include "services/usagestatistics.h"

#include <QBoxLayout>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

class Tst_TextPopup : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup() { setUsageRecorder({}); }
    void takesNoFocus();
    void rowAsDesigned();
    void offersTheSizes();
    void loadsWhatIsStored_data();
    void loadsWhatIsStored();
    void loadingReportsNothing();
    void styleButtons_data();
    void styleButtons();
    void colourIsStoredAndReported();
    void sizeFromTheList();
    void typedSize_data();
    void typedSize();
    void colourOutsideTheTableStays();
    void customColoursAreLoaded();

private:
    struct Change {
        int size;
        QColor color;
        int format;
    };
    void watch(TextPopup &popup);
    static int stored(TindraPreferences::Id id) { return TindraPreferences::instance()->GetInt(id, -99); }
    static void store(TindraPreferences::Id id, int value) {
        TindraPreferences::instance()->SetInt(id, value);
    }
    static ItemButton *button(const TextPopup &popup, const QString &name) {
        return popup.findChild<ItemButton *>(name);
    }
    static ColorSelectPopup *colors(const TextPopup &popup) { return popup.findChild<ColorSelectPopup *>(); }

    QList<Change> m_changes;
    QStringList m_events;
};

void Tst_TextPopup::init() {
    TindraPreferences::resetForTesting();
    TindraPreferences::instance()->Init();
    m_changes.clear();
    m_events.clear();
    setUsageRecorder([this](const QString &code) { m_events += code; });
}

void Tst_TextPopup::watch(TextPopup &popup) {
    connect(&popup, &TextPopup::fontChanged, &popup, [this](int size, const QColor &color, int format) {
        m_changes.append({size, color, format});
    });
}

void Tst_TextPopup::takesNoFocus() {
    const TextPopup popup;
    QVERIFY(popup.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    QCOMPARE(int(popup.windowFlags()) & 0x8ff, 0x80b);
}

void Tst_TextPopup::rowAsDesigned() {
    const TextPopup popup;
    QCOMPARE(popup.layout()->contentsMargins(), QMargins(10, 10, 10, 10));
    QCOMPARE(popup.layout()->spacing(), 10);
    QStringList names;
    for (int i = 0; i < popup.layout()->count(); ++i)
        names += popup.layout()->itemAt(i)->widget()->objectName();
    QCOMPARE(names, (QStringList{QStringLiteral("size_"), QStringLiteral("color_"), QStringLiteral("bold_"),
                                 QStringLiteral("italic_"), QStringLiteral("underline_")}));
    for (int i = 0; i < popup.layout()->count(); ++i)
        QVERIFY(!popup.layout()->itemAt(i)->widget()->accessibleName().isEmpty());
    for (const QString &name : names.mid(2))
        QVERIFY(button(popup, name)->isCheckable());
}

void Tst_TextPopup::offersTheSizes() {
    const TextPopup popup;
    const auto *box = popup.findChild<ComboBox *>();
    const QVector<int> expected{7, 8, 9, 10, 12, 14, 16, 18, 24, 30, 36, 48, 60, 72, 96, 100};
    QCOMPARE(box->count(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        QCOMPARE(box->itemText(i), QString::number(expected[i]));
        QCOMPARE(box->itemData(i).toInt(), expected[i]);
    }
}

void Tst_TextPopup::loadsWhatIsStored_data() {
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("style");
    QTest::newRow("nothing set") << 14 << 0;
    QTest::newRow("bold") << 7 << 1;
    QTest::newRow("italic") << 100 << 2;
    QTest::newRow("underline") << 8 << 4;
    QTest::newRow("all, size not in the list") << 33 << 7;
    QTest::newRow("unknown bits") << 0 << 8;
}

void Tst_TextPopup::loadsWhatIsStored() {
    QFETCH(int, size);
    QFETCH(int, style);
    TextPopup popup;
    store(TindraPreferences::TextSize, size);
    store(TindraPreferences::TextStyle, style);
    store(TindraPreferences::TextColor, TindraPreferences::colorToInt(QColor(255, 0, 153)));
    popup.loadSettings();
    const auto *box = popup.findChild<ComboBox *>();
    QCOMPARE(box->currentText(), QString::number(size));
    QCOMPARE(button(popup, QStringLiteral("bold_"))->isChecked(), bool(style & 1));
    QCOMPARE(button(popup, QStringLiteral("italic_"))->isChecked(), bool(style & 2));
    QCOMPARE(button(popup, QStringLiteral("underline_"))->isChecked(), bool(style & 4));
    QCOMPARE(colors(popup)->color(), QColor(255, 0, 153));
    QCOMPARE(popup.findChild<ColorSelectButton *>(QStringLiteral("color_"))->color(), QColor(255, 0, 153));
}

void Tst_TextPopup::loadingReportsNothing() {
    TextPopup popup;
    watch(popup);
    store(TindraPreferences::TextSize, 33);
    store(TindraPreferences::TextStyle, 7);
    store(TindraPreferences::TextColor, TindraPreferences::colorToInt(Qt::white));
    popup.loadSettings();
    QVERIFY(m_changes.isEmpty());
    QVERIFY(m_events.isEmpty());
    QCOMPARE(stored(TindraPreferences::TextSize), 33);
    // Signals are heard again afterwards.
    popup.onClickBoldButton();
    QCOMPARE(m_changes.size(), 1);
}

void Tst_TextPopup::styleButtons_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("bit");
    QTest::addColumn<QString>("event");
    QTest::newRow("bold") << QStringLiteral("bold_") << 1 << QStringLiteral("cap_303_18");
    QTest::newRow("italic") << QStringLiteral("italic_") << 2 << QStringLiteral("cap_303_19");
    QTest::newRow("underline") << QStringLiteral("underline_") << 4 << QStringLiteral("cap_303_20");
}

void Tst_TextPopup::styleButtons() {
    QFETCH(QString, name);
    QFETCH(int, bit);
    QFETCH(QString, event);
    TextPopup popup;
    popup.show();
    watch(popup);
    QTest::mouseClick(button(popup, name), Qt::LeftButton);
    QCOMPARE(m_changes.size(), 1);
    QCOMPARE(m_changes[0].format, bit);
    QCOMPARE(m_changes[0].size, 14);
    QCOMPARE(m_changes[0].color, QColor(255, 0, 0));
    QCOMPARE(stored(TindraPreferences::TextStyle), bit);
    QTest::mouseClick(button(popup, name), Qt::LeftButton);
    QCOMPARE(stored(TindraPreferences::TextStyle), 0);
    QCOMPARE(m_events, (QStringList{event, event}));
}

void Tst_TextPopup::colourIsStoredAndReported() {
    TextPopup popup;
    watch(popup);
    colors(popup)->findChildren<ColorSelectButton *>()[5]->click(); // sky blue
    QCOMPARE(m_changes.size(), 1);
    QCOMPARE(m_changes[0].color, QColor(0, 176, 240));
    QCOMPARE(TindraPreferences::instance()->color(TindraPreferences::TextColor), QColor(0, 176, 240));
    QCOMPARE(m_events, QStringList(QStringLiteral("cap_303_17")));
    QCOMPARE(popup.findChild<ColorSelectButton *>(QStringLiteral("color_"))->color(), QColor(0, 176, 240));
}

void Tst_TextPopup::sizeFromTheList() {
    TextPopup popup;
    watch(popup);
    popup.findChild<ComboBox *>()->setCurrentIndex(15);
    QCOMPARE(m_changes.size(), 1);
    QCOMPARE(m_changes[0].size, 100);
    QCOMPARE(stored(TindraPreferences::TextSize), 100);
    QVERIFY(m_events.isEmpty());
}

void Tst_TextPopup::typedSize_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("size");
    QTest::newRow("not in the list") << QStringLiteral("33") << 33;
    QTest::newRow("in the list") << QStringLiteral("24") << 24;
    QTest::newRow("no number") << QStringLiteral("big") << 0;
    QTest::newRow("number and more") << QStringLiteral("12pt") << 0;
    QTest::newRow("beyond any integer") << QStringLiteral("99999999999") << 0;
}

void Tst_TextPopup::typedSize() {
    QFETCH(QString, text);
    QFETCH(int, size);
    TextPopup popup;
    popup.show();
    watch(popup);
    auto *edit = popup.findChild<ComboBox *>()->lineEdit();
    edit->selectAll();
    QTest::keyClicks(edit, text);
    QCOMPARE(m_changes.size(), text.size());
    QCOMPARE(m_changes.last().size, size);
    QCOMPARE(stored(TindraPreferences::TextSize), size);
    QCOMPARE(popup.findChild<ComboBox *>()->count(), 16);
}

void Tst_TextPopup::colourOutsideTheTableStays() {
    store(TindraPreferences::TextColor, TindraPreferences::colorToInt(QColor(9, 8, 7)));
    TextPopup popup;
    watch(popup);
    button(popup, QStringLiteral("bold_"))->click();
    QCOMPARE(m_changes[0].color, QColor(9, 8, 7));
    QCOMPARE(TindraPreferences::instance()->color(TindraPreferences::TextColor), QColor(9, 8, 7));
}

void Tst_TextPopup::customColoursAreLoaded() {
    TextPopup popup;
    TindraPreferences::instance()->SetCustomColors(TindraPreferences::TextCustomColorKey(),
                                                   {QColor(3, 2, 1)});
    store(TindraPreferences::TextColor, TindraPreferences::colorToInt(QColor(3, 2, 1)));
    popup.loadSettings();
    QCOMPARE(colors(popup)->color(), QColor(3, 2, 1));
}

QTEST_MAIN(Tst_TextPopup)
#include "tst_textpopup.moc"
