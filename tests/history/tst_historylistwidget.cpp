#include "canvas/editor.h"
#include "history/historybutton.h"
#include "history/historybuttonwidget.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "support/literals.h"
#include "support/modalanswers.h"
#include "support/openedurls.h"
#include "support/session.h"

#include <QtTest>

class Tst_HistoryListWidget : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void newCaptureGoesBehindThePinnedBlock();
    void newCaptureIsSelectedAndCurrent();
    void removalSelectsTheRowAbove_data();
    void removalSelectsTheRowAbove();
    void removalOfTheLastRowClearsTheSelection();
    void removalReportsOneChange();
    void removalKeepsTheSelectionWhileRowsAreChecked();
    void removalOfTheSelectedRowWhileOthersAreChecked();
    void removalOfTheOnlyCheckedRow_data();
    void removalOfTheOnlyCheckedRow();
    void removedRowTakesItsFileAlong();
    void destroyedListLeavesTheFiles();
    void unsavedRowIsAskedAbout_data();
    void unsavedRowIsAskedAbout();
    void noQuestionWithoutNeed_data();
    void noQuestionWithoutNeed();
    void rowThatVanishesDuringTheQuestion();

    void oneRowIsSelectedAndPixelsScroll();
    void pinOfNoRowDoesNothing();
    void newestPinGoesToTheTop();
    void unpinnedRowGoesBehindTheBlock_data();
    void unpinnedRowGoesBehindTheBlock();
    void sixthPinIsRefused();
    void pinKeepsSceneAndLooks();
    void pinKeepsTheOtherSelection();
    void pinOfTheSelectedRowKeepsItSelected();
    void pinByTheProgramPinsOnce();

    void buttonsFollowTheSelection();
    void clickSelects();
    void checkedRowsInOrder();
    void selectModeReachesRowsOfLater();
    void contextMenuFollowsModeAndState_data();
    void contextMenuFollowsModeAndState();
    void openFolderShowsTheSavedFile();
    void openImageOpensTheSavedFile();
    void selectionIsTold();
    void menuOutlivesARowThatIsDropped_data();
    void menuOutlivesARowThatIsDropped();

private:
    HistoryListWidgetItem *add(const QString &name) {
        m_list->insertImage(Session::captureFile(name), true, -1);
        return m_list->selectedItem();
    }
    /// Rows from the top, by the names of their files.
    QString rows() const {
        QStringList names;
        for (int row = 0; row < m_list->count(); ++row)
            names.append(nameOf(m_list->rowItem(row)));
        return names.join(QLatin1Char(' '));
    }
    static QString nameOf(const HistoryListWidgetItem *item) {
        return item ? QFileInfo(item->editor()->imageKey()).baseName() : QString();
    }
    HistoryListWidgetItem *item(const QString &name) const {
        for (int row = 0; row < m_list->count(); ++row) {
            if (nameOf(m_list->rowItem(row)) == name)
                return m_list->rowItem(row);
        }
        return nullptr;
    }
    HistoryButtonWidget *row(const QString &name) const { return m_list->rowWidget(item(name)); }
    QPushButton *control(const QString &name, const char *control) const {
        return row(name)->findChild<QPushButton *>(QLatin1String(control));
    }
    void clickPin(const QString &name) { control(name, "pinButton_")->click(); }
    void check(const QString &name) { control(name, "selectButton_")->click(); }
    QString selected() const { return nameOf(m_list->selectedItem()); }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<HistoryListWidget> m_list;
};

void Tst_HistoryListWidget::init() {
    m_session = std::make_unique<Session>();
    m_list = std::make_unique<HistoryListWidget>();
}

void Tst_HistoryListWidget::cleanup() {
    m_list.reset();
    m_session.reset();
}

void Tst_HistoryListWidget::newCaptureGoesBehindThePinnedBlock() {
    add("a"_qs);
    add("b"_qs);
    QCOMPARE(rows(), "b a"_qs);
    clickPin("a"_qs);
    add("c"_qs);
    QCOMPARE(rows(), "a c b"_qs);
}

