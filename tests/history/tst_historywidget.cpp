#include "canvas/editor.h"
#include "history/historybuttonwidget.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "history/historywidget.h"
#include "support/literals.h"
#include "support/modalanswers.h"
#include "support/session.h"
#include "ui/uistyler.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

class Tst_HistoryWidget : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void childrenStandInOrder();
    void gapBetweenRowsFollowsTheScale_data();
    void gapBetweenRowsFollowsTheScale();
    void textsFollowTheMode_data();
    void textsFollowTheMode();
    void countFollowsTheRows();
    void countFollowsTheChecks();
    void selectModeIsCounted();
    void fullListRefuses();
    void fullListDropsTheOldestIfAllowed();
    void droppingReportsOneChange();
    void fullnessIsTold_data();
    void fullnessIsTold();
    void unsavedIsTold();
    void selectionTellsTheRecord();
    void arrowsStopAtTheEnds();
    void sizeOfTheCurrentCapture();
    void emptyEditorEndsSelectMode();
    void hideButtonIsReported();
    void deleteKeySparesSelectMode();

    void deleteAllTakesPinnedRowsToo();
    void deleteAllAsks_data();
    void deleteAllAsks();
    void deleteCheckedRows();
    void deleteAllWithoutQuestion();
    void saveWithoutARowIsCountedOnly();
    void onlyWhatWasAskedAboutIsDeleted_data();
    void onlyWhatWasAskedAboutIsDeleted();

private:
    HistoryListWidget *list() const { return m_panel->findChild<HistoryListWidget *>(); }
    QPushButton *button(const char *name) const {
        return m_panel->findChild<QPushButton *>(QLatin1String(name));
    }
    QString countInfo() const { return m_panel->findChild<QLabel *>("countInfo_"_qs)->text(); }
    void add(int count) {
        for (int i = 0; i < count; ++i)
            QVERIFY(m_panel->addImage(Session::captureInMemory("m%1"_qs.arg(m_added++))));
    }
    QPushButton *check(int row) {
        return list()->rowWidget(list()->rowItem(row))->findChild<QPushButton *>("selectButton_"_qs);
    }
    QString keyOf(int row) const { return list()->rowItem(row)->editor()->imageKey(); }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<HistoryWidget> m_panel;
    int m_added = 0;
};

void Tst_HistoryWidget::init() {
    m_added = 0;
    m_session = std::make_unique<Session>();
    m_panel = std::make_unique<HistoryWidget>();
}

void Tst_HistoryWidget::cleanup() {
    m_panel.reset();
    m_session.reset();
}

void Tst_HistoryWidget::gapBetweenRowsFollowsTheScale_data() {
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("gap");
    QTest::newRow("100 %") << 1.0 << 6;
    QTest::newRow("150 %, each half truncated") << 1.5 << 8;
    QTest::newRow("200 %") << 2.0 << 12;
}

void Tst_HistoryWidget::gapBetweenRowsFollowsTheScale() {
    QFETCH(double, scale);
    add(2);
    m_panel->show();
    UIStyler::applyScale(m_panel.get(), scale);
    QCoreApplication::processEvents();
    const QRect first = list()->visualItemRect(list()->item(0));
    const QRect second = list()->visualItemRect(list()->item(1));
    QTEST(second.top() - first.bottom() - 1, "gap");
}

void Tst_HistoryWidget::childrenStandInOrder() {
    m_panel->resize(172, 600);
    m_panel->show();
    int bottom = -1;
    for (const char *name : {"historyTitle_", "countInfo_", "line_3", "historyListWidget_", "line_2",
                             "historySaveImages_", "line", "historyDeleteImages_"}) {
        const auto *child = m_panel->findChild<QWidget *>(QLatin1String(name));
        QVERIFY2(child, name);
        QVERIFY2(child->y() > bottom, name);
        bottom = child->geometry().bottom();
    }
    QVERIFY(button("historyHide_")->geometry().right() < list()->x());
    QCOMPARE(m_panel->findChild<QLabel *>("historyTitle_"_qs)->text(), "history"_qs);
    for (const char *name :
         {"historyHide_", "historySelectMode_", "historySaveImages_", "historyDeleteImages_"})
        QCOMPARE(button(name)->cursor().shape(), Qt::PointingHandCursor);
}

