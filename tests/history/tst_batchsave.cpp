#include "canvas/editor.h"
#include "history/historybutton.h"
#include "history/historybuttonwidget.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "history/historywidget.h"
#include "support/literals.h"
#include "support/modalanswers.h"
#include "support/openedurls.h"
#include "support/session.h"
#include "support/tracedby.h"

#include <QBuffer>
#include <QGraphicsRectItem>
#include <QImageReader>
#include <QPushButton>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtConcurrent>
#include <QtTest>

/// "save images" and "save selected images", from the click to the result.
class Tst_BatchSave : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void allAreSavedOldestFirst();
    void drawingsAreSaved();
    void serialNamesGoOn();
    void takenNamesAreSkipped();
    void namesOfRowsAreSkipped_data();
    void namesOfRowsAreSkipped();
    void autoSaveInsideABatchTakesANameOfItsOwn();
    void batchAfterTheClockWentBackwards();
    void savedRowsAreSavedAgain();
    void onlyCheckedRowsAreSaved();
    void moreThanThePoolHolds();
    void missingFolderIsMade();
    void jpgGetsItsQuality();
    void resultIsTold();
    void skipSwitchesTheResultOff();
    void unwantedResultIsNotTold();
    void cancelledDialogSavesNothing();
    void folderThatCannotBeMade();
    void folderThatTakesNoFile();
    void partOfTheRows_data();
    void partOfTheRows();
    void fileTakenAwayHoldsUpNothing_data();
    void fileTakenAwayHoldsUpNothing();
    void waitCursorShowsDuringTheBatch();
    void rowThatGoesMeanwhileIsPassedOver();
    void rowThatGoesDuringItsWaitIsPassedOver();
    void rowThatComesDuringTheDialogIsNotMeant();
    void secondClickDuringABatchDoesNothing();
    void contextMenuSavesAndDeletes();
    void usageIsRecorded_data();
    void usageIsRecorded();

private:
    using P = TindraPreferences;
    void add(int width) {
        QVERIFY(m_panel->addImage(Session::captureFile("c%1"_qs.arg(width), {width, 20}, Qt::white)));
    }
    void addThree() {
        for (int width : {11, 12, 13})
            add(width);
    }
    HistoryListWidget *list() const { return m_panel->findChild<HistoryListWidget *>(); }
    Editor *editor(int row) const { return list()->rowItem(row)->editor(); }
    QPushButton *button(const char *name) const {
        return m_panel->findChild<QPushButton *>(QLatin1String(name));
    }
    HistoryButton *rowButton(int row) const {
        return list()->rowWidget(list()->rowItem(row))->findChild<HistoryButton *>();
    }
    void selectRows(const QVector<int> &rows) {
        button("historySelectMode_")->click();
        for (int row : rows)
            rowButton(row)->findChild<QPushButton *>("selectButton_"_qs)->setChecked(true);
    }
    /// Presses "save images" and goes ahead in its dialog.
    void saveAll() {
        m_answers->addPress("save"_qs);
        button("historySaveImages_")->click();
        QVERIFY(m_answers->isDone());
    }
    QString target(const QString &name) const { return m_target->filePath(name); }
    QStringList written() const { return QDir(m_target->path()).entryList(QDir::Files, QDir::Name); }
    int widthOf(const QString &name) const { return QImageReader(target(name)).size().width(); }
    TindraPreferences *preferences() const { return m_session->preferences; }
    void nameBy(int type, const QString &text = {}) {
        preferences()->SetInt(P::FileNameType, type);
        preferences()->SetString(P::FileNameTamplate, text);
    }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<HistoryWidget> m_panel;
    std::unique_ptr<QTemporaryDir> m_target;
    std::unique_ptr<ModalAnswers> m_answers;
};

