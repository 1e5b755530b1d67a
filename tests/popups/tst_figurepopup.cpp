#include "canvas/shapetype.h"
#include "popups/colorselectbutton.h"
#include "popups/colorselectpopup.h"
#include "popups/colorselecttabbutton.h"
#include "popups/figurepopup.h"
#include "preferences/tindrapreferences.h"
#include "ui/menu.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QTest>

namespace {

struct Choice {
    int shape;
    int line;
    QColor fill;
    QColor outline;
};

/// Every figure that a panel reports.
QList<Choice> &watch(FigurePopup &popup, QList<Choice> &choices) {
    QObject::connect(&popup, &FigurePopup::figureSelected, &popup,
                     [&choices](ShapeTypes::ShapeType shape, Qt::PenStyle line, const QColor &fill,
                                const QColor &outline) {
                         choices.append({shape, line, fill, outline});
                     });
    return choices;
}

} // namespace

class Tst_FigurePopup : public QObject {
    Q_OBJECT
private slots:
    void init();
    void idsAndFigures_data();
    void idsAndFigures();
    void storedFigureIsChecked_data();
    void storedFigureIsChecked();
    void clickReportsTheWholeFigure();
    void colourOfEitherPageReports();
    void triggeredReports();
    void storedColoursAreChosen();
    void coloursOutsideTheTablesStay();
    void tabsShowTheirPages();
    void pagesAreFilled();
    void buttonsCanBeToldApart();
    void tabGoesThroughTheChoices();

private:
    static QButtonGroup *shapes(const FigurePopup &popup) {
        return popup.findChildren<QButtonGroup *>(QString(), Qt::FindDirectChildrenOnly).at(0);
    }
    static ColorSelectPopup *page(const FigurePopup &popup, int index) {
        return popup.findChildren<ColorSelectPopup *>(QString(), Qt::FindDirectChildrenOnly).at(index);
    }
    static ColorSelectTabButton *tab(const FigurePopup &popup, const char *name) {
        return popup.findChild<ColorSelectTabButton *>(QLatin1String(name));
    }
    static void store(TindraPreferences::Id id, const QColor &color) {
        TindraPreferences::instance()->SetInt(id, TindraPreferences::colorToInt(color));
    }
};

void Tst_FigurePopup::init() {
    TindraPreferences::resetForTesting();
    TindraPreferences::instance()->Init();
}

void Tst_FigurePopup::idsAndFigures_data() {
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("shape");
    QTest::addColumn<int>("line");
    QTest::newRow("rectangle") << 0 << 5 << 1;
    QTest::newRow("circle") << 1 << 6 << 1;
    QTest::newRow("balloon") << 2 << 7 << 1;
    QTest::newRow("line") << 3 << 3 << 1;
    QTest::newRow("arrow") << 4 << 4 << 1;
    QTest::newRow("dotted rectangle") << 5 << 5 << 3;
    QTest::newRow("dotted circle") << 6 << 6 << 3;
    QTest::newRow("dotted balloon") << 7 << 7 << 3;
    QTest::newRow("dotted line") << 8 << 3 << 3;
    QTest::newRow("dotted arrow") << 9 << 4 << 3;
}

void Tst_FigurePopup::idsAndFigures() {
    QFETCH(int, id);
    QFETCH(int, shape);
    QFETCH(int, line);
    QCOMPARE(int(FigurePopup::figureOf(id).shapeType), shape);
    QCOMPARE(int(FigurePopup::figureOf(id).lineType), line);
    QCOMPARE(FigurePopup::idOf(shape, line), id);
    if (line == 3) {
        for (const int other : {0, 2, 4, 5, 99})
            QCOMPARE(FigurePopup::idOf(shape, other), id);
    }
    for (const int other : {-1, 10, 1000}) {
        QCOMPARE(FigurePopup::figureOf(other).shapeType, ShapeTypes::Rectangle);
        QCOMPARE(FigurePopup::figureOf(other).lineType, Qt::SolidLine);
    }
    QCOMPARE(FigurePopup::idOf(8, line), -1);
}