void Tst_HistoryListWidget::newCaptureIsSelectedAndCurrent() {
    add("a"_qs);
    add("b"_qs);
    QCOMPARE(selected(), "b"_qs);
    QCOMPARE(m_list->currentRow(), 0);
    QCOMPARE(m_list->selectedItems().size(), 1);
}

void Tst_HistoryListWidget::removalSelectsTheRowAbove_data() {
    QTest::addColumn<QString>("removed");
    QTest::addColumn<QString>("selectedBefore");
    QTest::addColumn<QString>("selectedAfter");
    QTest::newRow("middle") << "b"
                            << "b"
                            << "c";
    QTest::newRow("last") << "a"
                          << "a"
                          << "b";
    QTest::newRow("first") << "c"
                           << "c"
                           << "b";
    QTest::newRow("another than the selected") << "a"
                                               << "c"
                                               << "b";
}

void Tst_HistoryListWidget::removalSelectsTheRowAbove() {
    QFETCH(QString, removed);
    QFETCH(QString, selectedBefore);
    for (const QString &name : QStringList{"a"_qs, "b"_qs, "c"_qs})
        add(name);
    QCOMPARE(rows(), "c b a"_qs);
    m_list->onHistoryClicked(item(selectedBefore));
    m_list->removeItem(item(removed), false, true);
    QTEST(selected(), "selectedAfter");
    QCOMPARE(nameOf(m_list->rowItem(m_list->currentRow())), selected());
    QVERIFY(row(selected())->findChild<HistoryButton *>()->isChecked());
}

void Tst_HistoryListWidget::removalOfTheLastRowClearsTheSelection() {
    add("a"_qs);
    QSignalSpy changes(m_list.get(), &QListWidget::itemSelectionChanged);
    QSignalSpy counts(m_list.get(), &HistoryListWidget::updateHistoryCount);
    m_list->removeItem(item("a"_qs), false, true);
    QCOMPARE(m_list->count(), 0);
    QVERIFY(!m_list->selectedItem());
    QCOMPARE(changes.count(), 1);
    QCOMPARE(counts.count(), 1);
    m_list->removeItem(nullptr, true, true);
    QCOMPARE(counts.count(), 1);
}

void Tst_HistoryListWidget::removalReportsOneChange() {
    for (const QString &name : QStringList{"a"_qs, "b"_qs, "c"_qs})
        add(name);
    m_list->onHistoryClicked(item("b"_qs));
    QStringList seen;
    connect(m_list.get(), &QListWidget::itemSelectionChanged, this, [&] { seen.append(selected()); });
    m_list->removeItem(item("b"_qs), false, true);
    QCOMPARE(seen, QStringList{"c"_qs});
}

void Tst_HistoryListWidget::removalKeepsTheSelectionWhileRowsAreChecked() {
    for (const QString &name : QStringList{"a"_qs, "b"_qs, "c"_qs})
        add(name);
    m_list->setSelectionMode(HistorySelectModes::Select);
    check("c"_qs);
    m_list->onHistoryClicked(item("c"_qs));
    m_list->removeItem(item("a"_qs), false, true);
    QCOMPARE(selected(), "c"_qs);
}

void Tst_HistoryListWidget::removalOfTheSelectedRowWhileOthersAreChecked() {
    for (const QString &name : QStringList{"a"_qs, "b"_qs, "c"_qs})
        add(name);
    m_list->setSelectionMode(HistorySelectModes::Select);
    check("a"_qs);
    m_list->onHistoryClicked(item("b"_qs));
    QStringList seen;
    connect(m_list.get(), &QListWidget::itemSelectionChanged, this, [&] { seen.append(selected()); });
    m_list->removeItem(item("b"_qs), false, true);
    QCOMPARE(rows(), "c a"_qs);
    // The canvas hears once of the scene that went, and shows what is selected now.
    QCOMPARE(seen, QStringList{selected()});
    QCOMPARE(m_list->checkedItems(), QVector<HistoryListWidgetItem *>{item("a"_qs)});
}

