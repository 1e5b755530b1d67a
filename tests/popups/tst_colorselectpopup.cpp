#include "popups/colorpicker.h"
#include "popups/colorselectbutton.h"
#include "popups/colorselectpopup.h"
#include "popups/colorselecttabbutton.h"
#include "preferences/tindrapreferences.h"
#include "ui/menu.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QImage>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

class Tst_ColorSelectPopup : public QObject {
    Q_OBJECT
private slots:
    void init();
    void layoutAsDesigned();
    void basicColoursFillTheGrid();
    void shorterAndLongerLists_data();
    void shorterAndLongerLists();
    void clickReportsTheColour();
    void transparentIsAColour();
    void triggeredReportsTheChoice();
    void nothingChosenReportsInvalid();
    void selectColorTakesTheFirstMatch();
    void selectColorWithoutMatch();
    void customColoursComeFromThePreferences();
    void newCustomColour_data();
    void newCustomColour();
    void pickerStartsWithTheChoice();
    void pickerOpensBesideTheSwatches_data();
    void pickerOpensBesideTheSwatches();
    void swatchPaintsItsColour_data();
    void swatchPaintsItsColour();
    void swatchThatCannotBeChosenIsPale();
    void tabShowsItsColour();
    void chosenSwatchClosesTheMenu();
    void everySwatchIsReachedByArrows();
    void tabGoesFromTheChosenSwatchToThePicker();

private:
    static QList<ColorSelectButton *> swatches(const ColorSelectPopup &popup, bool shownOnly = false);
    static QPushButton *pickerButton(const ColorSelectPopup &popup) {
        return popup.findChild<QPushButton *>(QStringLiteral("picker_"));
    }
    static QStringList stored();

    static QString key() { return TindraPreferences::PenCustomColorKey(); }
};

void Tst_ColorSelectPopup::init() {
    TindraPreferences::resetForTesting();
    TindraPreferences::instance()->Init();
}

QList<ColorSelectButton *> Tst_ColorSelectPopup::swatches(const ColorSelectPopup &popup, bool shownOnly) {
    QList<ColorSelectButton *> list = popup.findChildren<ColorSelectButton *>();
    if (shownOnly)
        list.erase(std::remove_if(list.begin(), list.end(), [](auto *button) { return button->isHidden(); }),
                   list.end());
    return list;
}

QStringList Tst_ColorSelectPopup::stored() {
    QList<QColor> colors;
    TindraPreferences::instance()->GetCustomColors(key(), colors);
    QStringList names;
    for (const QColor &color : colors)
        names += color.name();
    return names;
}

void Tst_ColorSelectPopup::layoutAsDesigned() {
    ColorSelectPopup popup;
    QCOMPARE(popup.layout()->contentsMargins(), QMargins(10, 14, 10, 14));
    QCOMPARE(popup.layout()->spacing(), 4);
    const auto *grid = popup.findChild<QGridLayout *>();
    QCOMPARE(grid->spacing(), 0);
    QCOMPARE(swatches(popup).size(), 14);
    for (const ColorSelectButton *swatch : swatches(popup))
        QVERIFY(swatch->isCheckable());
    QCOMPARE(popup.findChildren<ColorPicker *>().size(), 1);
    QVERIFY(pickerButton(popup)->menu());
}

void Tst_ColorSelectPopup::basicColoursFillTheGrid() {
    ColorSelectPopup popup;
    const QList<BasicColor> colors = BasicColors::text();
    popup.setBasicColors(colors);
    const auto *grid = popup.findChild<QGridLayout *>();
    QCOMPARE(grid->rowCount(), 2);
    QCOMPARE(grid->columnCount(), 5);
    for (int i = 0; i < 10; ++i) {
        const auto *swatch = qobject_cast<ColorSelectButton *>(grid->itemAtPosition(i / 5, i % 5)->widget());
        QCOMPARE(swatch->color().rgba(), colors[i].color.rgba());
        QCOMPARE(swatch->toolTip(), colors[i].name);
        QCOMPARE(swatch->accessibleName(), colors[i].name);
    }
}

void Tst_ColorSelectPopup::shorterAndLongerLists_data() {
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("shown");
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("nine") << 9 << 9;
    QTest::newRow("eleven") << 11 << 10;
}

