#include "app/toolbar.h"
#include "app/windowtest.h"
#include "ui/builtinstyle.h"

#include <QLabel>
#include <QMenu>

/// The toolbar under the real style sheet, at the scale of this run: sizes are those of the sheet and nothing
/// is cut off. With TINDRA_TEST_PICTURES set, pictures of it are left in that folder.
class Tst_ToolbarLook : public WindowTest {
    Q_OBJECT
private slots:
    void initTestCase();
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

    void sizesOfTheSheet();
    void labelsAndPicturesFit();
    void everyPictureIsThere_data();
    void everyPictureIsThere();
    void statesLookDifferent();
    void arrowsFadeWithTheirButtons_data();
    void arrowsFadeWithTheirButtons();
    void smallestWindowShowsTheMenu();
    void textsOfTheMenusStandInOneColumn();
    void noButtonIsCutOffAtAnyWidth();

private:
    static double scale() { return QGuiApplication::primaryScreen()->logicalDotsPerInchX() / 96.0; }
    static int scaled(int size) { return static_cast<int>(size * scale()); }
    Toolbar *toolbar() const { return m_window->findChild<Toolbar *>(); }
    QImage look(QWidget *widget) const;
    /// How dark the darkest pixel is in the strip of the drop-down arrow.
    int inkOfArrow(ToolButton *button) const;
    void show(int width);
    /// Where the text of that menu's last entry begins, in the menu.
    static int textBegin(QMenu *menu);
    static void picture(QWidget *widget, const QString &name);
};

void Tst_ToolbarLook::initTestCase() {
    installBuiltInStyle(qApp);
}

QImage Tst_ToolbarLook::look(QWidget *widget) const {
    return toolbar()->grab(widget->geometry()).toImage();
}

void Tst_ToolbarLook::show(int width) {
    addCapture("a"_qs);
    m_window->resize(width, scaled(400));
    QCoreApplication::processEvents();
    picture(m_window.get(), "toolbar-%1"_qs.arg(width));
}

void Tst_ToolbarLook::picture(QWidget *widget, const QString &name) {
    const QString folder = qEnvironmentVariable("TINDRA_TEST_PICTURES");
    if (!folder.isEmpty())
        widget->grab().save("%1/%2-%3.png"_qs.arg(folder, name).arg(scale()));
}

void Tst_ToolbarLook::sizesOfTheSheet() {
    show(scaled(1200));
    QCOMPARE(m_window->minimumSize(), QSize(scaled(910), scaled(300)));
    QCOMPARE(toolbar()->height(), scaled(79) + scaled(1));
    toolbar()->layOut(10);
    QCoreApplication::processEvents();
    QCOMPARE(toolbar()->height(), scaled(99) + scaled(1));
    toolbar()->layOut(0);
    QCoreApplication::processEvents();
    QCOMPARE(toolbar()->height(), scaled(79) + scaled(1));
}

void Tst_ToolbarLook::labelsAndPicturesFit() {
    show(scaled(1300));
    QRect before;
    const auto buttons = toolbar()->findChildren<ToolButton *>();
    for (ToolButton *button : buttons) {
        QVERIFY2(button->isVisible(), qPrintable(button->objectName()));
        QVERIFY(toolbar()->rect().contains(button->geometry()));
        QVERIFY(!before.intersects(button->geometry()));
        before = button->geometry();
        QVERIFY2(button->fontMetrics().horizontalAdvance(button->text()) <= button->width() - 2 * scaled(3),
                 qPrintable(button->objectName()));
        const auto *image = button->findChild<QLabel *>("image_"_qs);
        QCOMPARE(image->width(), scaled(28));
        QVERIFY(button->rect().contains(image->geometry()));
    }
}