void Tst_HistoryListWidget::removalOfTheOnlyCheckedRow_data() {
    QTest::addColumn<QString>("checked");
    QTest::addColumn<QString>("selectedAfter");
    QTest::newRow("the selected one") << "b"
                                      << "c";
    QTest::newRow("another one") << "a"
                                 << "b";
    QTest::newRow("the first") << "c"
                               << "b";
}

// With no check left, the row above the removed one is selected, wherever the selection was.
void Tst_HistoryListWidget::removalOfTheOnlyCheckedRow() {
    QFETCH(QString, checked);
    for (const QString &name : QStringList{"a"_qs, "b"_qs, "c"_qs})
        add(name);
    m_list->setSelectionMode(HistorySelectModes::Select);
    check(checked);
    m_list->onHistoryClicked(item("b"_qs));
    m_list->removeItem(item(checked), false, true);
    QTEST(selected(), "selectedAfter");
    QVERIFY(m_list->checkedItems().isEmpty());
}

void Tst_HistoryListWidget::removedRowTakesItsFileAlong() {
    const QString file = add("a"_qs)->editor()->imageKey();
    const QPointer<Editor> editor = item("a"_qs)->editor();
    QVERIFY(QFile::exists(file));
    m_list->removeItem(item("a"_qs), false, true);
    QVERIFY(!QFile::exists(file));
    QVERIFY(!editor);
}

void Tst_HistoryListWidget::destroyedListLeavesTheFiles() {
    const QString file = add("a"_qs)->editor()->imageKey();
    const QPointer<Editor> editor = item("a"_qs)->editor();
    m_list.reset();
    QVERIFY(!editor);
    QVERIFY(QFile::exists(file));
}

void Tst_HistoryListWidget::unsavedRowIsAskedAbout_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("savesWhenAsked");
    QTest::addColumn<bool>("removed");
    QTest::addColumn<int>("saveRequests");
    QTest::newRow("yes") << "Yes" << true << true << 0;
    QTest::newRow("no") << "No" << true << false << 0;
    QTest::newRow("saved first") << "Discard after save" << true << true << 1;
    QTest::newRow("save was cancelled") << "Discard after save" << false << false << 1;
    QTest::newRow("closed") << "" << true << false << 0;
}

void Tst_HistoryListWidget::unsavedRowIsAskedAbout() {
    QFETCH(QString, button);
    QFETCH(bool, savesWhenAsked);
    add("a"_qs);
    int requests = 0;
    connect(m_list.get(), &HistoryListWidget::contextMenuSave, this,
            [&](QListWidgetItem *wanted, bool autoSave, bool showResult) {
                ++requests;
                QCOMPARE(wanted, item("a"_qs));
                QVERIFY(!autoSave && showResult);
                if (savesWhenAsked)
                    item("a"_qs)->editor()->setSavedPath("/saved.png"_qs);
            });
    ModalAnswers answers;
    if (button.isEmpty())
        answers.addClose();
    else
        answers.addTickAndPress(button);
    m_list->onContextMenuDelete(item("a"_qs));
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts().value(0),
             "Would you delete image?|Cannot be recovered image has been deleted."_qs);
    QTEST(m_list->count() == 0, "removed");
    QTEST(requests, "saveRequests");
    // "Skip" counts whatever the answer was.
    QCOMPARE(m_session->preferences->GetBool(TindraPreferences::NotifyDeleteHistory, true), button.isEmpty());
}

void Tst_HistoryListWidget::noQuestionWithoutNeed_data() {
    QTest::addColumn<bool>("saved");
    QTest::addColumn<bool>("notify");
    QTest::newRow("saved") << true << true;
    QTest::newRow("question switched off") << false << false;
}