void Tst_ColorSelectPopup::shorterAndLongerLists() {
    QFETCH(int, given);
    QList<BasicColor> colors;
    for (int i = 0; i < given; ++i)
        colors.append({QColor(i, 0, 0), QString::number(i)});
    ColorSelectPopup popup;
    popup.setBasicColors(BasicColors::text());
    popup.setBasicColors(colors);
    QTEST(swatches(popup, true).size(), "shown");
}

void Tst_ColorSelectPopup::clickReportsTheColour() {
    ColorSelectPopup popup;
    popup.setBasicColors(BasicColors::text());
    popup.show();
    QSignalSpy selected(&popup, &ColorSelectPopup::colorSelected);
    QSignalSpy triggered(&popup, &Popup::triggered);
    QTest::mouseClick(swatches(popup)[3], Qt::LeftButton);
    QCOMPARE(triggered.count(), 1);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected[0][0].value<QColor>(), QColor(255, 192, 0));
    QCOMPARE(popup.color(), QColor(255, 192, 0));
    QTest::mouseClick(swatches(popup)[0], Qt::LeftButton);
    QVERIFY(!swatches(popup)[3]->isChecked());
}

void Tst_ColorSelectPopup::transparentIsAColour() {
    ColorSelectPopup popup;
    popup.setBasicColors(BasicColors::figureFill());
    popup.show();
    QSignalSpy selected(&popup, &ColorSelectPopup::colorSelected);
    QTest::mouseClick(swatches(popup)[9], Qt::LeftButton);
    QCOMPARE(selected[0][0].value<QColor>(), QColor(Qt::transparent));
    popup.selectColor(Qt::black);
    popup.selectColor(Qt::transparent);
    QVERIFY(swatches(popup)[9]->isChecked());
}

void Tst_ColorSelectPopup::triggeredReportsTheChoice() {
    ColorSelectPopup popup;
    popup.setBasicColors(BasicColors::text());
    popup.selectColor(Qt::red);
    QSignalSpy selected(&popup, &ColorSelectPopup::colorSelected);
    emit popup.triggered();
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected[0][0].value<QColor>(), QColor(Qt::red));
}

void Tst_ColorSelectPopup::nothingChosenReportsInvalid() {
    ColorSelectPopup popup;
    popup.setBasicColors(BasicColors::text());
    QVERIFY(!popup.color().isValid());
    QSignalSpy selected(&popup, &ColorSelectPopup::colorSelected);
    emit popup.triggered();
    QVERIFY(!selected[0][0].value<QColor>().isValid());
}

void Tst_ColorSelectPopup::selectColorTakesTheFirstMatch() {
    TindraPreferences::instance()->SetCustomColors(key(), {QColor(Qt::red), QColor(7, 8, 9)});
    ColorSelectPopup popup;
    popup.setBasicColors(BasicColors::text());
    popup.setCustomColorKey(key());
    QSignalSpy selected(&popup, &ColorSelectPopup::colorSelected);
    QSignalSpy triggered(&popup, &Popup::triggered);
    popup.selectColor(Qt::red);
    QVERIFY(swatches(popup)[2]->isChecked());
    popup.selectColor(
        QColor::fromHsvF(QColor(7, 8, 9).hueF(), QColor(7, 8, 9).saturationF(), QColor(7, 8, 9).valueF())
            .toRgb());
    QVERIFY(swatches(popup)[11]->isChecked());
    QCOMPARE(selected.count(), 2);
    QCOMPARE(triggered.count(), 0);
}

void Tst_ColorSelectPopup::selectColorWithoutMatch() {
    ColorSelectPopup popup;
    popup.setBasicColors(BasicColors::text());
    popup.selectColor(Qt::red);
    QSignalSpy selected(&popup, &ColorSelectPopup::colorSelected);
    popup.selectColor(QColor(1, 2, 3));
    QVERIFY(!popup.color().isValid());
    popup.selectColor(QColor()); // as the swatches that are not in use
    QVERIFY(!popup.color().isValid());
    QCOMPARE(selected.count(), 0);
    // The group is exclusive again.
    swatches(popup)[0]->setChecked(true);
    swatches(popup)[1]->setChecked(true);
    QVERIFY(!swatches(popup)[0]->isChecked());
}

