#include "output/confirmdeletedialog.h"
#include "support/modalanswers.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

class Tst_ConfirmDeleteDialog : public QObject {
    Q_OBJECT
private slots:
    void texts_data();
    void texts();
    void results_data();
    void results();
    void keys();
    void closing();
    void skipIsReadWhateverTheAnswer_data();
    void skipIsReadWhateverTheAnswer();

private:
    ModalAnswers m_answers;
};

void Tst_ConfirmDeleteDialog::texts_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("detail");
    QTest::addColumn<QStringList>("captions");
    const QString yes = QStringLiteral("Yes(&Y)");
    const QString no = QStringLiteral("No(&N)");
    QTest::newRow("one") << 0 << "Would you delete image?"
                         << "Cannot be recovered image has been deleted."
                         << QStringList{yes, QStringLiteral("Discard after save"), no};
    QTest::newRow("selected") << 1 << "Would you delete selected images?"
                              << "It will erase selected images." << QStringList{yes, no};
    QTest::newRow("all") << 2 << "Would you clear history?"
                         << "It will erase all captured images." << QStringList{yes, no};
}

void Tst_ConfirmDeleteDialog::texts() {
    QFETCH(int, type);
    ConfirmDeleteDialog dialog{ConfirmDeleteDialog::Type(type)};
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Tindra"));
    QTEST(dialog.findChild<QLabel *>(QStringLiteral("text_"))->text(), "text");
    QTEST(dialog.findChild<QLabel *>(QStringLiteral("informativeText_"))->text(), "detail");
    QCOMPARE(dialog.findChild<QCheckBox *>()->text(), QStringLiteral("Skip"));
    QVERIFY(!dialog.isSkipChecked());
    QList<QAbstractButton *> buttons = dialog.findChild<QDialogButtonBox *>()->buttons();
    std::sort(buttons.begin(), buttons.end(),
              [](QAbstractButton *a, QAbstractButton *b) { return a->x() < b->x(); });
    QStringList captions;
    for (QAbstractButton *button : qAsConst(buttons))
        captions.append(button->text());
    QTEST(captions, "captions");
}

void Tst_ConfirmDeleteDialog::results_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<int>("result");
    for (int type = 0; type <= 2; ++type) {
        QTest::addRow("yes, type %d", type) << type << "Yes(&Y)" << 1;
        QTest::addRow("no, type %d", type) << type << "No(&N)" << 2;
    }
    QTest::newRow("save first") << 0 << "Discard after save" << 0;
}

void Tst_ConfirmDeleteDialog::results() {
    QFETCH(int, type);
    QFETCH(QString, caption);
    ConfirmDeleteDialog dialog{ConfirmDeleteDialog::Type(type)};
    m_answers.addPress(QString(caption).remove(QLatin1Char('&')));
    QTEST(dialog.exec(), "result");
}

void Tst_ConfirmDeleteDialog::keys() {
    ConfirmDeleteDialog dialog{ConfirmDeleteDialog::AllImages};
    m_answers.add([](QWidget *shown) { QTest::keyClick(shown, Qt::Key_Return); });
    QCOMPARE(dialog.exec(), 1);
}

void Tst_ConfirmDeleteDialog::closing() {
    ConfirmDeleteDialog dialog{ConfirmDeleteDialog::OneImage};
    m_answers.add([](QWidget *shown) { QTest::keyClick(shown, Qt::Key_Escape); });
    QCOMPARE(dialog.exec(), 3);
    m_answers.add([](QWidget *shown) { shown->close(); });
    QCOMPARE(dialog.exec(), 3);
}

void Tst_ConfirmDeleteDialog::skipIsReadWhateverTheAnswer_data() {
    QTest::addColumn<QString>("caption");
    QTest::newRow("yes") << "Yes(&Y)";
    QTest::newRow("no") << "No(&N)";
}

void Tst_ConfirmDeleteDialog::skipIsReadWhateverTheAnswer() {
    QFETCH(QString, caption);
    ConfirmDeleteDialog dialog{ConfirmDeleteDialog::OneImage};
    m_answers.add([caption](QWidget *shown) {
        QTest::mouseClick(shown->findChild<QCheckBox *>(), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
        ModalAnswers::press(shown, QString(caption).remove(QLatin1Char('&')));
    });
    dialog.exec();
    QVERIFY(dialog.isSkipChecked());
}

QTEST_MAIN(Tst_ConfirmDeleteDialog)
#include "tst_confirmdeletedialog.moc"