void Tst_FigurePopup::storedFigureIsChecked_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("lineType");
    QTest::addColumn<int>("id");
    QTest::newRow("dotted arrow") << 4 << 3 << 9;
    QTest::newRow("circle") << 6 << 1 << 1;
    QTest::newRow("dashed counts as dotted") << 7 << 2 << 7;
    QTest::newRow("no figure") << 8 << 1 << 0;
    QTest::newRow("nonsense") << -5 << 77 << 0;
}

void Tst_FigurePopup::storedFigureIsChecked() {
    QFETCH(int, type);
    QFETCH(int, lineType);
    TindraPreferences::instance()->SetInt(TindraPreferences::FigureType, type);
    TindraPreferences::instance()->SetInt(TindraPreferences::FigureLineType, lineType);
    const FigurePopup popup;
    QTEST(shapes(popup)->checkedId(), "id");
    QCOMPARE(shapes(popup)->buttons().size(), 10);
}

void Tst_FigurePopup::clickReportsTheWholeFigure() {
    store(TindraPreferences::FigureFillColor, QColor(142, 204, 76));
    store(TindraPreferences::FigureLineColor, QColor(0, 176, 240));
    FigurePopup popup;
    popup.show();
    QList<Choice> choices;
    watch(popup, choices);
    QTest::mouseClick(shapes(popup)->button(7), Qt::LeftButton);
    QCOMPARE(choices.size(), 1);
    QCOMPARE(choices[0].shape, 7);
    QCOMPARE(choices[0].line, 3);
    QCOMPARE(choices[0].fill, QColor(142, 204, 76));
    QCOMPARE(choices[0].outline, QColor(0, 176, 240));
}

void Tst_FigurePopup::colourOfEitherPageReports() {
    FigurePopup popup;
    popup.show();
    QList<Choice> choices;
    watch(popup, choices);
    const auto outline = page(popup, 1)->findChildren<ColorSelectButton *>();
    QTest::mouseClick(outline[9], Qt::LeftButton); // no outline
    QCOMPARE(choices.size(), 1);
    QCOMPARE(choices[0].outline, QColor(Qt::transparent));
    QCOMPARE(tab(popup, "outline_")->color(), QColor(Qt::transparent));
    QTest::mouseClick(tab(popup, "fill_"), Qt::LeftButton);
    QCOMPARE(choices.size(), 1);
    QTest::mouseClick(page(popup, 0)->findChildren<ColorSelectButton *>()[0], Qt::LeftButton);
    QCOMPARE(choices.size(), 2);
    QCOMPARE(choices[1].fill, QColor(Qt::black));
    QCOMPARE(choices[1].outline, QColor(Qt::transparent));
    QCOMPARE(tab(popup, "fill_")->color(), QColor(Qt::black));
}

void Tst_FigurePopup::triggeredReports() {
    FigurePopup popup;
    QList<Choice> choices;
    watch(popup, choices);
    emit popup.triggered();
    QCOMPARE(choices.size(), 1);
    // What the preferences begin with.
    QCOMPARE(choices[0].shape, 5);
    QCOMPARE(choices[0].line, 1);
    QCOMPARE(choices[0].fill, QColor(Qt::transparent));
    QCOMPARE(choices[0].outline, QColor(255, 0, 0));
}

void Tst_FigurePopup::storedColoursAreChosen() {
    TindraPreferences::instance()->SetCustomColors(TindraPreferences::FigureLineCustomColorKey(),
                                                   {QColor(1, 2, 3)});
    store(TindraPreferences::FigureFillColor, QColor(112, 48, 160));
    store(TindraPreferences::FigureLineColor, QColor(1, 2, 3));
    const FigurePopup popup;
    QCOMPARE(page(popup, 0)->color(), QColor(112, 48, 160));
    QCOMPARE(page(popup, 1)->color(), QColor(1, 2, 3));
    QCOMPARE(tab(popup, "fill_")->color(), QColor(112, 48, 160));
    QCOMPARE(tab(popup, "outline_")->color(), QColor(1, 2, 3));
}

