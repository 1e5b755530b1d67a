#include "preferences/dialogtest.h"
#include "support/secondscreen.h"
#include "ui/menu.h"
#include "ui/negativebutton.h"
#include "ui/positivebutton.h"
#include "ui/uistyler.h"

#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QScreen>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTableWidget>

/// The dialog around its pages.
class Tst_PreferencesDialog : public DialogTest {
    Q_OBJECT
private slots:
    void init() { freshProfile(); }
    void cleanup() { m_dialog.reset(); }

    void texts();
    void listChoosesThePage_data();
    void listChoosesThePage();
    void pageIsSelectedByNumber_data();
    void pageIsSelectedByNumber();
    void listAlwaysHasASelection();
    void buttonsHaveTheHandCursor();

    void okStoresAllPages();
    void cancelStoresNothing_data();
    void cancelStoresNothing();
    void nothingReachesTheFile();

    void defaultsOfThisPage_data();
    void defaultsOfThisPage();
    void defaultsOfAllPages();
    void refusedDefaultsChangeNothing_data();
    void refusedDefaultsChangeNothing();
    void cancelAfterDefaultsStoresNothing();

    void enterIsOk_data();
    void enterIsOk();
    void enterPressesTheFocusedButton();
    void arrowsWalkThePages();
    void tabFollowsTheEye_data();
    void tabFollowsTheEye();
    void labelsLeadToTheirFields();
    void rescaledWindowLeavesTheBorderOfScreens_data();
    void rescaledWindowLeavesTheBorderOfScreens();

private:
    QListWidget *list() const { return child<QListWidget>("preferencesList_"); }
    QStackedWidget *pages() const { return child<QStackedWidget>("preferencesPages_"); }
    void chooseDefaults(int entry) const {
        child<QPushButton>("default_")->menu()->actions().at(entry)->trigger();
    }
    /// One value of each page that differs from the default.
    void changeAllPages() const {
        child<QCheckBox>("trayMode_")->setChecked(false);
        child<QComboBox>("format_")->setCurrentIndex(4);
        child<QCheckBox>("scroll_")->setChecked(false);
        child<QCheckBox>("autoHistoryDelete_")->setChecked(true);
    }
    /// The pages whose value is the default.
    QList<int> defaultPages() const {
        QList<int> found;
        if (child<QCheckBox>("trayMode_")->isChecked())
            found.append(0);
        if (child<QComboBox>("format_")->currentIndex() == 0)
            found.append(1);
        if (child<QCheckBox>("scroll_")->isChecked())
            found.append(2);
        if (!child<QCheckBox>("autoHistoryDelete_")->isChecked())
            found.append(3);
        return found;
    }
};