void Tst_HistoryWidget::textsFollowTheMode_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<QString>("selectingText");
    QTest::addColumn<QString>("selectingToolTip");
    QTest::newRow("mode") << "historySelectMode_"
                          << "select"
                          << "choose images"
                          << "cancel"
                          << "cancel select mode";
    QTest::newRow("save") << "historySaveImages_"
                          << "save images"
                          << "save all images in history"
                          << "save selected images"
                          << "save selected images in history";
    QTest::newRow("delete") << "historyDeleteImages_"
                            << "delete images"
                            << "delete all images in history"
                            << "delete selected images"
                            << "delete selected imagesin history";
}

void Tst_HistoryWidget::textsFollowTheMode() {
    QFETCH(QString, name);
    const QPushButton *shown = button(qPrintable(name));
    QTEST(shown->text(), "text");
    QTEST(shown->toolTip(), "toolTip");
    button("historySelectMode_")->click();
    QTEST(shown->text(), "selectingText");
    QTEST(shown->toolTip(), "selectingToolTip");
    button("historySelectMode_")->click();
    QTEST(shown->text(), "text");
    QTEST(shown->toolTip(), "toolTip");
}

void Tst_HistoryWidget::countFollowsTheRows() {
    QCOMPARE(countInfo(), "[0/100]"_qs);
    QVERIFY(!button("historySaveImages_")->isEnabled());
    QVERIFY(!button("historyDeleteImages_")->isEnabled());
    add(2);
    QCOMPARE(countInfo(), "[2/100]"_qs);
    QVERIFY(button("historySaveImages_")->isEnabled());
    QVERIFY(button("historyDeleteImages_")->isEnabled());
    m_panel->removeOldestImage();
    QCOMPARE(countInfo(), "[1/100]"_qs);
    QCOMPARE(keyOf(0), "m1"_qs);
    m_panel->removeOldestImage();
    m_panel->removeOldestImage();
    QCOMPARE(countInfo(), "[0/100]"_qs);
}

void Tst_HistoryWidget::countFollowsTheChecks() {
    add(3);
    button("historySelectMode_")->click();
    QCOMPARE(countInfo(), "[0 selected]"_qs);
    QVERIFY(!button("historySaveImages_")->isEnabled());
    check(0)->click();
    check(2)->click();
    QCOMPARE(countInfo(), "[2 selected]"_qs);
    QVERIFY(button("historySaveImages_")->isEnabled());
    QVERIFY(button("historyDeleteImages_")->isEnabled());
    button("historySelectMode_")->click();
    QCOMPARE(countInfo(), "[3/100]"_qs);
}

void Tst_HistoryWidget::selectModeIsCounted() {
    m_session->usage.clear();
    button("historySelectMode_")->click();
    QCOMPARE(m_session->usage, QStringList{"cap_30_19"_qs});
    button("historySelectMode_")->click();
    QCOMPARE(m_session->usage.size(), 1);
}

void Tst_HistoryWidget::fullListRefuses() {
    add(100);
    QVERIFY(m_panel->isFull());
    QVERIFY(!m_panel->addImage(Session::captureInMemory("late"_qs)));
    QCOMPARE(list()->count(), 100);
    QCOMPARE(keyOf(99), "m0"_qs);
    QCOMPARE(countInfo(), "[100/100]"_qs);
}

void Tst_HistoryWidget::fullListDropsTheOldestIfAllowed() {
    const QString oldest = Session::captureFile("oldest"_qs);
    QVERIFY(m_panel->addImage(oldest));
    add(99);
    m_session->preferences->SetBool(TindraPreferences::AutoHistoryDelete, true);
    QVERIFY(m_panel->addImage(Session::captureInMemory("late"_qs)));
    QCOMPARE(list()->count(), 100);
    QCOMPARE(keyOf(0), "late"_qs);
    QCOMPARE(keyOf(99), "m0"_qs);
    QVERIFY(!QFile::exists(oldest));
    QCOMPARE(countInfo(), "[100/100]"_qs);
}

void Tst_HistoryWidget::droppingReportsOneChange() {
    add(100);
    m_session->preferences->SetBool(TindraPreferences::AutoHistoryDelete, true);
    QSignalSpy spy(m_panel.get(), &HistoryWidget::itemSelectionChanged);
    add(1);
    QCOMPARE(spy.count(), 1);
}

void Tst_HistoryWidget::fullnessIsTold_data() {
    QTest::addColumn<int>("rows");
    QTest::addColumn<bool>("autoDelete");
    QTest::addColumn<bool>("full");
    QTest::newRow("99") << 99 << false << false;
    QTest::newRow("100") << 100 << false << true;
    QTest::newRow("100 and the oldest may go") << 100 << true << false;
}