void Tst_ColorSelectPopup::customColoursComeFromThePreferences() {
    TindraPreferences::instance()->SetCustomColors(key(), {QColor(10, 200, 190), QColor(1, 2, 3)});
    ColorSelectPopup popup;
    popup.setBasicColors(BasicColors::text());
    QCOMPARE(swatches(popup, true).size(), 10);
    popup.setCustomColorKey(key());
    const auto shown = swatches(popup, true);
    QCOMPARE(shown.size(), 12);
    QCOMPARE(shown[10]->color(), QColor(10, 200, 190));
    QCOMPARE(shown[10]->toolTip(), QStringLiteral("#0AC8BE"));
    QCOMPARE(shown[11]->toolTip(), QStringLiteral("#010203"));
    popup.setCustomColorKey(QStringLiteral("unknown"));
    QCOMPARE(swatches(popup, true).size(), 10);
}

void Tst_ColorSelectPopup::newCustomColour_data() {
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("added");
    QTest::addColumn<QString>("after");
    QTest::newRow("first") << QString() << QStringLiteral("#0a0a0a") << QStringLiteral("#0a0a0a");
    QTest::newRow("second") << QStringLiteral("#010101") << QStringLiteral("#0a0a0a")
                            << QStringLiteral("#010101,#0a0a0a");
    QTest::newRow("fifth pushes the oldest out")
        << QStringLiteral("#010101,#020202,#030303,#040404") << QStringLiteral("#0a0a0a")
        << QStringLiteral("#020202,#030303,#040404,#0a0a0a");
    QTest::newRow("one of the row moves to its end")
        << QStringLiteral("#010101,#020202,#030303,#040404") << QStringLiteral("#020202")
        << QStringLiteral("#010101,#030303,#040404,#020202");
    QTest::newRow("the last again") << QStringLiteral("#010101,#020202") << QStringLiteral("#020202")
                                    << QStringLiteral("#010101,#020202");
    QTest::newRow("a basic colour as well")
        << QStringLiteral("#010101") << QStringLiteral("#ff0000") << QStringLiteral("#010101,#ff0000");
}

void Tst_ColorSelectPopup::newCustomColour() {
    QFETCH(QString, before);
    QFETCH(QString, added);
    QFETCH(QString, after);
    QList<QColor> colors;
    for (const QString &name : before.split(QLatin1Char(','), Qt::SkipEmptyParts))
        colors.append(QColor(name));
    TindraPreferences::instance()->SetCustomColors(key(), colors);
    ColorSelectPopup popup;
    popup.setBasicColors(BasicColors::text());
    popup.setCustomColorKey(key());
    popup.show();
    QSignalSpy selected(&popup, &ColorSelectPopup::colorSelected);
    auto *picker = popup.findChild<ColorPicker *>();
    picker->setColor(QColor(added));
    picker->emitCloseSignal(Popup::Triggered);
    const QStringList expected = after.split(QLatin1Char(','));
    const auto shown = swatches(popup, true);
    QCOMPARE(shown.size(), 10 + expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        QCOMPARE(shown[10 + i]->color().name(), expected[i]);
        QCOMPARE(shown[10 + i]->toolTip(), expected[i].toUpper());
    }
    QVERIFY(shown.last()->isChecked());
    QCOMPARE(stored(), expected);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected[0][0].value<QColor>(), QColor(added));
}

void Tst_ColorSelectPopup::pickerStartsWithTheChoice() {
    ColorSelectPopup popup;
    popup.setBasicColors(BasicColors::text());
    popup.show();
    popup.selectColor(QColor(0, 176, 240));
    pickerButton(popup)->menu()->popup(QPoint());
    QCOMPARE(popup.findChild<ColorPicker *>()->color(), QColor(0, 176, 240));
    pickerButton(popup)->menu()->close();
}

void Tst_ColorSelectPopup::pickerOpensBesideTheSwatches_data() {
    QTest::addColumn<QPoint>("panel");
    QTest::addColumn<int>("beside"); // 1 to the right of the swatches, -1 to the left, 0 wherever it fits
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    QTest::newRow("room to the right") << QPoint(100, 100) << 1;
    QTest::newRow("right edge of the screen") << QPoint(screen.right() - 180, 100) << -1;
    QTest::newRow("bottom of the screen") << QPoint(100, screen.bottom() - 60) << 0;
}

