#include "ui/designedsizes.h"
#include "ui/uistyler.h"
#include "ui/uistylerproperties.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>

Q_DECLARE_METATYPE(QMargins)

using namespace UIStylerProperty;

namespace {

constexpr int Unlimited = 16777215;

/// A window with one of everything that has a designed size.
struct Window {
    Window() {
        layout = new QVBoxLayout(&window);
        layout->setSpacing(5);
        layout->setContentsMargins(1, 3, 5, 7);
        label = new QLabel(QStringLiteral("text"), &window);
        QFont points = label->font();
        points.setPointSizeF(9);
        label->setFont(points);
        label->setMinimumSize(0, 11);
        label->setMaximumWidth(101);
        pixelLabel = new QLabel(&window);
        QFont pixels = pixelLabel->font();
        pixels.setPixelSize(13);
        pixelLabel->setFont(pixels);
        button = new QPushButton(&window);
        button->setIconSize(QSize(15, 17));
        combo = new QComboBox(&window);
        combo->setIconSize(QSize(3, 5));
        for (QWidget *widget : std::initializer_list<QWidget *>{label, pixelLabel, button, combo})
            layout->addWidget(widget);
    }
    QWidget window;
    QVBoxLayout *layout;
    QLabel *label;
    QLabel *pixelLabel;
    QPushButton *button;
    QComboBox *combo;
};

QString writeFile(const QTemporaryDir &folder, const char *name, const char *text) {
    const QString path = folder.filePath(QString::fromLatin1(name));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) < 0)
        qFatal("cannot write %s", name);
    return path;
}

double screenScale() {
    return QGuiApplication::primaryScreen()->logicalDotsPerInchX() / 96.0;
}

void emitDpi(double dpi) {
    QScreen *screen = QGuiApplication::primaryScreen();
    emit screen->logicalDotsPerInchChanged(dpi);
}

} // namespace

class Tst_UIStyler : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanup();
    void installsOneFilter();
    void sizesFollowTheScale_data();
    void sizesFollowTheScale();
    void sizesComeFromTheDesignAgainAndAgain();
    void unlimitedMaximumStaysUnlimited();
    void noMinimumStaysNone();
    void sizesOfUnknownWidgetsAreRememberedOnce();
    void exemptSubtreesKeepTheirSizes();
    void walkBelowAnExemptWidgetDoesNothing();
    void windowsBelowAWindowAreLeftOut();
    void sameScaleIsAppliedOnce();
    void callbacksRunOncePerChange();
    void callbackIsReplacedAndForgottenWithItsObject();
    void emptyCallbackIsAnError();
    void sheetsOfTheApplicationComeFirst();
    void sheetsArePreprocessedAndAppended();
    void bareDeclarationsBecomeARule();
    void missingAndEmptySheetsAreSkipped();
    void lateChildrenAreTakenIn();
    void unseenChildrenKeepTheirSizes();
    void childrenBeforeTheFirstShowWait();
    void visibleWindowFollowsTheScreen();
    void hiddenWindowWaitsForItsShow();
    void showsDoNotPileUpConnections();
    void screenChangeInsideAScreenChangeIsDropped();
    void widgetScaleOfNullIsOne();

private:
    void setSheets(const QVariant &paths) { qApp->setProperty(QssPaths, paths); }
};

void Tst_UIStyler::initTestCase() {
    UIStyler::install(qApp);
}

void Tst_UIStyler::cleanup() {
    setSheets(QVariant());
    qApp->setProperty(ColorsIniPath, QVariant());
}

void Tst_UIStyler::installsOneFilter() {
    const auto stylers = [] { return qApp->findChildren<UIStyler *>().size(); };
    QCOMPARE(stylers(), 1);
    QVERIFY(qApp->property(IsInstalledEventFilter).toBool());
    UIStyler::install(qApp);
    QCOMPARE(stylers(), 1);
    UIStyler::install(nullptr);
}

