#include "app/windowtest.h"
#include "history/historybutton.h"
#include "history/historybuttonwidget.h"

#include <QMenu>

/// Rows that come, go and change while a mode, a dialog, a menu or a drag is about them.
class Tst_RowsInUse : public WindowTest {
    Q_OBJECT
private slots:
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

    void selectModeOutlivesOtherRows_data();
    void selectModeOutlivesOtherRows();
    void selectModeEndsWithTheLastRow();
    void emptinessIsToldWhenItChanges();
    void captureInsideTheQuestionStays_data();
    void captureInsideTheQuestionStays();
    void shownRowIsDropped();
    void rowUnderItsDialogIsDropped_data();
    void rowUnderItsDialogIsDropped();
    void deleteDuringADrag();

private:
    QPushButton *panelButton(const char *name) const {
        return m_window->findChild<QPushButton *>(QLatin1String(name));
    }
    HistoryButtonWidget *row(int number) const { return list()->rowWidget(list()->rowItem(number)); }
    void check(int number) { row(number)->findChild<QPushButton *>("selectButton_"_qs)->click(); }
    QStringList names() const {
        QStringList names;
        for (int i = 0; i < list()->count(); ++i)
            names.append(QFileInfo(list()->rowItem(i)->editor()->imageKey()).baseName());
        return names;
    }
    /// A full list that drops its oldest capture, which is the one that is shown.
    void fillAndShowTheOldest() {
        addCapture("oldest"_qs);
        for (int i = 1; i < 100; ++i)
            m_window->AddNewPixmap(Session::captureInMemory("m%1"_qs.arg(i)), {}, true);
        preferences()->SetBool(TindraPreferences::AutoHistoryDelete, true);
        list()->setCurrentRow(99);
        QCOMPARE(scene(), list()->rowItem(99)->editor());
    }
};

void Tst_RowsInUse::selectModeOutlivesOtherRows_data() {
    QTest::addColumn<QString>("change");
    for (const char *change : {"click on a thumbnail", "arrow down", "new capture"})
        QTest::newRow(change) << QString::fromLatin1(change);
}

void Tst_RowsInUse::selectModeOutlivesOtherRows() {
    QFETCH(QString, change);
    for (const QString &name : {"a"_qs, "b"_qs, "c"_qs})
        addCapture(name);
    activate();
    panelButton("historySelectMode_")->click();
    check(1);
    check(2);
    const QVector<HistoryListWidgetItem *> checked = list()->checkedItems();
    QCOMPARE(checked.size(), 2);
    const Editor *before = scene();
    if (change == "new capture"_qs)
        addCapture("d"_qs);
    else if (change == "arrow down"_qs)
        QTest::keyClick(m_window.get(), Qt::Key_Down);
    else
        row(2)->findChild<HistoryButton *>()->click();
    QVERIFY(scene() != before);
    QVERIFY(panelButton("historySelectMode_")->isChecked());
    QCOMPARE(list()->selectionMode(), HistorySelectModes::Select);
    QCOMPARE(list()->checkedItems(), checked);
}

void Tst_RowsInUse::selectModeEndsWithTheLastRow() {
    preferences()->SetBool(TindraPreferences::NotifyDeleteHistory, false);
    addCapture("a"_qs);
    panelButton("historySelectMode_")->click();
    row(0)->onContextMenuDelete();
    QVERIFY(!panelButton("historySelectMode_")->isChecked());
    QVERIFY(!panelButton("historySelectMode_")->isEnabled());
    addCapture("b"_qs);
    QVERIFY(panelButton("historySelectMode_")->isEnabled());
}

void Tst_RowsInUse::emptinessIsToldWhenItChanges() {
    QVector<bool> told;
    connect(m_window.get(), &TindraEditor::emptyEditor, this, [&](bool isEmpty) { told.append(isEmpty); });
    addCapture("a"_qs);
    addCapture("b"_qs);
    QCOMPARE(told, QVector<bool>{false});
    list()->clearSelection();
    QCOMPARE(told, (QVector<bool>{false, true}));
    list()->setCurrentRow(1, QItemSelectionModel::ClearAndSelect);
    QCOMPARE(told, (QVector<bool>{false, true, false}));
}

