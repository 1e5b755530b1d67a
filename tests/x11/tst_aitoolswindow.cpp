#include "app/aitools.h"
#include "app/plugintest.h"
#include "canvas/canvasmenu.h"
#include "ui/builtinstyle.h"
#include "ui/menu.h"

#include <QProcess>

/// The AI tools in a real window, with a mouse that is outside the program.
class Tst_AiToolsWindow : public PluginTest {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup() { PluginTest::cleanup(); }

    void buttonsMenuRunsThePlugin();
    void canvasMenuRunsThePlugin();
    void bubbleIsClosedByItsButton();

private:
    /// Waits until the window manager has put the window in its place.
    void settle() const;

    using Step = std::function<QPoint()>;

    static void click(const QPoint &global, const char *mouseButton = "1");
    /// Clicks where each step says, as soon as it names a place, and thus goes through menus, which do not
    /// return before they are closed.
    void clickThrough(const QVector<Step> &steps);
    static Step entryOf(const QMenu *menu, const QString &text);
    QMenu *menu() const { return m_window->findChild<Menu *>("aitoolsMenu_"_qs); }
    QPoint onScreen(const QWidget *widget) const { return widget->mapToGlobal(widget->rect().center()); }
    void checkRun(const QString &id) const;

    QTimer m_watch;
};

namespace {
constexpr int Patience = 20000; // milliseconds, on a busy machine
}

void Tst_AiToolsWindow::initTestCase() {
    installBuiltInStyle(qApp);
}

void Tst_AiToolsWindow::init() {
    prepareHost("erase|Erase background|\nsharp|Sharpen|");
    WindowTest::init();
    m_window->findChild<AiTools *>()->setClock([] { return 1234; });
    treat("/path \"%1\" /point 200 200"_qs.arg(capture("a"_qs, {300, 200})));
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    settle();
    drawStroke();
    m_libraries->forgetCalls();
}

void Tst_AiToolsWindow::settle() const {
    QPoint place;
    const auto isAtRest = [&] {
        const QPoint before = place;
        QTest::qWait(150);
        place = m_window->mapToGlobal(QPoint());
        return place == before;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isAtRest(), Patience);
}

void Tst_AiToolsWindow::click(const QPoint &global, const char *mouseButton) {
    QVERIFY(QProcess::startDetached("xdotool"_qs,
                                    {"mousemove"_qs, QString::number(global.x()), QString::number(global.y()),
                                     "click"_qs, QString::fromLatin1(mouseButton)}));
}

void Tst_AiToolsWindow::clickThrough(const QVector<Step> &steps) {
    auto next = std::make_shared<int>(0);
    m_watch.disconnect();
    connect(&m_watch, &QTimer::timeout, this, [this, steps, next] {
        const QPoint place = steps.at(*next)();
        if (place.isNull())
            return;
        click(place);
        if (++*next == steps.size())
            m_watch.stop();
    });
    m_watch.start(50);
}

Tst_AiToolsWindow::Step Tst_AiToolsWindow::entryOf(const QMenu *menu, const QString &text) {
    return [menu, text] {
        for (QAction *action : menu->actions()) {
            if (menu->isVisible() && action->text() == text)
                return menu->mapToGlobal(menu->actionGeometry(action).center());
        }
        return QPoint();
    };
}

void Tst_AiToolsWindow::checkRun(const QString &id) const {
    const QString path = "%1/capture_%2/%2_1234.png"_qs.arg(workFolder(), id);
    QTRY_COMPARE_WITH_TIMEOUT(calls("ExecutePlugin"_qs),
                              QStringList{"ExecutePlugin %1 --image=\"%2\""_qs.arg(id, path)}, Patience);
    const QImage picture(path);
    QCOMPARE(picture.size(), QSize(300, 200));
    QCOMPARE(picture.pixelColor(15, 15), QColor(Qt::blue));
    QCOMPARE(picture.pixelColor(200, 100), QColor(Qt::white));
    // Nothing stays open or waits.
    QTRY_VERIFY(!QApplication::activePopupWidget());
    QVERIFY(!QApplication::overrideCursor());
}

void Tst_AiToolsWindow::buttonsMenuRunsThePlugin() {
    clickThrough({entryOf(menu(), "Sharpen"_qs)});
    click(onScreen(button("aitools")));
    checkRun("sharp"_qs);
    QCOMPARE(m_session->usage.count("cap_320_01"_qs), 1);
    // Listed anew.
    m_libraries->forgetCalls();
    qputenv("TINDRA_TEST_PLUGINS", "new|Brand new|");
    clickThrough({entryOf(menu(), "Brand new"_qs)});
    click(onScreen(button("aitools")));
    checkRun("new"_qs);
}

void Tst_AiToolsWindow::canvasMenuRunsThePlugin() {
    const auto *canvasMenu = m_window->findChild<CanvasMenu *>();
    clickThrough({entryOf(canvasMenu, "AI tools"_qs), entryOf(menu(), "Erase background"_qs)});
    click(onScreen(view()), "3");
    checkRun("erase"_qs);
    QVERIFY(!m_session->usage.contains("cap_320_01"_qs));
}

void Tst_AiToolsWindow::bubbleIsClosedByItsButton() {
    const auto closeButton = [this] { return m_window->findChild<QPushButton *>("close_"_qs); };
    QTRY_VERIFY_WITH_TIMEOUT(closeButton() && closeButton()->isVisible(), Patience);
    click(onScreen(closeButton()));
    QTRY_VERIFY_WITH_TIMEOUT(!closeButton(), Patience);
    QVERIFY(preferences()->GetBool(TindraPreferences::OnceAiToolsCoachmark, false));
}

QTEST_MAIN(Tst_AiToolsWindow)
#include "tst_aitoolswindow.moc"