void Tst_ColorSelectPopup::pickerOpensBesideTheSwatches() {
    QFETCH(QPoint, panel);
    QFETCH(int, beside);
    ColorSelectPopup popup;
    popup.setBasicColors(BasicColors::text());
    popup.show();
    popup.move(panel);
    QMenu *menu = pickerButton(popup)->menu();
    menu->popup(QPoint());
    QVERIFY(menu->isVisible());
    const auto *grid = popup.findChild<QGridLayout *>();
    const QRect swatchArea(popup.mapToGlobal(grid->geometry().topLeft()), grid->geometry().size());
    if (beside == 1)
        QCOMPARE(menu->pos(), QPoint(swatchArea.x() + swatchArea.width() + 10, swatchArea.y()));
    if (beside == -1)
        QCOMPARE(menu->pos(), QPoint(swatchArea.x() - 10 - menu->width(), swatchArea.y()));
    QVERIFY(QGuiApplication::primaryScreen()->availableGeometry().contains(menu->geometry()));
    menu->close();
}

void Tst_ColorSelectPopup::swatchPaintsItsColour_data() {
    QTest::addColumn<QColor>("color");
    QTest::newRow("red") << QColor(Qt::red);
    QTest::newRow("white") << QColor(Qt::white);
    QTest::newRow("transparent") << QColor(Qt::transparent);
    QTest::newRow("none") << QColor();
}

void Tst_ColorSelectPopup::swatchPaintsItsColour() {
    QFETCH(QColor, color);
    const QString frame =
        QStringLiteral("* { background-color: rgb(9, 99, 9); border: 2px solid rgb(9, 99, 9);"
                       " padding: 4px; min-width: 20px; max-width: 20px; min-height: 20px;"
                       " max-height: 20px; }");
    ColorSelectButton button;
    button.setStyleSheet(frame);
    button.setColor(color);
    button.resize(32, 32);
    const QImage image = button.grab().toImage();
    QCOMPARE(image.pixelColor(5, 5), QColor(9, 99, 9)); // outside the padding
    QColor expected = color.isValid() ? color : QColor(9, 99, 9);
    if (color == QColor(Qt::transparent)) {
        // A picture: white with a line across.
        QCOMPARE(image.pixelColor(11, 11), QColor(Qt::white));
        QVERIFY(image.pixelColor(15, 16).blue() - image.pixelColor(15, 16).red() > 150);
        return;
    }
    QCOMPARE(image.pixelColor(16, 16).name(), expected.name());
}

void Tst_ColorSelectPopup::swatchThatCannotBeChosenIsPale() {
    ColorSelectButton button;
    button.setStyleSheet(QStringLiteral("* { background-color: rgb(9, 99, 9); border: none; }"));
    button.setColor(Qt::red);
    button.setEnabled(false);
    button.resize(32, 32);
    const QColor middle = button.grab().toImage().pixelColor(16, 16);
    // 35 % of the colour on 65 % of what lies below.
    QVERIFY2(qAbs(middle.red() - 95) <= 1, qPrintable(middle.name()));
    QVERIFY2(qAbs(middle.green() - 64) <= 1, qPrintable(middle.name()));
    QVERIFY2(qAbs(middle.blue() - 6) <= 1, qPrintable(middle.name()));
}

void Tst_ColorSelectPopup::tabShowsItsColour() {
    ColorSelectTabButton tab;
    QVERIFY(tab.isCheckable());
    QCOMPARE(tab.cursor().shape(), Qt::PointingHandCursor);
    tab.setText(QStringLiteral("fill"));
    tab.setColor(QColor(12, 34, 56));
    tab.resize(tab.sizeHint());
    const QImage tabImage = tab.grab().toImage();
    int painted = 0;
    for (int x = 0; x < tabImage.width(); ++x)
        painted += tabImage.pixelColor(x, tab.height() / 2) == QColor(12, 34, 56);
    QVERIFY(painted > 6);
}

void Tst_ColorSelectPopup::chosenSwatchClosesTheMenu() {
    QWidget parent;
    auto *popup = new ColorSelectPopup;
    popup->setBasicColors(BasicColors::text());
    Menu *menu = popup->toMenu(&parent);
    parent.show();
    menu->popup(QPoint(20, 20));
    QSignalSpy closed(popup, &Popup::closed);
    QSignalSpy selected(popup, &ColorSelectPopup::colorSelected);
    QTest::mouseClick(swatches(*popup)[4], Qt::LeftButton);
    QVERIFY(!menu->isVisible());
    QCOMPARE(selected.count(), 1);
    QCOMPARE(closed.count(), 0);
    // Through the picker both menus close.
    menu->popup(QPoint(20, 20));
    pickerButton(*popup)->menu()->popup(QPoint());
    auto *picker = popup->findChild<ColorPicker *>();
    QVERIFY(picker->isVisible());
    QTest::mouseClick(picker->findChild<QPushButton *>(QStringLiteral("okBtn_")), Qt::LeftButton);
    QVERIFY(!picker->isVisible());
    QVERIFY(!menu->isVisible());
    QCOMPARE(selected.count(), 2);
    // Cancel leads back to the swatches.
    menu->popup(QPoint(20, 20));
    pickerButton(*popup)->menu()->popup(QPoint());
    QTest::mouseClick(picker->findChild<QPushButton *>(QStringLiteral("cancelBtn_")), Qt::LeftButton);
    QVERIFY(!picker->isVisible());
    QVERIFY(menu->isVisible());
    QCOMPARE(selected.count(), 2);
}