void Tst_BatchSave::init() {
    m_session = std::make_unique<Session>();
    m_target = std::make_unique<QTemporaryDir>();
    preferences()->SetString(P::FilePath, m_target->path());
    preferences()->SetBool(P::ShowPostSaveAllDlg, false);
    m_panel = std::make_unique<HistoryWidget>();
    m_answers = std::make_unique<ModalAnswers>();
    FileNameUtil::setClock([] { return QDateTime({2024, 5, 6}, {7, 8, 9}); });
}

void Tst_BatchSave::cleanup() {
    FileNameUtil::setClock({});
    m_answers.reset();
    m_panel.reset();
    m_session.reset();
}

void Tst_BatchSave::allAreSavedOldestFirst() {
    addThree();
    saveAll();
    QCOMPARE(written(), (QStringList{"20240506_070809_1.png"_qs, "20240506_070809_2.png"_qs,
                                     "20240506_070809_3.png"_qs}));
    for (int number = 1; number <= 3; ++number) {
        const QString name = "20240506_070809_%1.png"_qs.arg(number);
        QCOMPARE(widthOf(name), 10 + number);
        const int row = 3 - number;
        QCOMPARE(editor(row)->savedPath(), target(name));
        QVERIFY(rowButton(row)->isImageSaved());
    }
    QVERIFY(!m_panel->hasUnsavedImages());
}

void Tst_BatchSave::drawingsAreSaved() {
    addThree();
    for (int row = 0; row < 3; ++row) {
        auto *item = new QGraphicsRectItem(0, 0, 5, 5);
        item->setBrush(Qt::red);
        item->setPen(Qt::NoPen);
        editor(row)->addItem(item);
    }
    saveAll();
    for (const QString &name : written()) {
        const QImage image(target(name));
        QCOMPARE(image.pixelColor(2, 2), QColor(Qt::red));
        QCOMPARE(image.pixelColor(8, 8), QColor(Qt::white));
    }
}

void Tst_BatchSave::serialNamesGoOn() {
    nameBy(FileNameUtil::Serial);
    QVERIFY(QFile(target("0002.png"_qs)).open(QIODevice::WriteOnly));
    for (int width = 11; width < 17; ++width)
        add(width);
    saveAll();
    QCOMPARE(written(), (QStringList{"0001.png"_qs, "0002.png"_qs, "0003.png"_qs, "0004.png"_qs,
                                     "0005.png"_qs, "0006.png"_qs, "0007.png"_qs}));
    QCOMPARE(widthOf("0001.png"_qs), 11);
    QCOMPARE(QFileInfo(target("0002.png"_qs)).size(), qint64(0));
    QCOMPARE(widthOf("0003.png"_qs), 12);
    QCOMPARE(widthOf("0007.png"_qs), 16);
}

void Tst_BatchSave::takenNamesAreSkipped() {
    nameBy(FileNameUtil::Custom, "shot"_qs);
    QVERIFY(QFile(target("shot_2.png"_qs)).open(QIODevice::WriteOnly));
    addThree();
    saveAll();
    QCOMPARE(written(), (QStringList{"shot_1.png"_qs, "shot_2.png"_qs, "shot_3.png"_qs, "shot_4.png"_qs}));
    QCOMPARE(QFileInfo(target("shot_2.png"_qs)).size(), qint64(0));
}

// The second of the first batch comes once more: nothing that it wrote is written over.
void Tst_BatchSave::namesOfRowsAreSkipped_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("date") << int(FileNameUtil::Date)
                          << QStringList{"20240506_070809_1.png"_qs, "20240506_070809_2.png"_qs,
                                         "20240506_070809_3.png"_qs, "20240506_070809_4.png"_qs};
    QTest::newRow("serial") << int(FileNameUtil::Serial)
                            << QStringList{"0001.png"_qs, "0002.png"_qs, "0003.png"_qs, "0004.png"_qs};
}

