#include "app/tindraeditor.h"
#include "canvas/editorview.h"
#include "canvas/items/drawingtextitem.h"
#include "history/historylistwidget.h"
#include "popups/colorselectbutton.h"
#include "popups/colorselectpopup.h"
#include "popups/combobox.h"
#include "popups/itembutton.h"
#include "popups/textpopup.h"
#include "popups/toolbutton.h"
#include "support/imagecompare.h"
#include "support/literals.h"
#include "support/session.h"
#include "ui/builtinstyle.h"

#include <QClipboard>
#include <QLineEdit>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextCursor>
#include <QTextDocument>
#include <QtTest>

#include <xcb/xcb.h>

namespace {

/// A window of another program, as far as the window manager can tell.
class ForeignWindow {
public:
    ForeignWindow() : m_connection(xcb_connect(nullptr, nullptr)) {
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        m_window = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, screen->root, 0, 0, 100, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        xcb_map_window(m_connection, m_window);
        xcb_flush(m_connection);
    }
    ~ForeignWindow() { xcb_disconnect(m_connection); }
    ForeignWindow(const ForeignWindow &) = delete;
    ForeignWindow &operator=(const ForeignWindow &) = delete;

private:
    xcb_connection_t *m_connection;
    xcb_window_t m_window;
};

const QPoint ClickedAt(200, 150);
constexpr QSize CaptureSize(700, 400);

} // namespace

/// Texts in the main window on a real display, with a window manager, and a mouse and a keyboard that are
/// outside the program.
class Tst_TextWindow : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void textOfChosenSizeIsSaved();
    void inputMethodComposes();
    void keysBelongToTheOpenText();
    void escapeThrowsTheTextAwayAndThenHidesTheWindow();
    void colorFromThePopup();
    void panelIsUsedByKeysAlone();
    void boxIsDraggedByItsBorder();
    void otherProgramAndBack();
    void closingWhileASizeIsTyped();
    void otherCaptureThrowsTheTextAway();

private:
    static void outside(const QStringList &arguments);
    static void click(const QPoint &global);
    static void click(const QWidget *widget) { click(widget->mapToGlobal(widget->rect().center())); }
    static void keys(const QStringList &names);
    static void write(const QString &text);
    void addCapture(const QString &name);
    /// Waits until the window manager has put the window in its place.
    void settle();
    /// With the tool of the toolbar.
    void openText(const QPoint &scenePos);
    QPoint onScreen(const QPointF &scenePos) const {
        return m_view->viewport()->mapToGlobal(m_view->mapFromScene(scenePos));
    }
    Editor *editor() const { return m_view->editor(); }
    DrawingTextItem *text() const { return dynamic_cast<DrawingTextItem *>(editor()->currentItem()); }
    QString written() const { return text() ? text()->toPlainText() : "no text is open"_qs; }
    TextPopup *popup() const { return m_view->findChild<TextPopup *>(); }
    bool isPopupInPlace() const {
        if (!text())
            return false;
        const QRect frame = popup()->geometry(); // it has no frame
        const QPoint box = onScreen(text()->scenePos());
        return popup()->isVisible() && frame.left() == box.x() && frame.bottom() + 1 + 10 == box.y();
    }

    const QTemporaryDir m_folder;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<TindraEditor> m_window;
    EditorView *m_view = nullptr;
};

void Tst_TextWindow::outside(const QStringList &arguments) {
    QProcess process;
    process.start("xdotool"_qs, arguments);
    QVERIFY(process.waitForStarted());
    // The program has to answer meanwhile.
    QTRY_COMPARE(process.state(), QProcess::NotRunning);
    QCOMPARE(process.exitCode(), 0);
}

void Tst_TextWindow::click(const QPoint &global) {
    outside({"mousemove"_qs, QString::number(global.x()), QString::number(global.y()), "click"_qs, "1"_qs});
}

void Tst_TextWindow::keys(const QStringList &names) {
    outside(QStringList{"key"_qs, "--delay"_qs, "30"_qs} + names);
}

void Tst_TextWindow::write(const QString &text) {
    outside({"type"_qs, "--delay"_qs, "30"_qs, text});
}