void Tst_HistoryWidget::fullnessIsTold() {
    QFETCH(int, rows);
    QFETCH(bool, autoDelete);
    add(rows);
    m_session->preferences->SetBool(TindraPreferences::AutoHistoryDelete, autoDelete);
    QTEST(m_panel->isFull(), "full");
}

void Tst_HistoryWidget::unsavedIsTold() {
    QVERIFY(!m_panel->hasUnsavedImages());
    add(2);
    QVERIFY(m_panel->hasUnsavedImages());
    list()->rowItem(0)->editor()->setSavedPath("/a.png"_qs);
    QVERIFY(m_panel->hasUnsavedImages());
    list()->rowItem(1)->editor()->setSavedPath("/b.png"_qs);
    QVERIFY(!m_panel->hasUnsavedImages());
}

void Tst_HistoryWidget::selectionTellsTheRecord() {
    QVector<Editor *> told;
    connect(m_panel.get(), &HistoryWidget::itemSelectionChanged, this,
            [&](History *history) { told.append(history ? history->editor() : nullptr); });
    add(2);
    QCOMPARE(told.last(), list()->rowItem(0)->editor());
    list()->setCurrentRow(1);
    QCOMPARE(told.last(), list()->rowItem(1)->editor());
    m_panel->clearSelection();
    QCOMPARE(told.last(), nullptr);
    QVERIFY(!m_panel->currentItem());
}

void Tst_HistoryWidget::arrowsStopAtTheEnds() {
    m_panel->selectNextRow();
    m_panel->selectPreviousRow();
    add(3);
    m_panel->selectPreviousRow();
    QCOMPARE(m_panel->currentItem(), list()->rowItem(0));
    m_panel->selectNextRow();
    QCOMPARE(m_panel->currentItem(), list()->rowItem(1));
    m_panel->selectNextRow();
    m_panel->selectNextRow();
    QCOMPARE(m_panel->currentItem(), list()->rowItem(2));
    m_panel->selectPreviousRow();
    QCOMPARE(m_panel->currentItem(), list()->rowItem(1));
}

void Tst_HistoryWidget::sizeOfTheCurrentCapture() {
    QVERIFY(!m_panel->currentImageSize().isValid());
    m_panel->addImage(Session::captureInMemory("m"_qs, {30, 20}));
    QCOMPARE(m_panel->currentImageSize(), QSize(30, 20));
    QMetaObject::invokeMethod(list()->rowItem(0)->editor(), "onCrop", Q_ARG(QRect, QRect(5, 5, 10, 6)));
    QCOMPARE(m_panel->currentImageSize(), QSize(10, 6));
}

void Tst_HistoryWidget::emptyEditorEndsSelectMode() {
    add(1);
    button("historySelectMode_")->click();
    m_panel->onEmptyEditor(true);
    QVERIFY(!button("historySelectMode_")->isChecked());
    QVERIFY(!button("historySelectMode_")->isEnabled());
    QCOMPARE(list()->selectionMode(), HistorySelectModes::Normal);
    m_panel->onEmptyEditor(false);
    QVERIFY(button("historySelectMode_")->isEnabled());
    QVERIFY(button("historyDeleteImages_")->isEnabled());
}

void Tst_HistoryWidget::hideButtonIsReported() {
    QSignalSpy spy(m_panel.get(), &HistoryWidget::historyHide);
    button("historyHide_")->click();
    QCOMPARE(spy.count(), 1);
}

void Tst_HistoryWidget::deleteKeySparesSelectMode() {
    m_session->preferences->SetBool(TindraPreferences::NotifyDeleteHistory, false);
    m_panel->onDeleteCurrentImage();
    add(2);
    button("historySelectMode_")->click();
    m_panel->onDeleteCurrentImage();
    QCOMPARE(list()->count(), 2);
    button("historySelectMode_")->click();
    m_panel->onDeleteCurrentImage();
    QCOMPARE(list()->count(), 1);
    QCOMPARE(keyOf(0), "m0"_qs);
}

