#include "popups/basiccolors.h"
#include "popups/colorpicker.h"
#include "popups/colorselectbutton.h"
#include "popups/colorselectpopup.h"
#include "popups/combobox.h"
#include "popups/croppopup.h"
#include "popups/figurepopup.h"
#include "popups/itembutton.h"
#include "popups/linepopup.h"
#include "popups/mosaicpopup.h"
#include "popups/textpopup.h"
#include "popups/toolbutton.h"
#include "preferences/tindrapreferences.h"
#include "ui/builtinstyle.h"
#include "ui/menu.h"
#include "ui/rangedspinbox.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QMainWindow>
#include <QProcess>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <QVBoxLayout>

#include <functional>

constexpr int Patience = 30000; // milliseconds

/// The panels in real windows of a real window manager, driven by a mouse and a keyboard outside the program.
class Tst_ToolPopups : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void swatchFromTheToolbar();
    void pickerByKeyboard();
    void figureByKeyboard();
    void linesAndMosaicByMouse();
    void panelAtTheEdgeStaysOnTheScreen();
    void outsideClickCloses();
    void buttonOfAPanelThatClosesIsNoLongerLit_data();
    void buttonOfAPanelThatClosesIsNoLongerLit();
    void textPanelLeavesTheKeyboardToTheText();
    void sizeIsTypedIntoTheTextPanel();
    void cropByKeyboard();

private:
    static void outside(const QStringList &arguments);
    static void click(const QWidget *widget, QPoint position = QPoint(-1, -1));
    static void keys(const QStringList &names);
    /// Puts the floating panel where nothing else is, once the window manager has placed it.
    static void settle(QWidget *popup);
    /// Puts the panel behind a tool button, opens it by a click, and runs the script while it is open.
    void drive(Popup *popup, const std::function<void()> &script);

    QScopedPointer<QMainWindow> m_window;
    QTextEdit *m_text = nullptr;
    QWidget *m_bar = nullptr;
};

void Tst_ToolPopups::outside(const QStringList &arguments) {
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    QVERIFY(process.waitForStarted());
    // The program has to answer meanwhile.
    QTRY_COMPARE(process.state(), QProcess::NotRunning);
    QCOMPARE(process.exitCode(), 0);
}

void Tst_ToolPopups::click(const QWidget *widget, QPoint position) {
    const QPoint target = widget->mapToGlobal(position.x() < 0 ? widget->rect().center() : position);
    outside({QStringLiteral("mousemove"), QString::number(target.x()), QString::number(target.y()),
             QStringLiteral("click"), QStringLiteral("1")});
}

void Tst_ToolPopups::keys(const QStringList &names) {
    outside(QStringList{QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("30")} + names);
}

void Tst_ToolPopups::settle(QWidget *popup) {
    QTest::qWait(200);
    popup->move(300, 700);
    QTRY_COMPARE(popup->mapToGlobal(QPoint()), QPoint(300, 700));
    QTest::qWait(100);
}

void Tst_ToolPopups::initTestCase() {
    installBuiltInStyle(qApp);
}

void Tst_ToolPopups::init() {
    TindraPreferences::resetForTesting();
    TindraPreferences::instance()->Init();
    m_window.reset(new QMainWindow);
    auto *central = new QWidget;
    auto *layout = new QVBoxLayout(central);
    m_bar = new QWidget;
    new QHBoxLayout(m_bar);
    m_text = new QTextEdit;
    layout->addWidget(m_bar);
    layout->addWidget(m_text);
    m_window->setCentralWidget(central);
    m_window->setGeometry(200, 100, 700, 500);
}

void Tst_ToolPopups::cleanup() {
    while (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
    m_window.reset();
}

void Tst_ToolPopups::drive(Popup *popup, const std::function<void()> &script) {
    auto *button = new ToolButton(m_bar);
    button->setObjectName(QStringLiteral("figure"));
    button->setShowMenuButton(true);
    button->setMenu(popup->toMenu(button));
    m_bar->layout()->addWidget(button);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.data()));
    // The press runs the menu in an event loop of its own, so the script runs from a timer inside it.
    bool ran = false;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        if (ran || !popup->isVisible())
            return;
        ran = true;
        timer.stop();
        QTest::qWait(50);
        script();
        while (QWidget *open = QApplication::activePopupWidget())
            open->close();
    });
    timer.start(20);
    QTest::qWait(100); // until the button has its place
    click(button->findChild<QPushButton *>(QStringLiteral("menuBtn_")));
    QTRY_VERIFY(ran);
}

void Tst_ToolPopups::swatchFromTheToolbar() {
    auto *popup = new ColorSelectPopup;
    popup->setBasicColors(BasicColors::pen());
    QSignalSpy selected(popup, &ColorSelectPopup::colorSelected);
    bool closed = false;
    drive(popup, [&] {
        click(popup, QPoint(3, 3)); // a gap
        QVERIFY(popup->isVisible());
        click(popup->findChildren<ColorSelectButton *>()[2]);
        QTRY_COMPARE(selected.count(), 1);
        closed = !popup->isVisible();
    });
    QCOMPARE(selected[0][0].value<QColor>(), QColor(255, 192, 0));
    QVERIFY(closed);
}