void Tst_TextWindow::initTestCase() {
    // Keys of which the toolkit's own input method makes a syllable; it reads them at the first key.
    QFile rules(m_folder.filePath("compose"_qs));
    QVERIFY(rules.open(QIODevice::WriteOnly));
    rules.write("<F9> <g> <a> : \"\xea\xb0\x80\"\n");
    rules.close();
    qputenv("XCOMPOSEFILE", QFile::encodeName(rules.fileName()));
    installBuiltInStyle(qApp);
    // Closing the window hides it, and that is not the end.
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

void Tst_TextWindow::init() {
    m_session = std::make_unique<Session>();
    Platform::setInstance(nullptr); // the real one
    m_window = std::make_unique<TindraEditor>();
    m_view = m_window->findChild<EditorView *>();
    addCapture("a"_qs);
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    settle();
}

void Tst_TextWindow::cleanup() {
    m_window.reset();
    m_session.reset();
}

void Tst_TextWindow::addCapture(const QString &name) {
    const QString path = Session::captureFile(name, CaptureSize, Qt::white);
    emit m_window->commandArrived("tindra /path \"%1\" /point 300 300"_qs.arg(path));
}

// Until then, a click can miss.
void Tst_TextWindow::settle() {
    QPoint place;
    const auto isAtRest = [&] {
        const QPoint before = place;
        QTest::qWait(150);
        place = m_window->mapToGlobal(QPoint());
        return place == before;
    };
    QTRY_VERIFY(isAtRest());
}

void Tst_TextWindow::openText(const QPoint &scenePos) {
    click(m_window->findChild<ToolButton *>("text"_qs));
    QTRY_COMPARE(editor()->shapeType(), Editor::Text);
    click(onScreen(scenePos));
    QTRY_COMPARE(editor()->shapeType(), Editor::TextEditing);
    QVERIFY(text());
    QTRY_VERIFY(isPopupInPlace());
}

void Tst_TextWindow::textOfChosenSizeIsSaved() {
    openText(ClickedAt);
    write("Hello"_qs);
    QTRY_COMPARE(written(), "Hello"_qs);
    QCOMPARE(QApplication::activeWindow(), m_window.get());

    // Into the size box, which takes the keyboard for as long as a size is typed.
    const QPointer<DrawingTextItem> item = text();
    QLineEdit *size = popup()->findChild<ComboBox *>()->lineEdit();
    for (const QString &leaving : {"Escape"_qs, "Return"_qs}) {
        click(size);
        QTRY_COMPARE(QApplication::activeWindow(), popup());
        keys({"ctrl+a"_qs, "2"_qs, "4"_qs, "Down"_qs});
        QTRY_COMPARE(item->font().pointSize(), 30);
        keys({"ctrl+a"_qs, "4"_qs, "8"_qs});
        QTRY_COMPARE(item->font().pointSize(), 48);
        keys({leaving});
        QTRY_COMPARE(QApplication::activeWindow(), m_window.get());
        QCOMPARE(editor()->shapeType(), Editor::TextEditing);
        QCOMPARE(size->text(), "48"_qs);
    }
    // A click on another setting gives the keyboard back as well.
    click(size);
    QTRY_COMPARE(QApplication::activeWindow(), popup());
    click(popup()->findChild<ItemButton *>("bold_"_qs));
    QTRY_VERIFY(item->font().bold());
    QTRY_COMPARE(QApplication::activeWindow(), m_window.get());
    write(" there!"_qs);
    QTRY_COMPARE(written(), "Hello there!"_qs);
    QCOMPARE(text(), item.data());
    QVERIFY(isPopupInPlace());

    click(onScreen({600, 350}));
    QTRY_COMPARE(editor()->shapeType(), Editor::Text);
    QTRY_VERIFY(!popup()->isVisible());
    QVERIFY(editor()->canUndo());
    QCOMPARE(editor()->items().size(), 1);

    const QTemporaryDir folder;
    const QString path = folder.filePath("saved.png"_qs);
    QVERIFY(editor()->saveFlattened(path, true, -1));
    QImage expected(CaptureSize, QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter painter(&expected);
    QFont font("Malgun Gothic"_qs, 48, QFont::Bold);
    painter.setFont(font);
    painter.setPen(Qt::red); // the stored colour at the start
    const QFontMetricsF metrics(font);
    painter.drawText(QPointF(item->x() + 6, item->y() + 6 + metrics.ascent()), "Hello there!"_qs);
    painter.end();
    COMPARE_IMAGES(QImage(path).convertToFormat(QImage::Format_RGB32), expected, "saved");
    QVERIFY(editor()->isSaved());

    // One step, taken back and brought back by the keys of the window.
    keys({"ctrl+z"_qs});
    QTRY_VERIFY(editor()->items().isEmpty());
    keys({"ctrl+y"_qs});
    QTRY_COMPARE(editor()->items().size(), 1);
    COMPARE_IMAGES(editor()->flatten(true, false).toImage().convertToFormat(QImage::Format_RGB32), expected,
                   "redone");
}

void Tst_TextWindow::inputMethodComposes() {
    const QString syllable = "\uac00"_qs;
    openText(ClickedAt);
    write("b"_qs);
    QTRY_COMPARE(written(), "b"_qs);
    keys({"F9"_qs, "g"_qs, "a"_qs});
    QTRY_COMPARE(written(), "b"_qs + syllable);
    // It brings the popup back, as typing does.
    popup()->hide();
    keys({"F9"_qs, "g"_qs, "a"_qs});
    QTRY_COMPARE(written(), "b"_qs + syllable + syllable);
    QVERIFY(isPopupInPlace());
    write("c"_qs);
    QTRY_COMPARE(written(), "b"_qs + syllable + syllable + "c"_qs);
    // Closed, it asks for no input method any more.
    const QPointer<DrawingTextItem> item = text();
    click(onScreen({600, 350}));
    QTRY_COMPARE(editor()->shapeType(), Editor::Text);
    QVERIFY(!m_view->testAttribute(Qt::WA_InputMethodEnabled));
    QCOMPARE(item->toPlainText(), "b"_qs + syllable + syllable + "c"_qs);
}

void Tst_TextWindow::keysBelongToTheOpenText() {
    addCapture("b"_qs);
    auto *list = m_window->findChild<HistoryListWidget *>();
    QCOMPARE(list->count(), 2);
    QCOMPARE(list->currentRow(), 0);
    settle();
    QGuiApplication::clipboard()->setText("before"_qs);
    openText(ClickedAt);
    write("ab"_qs);
    keys({"Return"_qs});
    write("cd"_qs);
    QTRY_COMPARE(written(), "ab\ncd"_qs);
    keys({"Up"_qs, "Home"_qs, "Delete"_qs});
    QTRY_COMPARE(written(), "b\ncd"_qs);
    keys({"Down"_qs, "End"_qs, "BackSpace"_qs});
    QTRY_COMPARE(written(), "b\nc"_qs);
    QCOMPARE(list->count(), 2);
    QCOMPARE(list->currentRow(), 0);
    keys({"ctrl+a"_qs, "ctrl+c"_qs});
    QTRY_COMPARE(QGuiApplication::clipboard()->text(), "b\nc"_qs);
    QVERIFY(QGuiApplication::clipboard()->image().isNull());
    // Back and forth within the text, and no step of the capture.
    keys({"x"_qs});
    QTRY_COMPARE(written(), "x"_qs);
    keys({"ctrl+z"_qs});
    QTRY_COMPARE(written(), "b\nc"_qs);
    QCOMPARE(editor()->items().size(), 1);
}

void Tst_TextWindow::escapeThrowsTheTextAwayAndThenHidesTheWindow() {
    openText(ClickedAt);
    write("abc"_qs);
    QTRY_COMPARE(written(), "abc"_qs);
    keys({"Escape"_qs});
    QTRY_COMPARE(editor()->shapeType(), Editor::Text);
    QVERIFY(editor()->items().isEmpty());
    QVERIFY(!popup()->isVisible());
    QVERIFY(m_window->isVisible());
    // The tool is ready for another one.
    click(onScreen(ClickedAt));
    QTRY_COMPARE(editor()->shapeType(), Editor::TextEditing);
    keys({"Escape"_qs});
    QTRY_COMPARE(editor()->shapeType(), Editor::Text);
    keys({"Escape"_qs});
    QTRY_VERIFY(!m_window->isVisible());
}

void Tst_TextWindow::colorFromThePopup() {
    openText(ClickedAt);
    write("a"_qs);
    QTRY_COMPARE(written(), "a"_qs);
    auto *button = popup()->findChild<ColorSelectButton *>("color_"_qs);
    auto *panel = button->menu()->findChild<ColorSelectPopup *>();
    // The press runs the menu in an event loop of its own.
    bool chosen = false;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        if (chosen || !panel->isVisible())
            return;
        chosen = true;
        click(panel->findChildren<ColorSelectButton *>().at(3));
    });
    timer.start(100);
    click(button);
    QTRY_VERIFY(chosen);
    QTRY_VERIFY(text()->defaultTextColor() != QColor(Qt::red));
    QCOMPARE(text()->defaultTextColor(), button->color());
    QCOMPARE(TindraPreferences::instance()->color(TindraPreferences::TextColor), button->color());
    QTRY_VERIFY(text()->hasFocus());
    write("b"_qs);
    QTRY_COMPARE(written(), "ab"_qs);
}