void Tst_UIStyler::sizesFollowTheScale_data() {
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("font");
    QTest::addColumn<QSize>("buttonIcon");
    QTest::addColumn<QSize>("comboIcon");
    QTest::addColumn<int>("maximumWidth");
    QTest::addColumn<int>("minimumHeight");
    QTest::addColumn<int>("spacing");
    QTest::addColumn<QMargins>("margins");
    QTest::newRow("96 DPI") << 1.0 << 9 << QSize(15, 17) << QSize(3, 5) << 101 << 11 << 5
                            << QMargins(1, 3, 5, 7);
    QTest::newRow("120 DPI") << 1.25 << 11 << QSize(18, 21) << QSize(3, 6) << 126 << 13 << 6
                             << QMargins(1, 3, 6, 8);
    QTest::newRow("144 DPI") << 1.5 << 13 << QSize(22, 25) << QSize(4, 7) << 151 << 16 << 7
                             << QMargins(1, 4, 7, 10);
    QTest::newRow("192 DPI") << 2.0 << 18 << QSize(30, 34) << QSize(6, 10) << 202 << 22 << 10
                             << QMargins(2, 6, 10, 14);
}

void Tst_UIStyler::sizesFollowTheScale() {
    QFETCH(double, scale);
    Window w;
    w.window.ensurePolished();
    UIStyler::applyScale(&w.window, scale);
    QTEST(w.label->font().pixelSize(), "font");
    QCOMPARE(w.pixelLabel->font().pixelSize(), 13);
    QTEST(w.button->iconSize(), "buttonIcon");
    QTEST(w.combo->iconSize(), "comboIcon");
    QTEST(w.label->maximumWidth(), "maximumWidth");
    QTEST(w.label->minimumHeight(), "minimumHeight");
    QTEST(w.layout->spacing(), "spacing");
    QTEST(w.layout->contentsMargins(), "margins");
    QCOMPARE(w.window.property(Scale).toDouble(), scale);
    QVERIFY(!w.label->property(Scale).isValid());
    QVERIFY(w.window.property(IsWindowLoaded).toBool());
}

void Tst_UIStyler::sizesComeFromTheDesignAgainAndAgain() {
    Window w;
    w.window.ensurePolished();
    for (double scale : {1.25, 1.5, 2.0, 1.25, 1.0})
        UIStyler::applyScale(&w.window, scale);
    QCOMPARE(w.label->font().pixelSize(), 9);
    QCOMPARE(w.button->iconSize(), QSize(15, 17));
    QCOMPARE(w.label->maximumWidth(), 101);
    QCOMPARE(w.layout->contentsMargins(), QMargins(1, 3, 5, 7));
}

void Tst_UIStyler::unlimitedMaximumStaysUnlimited() {
    Window w;
    w.window.ensurePolished();
    UIStyler::applyScale(&w.window, 1.25);
    QCOMPARE(w.button->maximumWidth(), Unlimited);
    QCOMPARE(w.label->maximumHeight(), Unlimited);
    UIStyler::applyScale(&w.window, 1.0);
    QCOMPARE(w.button->maximumWidth(), Unlimited);
}

void Tst_UIStyler::noMinimumStaysNone() {
    Window w;
    w.window.ensurePolished();
    QVERIFY(!w.label->property(InitialMinWidth).isValid());
    QCOMPARE(w.label->property(InitialMinHeight).toInt(), 11);
    UIStyler::applyScale(&w.window, 2.0);
    QCOMPARE(w.label->minimumWidth(), 0);
}

void Tst_UIStyler::sizesOfUnknownWidgetsAreRememberedOnce() {
    Window w;
    w.window.ensurePolished();
    w.label->setMaximumWidth(50);
    QEvent again(QEvent::Polish);
    QCoreApplication::sendEvent(&w.window, &again);
    QCOMPARE(w.label->property(InitialMaxWidth).toInt(), 101);
    QCOMPARE(w.layout->property(InitialLayoutSpace).toInt(), 5);
    QCOMPARE(w.pixelLabel->property(InitialFontPt).toDouble(), -1.0);
}

void Tst_UIStyler::exemptSubtreesKeepTheirSizes() {
    Window w;
    auto *panel = new QWidget(&w.window);
    auto *inside = new QPushButton(panel);
    inside->setIconSize(QSize(10, 10));
    inside->setMaximumWidth(40);
    UIStyler::setDisadjust(panel, true);
    panel->setMaximumWidth(60);
    w.window.ensurePolished();
    UIStyler::applyScale(&w.window, 2.0);
    QCOMPARE(panel->maximumWidth(), 60);
    QCOMPARE(inside->maximumWidth(), 40);
    QCOMPARE(inside->iconSize(), QSize(10, 10));
    QCOMPARE(w.button->iconSize(), QSize(30, 34));
}