void Tst_ToolPopups::pickerByKeyboard() {
    auto *popup = new ColorSelectPopup;
    popup->setBasicColors(BasicColors::pen());
    popup->setCustomColorKey(TindraPreferences::PenCustomColorKey());
    popup->selectColor(Qt::black);
    QSignalSpy selected(popup, &ColorSelectPopup::colorSelected);
    auto *picker = popup->findChild<ColorPicker *>();
    drive(popup, [&] {
        QTimer::singleShot(600, this, [&] {
            QVERIFY(picker->isVisible());
            auto *hex = picker->findChild<QLineEdit *>();
            QVERIFY(hex->hasFocus());
            keys({QStringLiteral("ctrl+a"), QStringLiteral("numbersign"), QStringLiteral("1"),
                  QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4"), QStringLiteral("5")});
            QTRY_COMPARE(hex->text(), QStringLiteral("#12345"));
            keys({QStringLiteral("Return")});
            QVERIFY(picker->isVisible()); // five digits are no colour
            keys({QStringLiteral("6"), QStringLiteral("Return")});
        });
        keys({QStringLiteral("Down"), QStringLiteral("Down"), QStringLiteral("space")});
        QTRY_COMPARE(selected.count(), 1);
        QTRY_VERIFY(!picker->isVisible());
    });
    QCOMPARE(selected[0][0].value<QColor>().name(), QStringLiteral("#123456"));
}

void Tst_ToolPopups::figureByKeyboard() {
    auto *popup = new FigurePopup;
    QVector<int> chosen;
    connect(popup, &FigurePopup::figureSelected, this, [&](ShapeTypes::ShapeType shape, Qt::PenStyle line) {
        chosen += {shape, line};
    });
    drive(popup, [&] {
        keys({QStringLiteral("Right"), QStringLiteral("Right"), QStringLiteral("Down")});
        QVERIFY(chosen.isEmpty());
        keys({QStringLiteral("space")});
        QTRY_COMPARE(chosen, (QVector<int>{7, 3}));
        QTRY_VERIFY(!popup->isVisible());
    });
}

void Tst_ToolPopups::linesAndMosaicByMouse() {
    auto *lines = new LinePopup;
    QSignalSpy selected(lines, &LinePopup::lineSelected);
    drive(lines, [&] {
        click(lines->findChildren<QPushButton *>()[4]);
        QTRY_COMPARE(selected.count(), 1);
    });
    QCOMPARE(selected[0][0].toInt(), 12);
    auto *mosaic = new MosaicPopup;
    QVector<int> strengths;
    connect(mosaic, &MosaicPopup::mosaicSelected, this,
            [&](MosaicPopup::Strength strength) { strengths += strength; });
    drive(mosaic, [&] {
        click(mosaic->findChild<ItemButton *>(QStringLiteral("strong_")));
        QTRY_COMPARE(strengths, QVector<int>{9});
    });
}

void Tst_ToolPopups::panelAtTheEdgeStaysOnTheScreen() {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    m_window->setGeometry(screen.right() - 420, screen.bottom() - 260, 400, 240);
    auto *popup = new FigurePopup;
    drive(popup, [&] {
        QVERIFY(screen.contains(popup->window()->frameGeometry()));
        auto *page = popup->findChildren<ColorSelectPopup *>(QString(), Qt::FindDirectChildrenOnly).at(1);
        auto *picker = page->findChild<ColorPicker *>();
        // Comes in a loop of its own, in which the click is still under way.
        bool wasShown = false;
        QTimer watch;
        watch.callOnTimeout([&, picker] {
            if (!picker->isVisible())
                return;
            watch.stop();
            wasShown = true;
            QVERIFY(screen.contains(picker->window()->frameGeometry()));
            keys({QStringLiteral("Escape")});
        });
        watch.start(100);
        click(page->findChild<QPushButton *>(QStringLiteral("picker_")));
        QTRY_VERIFY_WITH_TIMEOUT(wasShown && !picker->isVisible(), Patience);
        QVERIFY(popup->isVisible());
    });
}

void Tst_ToolPopups::outsideClickCloses() {
    auto *popup = new LinePopup;
    QSignalSpy closed(popup, &Popup::closed);
    QSignalSpy selected(popup, &LinePopup::lineSelected);
    drive(popup, [&] {
        click(m_text, QPoint(m_text->width() - 20, m_text->height() - 20));
        QTRY_VERIFY(!popup->isVisible());
    });
    QCOMPARE(closed.count(), 1);
    QCOMPARE(selected.count(), 0);
}

void Tst_ToolPopups::buttonOfAPanelThatClosesIsNoLongerLit_data() {
    QTest::addColumn<bool>("chosen");
    QTest::newRow("by a click on an entry") << true;
    QTest::newRow("by a click elsewhere") << false;
}

void Tst_ToolPopups::buttonOfAPanelThatClosesIsNoLongerLit() {
    QFETCH(bool, chosen);
    auto *popup = new LinePopup;
    drive(popup, [&] {
        if (chosen)
            click(popup->findChildren<QPushButton *>()[4]);
        else
            click(m_text, QPoint(m_text->width() - 20, m_text->height() - 20));
        QTRY_VERIFY(!popup->isVisible());
    });
    click(m_text, QPoint(m_text->width() - 30, m_text->height() - 30));
    auto *button = m_bar->findChild<ToolButton *>();
    auto *arrow = button->findChild<QPushButton *>(QStringLiteral("menuBtn_"));
    QTRY_VERIFY(!button->underMouse());
    QVERIFY(!arrow->underMouse());
    QCOMPARE(arrow->property("hover").toInt(), 0);
    // The mouse that comes back lights it again.
    const QPoint place = button->mapToGlobal(QPoint(5, 5));
    outside({QStringLiteral("mousemove"), QString::number(place.x()), QString::number(place.y())});
    QTRY_VERIFY(button->underMouse());
    QTRY_COMPARE(arrow->property("hover").toInt(), 1);
}

void Tst_ToolPopups::textPanelLeavesTheKeyboardToTheText() {
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.data()));
    m_text->setFocus();
    TextPopup popup(m_window.data());
    QVector<int> formats;
    connect(&popup, &TextPopup::fontChanged, this,
            [&](int, const QColor &, int format) { formats += format; });
    popup.move(300, 700);
    popup.show();
    settle(&popup);
    keys({QStringLiteral("a")});
    QTRY_COMPARE(m_text->toPlainText(), QStringLiteral("a"));
    click(popup.findChild<QWidget *>(QStringLiteral("bold_")));
    QTRY_COMPARE(formats, QVector<int>{1});
    keys({QStringLiteral("b")});
    QTRY_COMPARE(m_text->toPlainText(), QStringLiteral("ab"));
    QVERIFY(m_window->isActiveWindow());
}