void Tst_ColorSelectPopup::everySwatchIsReachedByArrows() {
    QWidget parent;
    TindraPreferences::instance()->SetCustomColors(key(), {QColor(10, 200, 190)});
    auto *popup = new ColorSelectPopup;
    popup->setBasicColors(BasicColors::text());
    popup->setCustomColorKey(key());
    popup->selectColor(Qt::black);
    Menu *menu = popup->toMenu(&parent);
    parent.show();
    menu->popup(QPoint(20, 20));
    QSignalSpy selected(popup, &ColorSelectPopup::colorSelected);
    const auto list = swatches(*popup, true);
    QCOMPARE(menu->focusWidget(), list[0]);
    for (int i = 1; i < 5; ++i) {
        QTest::keyClick(menu->focusWidget(), Qt::Key_Right);
        QCOMPARE(menu->focusWidget(), list[i]);
    }
    QTest::keyClick(menu->focusWidget(), Qt::Key_Down);
    for (int i = 9; i > 5; --i) {
        QCOMPARE(menu->focusWidget(), list[i]);
        QTest::keyClick(menu->focusWidget(), Qt::Key_Left);
    }
    QTest::keyClick(menu->focusWidget(), Qt::Key_Down);
    QCOMPARE(menu->focusWidget(), list[10]);
    QTest::keyClick(menu->focusWidget(), Qt::Key_Down);
    QCOMPARE(menu->focusWidget(), pickerButton(*popup));
    QCOMPARE(selected.count(), 0);
    QTest::keyClick(menu->focusWidget(), Qt::Key_Up);
    QTest::keyClick(menu->focusWidget(), Qt::Key_Space);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected[0][0].value<QColor>(), QColor(10, 200, 190));
}

void Tst_ColorSelectPopup::tabGoesFromTheChosenSwatchToThePicker() {
    QWidget parent;
    auto *popup = new ColorSelectPopup;
    popup->setBasicColors(BasicColors::text());
    TindraPreferences::instance()->SetCustomColors(key(), {QColor(1, 2, 3)});
    popup->setCustomColorKey(key());
    Menu *menu = popup->toMenu(&parent);
    parent.show();
    // None is chosen.
    menu->popup(QPoint(50, 50));
    const auto list = swatches(*popup, true);
    QCOMPARE(list.size(), 11);
    QCOMPARE(menu->focusWidget(), list[0]);
    QTest::keyClick(menu->focusWidget(), Qt::Key_Tab);
    QCOMPARE(menu->focusWidget(), pickerButton(*popup));
    menu->close();

    for (const int chosen : {3, 10}) {
        popup->selectColor(list[chosen]->color());
        menu->popup(QPoint(50, 50));
        QCOMPARE(menu->focusWidget(), list[chosen]);
        for (const Qt::Key tab : {Qt::Key_Tab, Qt::Key_Backtab}) {
            QTest::keyClick(menu->focusWidget(), tab);
            QCOMPARE(menu->focusWidget(), pickerButton(*popup));
            QTest::keyClick(menu->focusWidget(), tab);
            QCOMPARE(menu->focusWidget(), list[chosen]);
        }
        // The arrows leave the choice, and Tab comes back to it.
        for (const Qt::Key arrow : {Qt::Key_Left, Qt::Key_Up})
            QTest::keyClick(menu->focusWidget(), arrow);
        QVERIFY(menu->focusWidget() != list[chosen]);
        QTest::keyClick(menu->focusWidget(), Qt::Key_Tab);
        QCOMPARE(menu->focusWidget(), pickerButton(*popup));
        QTest::keyClick(menu->focusWidget(), Qt::Key_Tab);
        QCOMPARE(menu->focusWidget(), list[chosen]);
        menu->close();
    }
}

QTEST_MAIN(Tst_ColorSelectPopup)
#include "tst_colorselectpopup.moc"