void Tst_UIStyler::walkBelowAnExemptWidgetDoesNothing() {
    Window w;
    auto *panel = new QWidget(&w.window);
    auto *middle = new QWidget(panel);
    auto *inside = new QPushButton(middle);
    inside->setIconSize(QSize(10, 10));
    UIStyler::setDisadjust(panel, true);
    w.window.ensurePolished();
    UIStyler::applyScale(inside, 2.0);
    QCOMPARE(inside->iconSize(), QSize(10, 10));
}

void Tst_UIStyler::windowsBelowAWindowAreLeftOut() {
    Window w;
    QDialog dialog(&w.window);
    auto *inside = new QPushButton(&dialog);
    inside->setIconSize(QSize(10, 10));
    w.window.ensurePolished();
    UIStyler::applyScale(&w.window, 2.0);
    QCOMPARE(inside->iconSize(), QSize(10, 10));
    UIStyler::applyScale(&dialog, 1.5);
    QCOMPARE(inside->iconSize(), QSize(15, 15));
    QCOMPARE(w.button->iconSize(), QSize(30, 34));
}

void Tst_UIStyler::sameScaleIsAppliedOnce() {
    Window w;
    w.window.ensurePolished();
    UIStyler::applyScale(&w.window, 1.5);
    w.button->setIconSize(QSize(1, 1));
    UIStyler::applyScale(&w.window, 1.5);
    QCOMPARE(w.button->iconSize(), QSize(1, 1));
    UIStyler::applyScale(nullptr, 1.5);
}

void Tst_UIStyler::callbacksRunOncePerChange() {
    Window w;
    QVector<double> ofWidget;
    QVector<double> ofLayout;
    QVector<double> ofDialog;
    QDialog dialog(&w.window);
    UIStyler::setScaleCallback(w.label, [&](const double &scale) { ofWidget.append(scale); });
    UIStyler::setScaleCallback(w.layout, [&](const double &scale) { ofLayout.append(scale); });
    UIStyler::setScaleCallback(&dialog, [&](const double &scale) { ofDialog.append(scale); });
    UIStyler::setScaleCallback(nullptr, [](const double &) {});
    w.window.ensurePolished();
    UIStyler::applyScale(&w.window, 1.5);
    UIStyler::applyScale(&w.window, 1.5);
    UIStyler::applyScale(&w.window, 2.0);
    QCOMPARE(ofWidget, (QVector<double>{1.5, 2.0}));
    QCOMPARE(ofLayout, (QVector<double>{1.5, 2.0}));
    QVERIFY(ofDialog.isEmpty());
}

void Tst_UIStyler::callbackIsReplacedAndForgottenWithItsObject() {
    Window w;
    int first = 0;
    int second = 0;
    UIStyler::setScaleCallback(w.label, [&](const double &) { ++first; });
    UIStyler::setScaleCallback(w.label, [&](const double &) { ++second; });
    w.window.ensurePolished();
    UIStyler::applyScale(&w.window, 1.5);
    QCOMPARE(first, 0);
    QCOMPARE(second, 1);

    // A new object at the address of a dead one must not be called for it.
    int calls = 0;
    alignas(QLabel) unsigned char place[sizeof(QLabel)];
    auto *label = new (place) QLabel();
    UIStyler::setScaleCallback(label, [&](const double &) { ++calls; });
    label->~QLabel();
    label = new (place) QLabel();
    UIStyler::applyScale(label, 1.5);
    label->~QLabel();
    QCOMPARE(calls, 0);
}

void Tst_UIStyler::emptyCallbackIsAnError() {
    Window w;
    UIStyler::setScaleCallback(w.label, UIStyler::ScaleCallback());
    w.window.ensurePolished();
    QVERIFY_EXCEPTION_THROWN(UIStyler::applyScale(&w.window, 1.5), std::bad_function_call);
}