void Tst_HistoryListWidget::noQuestionWithoutNeed() {
    QFETCH(bool, saved);
    QFETCH(bool, notify);
    add("a"_qs);
    m_session->preferences->SetBool(TindraPreferences::NotifyDeleteHistory, notify);
    if (saved)
        item("a"_qs)->editor()->setSavedPath("/saved.png"_qs);
    ModalAnswers answers;
    control("a"_qs, "closeButton_")->click();
    QVERIFY(answers.isDone());
    QCOMPARE(m_list->count(), 0);
}

void Tst_HistoryListWidget::rowThatVanishesDuringTheQuestion() {
    add("a"_qs);
    add("b"_qs);
    ModalAnswers answers;
    answers.add([this](QWidget *dialog) {
        m_list->removeItem(item("a"_qs), false, true);
        ModalAnswers::press(dialog, "Yes"_qs);
    });
    m_list->onContextMenuDelete(item("a"_qs));
    QVERIFY(answers.isDone());
    QCOMPARE(rows(), "b"_qs);
}

void Tst_HistoryListWidget::oneRowIsSelectedAndPixelsScroll() {
    QCOMPARE(m_list->QListWidget::selectionMode(), QAbstractItemView::SingleSelection);
    QCOMPARE(m_list->horizontalScrollMode(), QAbstractItemView::ScrollPerPixel);
    QCOMPARE(m_list->verticalScrollMode(), QAbstractItemView::ScrollPerPixel);
}

void Tst_HistoryListWidget::pinOfNoRowDoesNothing() {
    add("a"_qs);
    m_list->onPinHistory(nullptr, true);
    QCOMPARE(m_list->pinnedCount(nullptr), 0);
}

void Tst_HistoryListWidget::newestPinGoesToTheTop() {
    for (const QString &name : QStringList{"a"_qs, "b"_qs, "c"_qs, "d"_qs})
        add(name);
    for (const QString &name : QStringList{"a"_qs, "b"_qs, "c"_qs})
        clickPin(name);
    QCOMPARE(rows(), "c b a d"_qs);
    QCOMPARE(m_list->pinnedCount(nullptr), 3);
    QCOMPARE(m_list->pinnedCount(item("b"_qs)), 2);
}

void Tst_HistoryListWidget::unpinnedRowGoesBehindTheBlock_data() {
    QTest::addColumn<QString>("unpinned");
    QTest::addColumn<QString>("rows");
    QTest::newRow("first of the block") << "c"
                                        << "b a c d";
    QTest::newRow("middle of the block") << "b"
                                         << "c a b d";
    QTest::newRow("last of the block") << "a"
                                       << "c b a d";
}

void Tst_HistoryListWidget::unpinnedRowGoesBehindTheBlock() {
    QFETCH(QString, unpinned);
    for (const QString &name : QStringList{"a"_qs, "b"_qs, "c"_qs, "d"_qs})
        add(name);
    for (const QString &name : QStringList{"a"_qs, "b"_qs, "c"_qs})
        clickPin(name);
    clickPin(unpinned);
    QTEST(rows(), "rows");
    QVERIFY(!row(unpinned)->isPinned());
    QCOMPARE(m_list->pinnedCount(nullptr), 2);
}

void Tst_HistoryListWidget::sixthPinIsRefused() {
    for (const QString &name : QStringList{"a"_qs, "b"_qs, "c"_qs, "d"_qs, "e"_qs, "f"_qs})
        add(name);
    for (const QString &name : QStringList{"a"_qs, "b"_qs, "c"_qs, "d"_qs, "e"_qs})
        clickPin(name);
    m_session->usage.clear();
    const QString before = rows();
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    clickPin("f"_qs);
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(), QStringList{"Up to 5 images can be fixed."_qs});
    QCOMPARE(rows(), before);
    QVERIFY(!row("f"_qs)->isPinned());
    QVERIFY(!control("f"_qs, "pinButton_")->isChecked());
    QCOMPARE(m_session->usage, (QStringList{"cap_303_21"_qs, "cap_303_22"_qs}));
    // Pinned rows can still be let go, and the place is free again.
    clickPin("a"_qs);
    clickPin("f"_qs);
    QVERIFY(row("f"_qs)->isPinned());
}