void Tst_TextWindow::panelIsUsedByKeysAlone() {
    addCapture("b"_qs);
    settle();
    const auto *list = m_window->findChild<HistoryListWidget *>();
    openText(ClickedAt);
    write("ab"_qs);
    QTRY_COMPARE(written(), "ab"_qs);
    const QPointer<DrawingTextItem> item = text();
    const QWidget *size = popup()->findChild<ComboBox *>();

    // The whole size is selected, so that digits replace it. Space chooses and stays.
    keys({"F6"_qs});
    QTRY_COMPARE(QApplication::activeWindow(), popup());
    QTRY_COMPARE(QApplication::focusWidget(), size);
    write("48"_qs);
    QTRY_COMPARE(item->font().pointSize(), 48);
    keys({"Tab"_qs, "Tab"_qs, "space"_qs});
    QTRY_VERIFY(item->font().bold());
    keys({"Right"_qs, "space"_qs});
    QTRY_VERIFY(item->font().italic());
    // No shortcut of the window behind.
    keys({"Delete"_qs, "Down"_qs});
    QCOMPARE(QApplication::activeWindow(), popup());
    QCOMPARE(list->count(), 2);
    // The colour, in a menu of its own, from which the keyboard comes back here.
    keys({"Home"_qs, "shift+Tab"_qs, "shift+Tab"_qs, "space"_qs, "Right"_qs, "space"_qs});
    QTRY_VERIFY(item->defaultTextColor() != QColor(Qt::red));
    QTRY_COMPARE(QApplication::activeWindow(), popup());

    // Enter chooses and leads back to the text.
    keys({"Tab"_qs, "Return"_qs});
    QTRY_VERIFY(!item->font().bold());
    QTRY_COMPARE(QApplication::activeWindow(), m_window.get());
    for (const QString &leaving : {"Escape"_qs, "Return"_qs, "F6"_qs}) {
        keys({"F6"_qs});
        QTRY_COMPARE(QApplication::activeWindow(), popup());
        keys({leaving});
        QTRY_COMPARE(QApplication::activeWindow(), m_window.get());
        keys({"F6"_qs, "Tab"_qs, "Tab"_qs, "Tab"_qs});
        QTRY_COMPARE(QApplication::focusWidget(), popup()->findChild<ItemButton *>("italic_"_qs));
        if (leaving == "Return"_qs)
            keys({"space"_qs}); // which Return takes back
        keys({leaving});
        QTRY_COMPARE(QApplication::activeWindow(), m_window.get());
    }
    QVERIFY(item->font().italic());
    write("c"_qs);
    QTRY_COMPARE(written(), "abc"_qs);
    QCOMPARE(text(), item.data());
    QCOMPARE(editor()->shapeType(), Editor::TextEditing);
    QVERIFY(popup()->windowHandle()->flags() & Qt::WindowDoesNotAcceptFocus);

    // After the keys the mouse has its own rule: a click on a setting gives the keyboard back.
    keys({"F6"_qs});
    QTRY_COMPARE(QApplication::activeWindow(), popup());
    click(popup()->findChild<ItemButton *>("underline_"_qs));
    QTRY_VERIFY(item->font().underline());
    QTRY_COMPARE(QApplication::activeWindow(), m_window.get());
}

