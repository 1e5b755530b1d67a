#include "history/historylistwidget.h"
#include "history/historywidget.h"
#include "support/literals.h"
#include "support/session.h"
#include "ui/builtinstyle.h"
#include "ui/uistyler.h"

#include <QPushButton>
#include <QtTest>

/// The panel as the program's own sheet shows it.
class Tst_HistoryWidgetLook : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { installBuiltInStyle(qApp); }

    void focusMovesNothing_data();
    void focusMovesNothing();
    void frameTakesNoRoom_data();
    void frameTakesNoRoom();

private:
    Session m_session;
};

namespace {

QMap<QString, QRect> places(const HistoryWidget &panel) {
    QMap<QString, QRect> found;
    for (const auto *child : panel.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        found.insert(child->objectName(), child->geometry());
    return found;
}

/// What is inside the frame and its round corners.
QImage inside(QWidget *widget, double scale) {
    const int frame = int(4 * scale);
    return widget->grab(widget->rect().adjusted(frame, frame, -frame, -frame)).toImage();
}

} // namespace

void Tst_HistoryWidgetLook::focusMovesNothing_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("scale");
    for (const char *name : {"historySelectMode_", "historySaveImages_", "historyDeleteImages_"}) {
        for (const double scale : {1.0, 1.5, 2.0})
            QTest::addRow("%s, %d %%", name, int(100 * scale)) << QString::fromLatin1(name) << scale;
    }
}

void Tst_HistoryWidgetLook::focusMovesNothing() {
    QFETCH(QString, name);
    QFETCH(double, scale);
    HistoryWidget panel;
    QVERIFY(panel.addImage(Session::captureInMemory("a"_qs)));
    panel.resize(int(172 * scale), int(400 * scale));
    panel.show();
    UIStyler::applyScale(&panel, scale);
    panel.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&panel));
    auto *button = panel.findChild<QPushButton *>(name);
    panel.findChild<HistoryListWidget *>()->setFocus();
    QVERIFY(!button->hasFocus());
    QCoreApplication::processEvents();
    const QMap<QString, QRect> before = places(panel);
    const QSize size = button->sizeHint();
    const QImage text = inside(button, scale);
    const QImage whole = button->grab().toImage();

    button->setFocus(Qt::TabFocusReason);
    QVERIFY(button->hasFocus());
    QCOMPARE(button->sizeHint(), size);
    button->updateGeometry();
    QCoreApplication::processEvents();
    QCOMPARE(places(panel), before);
    QCOMPARE(inside(button, scale), text);
    QVERIFY(button->grab().toImage() != whole);
}

void Tst_HistoryWidgetLook::frameTakesNoRoom_data() {
    QTest::addColumn<double>("scale");
    QTest::newRow("100 %") << 1.0;
    QTest::newRow("200 %") << 2.0;
}

// The head of the list is as high as its highest part, which would push the list down.
void Tst_HistoryWidgetLook::frameTakesNoRoom() {
    QFETCH(double, scale);
    HistoryWidget panel;
    panel.show();
    UIStyler::applyScale(&panel, scale);
    QCoreApplication::processEvents();
    const auto *button = panel.findChild<QPushButton *>("historySelectMode_"_qs);
    const int width = button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width();
    QCOMPARE(button->sizeHint(), QSize(width + 2 * int(6 * scale), int(24 * scale)));
}

QTEST_MAIN(Tst_HistoryWidgetLook)
#include "tst_historywidgetlook.moc"