void Tst_UIStyler::sheetsOfTheApplicationComeFirst() {
    QTemporaryDir folder;
    setSheets(QStringList{writeFile(folder, "app.qss", "/* app */")});
    QWidget outer;
    outer.setProperty(QssPaths, QStringList{writeFile(folder, "outer.qss", "/* outer */")});
    QDialog middle(&outer);
    middle.setProperty(QssPaths, QStringList{writeFile(folder, "middle.qss", "/* middle */")});
    QDialog inner(&middle);
    auto *child = new QWidget(&inner);
    child->setProperty(QssPaths, QStringList{writeFile(folder, "child.qss", "/* child */")});
    inner.setProperty(QssPaths, QStringList{writeFile(folder, "inner.qss", "/* inner */")});
    inner.ensurePolished();
    UIStyler::applyScale(&inner, 1.0);
    QCOMPARE(inner.styleSheet(), QStringLiteral("/* app *//* outer *//* middle *//* inner */"));
    QCOMPARE(child->styleSheet(), QStringLiteral("/* child */"));
    QCOMPARE(middle.styleSheet(), QString());
}

void Tst_UIStyler::sheetsArePreprocessedAndAppended() {
    QTemporaryDir folder;
    UIStyler::setColorsIniPath(qApp, writeFile(folder, "colors.ini", "ink=\"rgba(1, 2, 3, 1)\" ; text\n"));
    UIStyler::setStyleSheetPaths(
        qApp, {writeFile(folder, "app.qss", "QLabel { color: var(ink); padding: scale(5)px; }\n")});
    Window w;
    w.window.setStyleSheet(QStringLiteral("/* own */"));
    w.window.ensurePolished();
    UIStyler::applyScale(&w.window, 1.0);
    const QString first = QStringLiteral("/* own */QLabel { color: rgba(1, 2, 3, 1); padding: 5px; }\n");
    QCOMPARE(w.window.styleSheet(), first);
    UIStyler::applyScale(&w.window, 1.5);
    const QString second = first + QStringLiteral("QLabel { color: rgba(1, 2, 3, 1); padding: 7px; }\n");
    QCOMPARE(w.window.styleSheet(), second);
    UIStyler::applyScale(&w.window, 1.0);
    QCOMPARE(w.window.styleSheet(),
             second + QStringLiteral("QLabel { color: rgba(1, 2, 3, 1); padding: 5px; }\n"));
}

void Tst_UIStyler::bareDeclarationsBecomeARule() {
    QTemporaryDir folder;
    setSheets(QStringList{writeFile(folder, "app.qss", "QLabel { color: red; }")});
    Window w;
    w.window.setStyleSheet(QStringLiteral("background: transparent;"));
    w.window.ensurePolished();
    UIStyler::applyScale(&w.window, 1.0);
    // Followed by rules as they stand, they would make the whole sheet unreadable.
    QCOMPARE(w.window.styleSheet(), QStringLiteral("* {background: transparent;}QLabel { color: red; }"));
}

void Tst_UIStyler::missingAndEmptySheetsAreSkipped() {
    QTemporaryDir folder;
    setSheets(QStringList{folder.filePath(QStringLiteral("none.qss")), writeFile(folder, "empty.qss", ""),
                          writeFile(folder, "last.qss", "/* last */")});
    Window w;
    w.window.ensurePolished();
    UIStyler::applyScale(&w.window, 1.0);
    QCOMPARE(w.window.styleSheet(), QStringLiteral("/* last */"));
    UIStyler::setStyleSheetPaths(qApp, {});
    QCOMPARE(qApp->property(QssPaths).toStringList().size(), 3);
}

void Tst_UIStyler::unseenChildrenKeepTheirSizes() {
    QWidget window;
    DesignedSizes::save(&window);
    // Made after the sizes were noted, as the toolkit's file dialog does with its buttons.
    auto *unseen = new QPushButton(&window);
    unseen->setMaximumWidth(30);
    DesignedSizes::adjust(&window, 2.0);
    QCOMPARE(unseen->maximumWidth(), 60);
    QCOMPARE(unseen->maximumHeight(), QWIDGETSIZE_MAX);
}