void Tst_TextWindow::boxIsDraggedByItsBorder() {
    openText(ClickedAt);
    write("abc"_qs);
    QTRY_COMPARE(written(), "abc"_qs);
    const QPointF before = text()->pos();
    const QPoint grip = onScreen(ClickedAt + QPoint(3, 0));
    outside({"mousemove"_qs, QString::number(grip.x()), QString::number(grip.y())});
    QTRY_COMPARE(m_view->viewport()->cursor().shape(), Qt::SizeAllCursor);
    outside({"mousedown"_qs, "1"_qs});
    QTRY_VERIFY(!popup()->isVisible());
    for (int step = 1; step <= 5; ++step)
        outside(
            {"mousemove"_qs, QString::number(grip.x() + 20 * step), QString::number(grip.y() + 15 * step)});
    outside({"mouseup"_qs, "1"_qs});
    QTRY_COMPARE(text()->pos(), before + QPointF(100, 75));
    write("d"_qs);
    QTRY_COMPARE(written(), "abcd"_qs);
    QTRY_VERIFY(isPopupInPlace());
}

void Tst_TextWindow::otherProgramAndBack() {
    openText(ClickedAt);
    write("abc"_qs);
    QTRY_COMPARE(written(), "abc"_qs);
    {
        const ForeignWindow other;
        QTRY_VERIFY(!QApplication::activeWindow());
        write("not for us"_qs);
        QCOMPARE(editor()->shapeType(), Editor::TextEditing);
        m_window->activateWindow();
        outside({"windowactivate"_qs, "--sync"_qs, QString::number(m_window->winId())});
        QTRY_COMPARE(QApplication::activeWindow(), m_window.get());
    }
    write("d"_qs);
    QTRY_COMPARE(written(), "abcd"_qs);
}