// A row whose file was taken away still deletes what stands under its name.
void Tst_BatchSave::namesOfRowsAreSkipped() {
    QFETCH(int, type);
    QFETCH(QStringList, names);
    preferences()->SetInt(P::FileNameType, type);
    QImage lone(9, 9, QImage::Format_RGB32);
    lone.fill(Qt::red);
    QVERIFY(ImageProvider::instance()->insert(target(names[1]), QPixmap::fromImage(lone)));
    QVERIFY(m_panel->addImage(target(names[1])));
    add(11);
    add(12);
    saveAll();
    QCOMPARE(written(), (QStringList{names[0], names[2], names[3]}));
    list()->removeItem(list()->rowItem(2), false, true);
    QCOMPARE(written(), (QStringList{names[0], names[2], names[3]}));
}

void Tst_BatchSave::autoSaveInsideABatchTakesANameOfItsOwn() {
    preferences()->SetInt(P::FileNameType, FileNameUtil::Serial);
    preferences()->SetString(P::AutoSavePath, m_target->path());
    add(11);
    add(12);
    m_answers->add([this](QWidget *dialog) {
        QTimer::singleShot(0, this, [this] {
            add(13);
            m_panel->onSaveCurrentImage(true, false);
        });
        static_cast<QDialog *>(dialog)->done(QDialog::Accepted);
    });
    preferences()->SetBool(P::ShowPostSaveDlg, false);
    button("historySaveImages_")->click();
    QCOMPARE(written(), (QStringList{"0001.png"_qs, "0002.png"_qs, "0003.png"_qs}));
    QCOMPARE(widthOf("0001.png"_qs), 11);
    QCOMPARE(widthOf("0002.png"_qs), 13);
    QCOMPARE(widthOf("0003.png"_qs), 12);
}

void Tst_BatchSave::batchAfterTheClockWentBackwards() {
    addThree();
    saveAll();
    saveAll();
    QStringList names;
    for (int number = 1; number <= 6; ++number)
        names.append("20240506_070809_%1.png"_qs.arg(number));
    QCOMPARE(written(), names);
    for (int number = 1; number <= 6; ++number)
        QCOMPARE(widthOf(names[number - 1]), 10 + (number - 1) % 3 + 1);
}

void Tst_BatchSave::savedRowsAreSavedAgain() {
    nameBy(FileNameUtil::Custom, "shot"_qs);
    add(11);
    editor(0)->setSavedPath("/before.png"_qs);
    saveAll();
    QCOMPARE(editor(0)->savedPath(), target("shot_1.png"_qs));
}

void Tst_BatchSave::onlyCheckedRowsAreSaved() {
    nameBy(FileNameUtil::Custom, "shot"_qs);
    addThree();
    selectRows({0, 2});
    saveAll();
    QCOMPARE(written(), (QStringList{"shot_1.png"_qs, "shot_2.png"_qs}));
    QCOMPARE(widthOf("shot_1.png"_qs), 11);
    QCOMPARE(widthOf("shot_2.png"_qs), 13);
    QVERIFY(!editor(1)->isSaved());
    // Select mode is over.
    QVERIFY(!button("historySelectMode_")->isChecked());
    QCOMPARE(button("historySaveImages_")->text(), "save images"_qs);
}

void Tst_BatchSave::moreThanThePoolHolds() {
    nameBy(FileNameUtil::Custom, "shot"_qs);
    for (int width = 1; width <= 40; ++width)
        add(width);
    const QByteArray log = tracedBy([this] { saveAll(); });
    QCOMPARE(written().size(), 40);
    for (int number = 1; number <= 40; ++number) {
        const QString name = "shot_%1.png"_qs.arg(number);
        QCOMPARE(widthOf(name), number);
        // All but the first are the pool's.
        QCOMPARE(log.contains(QString(" future : "_qs + target(name) + "\r\n"_qs).toUtf8()), number > 1);
    }
    QVERIFY(!m_panel->hasUnsavedImages());
}