void Tst_RowsInUse::captureInsideTheQuestionStays_data() {
    QTest::addColumn<bool>("selecting");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("selected") << true << QStringList{"late"_qs, "b"_qs};
    QTest::newRow("all") << false << QStringList{"late"_qs};
}

void Tst_RowsInUse::captureInsideTheQuestionStays() {
    QFETCH(bool, selecting);
    for (const QString &name : {"a"_qs, "b"_qs, "c"_qs})
        addCapture(name);
    if (selecting) {
        panelButton("historySelectMode_")->click();
        check(0);
        check(2);
    }
    ModalAnswers answers;
    answers.add([this](QWidget *dialog) {
        addCapture("late"_qs);
        ModalAnswers::press(dialog, "Yes"_qs);
    });
    panelButton("historyDeleteImages_")->click();
    QVERIFY(answers.isDone());
    QTEST(names(), "left");
    QCOMPARE(scene(), list()->rowItem(0)->editor());
    QVERIFY(!panelButton("historySelectMode_")->isChecked());
}

void Tst_RowsInUse::shownRowIsDropped() {
    fillAndShowTheOldest();
    const QPointer<Editor> oldest = scene();
    addCapture("new"_qs);
    QVERIFY(!oldest);
    QCOMPARE(list()->count(), 100);
    QCOMPARE(names().first(), "new"_qs);
    QCOMPARE(scene(), list()->rowItem(0)->editor());
}

void Tst_RowsInUse::rowUnderItsDialogIsDropped_data() {
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("button");
    QTest::newRow("question of delete") << "Delete"
                                        << "Yes";
    QTest::newRow("file dialog of save") << "Save"
                                         << "";
}

// Through a real click in the row's menu: row and menu go while the dialog that the menu opened stands.
void Tst_RowsInUse::rowUnderItsDialogIsDropped() {
    QFETCH(QString, entry);
    QFETCH(QString, button);
    fillAndShowTheOldest();
    const QPointer<HistoryButtonWidget> oldest = row(99);
    QContextMenuEvent open(QContextMenuEvent::Mouse, QPoint(), m_window->pos());
    QCoreApplication::sendEvent(oldest, &open);
    const QPointer<QMenu> menu = oldest->findChild<QMenu *>();
    QVERIFY(menu && menu->isVisible());
    bool isInClick = true;
    ModalAnswers answers;
    answers.add([&](QWidget *dialog) {
        QVERIFY(!isInClick);
        addCapture("new"_qs);
        // Row and menu are deleted under it.
        const bool isGone = QTest::qWaitFor([&] { return !oldest && !menu; });
        if (button.isEmpty())
            dialog->close();
        else
            ModalAnswers::press(dialog, button);
        QVERIFY(isGone);
    });
    for (QAction *action : menu->actions()) {
        if (action->text() != entry)
            continue;
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        break;
    }
    isInClick = false;
    QTRY_VERIFY(answers.isDone());
    QTRY_VERIFY(!QApplication::activeModalWidget());
    QCOMPARE(list()->count(), 100);
    QCOMPARE(names().first(), "new"_qs);
    QVERIFY(!names().contains("oldest"_qs));
}

void Tst_RowsInUse::deleteDuringADrag() {
    preferences()->SetBool(TindraPreferences::NotifyDeleteHistory, false);
    addCapture("a"_qs);
    addCapture("b"_qs);
    activate();
    m_window->onPenSelected(Qt::blue);
    const QPointer<Editor> dragged = scene();
    sendMouse(QEvent::MouseButtonPress, {5, 5});
    sendMouse(QEvent::MouseMove, {15, 15});
    QVERIFY(dragged->currentItem());
    QTest::keyClick(m_window.get(), Qt::Key_Delete);
    QVERIFY(!dragged);
    QCOMPARE(names(), QStringList{"a"_qs});
    sendMouse(QEvent::MouseMove, {25, 10});
    sendMouse(QEvent::MouseButtonRelease, {25, 10});
    // The rest of the drag is nobody's: the capture that is shown now gets nothing of it.
    QCOMPARE(scene(), list()->rowItem(0)->editor());
    QVERIFY(scene()->items().isEmpty());
    QVERIFY(!scene()->canUndo());
}

QTEST_MAIN(Tst_RowsInUse)
#include "tst_rowsinuse.moc"