void Tst_TextWindow::closingWhileASizeIsTyped() {
    openText(ClickedAt);
    write("abc"_qs);
    click(popup()->findChild<ComboBox *>()->lineEdit());
    QTRY_COMPARE(QApplication::activeWindow(), popup());
    keys({"ctrl+a"_qs, "2"_qs, "0"_qs});
    QTRY_COMPARE(text()->font().pointSize(), 20);
    click(onScreen({600, 350}));
    QTRY_COMPARE(editor()->shapeType(), Editor::Text);
    QTRY_COMPARE(QApplication::activeWindow(), m_window.get());
    QVERIFY(editor()->canUndo());
    // The popup of the next text leaves the keyboard alone again.
    QVERIFY(popup()->windowHandle()->flags() & Qt::WindowDoesNotAcceptFocus);
    click(onScreen({300, 250}));
    QTRY_COMPARE(editor()->shapeType(), Editor::TextEditing);
    write("d"_qs);
    QTRY_COMPARE(written(), "d"_qs);
    QCOMPARE(text()->font().pointSize(), 20);
    QCOMPARE(QApplication::activeWindow(), m_window.get());
}

void Tst_TextWindow::otherCaptureThrowsTheTextAway() {
    const QPointer<Editor> first = editor();
    openText(ClickedAt);
    write("abc"_qs);
    QTRY_COMPARE(written(), "abc"_qs);
    addCapture("b"_qs);
    QVERIFY(editor() != first);
    QVERIFY(first->items().isEmpty());
    QVERIFY(!first->canUndo());
    QVERIFY(!popup()->isVisible());
    QCOMPARE(editor()->shapeType(), Editor::Text);
}

QTEST_MAIN(Tst_TextWindow)
#include "tst_textwindow.moc"