void Tst_BatchSave::missingFolderIsMade() {
    preferences()->SetString(P::FilePath, target("a/b"_qs));
    addThree();
    saveAll();
    QCOMPARE(QDir(target("a/b"_qs)).entryList(QDir::Files).size(), 3);
}

void Tst_BatchSave::jpgGetsItsQuality() {
    nameBy(FileNameUtil::Custom, "shot"_qs);
    preferences()->SetInt(P::FileFormat, 1);
    preferences()->SetString(P::JpgQuality, "30"_qs);
    addThree();
    QImage noise(64, 64, QImage::Format_RGB32);
    for (int i = 0; i < 64 * 64; ++i)
        noise.setPixel(i % 64, i / 64, qRgb(i * 37, i * 91, i * 13));
    for (int row = 0; row < 3; ++row)
        QVERIFY(noise.save(editor(row)->imageKey(), "PNG"));
    ImageProvider::resetForTesting();
    saveAll();
    QBuffer expected;
    expected.open(QIODevice::WriteOnly);
    QVERIFY(noise.save(&expected, "jpg", 30));
    for (const QString &name : {"shot_1.jpg"_qs, "shot_3.jpg"_qs})
        QCOMPARE(QFileInfo(target(name)).size(), qint64(expected.size()));
}

void Tst_BatchSave::resultIsTold() {
    nameBy(FileNameUtil::Custom, "shot"_qs);
    preferences()->SetBool(P::ShowPostSaveAllDlg, true);
    const OpenedUrls opened;
    addThree();
    m_answers->addPress("save"_qs);
    m_answers->addPress("Open Image"_qs);
    button("historySaveImages_")->click();
    QVERIFY(m_answers->isDone());
    QCOMPARE(m_answers->texts().last(), "Saved captured 3 images.|"_qs + m_target->path());
    QCOMPARE(opened.urls, QVector<QUrl>{QUrl::fromLocalFile(target("shot_1.png"_qs))});
    QVERIFY(preferences()->GetBool(P::ShowPostSaveAllDlg, false));
}

void Tst_BatchSave::skipSwitchesTheResultOff() {
    preferences()->SetBool(P::ShowPostSaveAllDlg, true);
    add(11);
    m_answers->addPress("save"_qs);
    m_answers->addTickAndPress("Close"_qs);
    button("historySaveImages_")->click();
    QVERIFY(m_answers->isDone());
    QVERIFY(!preferences()->GetBool(P::ShowPostSaveAllDlg, true));
}

void Tst_BatchSave::unwantedResultIsNotTold() {
    add(11);
    saveAll();
    QCOMPARE(m_answers->texts().size(), 1);
}

void Tst_BatchSave::cancelledDialogSavesNothing() {
    add(11);
    selectRows({0});
    m_answers->addPress("cancel"_qs);
    button("historySaveImages_")->click();
    QVERIFY(m_answers->isDone());
    QCOMPARE(written(), QStringList());
    QVERIFY(button("historySelectMode_")->isChecked());
    QVERIFY(!m_session->usage.contains("cap_20_005"_qs));
}

void Tst_BatchSave::folderThatCannotBeMade() {
    const QString blocked = target("blocked"_qs);
    QVERIFY(QFile(blocked).open(QIODevice::WriteOnly));
    preferences()->SetString(P::FilePath, blocked + "/deeper"_qs);
    addThree();
    m_answers->addPress("save"_qs);
    m_answers->addPress("Ok"_qs);
    button("historySaveImages_")->click();
    QVERIFY(m_answers->isDone());
    QCOMPARE(m_answers->texts().last(), "failed to save images.\nplease change save folder."_qs);
    QVERIFY(!editor(0)->isSaved());
}