void Tst_HistoryWidget::deleteAllTakesPinnedRowsToo() {
    add(7);
    for (int row = 0; row < 5; ++row)
        list()->rowWidget(list()->rowItem(row))->setPinned(true);
    QCOMPARE(list()->pinnedCount(nullptr), 5);
    QVector<bool> empty;
    connect(m_panel.get(), &HistoryWidget::itemSelectionChanged, this,
            [&](History *history) { empty.append(!history); });
    ModalAnswers answers;
    answers.addPress("Yes"_qs);
    m_session->usage.clear();
    button("historyDeleteImages_")->click();
    QVERIFY(answers.isDone());
    QCOMPARE(list()->count(), 0);
    QCOMPARE(empty, QVector<bool>{true});
    QCOMPARE(countInfo(), "[0/100]"_qs);
    QCOMPARE(m_session->usage, QStringList{"cap_30_23"_qs});
}

void Tst_HistoryWidget::deleteAllAsks_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("left");
    QTest::newRow("yes") << "Yes" << 0;
    QTest::newRow("no") << "No" << 2;
    QTest::newRow("closed") << "" << 2;
}

void Tst_HistoryWidget::deleteAllAsks() {
    QFETCH(QString, button);
    add(2);
    ModalAnswers answers;
    if (button.isEmpty()) {
        answers.add([](QWidget *dialog) {
            dialog->findChild<QCheckBox *>()->setChecked(true);
            dialog->close();
        });
    } else {
        answers.addTickAndPress(button);
    }
    m_panel->onClickDeleteImages();
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(), QStringList{"Would you clear history?|It will erase all captured images."_qs});
    QTEST(list()->count(), "left");
    QVERIFY(!m_session->preferences->GetBool(TindraPreferences::NotifyDeleteAllHistory, true));
}

void Tst_HistoryWidget::deleteCheckedRows() {
    add(4);
    button("historySelectMode_")->click();
    check(0)->click();
    check(2)->click();
    ModalAnswers answers;
    answers.addPress("Yes"_qs);
    m_session->usage.clear();
    button("historyDeleteImages_")->click();
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(),
             QStringList{"Would you delete selected images?|It will erase selected images."_qs});
    QCOMPARE(m_session->usage, QStringList{"cap_30_21"_qs});
    QCOMPARE(list()->count(), 2);
    QCOMPARE(keyOf(0), "m2"_qs);
    QCOMPARE(keyOf(1), "m0"_qs);
    QCOMPARE(m_panel->currentItem(), list()->rowItem(0));
    QVERIFY(!button("historySelectMode_")->isChecked());
    QCOMPARE(countInfo(), "[2/100]"_qs);
    QVERIFY(m_session->preferences->GetBool(TindraPreferences::NotifyDeleteAllHistory, false));
}

void Tst_HistoryWidget::deleteAllWithoutQuestion() {
    m_session->preferences->SetBool(TindraPreferences::NotifyDeleteAllHistory, false);
    add(2);
    ModalAnswers answers;
    m_panel->onClickDeleteImages();
    QVERIFY(answers.isDone());
    QCOMPARE(list()->count(), 0);
}

void Tst_HistoryWidget::saveWithoutARowIsCountedOnly() {
    ModalAnswers answers;
    m_session->usage.clear();
    m_panel->onSaveImage(nullptr);
    QVERIFY(answers.isDone());
    QCOMPARE(m_session->usage, QStringList{"cap_30_01"_qs});
}

void Tst_HistoryWidget::onlyWhatWasAskedAboutIsDeleted_data() {
    QTest::addColumn<bool>("selecting");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("selected") << true << QStringList{"late"_qs, "m2"_qs, "m1"_qs};
    QTest::newRow("all") << false << QStringList{"late"_qs};
}

void Tst_HistoryWidget::onlyWhatWasAskedAboutIsDeleted() {
    QFETCH(bool, selecting);
    add(4);
    if (selecting) {
        button("historySelectMode_")->click();
        check(0)->click();
        check(3)->click();
    }
    ModalAnswers answers;
    answers.add([&](QWidget *dialog) {
        // One row goes, one comes, and the mode ends while the question stands.
        list()->removeItem(list()->rowItem(0), false, true);
        QVERIFY(m_panel->addImage(Session::captureInMemory("late"_qs)));
        m_panel->onEmptyEditor(false);
        ModalAnswers::press(dialog, "Yes"_qs);
    });
    button("historyDeleteImages_")->click();
    QVERIFY(answers.isDone());
    QStringList left;
    for (int row = 0; row < list()->count(); ++row)
        left.append(keyOf(row));
    QTEST(left, "left");
    QCOMPARE(m_panel->currentItem(), list()->rowItem(0));
    QVERIFY(!button("historySelectMode_")->isChecked());
}

QTEST_MAIN(Tst_HistoryWidget)
#include "tst_historywidget.moc"