void Tst_UIStyler::lateChildrenAreTakenIn() {
    Window w;
    w.window.show();
    QVERIFY(w.window.property(IsWindowLoaded).toBool());
    auto *late = new QPushButton(&w.window);
    late->setIconSize(QSize(20, 10));
    late->setMaximumWidth(30);
    late->show();
    QCoreApplication::sendPostedEvents();
    QCOMPARE(late->property(Scale).toDouble(), screenScale());
    QCOMPARE(late->iconSize(), QSize(int(20 * screenScale()), int(10 * screenScale())));
    QCOMPARE(late->property(InitialMaxWidth).toInt(), 30);
    QCOMPARE(late->maximumWidth(), int(30 * screenScale()));
}

void Tst_UIStyler::childrenBeforeTheFirstShowWait() {
    Window w;
    w.window.ensurePolished();
    QCoreApplication::sendPostedEvents();
    QVERIFY(!w.window.property(IsWindowLoaded).toBool());
    QCOMPARE(w.label->font().pointSizeF(), 9.0);
    w.window.show();
    QVERIFY(w.label->property(IsSavedInitialSize).toBool());
    QVERIFY(!w.label->property(Scale).isValid());
    QCOMPARE(w.window.property(Scale).toDouble(), screenScale());
}

void Tst_UIStyler::visibleWindowFollowsTheScreen() {
    Window w;
    w.window.resize(300, 200);
    w.window.show();
    emitDpi(144);
    QCOMPARE(w.window.property(Scale).toDouble(), 1.5);
    QCOMPARE(w.button->iconSize(), QSize(22, 25));
    QCOMPARE(w.window.property(WindowPrevWidth).toInt(), 300);
    emitDpi(192);
    QCOMPARE(w.button->iconSize(), QSize(30, 34));
}

void Tst_UIStyler::hiddenWindowWaitsForItsShow() {
    Window w;
    w.window.show();
    const QSize asShown = w.button->iconSize();
    w.window.hide();
    emitDpi(288);
    QCOMPARE(w.window.property(Scale).toDouble(), screenScale());
    // As if it had been hidden on a screen with other dots.
    UIStyler::applyScale(&w.window, 3.0);
    w.window.show();
    QCOMPARE(w.window.property(Scale).toDouble(), screenScale());
    QCOMPARE(w.button->iconSize(), asShown);
}

void Tst_UIStyler::showsDoNotPileUpConnections() {
    Window w;
    for (int i = 0; i < 5; ++i) {
        w.window.show();
        w.window.hide();
    }
    w.window.show();
    QVector<double> seen;
    UIStyler::setScaleCallback(w.label, [&](const double &scale) {
        seen.append(scale);
        // Were there a second connection, it would apply this scale again.
        w.window.setProperty(Scale, 0.0);
    });
    emitDpi(144);
    QCOMPARE(seen, (QVector<double>{1.5}));
    emit w.window.windowHandle()->screenChanged(QGuiApplication::primaryScreen());
    QCOMPARE(seen, (QVector<double>{1.5, screenScale()}));
    emitDpi(192);
    QCOMPARE(seen, (QVector<double>{1.5, screenScale(), 2.0}));
}

void Tst_UIStyler::screenChangeInsideAScreenChangeIsDropped() {
    Window w;
    w.window.show();
    QScreen *screen = QGuiApplication::primaryScreen();
    w.window.setProperty(Scale, 3.0);
    int calls = 0;
    UIStyler::setScaleCallback(w.label, [&](const double &) {
        ++calls;
        QVERIFY(w.window.property(DisableScreenChanged).toBool());
        w.window.setProperty(Scale, 3.0);
        emit w.window.windowHandle()->screenChanged(screen);
    });
    emit w.window.windowHandle()->screenChanged(screen);
    QCOMPARE(calls, 1);
    QVERIFY(!w.window.property(DisableScreenChanged).toBool());
    emit w.window.windowHandle()->screenChanged(nullptr);
    QCOMPARE(calls, 1);
}

void Tst_UIStyler::widgetScaleOfNullIsOne() {
    QCOMPARE(widgetScale(nullptr), 1.0);
    QWidget widget;
    QCOMPARE(widgetScale(&widget), screenScale());
}

QTEST_MAIN(Tst_UIStyler)
#include "tst_uistyler.moc"