void Tst_BatchSave::folderThatTakesNoFile() {
    // The folder can be had, but each name is a link into one that is not there.
    nameBy(FileNameUtil::Custom, "shot"_qs);
    for (int number = 1; number <= 3; ++number)
        QVERIFY(QFile::link(target("missing/shot.png"_qs), target("shot_%1.png"_qs.arg(number))));
    addThree();
    m_answers->addPress("save"_qs);
    m_answers->addPress("Ok"_qs);
    button("historySaveImages_")->click();
    QVERIFY(m_answers->isDone());
    QCOMPARE(m_answers->texts().last(), "failed to save images.\nplease change save folder."_qs);
    QCOMPARE(written(), QStringList());
    QVERIFY(m_panel->hasUnsavedImages());
}

void Tst_BatchSave::partOfTheRows_data() {
    QTest::addColumn<int>("nameType");
    QTest::addColumn<int>("brokenRow");
    QTest::newRow("in the pool") << 0 << 1;
    QTest::newRow("the first") << 0 << 2;
    QTest::newRow("in the pool, serial names") << 2 << 1;
    QTest::newRow("the first, serial names") << 2 << 2;
}

void Tst_BatchSave::partOfTheRows() {
    QFETCH(int, nameType);
    QFETCH(int, brokenRow);
    nameBy(nameType, nameType == 0 ? "shot"_qs : QString());
    preferences()->SetBool(P::ShowPostSaveAllDlg, true);
    addThree();
    QVERIFY(QFile::remove(editor(brokenRow)->imageKey()));
    ImageProvider::resetForTesting();
    m_answers->addPress("save"_qs);
    m_answers->addPress("Close"_qs);
    button("historySaveImages_")->click();
    QVERIFY(m_answers->isDone());
    QVERIFY(m_answers->texts().last().startsWith("Saved captured 2 images."_qs));
    QCOMPARE(written().size(), 2);
    for (int row = 0; row < 3; ++row)
        QCOMPARE(editor(row)->isSaved(), row != brokenRow);
}

void Tst_BatchSave::fileTakenAwayHoldsUpNothing_data() {
    QTest::addColumn<int>("takenRow");
    QTest::newRow("the first") << 2;
    QTest::newRow("from the pool") << 1;
}

// As an uploader does that watches the folder: the number is free again, and no worker will ever write it.
void Tst_BatchSave::fileTakenAwayHoldsUpNothing() {
    QFETCH(int, takenRow);
    nameBy(FileNameUtil::Serial);
    preferences()->SetBool(P::ShowPostSaveAllDlg, true);
    addThree();
    Editor *taken = editor(takenRow);
    connect(taken, &Editor::imageSaved, this, [taken] { QVERIFY(QFile::remove(taken->savedPath())); });
    m_answers->addPress("save"_qs);
    m_answers->addPress("Close"_qs);
    button("historySaveImages_")->click();
    QVERIFY(m_answers->isDone());
    QVERIFY(m_answers->texts().last().startsWith("Saved captured 3 images."_qs));
    const QStringList names = written();
    QCOMPARE(names.size(), 2);
    QCOMPARE(names.first(), "0001.png"_qs);
    QCOMPARE(widthOf("0001.png"_qs), takenRow == 2 ? 12 : 11);
    // Whether the worker's number is free again when the next one is asked for is a race of the two.
    QVERIFY2(names.last() == "0002.png"_qs || (takenRow == 1 && names.last() == "0003.png"_qs),
             qPrintable(names.last()));
    QCOMPARE(widthOf(names.last()), 13);
}

void Tst_BatchSave::waitCursorShowsDuringTheBatch() {
    addThree();
    QStringList cursors;
    for (int row = 0; row < 3; ++row) {
        connect(editor(row), &Editor::imageSaved, this, [&cursors] {
            const QCursor *cursor = QGuiApplication::overrideCursor();
            cursors.append(cursor && cursor->shape() == Qt::WaitCursor ? "wait"_qs : "none"_qs);
        });
    }
    saveAll();
    QCOMPARE(cursors, (QStringList{"wait"_qs, "wait"_qs, "wait"_qs}));
    QVERIFY(!QGuiApplication::overrideCursor());
}