void Tst_HistoryListWidget::pinKeepsSceneAndLooks() {
    add("a"_qs);
    add("b"_qs);
    m_list->setSelectionMode(HistorySelectModes::Select);
    const QPointer<Editor> scene = item("a"_qs)->editor();
    scene->setSavedPath("/saved.png"_qs);
    check("a"_qs);
    QTRY_VERIFY(!row("a"_qs)->findChild<HistoryButton *>()->thumbnail().isNull());
    clickPin("a"_qs);
    QCOMPARE(item("a"_qs)->editor(), scene.data());
    const auto *button = row("a"_qs)->findChild<HistoryButton *>();
    QVERIFY(button->isImageSaved());
    QVERIFY(button->isImageSelected());
    QVERIFY(button->isPinned());
    QVERIFY(!button->thumbnail().isNull());
    QVERIFY(!control("a"_qs, "selectButton_")->isHidden());
}

void Tst_HistoryListWidget::pinKeepsTheOtherSelection() {
    for (const QString &name : QStringList{"a"_qs, "b"_qs, "c"_qs})
        add(name);
    m_list->onHistoryClicked(item("b"_qs));
    QSignalSpy changes(m_list.get(), &QListWidget::itemSelectionChanged);
    clickPin("a"_qs);
    QCOMPARE(rows(), "a c b"_qs);
    QCOMPARE(selected(), "b"_qs);
    QCOMPARE(m_list->currentRow(), 2);
    QVERIFY(row("b"_qs)->findChild<HistoryButton *>()->isChecked());
    QVERIFY(!row("a"_qs)->findChild<HistoryButton *>()->isChecked());
    // The scene in the view stays, with whatever is open in it.
    QCOMPARE(changes.count(), 0);
}

void Tst_HistoryListWidget::pinOfTheSelectedRowKeepsItSelected() {
    for (const QString &name : QStringList{"a"_qs, "b"_qs, "c"_qs})
        add(name);
    m_list->onHistoryClicked(item("a"_qs));
    clickPin("a"_qs);
    QCOMPARE(selected(), "a"_qs);
    QCOMPARE(m_list->currentRow(), 0);
}

void Tst_HistoryListWidget::pinByTheProgramPinsOnce() {
    add("a"_qs);
    add("b"_qs);
    int requests = 0;
    for (const QString &name : QStringList{"a"_qs, "b"_qs})
        connect(row(name), &HistoryButtonWidget::pinHistory, this, [&] { ++requests; });
    row("a"_qs)->setPinned(true);
    QCOMPARE(requests, 1);
    QCOMPARE(rows(), "a b"_qs);
    QVERIFY(row("a"_qs)->isPinned());
}

void Tst_HistoryListWidget::buttonsFollowTheSelection() {
    add("a"_qs);
    add("b"_qs);
    m_list->setCurrentRow(1);
    QVERIFY(row("a"_qs)->findChild<HistoryButton *>()->isChecked());
    QVERIFY(!row("b"_qs)->findChild<HistoryButton *>()->isChecked());
}

void Tst_HistoryListWidget::clickSelects() {
    add("a"_qs);
    add("b"_qs);
    row("a"_qs)->findChild<HistoryButton *>()->click();
    QCOMPARE(selected(), "a"_qs);
    // A second click would uncheck a plain checkable button.
    row("a"_qs)->findChild<HistoryButton *>()->click();
    QCOMPARE(selected(), "a"_qs);
    QVERIFY(row("a"_qs)->findChild<HistoryButton *>()->isChecked());
    m_list->onHistoryClicked(nullptr);
    QCOMPARE(selected(), "a"_qs);
}

