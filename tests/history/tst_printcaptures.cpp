#include "canvas/editor.h"
#include "canvas/fakeitems.h"
#include "history/history.h"
#include "history/historybuttonwidget.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "history/historywidget.h"
#include "support/literals.h"
#include "support/modalanswers.h"
#include "support/session.h"

#include <QLabel>
#include <QPushButton>
#include <QtTest>

/// Which captures reach the printer, and how they look there.
class Tst_PrintCaptures : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void rowOfTheMenuIsPrinted();
    void checkedRowsArePrinted();
    void currentCaptureIsPrintedInSelectModeToo();
    void nothingIsAskedWithoutCapture();
    void cropAndDrawingsArePrinted();
    void captureThatCannotBeReadIsLeftOut();
    void imagesAreCopies();

private:
    HistoryListWidget *list() const { return m_panel->findChild<HistoryListWidget *>(); }
    HistoryListWidgetItem *row(int index) const { return list()->rowItem(index); }
    void add(const QString &name, const QColor &color) {
        QVERIFY(m_panel->addImage(Session::captureFile(name, {40, 30}, color)));
    }
    static void press(QWidget *dialog) { dialog->findChild<QPushButton *>("print_"_qs)->click(); }
    void startSelecting() { m_panel->findChild<QPushButton *>("historySelectMode_"_qs)->click(); }
    void check(int index) {
        list()->rowWidget(row(index))->findChild<QPushButton *>("selectButton_"_qs)->click();
    }
    const FakePrinters &printers() const { return m_session->platform->printerList; }
    /// The colours in the middle of the pages of the only job.
    QVector<QColor> printed() const {
        QVector<QColor> colors;
        for (const FakePrinters::Page &page : printers().jobs.first()->pages)
            colors.append(page.drawings.first().image.pixelColor(20, 15));
        return colors;
    }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<HistoryWidget> m_panel;
};

void Tst_PrintCaptures::init() {
    m_session = std::make_unique<Session>();
    m_session->platform->printerList.add("Office"_qs);
    m_panel = std::make_unique<HistoryWidget>();
    add("c"_qs, Qt::blue);
    add("b"_qs, Qt::green);
    add("a"_qs, Qt::red); // the top row
}

void Tst_PrintCaptures::cleanup() {
    m_panel.reset();
    m_session.reset();
}

void Tst_PrintCaptures::rowOfTheMenuIsPrinted() {
    ModalAnswers answers;
    answers.add(press);
    list()->rowWidget(row(1))->onContextMenuPrintImages();
    QVERIFY(answers.isDone());
    QCOMPARE(printed(), QVector<QColor>{Qt::green});
}

void Tst_PrintCaptures::checkedRowsArePrinted() {
    startSelecting();
    check(2);
    check(0);
    ModalAnswers answers;
    answers.add(press);
    list()->rowWidget(row(1))->onContextMenuPrintImages();
    QVERIFY(answers.isDone());
    QCOMPARE(printed(), (QVector<QColor>{Qt::red, Qt::blue}));
}

void Tst_PrintCaptures::currentCaptureIsPrintedInSelectModeToo() {
    startSelecting();
    check(2);
    m_panel->select(row(1));
    ModalAnswers answers;
    answers.add(press);
    m_panel->printCurrentImage();
    QVERIFY(answers.isDone());
    QCOMPARE(printed(), QVector<QColor>{Qt::green});
}

void Tst_PrintCaptures::nothingIsAskedWithoutCapture() {
    ModalAnswers answers;
    m_panel->onPrintImages(nullptr);
    startSelecting();
    m_panel->onPrintImages(row(0)); // nothing is checked
    m_panel->clearSelection();
    m_panel->printCurrentImage();
    QVERIFY(answers.texts().isEmpty());
    QVERIFY(printers().opened.isEmpty());
}

void Tst_PrintCaptures::cropAndDrawingsArePrinted() {
    auto *editor = new TestEditor;
    editor->setParent(list());
    editor->setImageKey(Session::captureFile("d"_qs, {40, 30}, Qt::red));
    list()->insertHistory(History(editor), true, 0);
    editor->setShape(Editor::Crop);
    editor->startCrop();
    editor->crop->frame = QRect(10, 10, 20, 15);
    editor->finishCurrentItem(true);
    editor->addRect(12, 12, 8, 8, QPen(Qt::black), QBrush(Qt::black));
    ModalAnswers answers;
    answers.add(press);
    m_panel->onPrintImages(row(0));
    QVERIFY(answers.isDone());
    const QImage image = printers().jobs.first()->pages.first().drawings.first().image;
    QCOMPARE(image.size(), QSize(20, 15));
    QCOMPARE(image.pixelColor(5, 5), QColor(Qt::black));
    QCOMPARE(image.pixelColor(15, 12), QColor(Qt::red));
}

void Tst_PrintCaptures::captureThatCannotBeReadIsLeftOut() {
    startSelecting();
    check(0);
    check(1);
    QFile::remove(row(0)->editor()->imageKey());
    ImageProvider::resetForTesting();
    ModalAnswers answers;
    answers.add([](QWidget *dialog) {
        auto *pages = dialog->findChild<QLabel *>("pages_"_qs);
        QTRY_COMPARE(pages->text(), "1/1 Pages"_qs);
        press(dialog);
    });
    m_panel->onPrintImages(nullptr);
    QVERIFY(answers.isDone());
    QCOMPARE(printed(), QVector<QColor>{Qt::green});
}

void Tst_PrintCaptures::imagesAreCopies() {
    ModalAnswers answers;
    answers.add([this](QWidget *dialog) {
        list()->removeItem(row(0), false, true);
        press(dialog);
    });
    m_panel->onPrintImages(row(0));
    QVERIFY(answers.isDone());
    QCOMPARE(printed(), QVector<QColor>{Qt::red});
}

QTEST_MAIN(Tst_PrintCaptures)
#include "tst_printcaptures.moc"