void Tst_BatchSave::rowThatGoesMeanwhileIsPassedOver() {
    nameBy(FileNameUtil::Custom, "shot"_qs);
    addThree();
    connect(editor(2), &Editor::imageSaved, m_panel.get(),
            [this] { list()->removeItem(list()->rowItem(1), false, true); });
    saveAll();
    QCOMPARE(written(), (QStringList{"shot_1.png"_qs, "shot_2.png"_qs}));
    QCOMPARE(widthOf("shot_2.png"_qs), 13);
}

void Tst_BatchSave::rowThatGoesDuringItsWaitIsPassedOver() {
    nameBy(FileNameUtil::Custom, "shot"_qs);
    addThree();
    add(14);
    // The only thread is taken, so that the last row waits until the queue has room.
    QThreadPool *pool = QThreadPool::globalInstance();
    const int threads = pool->maxThreadCount();
    pool->setMaxThreadCount(1);
    QSemaphore mayWrite;
    QtConcurrent::run([&mayWrite] { mayWrite.acquire(); });
    bool isGone = false;
    connect(editor(3), &Editor::imageSaved, m_panel.get(), [&] {
        QTimer::singleShot(0, m_panel.get(), [&] {
            list()->removeItem(list()->rowItem(0), false, true);
            isGone = true;
            mayWrite.release();
        });
    });
    saveAll();
    pool->setMaxThreadCount(threads);
    QVERIFY(isGone);
    QCOMPARE(written(), (QStringList{"shot_1.png"_qs, "shot_2.png"_qs, "shot_3.png"_qs}));
}

void Tst_BatchSave::rowThatComesDuringTheDialogIsNotMeant() {
    addThree();
    m_answers->add([this](QWidget *dialog) {
        add(14);
        ModalAnswers::press(dialog, "save"_qs);
    });
    button("historySaveImages_")->click();
    QVERIFY(m_answers->isDone());
    QCOMPARE(written().size(), 3);
    QVERIFY(!editor(0)->isSaved());
}

void Tst_BatchSave::secondClickDuringABatchDoesNothing() {
    nameBy(FileNameUtil::Custom, "shot"_qs);
    addThree();
    connect(editor(2), &Editor::imageSaved, m_panel.get(), [this] { button("historySaveImages_")->click(); });
    saveAll();
    QCOMPARE(written().size(), 3);
    QCOMPARE(m_answers->texts().size(), 1);
}

void Tst_BatchSave::contextMenuSavesAndDeletes() {
    nameBy(FileNameUtil::Custom, "shot"_qs);
    addThree();
    HistoryButtonWidget *row = list()->rowWidget(list()->rowItem(1));
    m_answers->addPress("save"_qs);
    row->onContextMenuSaveImages();
    QVERIFY(m_answers->isDone());
    QCOMPARE(written().size(), 3);
    m_answers->addPress("Yes"_qs);
    row->onContextMenuDeleteImages();
    QVERIFY(m_answers->isDone());
    QCOMPARE(list()->count(), 0);
}

void Tst_BatchSave::usageIsRecorded_data() {
    QTest::addColumn<bool>("selecting");
    QTest::addColumn<int>("format");
    QTest::addColumn<QStringList>("codes");
    QTest::newRow("all, png") << false << 0 << QStringList{"cap_30_22"_qs, "capt_1_011"_qs, "cap_20_005"_qs};
    QTest::newRow("selected, webp") << true << 4
                                    << QStringList{"cap_30_20"_qs, "cap_302_01"_qs, "cap_20_005"_qs};
}

void Tst_BatchSave::usageIsRecorded() {
    QFETCH(bool, selecting);
    QFETCH(int, format);
    preferences()->SetInt(P::FileFormat, format);
    addThree();
    if (selecting)
        selectRows({0, 1});
    m_session->usage.clear();
    saveAll();
    QTEST(m_session->usage, "codes");
}

QTEST_MAIN(Tst_BatchSave)
#include "tst_batchsave.moc"