void Tst_HistoryListWidget::checkedRowsInOrder() {
    for (const QString &name : QStringList{"a"_qs, "b"_qs, "c"_qs})
        add(name);
    m_list->setSelectionMode(HistorySelectModes::Select);
    QSignalSpy spy(m_list.get(), &HistoryListWidget::changeSelectChecked);
    check("a"_qs);
    check("c"_qs);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(m_list->checkedItems(), (QVector<HistoryListWidgetItem *>{item("c"_qs), item("a"_qs)}));
    m_list->setSelectionMode(HistorySelectModes::Normal);
    QVERIFY(m_list->checkedItems().isEmpty());
}

void Tst_HistoryListWidget::selectModeReachesRowsOfLater() {
    add("a"_qs);
    m_list->setSelectionMode(HistorySelectModes::Select);
    add("b"_qs);
    QVERIFY(!control("a"_qs, "selectButton_")->isHidden());
    QVERIFY(!control("b"_qs, "selectButton_")->isHidden());
}

void Tst_HistoryListWidget::contextMenuFollowsModeAndState_data() {
    QTest::addColumn<bool>("selecting");
    QTest::addColumn<bool>("checked");
    QTest::addColumn<bool>("saved");
    QTest::addColumn<QStringList>("entries"); // disabled ones in ()
    QTest::newRow("normal") << false << false << false
                            << QStringList{"Save"_qs,
                                           "Delete"_qs,
                                           "-"_qs,
                                           "Save all images"_qs,
                                           "Delete all images"_qs,
                                           "-"_qs,
                                           "(OpenSavedFolder(&O))"_qs,
                                           "(OpenSavedImage(&V))"_qs,
                                           "-"_qs,
                                           "Print image"_qs};
    QTest::newRow("saved") << false << false << true
                           << QStringList{"Save"_qs,
                                          "Delete"_qs,
                                          "-"_qs,
                                          "Save all images"_qs,
                                          "Delete all images"_qs,
                                          "-"_qs,
                                          "OpenSavedFolder(&O)"_qs,
                                          "OpenSavedImage(&V)"_qs,
                                          "-"_qs,
                                          "Print image"_qs};
    QTest::newRow("nothing checked") << true << false << false
                                     << QStringList{"Save"_qs,
                                                    "Delete"_qs,
                                                    "-"_qs,
                                                    "(Save selected images)"_qs,
                                                    "(Delete seleted images)"_qs,
                                                    "-"_qs,
                                                    "(OpenSavedFolder(&O))"_qs,
                                                    "(OpenSavedImage(&V))"_qs,
                                                    "-"_qs,
                                                    "(Print selected images)"_qs};
    QTest::newRow("another row checked") << true << true << false
                                         << QStringList{"Save"_qs,
                                                        "Delete"_qs,
                                                        "-"_qs,
                                                        "Save selected images"_qs,
                                                        "Delete seleted images"_qs,
                                                        "-"_qs,
                                                        "(OpenSavedFolder(&O))"_qs,
                                                        "(OpenSavedImage(&V))"_qs,
                                                        "-"_qs,
                                                        "Print selected images"_qs};
}

void Tst_HistoryListWidget::contextMenuFollowsModeAndState() {
    QFETCH(bool, selecting);
    QFETCH(bool, checked);
    QFETCH(bool, saved);
    add("a"_qs);
    add("b"_qs);
    m_list->setSelectionMode(selecting ? HistorySelectModes::Select : HistorySelectModes::Normal);
    if (checked)
        check("b"_qs);
    if (saved)
        item("a"_qs)->editor()->setSavedPath("/saved.png"_qs);

    const QPoint place(123, 45);
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(), place);
    QCoreApplication::sendEvent(row("a"_qs), &event);
    auto *menu = row("a"_qs)->findChild<QMenu *>();
    QVERIFY(menu->isVisible());
    QCOMPARE(menu->pos(), place);
    QStringList entries;
    for (const QAction *action : menu->actions()) {
        if (action->isSeparator())
            entries.append("-"_qs);
        else if (action->isVisible())
            entries.append(action->isEnabled() ? action->text() : "(%1)"_qs.arg(action->text()));
    }
    QTEST(entries, "entries");
    QCOMPARE(menu->actions().at(0)->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_S));
    QCOMPARE(menu->actions().at(1)->shortcut(), QKeySequence(Qt::Key_Delete));
    menu->close();
}