void Tst_PreferencesDialog::texts() {
    openDialog();
    QCOMPARE(m_dialog->windowTitle(), "Preferences"_qs);
    QVERIFY(!(m_dialog->windowFlags() & Qt::WindowContextHelpButtonHint));
    QCOMPARE(m_dialog->minimumSize(), QSize(574, 492));
    QCOMPARE(m_dialog->maximumSize(), QSize(574, 492));
    QStringList entries;
    for (int row = 0; row < list()->count(); ++row) {
        entries.append(list()->item(row)->text());
        QVERIFY(!list()->item(row)->icon().isNull());
    }
    QCOMPARE(entries, (QStringList{"General"_qs, "Capture"_qs, "Shortcut"_qs, "History"_qs}));
    QCOMPARE(list()->selectionMode(), QAbstractItemView::SingleSelection);
    QCOMPARE(list()->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(list()->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(child<PositiveButton>("ok_")->text(), "ok"_qs);
    QCOMPARE(child<NegativeButton>("cancel_")->text(), "cancel"_qs);
    const auto *defaults = child<QPushButton>("default_");
    QCOMPARE(defaults->text(), "default"_qs);
    QVERIFY(qobject_cast<Menu *>(defaults->menu()));
    QStringList actions;
    for (const QAction *action : defaults->menu()->actions())
        actions.append(action->text());
    QCOMPARE(actions, (QStringList{"set default this page"_qs, "set default all pages"_qs}));
}

void Tst_PreferencesDialog::listChoosesThePage_data() {
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("page");
    QTest::newRow("General") << 0 << "GeneralPreferencesWidget";
    QTest::newRow("Capture") << 1 << "ImagePreferencesWidget";
    QTest::newRow("Shortcut") << 2 << "ShortcutPreferencesWidget";
    QTest::newRow("History") << 3 << "HistoryPreferencesWidget";
}

void Tst_PreferencesDialog::listChoosesThePage() {
    QFETCH(int, row);
    QFETCH(QString, page);
    openDialog(3 - row);
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {},
                      list()->visualItemRect(list()->item(row)).center());
    QCOMPARE(QString::fromLatin1(pages()->currentWidget()->metaObject()->className()), page);
    QVERIFY(pages()->currentWidget()->isVisible());
    QCOMPARE(pages()->indexOf(pages()->currentWidget()), row);
}

void Tst_PreferencesDialog::pageIsSelectedByNumber_data() {
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("shown");
    for (int page = 0; page < 4; ++page)
        QTest::addRow("page %d", page) << page << page;
    QTest::newRow("beyond the last") << 4 << 0;
    QTest::newRow("negative") << -1 << 0;
}

void Tst_PreferencesDialog::pageIsSelectedByNumber() {
    QFETCH(int, number);
    QFETCH(int, shown);
    openDialog(number);
    QCOMPARE(list()->selectedItems(), QList<QListWidgetItem *>{list()->item(shown)});
    QCOMPARE(pages()->currentIndex(), shown);
}

void Tst_PreferencesDialog::listAlwaysHasASelection() {
    openDialog(2);
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::ControlModifier,
                      list()->visualItemRect(list()->item(2)).center());
    QCOMPARE(list()->selectedItems(), QList<QListWidgetItem *>{list()->item(2)});
    QCOMPARE(pages()->currentIndex(), 2);
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, QPoint(20, list()->height() - 20));
    QCOMPARE(list()->selectedItems(), QList<QListWidgetItem *>{list()->item(2)});
}

void Tst_PreferencesDialog::buttonsHaveTheHandCursor() {
    openDialog();
    int count = 0;
    for (const QWidget *widget : m_dialog->findChildren<QWidget *>()) {
        if (!qobject_cast<const QAbstractButton *>(widget) && !qobject_cast<const QAbstractSpinBox *>(widget))
            continue;
        ++count;
        QVERIFY2(widget->cursor().shape() == Qt::PointingHandCursor, qPrintable(widget->objectName()));
    }
    // 10 + 1 + 4 + 1 + 6 x 5 boxes, 6 + 3 buttons, one spin box.
    QVERIFY2(count >= 56, qPrintable(QString::number(count)));
}

void Tst_PreferencesDialog::okStoresAllPages() {
    openDialog();
    changeAllPages();
    click("ok_");
    QCOMPARE(m_dialog->result(), 1);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(preferences()->GetBool(P::TrayMode, true), false);
    QCOMPARE(preferences()->GetInt(P::FileFormat, 0), 4);
    QCOMPARE(preferences()->GetBool(P::UseHotKey_S, true), false);
    QCOMPARE(preferences()->GetBool(P::AutoHistoryDelete, false), true);
}

void Tst_PreferencesDialog::cancelStoresNothing_data() {
    QTest::addColumn<QString>("way");
    QTest::newRow("cancel") << "cancel";
    QTest::newRow("Escape") << "escape";
    QTest::newRow("closed") << "close";
}

void Tst_PreferencesDialog::cancelStoresNothing() {
    QFETCH(QString, way);
    openDialog();
    const QVector<QVariant> before = stored();
    changeAllPages();
    QSignalSpy finished(m_dialog.get(), &QDialog::finished);
    if (way == "cancel"_qs)
        click("cancel_");
    else if (way == "escape"_qs)
        QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
    else
        m_dialog->close();
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.first().first().toInt(), 0);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(stored(), before);
}

void Tst_PreferencesDialog::nothingReachesTheFile() {
    openDialog();
    changeAllPages();
    click("ok_");
    QVERIFY(!ConfigurationLocation(location()).value("TrayMode"_qs).isValid());
    preferences()->SaveAll();
    QCOMPARE(ConfigurationLocation(location()).value("TrayMode"_qs).toInt(), 0);
}