void Tst_FigurePopup::coloursOutsideTheTablesStay() {
    store(TindraPreferences::FigureFillColor, QColor(9, 9, 9));
    store(TindraPreferences::FigureLineColor, QColor(8, 8, 8));
    FigurePopup popup;
    QList<Choice> choices;
    watch(popup, choices);
    QVERIFY(!page(popup, 0)->color().isValid());
    QCOMPARE(tab(popup, "fill_")->color(), QColor(9, 9, 9));
    emit popup.triggered();
    QCOMPARE(choices[0].fill, QColor(9, 9, 9));
    QCOMPARE(choices[0].outline, QColor(8, 8, 8));
}

void Tst_FigurePopup::tabsShowTheirPages() {
    FigurePopup popup;
    popup.show();
    QCOMPARE(tab(popup, "fill_")->text(), QStringLiteral("fill"));
    QCOMPARE(tab(popup, "outline_")->text(), QStringLiteral("outline"));
    QVERIFY(tab(popup, "outline_")->isChecked());
    QVERIFY(!page(popup, 0)->isVisible() && page(popup, 1)->isVisible());
    QVERIFY(!page(popup, 1)->isWindow());
    QCOMPARE(page(popup, 1)->layout()->contentsMargins(), QMargins());
    QTest::mouseClick(tab(popup, "fill_"), Qt::LeftButton);
    QVERIFY(page(popup, 0)->isVisible() && !page(popup, 1)->isVisible());
    popup.onColorTabToggled(tab(popup, "outline_"), true);
    QVERIFY(page(popup, 1)->isVisible());
}

void Tst_FigurePopup::pagesAreFilled() {
    TindraPreferences::instance()->SetCustomColors(TindraPreferences::FigureFillCustomColorKey(),
                                                   {QColor(1, 1, 1), QColor(2, 2, 2)});
    const FigurePopup popup;
    const auto fill = page(popup, 0)->findChildren<ColorSelectButton *>();
    const auto outline = page(popup, 1)->findChildren<ColorSelectButton *>();
    QCOMPARE(fill[9]->toolTip(), QStringLiteral("fill transparent"));
    QCOMPARE(outline[9]->toolTip(), QStringLiteral("outline transparent"));
    QVERIFY(!fill[11]->isHidden() && fill[12]->isHidden() && outline[10]->isHidden());
}

void Tst_FigurePopup::buttonsCanBeToldApart() {
    const FigurePopup popup;
    QSet<QString> names;
    const auto buttons = shapes(popup)->buttons();
    for (const QAbstractButton *button : buttons) {
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
        QVERIFY(!button->accessibleName().isEmpty());
        names.insert(button->accessibleName());
    }
    QCOMPARE(names.size(), 10);
}

void Tst_FigurePopup::tabGoesThroughTheChoices() {
    TindraPreferences::instance()->SetInt(TindraPreferences::FigureType, ShapeTypes::Circle);
    store(TindraPreferences::FigureLineColor, Qt::red);
    QWidget parent;
    auto *popup = new FigurePopup;
    Menu *menu = popup->toMenu(&parent);
    parent.show();
    menu->popup(QPoint(50, 50));
    const auto nameOfFocus = [&] {
        const QWidget *widget = menu->focusWidget();
        return widget->objectName().isEmpty() ? widget->accessibleName() : widget->objectName();
    };
    // The chosen shape, tab and colour, of those that each row offers.
    const QStringList order{QStringLiteral("circle_"), QStringLiteral("outline_"), QStringLiteral("red"),
                            QStringLiteral("picker_")};
    for (const QString &name : order) {
        QCOMPARE(nameOfFocus(), name);
        QTest::keyClick(menu->focusWidget(), Qt::Key_Tab);
    }
    for (int i = order.size() - 1; i >= 0; --i) {
        QTest::keyClick(menu->focusWidget(), Qt::Key_Backtab);
        QCOMPARE(nameOfFocus(), order[i]);
    }
}

QTEST_MAIN(Tst_FigurePopup)
#include "tst_figurepopup.moc"
