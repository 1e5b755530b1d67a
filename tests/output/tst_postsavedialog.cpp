#include "output/postsavedialog.h"
#include "support/fakeplatform.h"
#include "support/modalanswers.h"
#include "support/openedurls.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

class Tst_PostSaveDialog : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();

    void texts();
    void countOfABatch();
    void detailNamesFileOrFolder_data();
    void detailNamesFileOrFolder();
    void results_data();
    void results();
    void enterOpensTheImage();
    void closing();
    void skip();

private:
    FakePlatform *m_platform = nullptr;
    ModalAnswers m_answers;
    OpenedUrls m_opened;
    QTemporaryDir m_folder;
    QString m_path;
};

void Tst_PostSaveDialog::initTestCase() {
    m_path = m_folder.filePath(QStringLiteral("a shot #1.png"));
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

void Tst_PostSaveDialog::init() {
    m_platform = FakePlatform::install();
    m_opened.urls.clear();
}

void Tst_PostSaveDialog::texts() {
    PostSaveDialog dialog(PostSaveDialog::OneImage);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Tindra"));
    QCOMPARE(dialog.findChild<QLabel *>(QStringLiteral("text_"))->text(),
             QStringLiteral("Saved captured image."));
    QCOMPARE(dialog.findChild<QCheckBox *>()->text(), QStringLiteral("Skip"));
    QList<QAbstractButton *> buttons = dialog.findChild<QDialogButtonBox *>()->buttons();
    std::sort(buttons.begin(), buttons.end(),
              [](QAbstractButton *a, QAbstractButton *b) { return a->x() < b->x(); });
    QCOMPARE(buttons.size(), 3);
    QCOMPARE(buttons[0]->text(), QStringLiteral("Open Image(&V)"));
    QCOMPARE(buttons[1]->text(), QStringLiteral("Open Folder(&O)"));
    QCOMPARE(buttons[2]->text(), QStringLiteral("Close"));
    QVERIFY(qobject_cast<QPushButton *>(buttons[0])->isDefault());
}

void Tst_PostSaveDialog::countOfABatch() {
    PostSaveDialog dialog(PostSaveDialog::Batch);
    dialog.setCount(12);
    QCOMPARE(dialog.findChild<QLabel *>(QStringLiteral("text_"))->text(),
             QStringLiteral("Saved captured 12 images."));
}

void Tst_PostSaveDialog::detailNamesFileOrFolder_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("expected");
    QTest::newRow("one image") << 0 << "/somewhere/a.png";
    QTest::newRow("batch") << 2 << "/somewhere";
}

void Tst_PostSaveDialog::detailNamesFileOrFolder() {
    QFETCH(int, type);
    PostSaveDialog dialog{PostSaveDialog::Type(type)};
    dialog.setSavedPath(QStringLiteral("/somewhere/a.png"));
    QTEST(dialog.findChild<QLabel *>(QStringLiteral("informativeText_"))->text(), "expected");
}

void Tst_PostSaveDialog::results_data() {
    QTest::addColumn<QString>("caption");
    QTest::addColumn<int>("result");
    QTest::addColumn<bool>("opensImage");
    QTest::addColumn<bool>("showsFile");
    QTest::newRow("image") << "Open Image(&V)" << 0 << true << false;
    QTest::newRow("folder") << "Open Folder(&O)" << 1 << false << true;
    QTest::newRow("close") << "Close" << 2 << false << false;
}

void Tst_PostSaveDialog::results() {
    QFETCH(QString, caption);
    QFETCH(bool, opensImage);
    QFETCH(bool, showsFile);
    for (const auto type : {PostSaveDialog::OneImage, PostSaveDialog::Batch}) {
        init();
        PostSaveDialog dialog(type);
        dialog.setSavedPath(m_path);
        m_answers.addPress(QString(caption).remove(QLatin1Char('&')));
        QTEST(dialog.exec(), "result");
        QCOMPARE(m_opened.urls, opensImage ? QVector<QUrl>{QUrl::fromLocalFile(m_path)} : QVector<QUrl>());
        QCOMPARE(m_platform->shownFiles, showsFile ? QStringList{m_path} : QStringList());
    }
}

void Tst_PostSaveDialog::enterOpensTheImage() {
    PostSaveDialog dialog(PostSaveDialog::OneImage);
    dialog.setSavedPath(m_path);
    m_answers.add([](QWidget *shown) { QTest::keyClick(shown, Qt::Key_Return); });
    QCOMPARE(dialog.exec(), 0);
    QCOMPARE(m_opened.urls.size(), 1);
}

void Tst_PostSaveDialog::closing() {
    PostSaveDialog dialog(PostSaveDialog::OneImage);
    m_answers.add([](QWidget *shown) { QTest::keyClick(shown, Qt::Key_Escape); });
    QCOMPARE(dialog.exec(), 2);
    m_answers.add([](QWidget *shown) { shown->close(); });
    QCOMPARE(dialog.exec(), 2);
    QVERIFY(m_opened.urls.isEmpty());
}

void Tst_PostSaveDialog::skip() {
    PostSaveDialog dialog(PostSaveDialog::OneImage);
    QVERIFY(!dialog.isSkipChecked());
    m_answers.add([](QWidget *shown) {
        QTest::mouseClick(shown->findChild<QCheckBox *>(), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
        ModalAnswers::press(shown, QStringLiteral("Close"));
    });
    QCOMPARE(dialog.exec(), 2);
    QVERIFY(dialog.isSkipChecked());
}

QTEST_MAIN(Tst_PostSaveDialog)
#include "tst_postsavedialog.moc"