void Tst_PreferencesDialog::defaultsOfThisPage_data() {
    QTest::addColumn<int>("page");
    for (int page = 0; page < 4; ++page)
        QTest::addRow("page %d", page) << page;
}

void Tst_PreferencesDialog::defaultsOfThisPage() {
    QFETCH(int, page);
    openDialog(page);
    changeAllPages();
    QVERIFY(defaultPages().isEmpty());
    ModalAnswers answers;
    answers.add([](QWidget *question) {
        QCOMPARE(question->windowTitle(), "Tindra"_qs);
        ModalAnswers::press(question, "Yes"_qs);
    });
    chooseDefaults(0);
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(), QStringList{"Set this page to default.\nWould you like to continue?"_qs});
    QCOMPARE(defaultPages(), QList<int>{page});
    QVERIFY(m_dialog->isVisible());
}

void Tst_PreferencesDialog::defaultsOfAllPages() {
    openDialog(1);
    changeAllPages();
    ModalAnswers answers;
    QString icon;
    answerMessage(answers, "Yes"_qs, icon);
    chooseDefaults(1);
    QVERIFY(answers.isDone());
    QCOMPARE(icon, "Information"_qs);
    QCOMPARE(answers.texts(), QStringList{"Set all pages to default.\nWould you like to continue?"_qs});
    QCOMPARE(defaultPages(), (QList<int>{0, 1, 2, 3}));
    QCOMPARE(pages()->currentIndex(), 1);
}

void Tst_PreferencesDialog::refusedDefaultsChangeNothing_data() {
    QTest::addColumn<int>("entry");
    QTest::addColumn<bool>("closed");
    QTest::newRow("this page, no") << 0 << false;
    QTest::newRow("this page, closed") << 0 << true;
    QTest::newRow("all pages, no") << 1 << false;
    QTest::newRow("all pages, closed") << 1 << true;
}

void Tst_PreferencesDialog::refusedDefaultsChangeNothing() {
    QFETCH(int, entry);
    QFETCH(bool, closed);
    openDialog();
    changeAllPages();
    ModalAnswers answers;
    if (closed)
        answers.addClose();
    else
        answers.addPress("No"_qs);
    chooseDefaults(entry);
    QVERIFY(answers.isDone());
    QVERIFY(defaultPages().isEmpty());
}

void Tst_PreferencesDialog::cancelAfterDefaultsStoresNothing() {
    preferences()->SetBool(P::TrayMode, false);
    preferences()->SetSizePresets({{10, 11}});
    openDialog();
    const QVector<QVariant> before = stored();
    ModalAnswers answers;
    answers.addPress("Yes"_qs);
    chooseDefaults(1);
    click("cancel_");
    QCOMPARE(stored(), before);
}

void Tst_PreferencesDialog::enterIsOk_data() {
    QTest::addColumn<int>("page");
    QTest::addColumn<QString>("focus");
    QTest::newRow("list") << 0 << "preferencesList_";
    QTest::newRow("check box") << 0 << "showOverlay_";
    QTest::newRow("combo box") << 0 << "guidelineColor_";
    QTest::newRow("spin box") << 1 << "quality_";
    QTest::newRow("line edit") << 1 << "editTool_";
    QTest::newRow("table") << 1 << "fixedPresets_";
}

void Tst_PreferencesDialog::enterIsOk() {
    QFETCH(int, page);
    QFETCH(QString, focus);
    preferences()->SetInt(P::FileFormat, 1);
    openDialog(page);
    m_dialog->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    QWidget *widget = child<QWidget>(qPrintable(focus));
    widget->setFocus();
    QVERIFY(widget->hasFocus());
    QTest::keyClick(widget, Qt::Key_Return);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), 1);
}

void Tst_PreferencesDialog::enterPressesTheFocusedButton() {
    openDialog();
    m_dialog->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    m_dialog->setResult(99);
    widget("cancel_")->setFocus();
    QTest::keyClick(widget("cancel_"), Qt::Key_Return);
    QCOMPARE(m_dialog->result(), 0);
}

void Tst_PreferencesDialog::arrowsWalkThePages() {
    openDialog();
    m_dialog->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    QCOMPARE(m_dialog->focusWidget(), list());
    for (int page = 1; page < 4; ++page) {
        QTest::keyClick(list(), Qt::Key_Down);
        QCOMPARE(pages()->currentIndex(), page);
    }
    QTest::keyClick(list(), Qt::Key_Home);
    QCOMPARE(pages()->currentIndex(), 0);
}