void Tst_ToolPopups::sizeIsTypedIntoTheTextPanel() {
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.data()));
    m_text->setFocus();
    TextPopup popup(m_window.data());
    QVector<int> sizes;
    connect(&popup, &TextPopup::fontChanged, this, [&](int size, const QColor &, int) {
        sizes += size;
        m_window->activateWindow(); // as an open text does after every change
    });
    popup.move(300, 700);
    popup.show();
    settle(&popup);
    auto *edit = popup.findChild<ComboBox *>()->lineEdit();
    click(edit);
    QTRY_VERIFY(popup.isActiveWindow());
    keys({QStringLiteral("ctrl+a")});
    keys({QStringLiteral("3")});
    QTRY_COMPARE(sizes.size(), 1);
    QTest::qWait(200);
    keys({QStringLiteral("3")});
    QTRY_COMPARE(sizes, (QVector<int>{3, 33}));
    QTest::qWait(200);
    QCOMPARE(m_text->toPlainText(), QString());
    keys({QStringLiteral("Return")});
    QTRY_VERIFY(m_window->isActiveWindow());
    keys({QStringLiteral("x")});
    QTRY_COMPARE(m_text->toPlainText(), QStringLiteral("x"));
    QCOMPARE(edit->text(), QStringLiteral("33"));
}

void Tst_ToolPopups::cropByKeyboard() {
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.data()));
    CropPopup popup(m_window.data());
    popup.setMaximumCropSize({800, 600});
    popup.setCropSize({170, 120});
    QList<QSize> sizes;
    QList<bool> ends;
    connect(&popup, &CropPopup::sizeChanged, this, [&](QSize &size) { sizes += size; });
    connect(&popup, &CropPopup::cropped, this, [&](bool accepted) { ends += accepted; });
    popup.move(300, 700);
    popup.show();
    settle(&popup);
    auto *width = popup.findChild<RangedSpinBox *>(QStringLiteral("widthSpinBox_"));
    click(width, QPoint(20, width->height() / 2));
    QTRY_VERIFY(popup.isActiveWindow());
    keys({QStringLiteral("ctrl+a"), QStringLiteral("2"), QStringLiteral("5"), QStringLiteral("0")});
    QTRY_COMPARE(sizes, QList<QSize>{QSize(250, 120)});
    // Over the height to "crop".
    keys({QStringLiteral("Tab"), QStringLiteral("Tab"), QStringLiteral("space")});
    QTRY_COMPARE(ends, QList<bool>{true});
    keys({QStringLiteral("Escape")});
    QTRY_COMPARE(ends, (QList<bool>{true, false}));
}

QTEST_MAIN(Tst_ToolPopups)
#include "tst_toolpopups.moc"