void Tst_HistoryListWidget::openFolderShowsTheSavedFile() {
    add("a"_qs);
    const QString saved = Session::captureFile("saved"_qs);
    item("a"_qs)->editor()->setSavedPath(saved);
    row("a"_qs)->onContextMenuOpenSavedFolder();
    m_list->onContextMenuOpenSavedFolder(nullptr);
    QCOMPARE(m_session->platform->shownFiles, QStringList{saved});
}

void Tst_HistoryListWidget::openImageOpensTheSavedFile() {
    OpenedUrls opened;
    add("a"_qs);
    const QString saved = Session::captureFile("saved one"_qs);
    item("a"_qs)->editor()->setSavedPath(saved);
    row("a"_qs)->onContextMenuOpenSavedImage();
    QCOMPARE(opened.urls, QVector<QUrl>{QUrl::fromLocalFile(saved)});
    m_list->onContextMenuOpenSavedImage(nullptr);
    QCOMPARE(opened.urls.size(), 1);
}

void Tst_HistoryListWidget::selectionIsTold() {
    QVector<bool> told;
    connect(m_list.get(), &HistoryListWidget::widgetSelectionChanged, this,
            [&](bool selected) { told.append(selected); });
    add("a"_qs);
    QCOMPARE(told, QVector<bool>{true});
    m_list->clearSelection();
    QCOMPARE(told, (QVector<bool>{true, false}));
}

void Tst_HistoryListWidget::menuOutlivesARowThatIsDropped_data() {
    QTest::addColumn<int>("entry");
    QTest::newRow("save") << 0;
    QTest::newRow("delete") << 1;
    QTest::newRow("save all") << 3;
    QTest::newRow("delete all") << 4;
    QTest::newRow("open folder") << 6;
    QTest::newRow("open image") << 7;
}

// Each of them may open a dialog, in which a new capture drops this row and with it the menu.
void Tst_HistoryListWidget::menuOutlivesARowThatIsDropped() {
    QFETCH(int, entry);
    OpenedUrls opened;
    add("a"_qs);
    item("a"_qs)->editor()->setSavedPath("/saved.png"_qs);
    QContextMenuEvent open(QContextMenuEvent::Mouse, QPoint());
    QCoreApplication::sendEvent(row("a"_qs), &open);
    const QPointer<QMenu> menu = row("a"_qs)->findChild<QMenu *>();
    bool isInClick = false;
    bool hasRun = false;
    const auto act = [&] {
        QVERIFY(!isInClick);
        hasRun = true;
        // What the loop of a dialog does with the row.
        m_list->removeItem(item("a"_qs), false, true);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    const QPointer<HistoryButtonWidget> widget = row("a"_qs);
    connect(widget, &HistoryButtonWidget::contextMenuSave, this, act);
    connect(widget, &HistoryButtonWidget::contextMenuDelete, this, [&] {
        if (!hasRun)
            act();
    });
    connect(widget, &HistoryButtonWidget::contextMenuSaveImages, this, act);
    connect(widget, &HistoryButtonWidget::contextMenuDeleteImages, this, act);
    connect(widget, &HistoryButtonWidget::contextMenuOpenSavedFolder, this, act);
    connect(widget, &HistoryButtonWidget::contextMenuOpenSavedImage, this, act);
    QVERIFY(menu->actions().at(entry)->isVisible());
    isInClick = true;
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions().at(entry)).center());
    isInClick = false;
    QTRY_VERIFY(hasRun);
    QTRY_VERIFY(!widget);
    QVERIFY(!menu);
}

QTEST_MAIN(Tst_HistoryListWidget)
#include "tst_historylistwidget.moc"