void Tst_PreferencesDialog::tabFollowsTheEye_data() {
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("stops");
    // The list and three buttons, and what the page has.
    QTest::newRow("General") << 0 << 4 + 11;
    QTest::newRow("Capture") << 1 << 4 + 12;
    QTest::newRow("Shortcut") << 2 << 4 + 2 + 6 * 6;
    QTest::newRow("History") << 3 << 4 + 4;
}

void Tst_PreferencesDialog::tabFollowsTheEye() {
    QFETCH(int, page);
    QFETCH(int, stops);
    preferences()->SetInt(P::FileFormat, 1);
    preferences()->SetBool(P::AutoSave, true);
    preferences()->SetSizePresets({{10, 11}});
    openDialog(page);
    m_dialog->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    child<QTableWidget>("fixedPresets_")->setCurrentCell(0, 0);
    list()->setFocus();
    QList<QWidget *> way;
    for (QWidget *stop = list(); !way.contains(stop); stop = m_dialog->focusWidget()) {
        way.append(stop);
        QTest::keyClick(stop, Qt::Key_Tab);
    }
    QCOMPARE(way.size(), stops);
    QCOMPARE(way.mid(stops - 3), (QList<QWidget *>{widget("default_"), widget("ok_"), widget("cancel_")}));
    // Within the page from the top to the bottom, in a row from the left to the right.
    QRect before;
    for (const QWidget *stop : way.mid(1, stops - 4)) {
        const QRect place(stop->mapTo(m_dialog.get(), QPoint()), stop->size());
        QVERIFY2(place.left() > before.right() || place.top() > before.bottom(),
                 qPrintable(stop->objectName()));
        QVERIFY2(place.bottom() > before.top(), qPrintable(stop->objectName()));
        before = place;
    }
}

void Tst_PreferencesDialog::labelsLeadToTheirFields() {
    openDialog();
    QStringList led;
    for (const QLabel *label : m_dialog->findChildren<QLabel *>()) {
        if (label->buddy())
            led.append(label->text() + QLatin1Char('>') + label->buddy()->objectName());
    }
    led.sort();
    QCOMPARE(led, (QStringList{"Edit tool>editTool_"_qs, "Guideline color:>guidelineColor_"_qs,
                               "Save path>savePath_"_qs, "file name>setFileNameFormat_"_qs,
                               "format>format_"_qs, "mode>captureMode_"_qs, "quality>quality_"_qs}));
}

void Tst_PreferencesDialog::rescaledWindowLeavesTheBorderOfScreens_data() {
    QTest::addColumn<bool>("twoScreens");
    QTest::addColumn<int>("offset"); // of its left edge from the border
    QTest::addColumn<int>("expected");
    constexpr int leftOfTheBorder = -(861 + 2 * 2); // 1.5 times 574, and the frame
    QTest::newRow("on the first") << true << -900 << -900;
    QTest::newRow("mostly on the first") << true << -500 << leftOfTheBorder;
    QTest::newRow("mostly on the second") << true << -300 << 0;
    QTest::newRow("on the second") << true << 10 << 10;
    QTest::newRow("nothing beyond the border") << false << -300 << -300;
}

void Tst_PreferencesDialog::rescaledWindowLeavesTheBorderOfScreens() {
    QFETCH(bool, twoScreens);
    QFETCH(int, offset);
    QFETCH(int, expected);
    const QRect first = QGuiApplication::primaryScreen()->geometry();
    const int border = first.right() + 1;
    std::unique_ptr<SecondScreen> second;
    if (twoScreens)
        second = std::make_unique<SecondScreen>(QRect(QPoint(border, first.top()), QSize(2000, 1200)));
    openDialog();
    m_dialog->move(border + offset, first.top() + 10);
    const int top = m_dialog->y();
    UIStyler::applyScale(m_dialog.get(), 1.5);
    QCOMPARE(m_dialog->size(), QSize(861, 738));
    QCOMPARE(m_dialog->pos(), QPoint(border + expected, top));
}

QTEST_MAIN(Tst_PreferencesDialog)
#include "tst_preferencesdialog.moc"