void Tst_ToolbarLook::everyPictureIsThere_data() {
    QTest::addColumn<QString>("name");
    for (const char *name : {"capture", "save", "copy", "undo", "redo", "reset", "aitools", "figure", "pen",
                             "highlighter", "line", "text", "crop", "mosaic", "eraser", "help", "menu"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void Tst_ToolbarLook::everyPictureIsThere() {
    QFETCH(QString, name);
    QWidget window;
    ToolButton button(&window);
    button.setObjectName(name);
    window.show();
    button.resize(button.sizeHint());
    const QImage enabled = button.grab().toImage();
    button.setEnabled(false);
    const QImage disabled = button.grab().toImage();
    button.setObjectName("nameless"_qs);
    button.setEnabled(true);
    auto *image = button.findChild<QLabel *>("image_"_qs);
    image->style()->unpolish(image);
    image->style()->polish(image);
    const QImage none = button.grab().toImage();
    QVERIFY(enabled != none);
    QVERIFY(disabled != none);
    QVERIFY(disabled != enabled);
}

void Tst_ToolbarLook::statesLookDifferent() {
    show(scaled(1200));
    m_window->onChangeShape(Editor::Eraser);
    ToolButton *pen = button("pen");
    const QImage plain = look(pen);
    m_window->onChangeShape(Editor::Pen);
    const QImage checked = look(pen);
    emit m_window->emptyEditor(true);
    const QImage disabled = look(pen);
    QVERIFY(checked != plain);
    QVERIFY(disabled != checked);
    QVERIFY(disabled != plain);
}

int Tst_ToolbarLook::inkOfArrow(ToolButton *button) const {
    const QImage image = look(button);
    int darkest = 255;
    // Below the text and above the button's frame.
    for (int y = image.height() - scaled(13); y < image.height() - scaled(3); ++y) {
        for (int x = scaled(6); x < image.width() - scaled(6); ++x)
            darkest = qMin(darkest, qGray(image.pixel(x, y)));
    }
    return darkest;
}

void Tst_ToolbarLook::arrowsFadeWithTheirButtons_data() {
    QTest::addColumn<QString>("name");
    for (const char *name : {"figure", "pen", "highlighter", "mosaic", "line"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void Tst_ToolbarLook::arrowsFadeWithTheirButtons() {
    QFETCH(QString, name);
    show(scaled(1300));
    ToolButton *tool = button(qPrintable(name));
    // #222222, and thinner than a pixel here and there.
    QVERIFY2(inkOfArrow(tool) < 110, qPrintable(QString::number(inkOfArrow(tool))));
    emit m_window->emptyEditor(true);
    QVERIFY(!tool->isEnabled());
    // 35 % of #222222 on white are 178.
    QVERIFY2(inkOfArrow(tool) > 150, qPrintable(QString::number(inkOfArrow(tool))));
    QVERIFY(inkOfArrow(tool) < 220);
}

void Tst_ToolbarLook::smallestWindowShowsTheMenu() {
    show(scaled(910));
    QVERIFY(button("capture")->isVisible() && button("pen")->isVisible() && button("menu")->isVisible());
    QVERIFY(toolbar()->rect().contains(button("menu")->geometry()));
}

int Tst_ToolbarLook::textBegin(QMenu *menu) {
    menu->popup(QPoint());
    const QRect entry = menu->actionGeometry(menu->actions().last());
    const QImage look = menu->grab(entry).toImage();
    menu->close();
    for (int x = 0; x < look.width(); ++x) {
        for (int y = 0; y < look.height(); ++y) {
            if (qGray(look.pixel(x, y)) < 128)
                return entry.x() + x;
        }
    }
    return -1;
}

void Tst_ToolbarLook::textsOfTheMenusStandInOneColumn() {
    // Beside 40 there are the white of a letter's own box and what truncating loses.
    const auto isInColumn = [](int begin) { return qAbs(begin - scaled(40)) <= scaled(2); };
    QMenu *menu = button("menu")->menu();
    // The copies come and go more than once.
    for (int times = 0; times < 2; ++times) {
        show(scaled(1300));
        QVERIFY(button("eraser")->isVisible());
        QVERIFY2(isInColumn(textBegin(menu)), qPrintable(QString::number(textBegin(menu))));
        show(scaled(910));
        QVERIFY(!button("eraser")->isVisible());
        QVERIFY2(isInColumn(textBegin(menu)), qPrintable(QString::number(textBegin(menu))));
    }
    QVERIFY(isInColumn(textBegin(button("help")->menu())));
}

void Tst_ToolbarLook::noButtonIsCutOffAtAnyWidth() {
    show(scaled(1200));
    // Narrower than the sheet allows, where every button that may leave has left.
    m_window->setMinimumWidth(0);
    const auto buttons = toolbar()->findChildren<ToolButton *>();
    for (int width = scaled(1200); width >= scaled(560); width -= scaled(40)) {
        m_window->resize(width, scaled(400));
        QCoreApplication::processEvents();
        int end = 0;
        for (ToolButton *button : buttons) {
            if (!button->isVisible())
                continue;
            QVERIFY(button->x() >= end);
            QVERIFY(button->width() >= button->sizeHint().width());
            end = button->geometry().right() + 1;
        }
        QVERIFY(end <= toolbar()->width());
    }
    QMenu *menu = button("menu")->menu();
    menu->popup(m_window->mapToGlobal(QPoint(0, toolbar()->height())));
    for (QAction *action : menu->actions()) {
        if (action->isVisible() && !action->isSeparator())
            QVERIFY(menu->actionGeometry(action).height() >= scaled(36));
    }
    picture(m_window.get(), "toolbar-narrow"_qs);
    picture(menu, "toolbar-overflow"_qs);
    menu->close();
    button("help")->menu()->popup(QPoint());
    picture(button("help")->menu(), "toolbar-help"_qs);
    button("help")->menu()->close();
}

QTEST_MAIN(Tst_ToolbarLook)
#include "tst_toolbarlook.moc"
