#include "support/modalanswers.h"
#include "support/secondscreen.h"
#include "ui/messagedialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLayout>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTest>

#include <cmath>

namespace {

const QString Title = QStringLiteral("Tindra");

QLabel *label(QWidget *dialog, const char *name) {
    return dialog->findChild<QLabel *>(QLatin1String(name));
}

QList<QAbstractButton *> buttonsFromLeft(QWidget *dialog) {
    QList<QAbstractButton *> buttons = dialog->findChild<QDialogButtonBox *>()->buttons();
    std::sort(buttons.begin(), buttons.end(),
              [](QAbstractButton *a, QAbstractButton *b) { return a->x() < b->x(); });
    return buttons;
}

QStringList captionsFromLeft(QWidget *dialog) {
    QStringList captions;
    for (QAbstractButton *button : buttonsFromLeft(dialog))
        captions.append(button->text());
    return captions;
}

/// A dialog that stays open without a modal loop.
void open(MessageDialog &dialog) {
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
}

} // namespace

class Tst_MessageDialog : public QObject {
    Q_OBJECT
private slots:
    void rescaledWindowLeavesTheBorderOfScreens();
    void valuesOfTheButtons_data();
    void valuesOfTheButtons();
    void staticsReturnTheClickedButton_data();
    void staticsReturnTheClickedButton();
    void staticsShowTheirIcon();
    void enterPressesTheDefault_data();
    void enterPressesTheDefault();
    void escapeLeavesIt_data();
    void escapeLeavesIt();
    void mnemonicsPressButtons();
    void unknownCaptionStays();
    void ownButtonsKeepTheirOrderAndResults();
    void enterPressesTheDefaultOfOwnButtons();
    void laterButtonsReplaceTheEarlier();
    void ownCaptionsAreTranslatedToo();
    void closeResult_data();
    void closeResult();
    void objectNamesForTheSheet();
    void buttonNamesByRole();
    void iconProperty_data();
    void iconProperty();
    void checkBox();
    void textsArePlainAndSelectable();
    void informativeTextOnlyWhenThereIsOne();
    void margins_data();
    void margins();
    void longPathWraps();
    void selectedPathIsCopiedWhole();
    void wideCaptionsFit();
    void sizeFollowsTheScale();
    void sizeIsMeasuredOnce();
    void scaleBeforeTheFirstShowFixesNothing();
    void parentMayDieMeanwhile();
    void screenReadersGetTheText();

private:
    ModalAnswers m_answers;
};

void Tst_MessageDialog::valuesOfTheButtons_data() {
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("expected");
    QTest::newRow("NoButton") << int(MessageDialog::NoButton) << 0;
    QTest::newRow("Ok") << int(MessageDialog::Ok) << 1024;
    QTest::newRow("Save") << int(MessageDialog::Save) << 2048;
    QTest::newRow("SaveAll") << int(MessageDialog::SaveAll) << 4096;
    QTest::newRow("Open") << int(MessageDialog::Open) << 8192;
    QTest::newRow("Yes") << int(MessageDialog::Yes) << 16384;
    QTest::newRow("YesToAll") << int(MessageDialog::YesToAll) << 32768;
    QTest::newRow("No") << int(MessageDialog::No) << 65536;
    QTest::newRow("NoToAll") << int(MessageDialog::NoToAll) << 131072;
    QTest::newRow("Abort") << int(MessageDialog::Abort) << 262144;
    QTest::newRow("Retry") << int(MessageDialog::Retry) << 524288;
    QTest::newRow("Ignore") << int(MessageDialog::Ignore) << 1048576;
    QTest::newRow("Close") << int(MessageDialog::Close) << 2097152;
    QTest::newRow("Cancel") << int(MessageDialog::Cancel) << 4194304;
    QTest::newRow("Discard") << int(MessageDialog::Discard) << 8388608;
    QTest::newRow("Help") << int(MessageDialog::Help) << 16777216;
    QTest::newRow("Apply") << int(MessageDialog::Apply) << 33554432;
    QTest::newRow("Reset") << int(MessageDialog::Reset) << 67108864;
    QTest::newRow("RestoreDefaults") << int(MessageDialog::RestoreDefaults) << 134217728;
}

void Tst_MessageDialog::valuesOfTheButtons() {
    QFETCH(int, value);
    QTEST(value, "expected");
}

void Tst_MessageDialog::staticsReturnTheClickedButton_data() {
    QTest::addColumn<int>("buttons");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<int>("expected");
    const int yesNo = MessageDialog::Yes | MessageDialog::No;
    const int okCancel = MessageDialog::Ok | MessageDialog::Cancel;
    QTest::newRow("yes") << yesNo << "Yes(&Y)" << 16384;
    QTest::newRow("no") << yesNo << "No(&N)" << 65536;
    QTest::newRow("ok") << okCancel << "Ok" << 1024;
    QTest::newRow("cancel") << okCancel << "Cancel" << 4194304;
    QTest::newRow("close") << int(MessageDialog::Close) << "Close" << 2097152;
}

void Tst_MessageDialog::staticsReturnTheClickedButton() {
    QFETCH(int, buttons);
    QFETCH(QString, caption);
    m_answers.addPress(caption.remove(QLatin1Char('&')));
    QTEST(MessageDialog::information(nullptr, Title, QStringLiteral("text"), buttons), "expected");
    m_answers.addPress(caption.remove(QLatin1Char('&')));
    QTEST(MessageDialog::warning(nullptr, Title, QStringLiteral("text"), buttons), "expected");
}

void Tst_MessageDialog::staticsShowTheirIcon() {
    QString icon;
    QString title;
    const auto look = [&](QWidget *dialog) {
        icon = label(dialog, "icon_")->property("icon").toString();
        title = dialog->windowTitle();
        dialog->close();
    };
    m_answers.add(look);
    MessageDialog::information(nullptr, QStringLiteral("Other"), QStringLiteral("text"));
    QCOMPARE(icon, QStringLiteral("Information"));
    QCOMPARE(title, QStringLiteral("Other"));
    m_answers.add(look);
    MessageDialog::warning(nullptr, Title, QStringLiteral("text"));
    QCOMPARE(icon, QStringLiteral("Warning"));
}

void Tst_MessageDialog::enterPressesTheDefault_data() {
    QTest::addColumn<int>("defaultButton");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("expected");
    QTest::newRow("told") << int(MessageDialog::No) << int(Qt::Key_Return) << 65536;
    QTest::newRow("told, keypad") << int(MessageDialog::No) << int(Qt::Key_Enter) << 65536;
    QTest::newRow("positive when not told") << int(MessageDialog::NoButton) << int(Qt::Key_Return) << 16384;
}

void Tst_MessageDialog::enterPressesTheDefault() {
    QFETCH(int, defaultButton);
    QFETCH(int, key);
    m_answers.add([key](QWidget *dialog) { QTest::keyClick(dialog, Qt::Key(key)); });
    QTEST(MessageDialog::information(nullptr, Title, QStringLiteral("text"),
                                     MessageDialog::No | MessageDialog::Yes, defaultButton),
          "expected");
}

void Tst_MessageDialog::escapeLeavesIt_data() {
    QTest::addColumn<int>("buttons");
    QTest::addColumn<int>("expected");
    QTest::newRow("no") << int(MessageDialog::Yes | MessageDialog::No) << 65536;
    QTest::newRow("cancel before no")
        << int(MessageDialog::Yes | MessageDialog::No | MessageDialog::Cancel) << 4194304;
    QTest::newRow("the only one") << int(MessageDialog::Ok) << 1024;
    QTest::newRow("close") << int(MessageDialog::Open | MessageDialog::Close) << 2097152;
    QTest::newRow("none that refuses") << int(MessageDialog::Yes | MessageDialog::Ok) << 0;
}

void Tst_MessageDialog::escapeLeavesIt() {
    QFETCH(int, buttons);
    m_answers.add([](QWidget *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
    QTEST(MessageDialog::warning(nullptr, Title, QStringLiteral("text"), buttons), "expected");
    m_answers.add([](QWidget *dialog) { dialog->close(); });
    QTEST(MessageDialog::warning(nullptr, Title, QStringLiteral("text"), buttons), "expected");
}

void Tst_MessageDialog::mnemonicsPressButtons() {
    m_answers.add([](QWidget *dialog) {
        const QPointer<QWidget> open(dialog);
        dialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        QTest::keyClick(dialog, Qt::Key_Y, Qt::AltModifier);
        // The button is seen to go down before it acts.
        QTRY_VERIFY(!open || !open->isVisible());
    });
    // Neither Enter nor Escape would say yes.
    QCOMPARE(MessageDialog::information(nullptr, Title, QStringLiteral("text"),
                                        MessageDialog::Yes | MessageDialog::No, MessageDialog::No),
             16384);
    QVERIFY(m_answers.isDone());
}

void Tst_MessageDialog::unknownCaptionStays() {
    MessageDialog dialog;
    dialog.setStandardButtons(MessageDialog::Retry | MessageDialog::Ok);
    QDialogButtonBox plain(QDialogButtonBox::Retry);
    open(dialog);
    QCOMPARE(captionsFromLeft(&dialog).contains(plain.button(QDialogButtonBox::Retry)->text()), true);
}

void Tst_MessageDialog::ownButtonsKeepTheirOrderAndResults() {
    for (int clicked = 0; clicked < 3; ++clicked) {
        MessageDialog dialog;
        dialog.addButton(QStringLiteral("first"), 7, MessageDialog::Positive);
        dialog.addButton(QStringLiteral("second"), 0, MessageDialog::Positive);
        dialog.addButton(QStringLiteral("third"), -5, MessageDialog::Negative);
        QStringList captions;
        m_answers.add([&](QWidget *shown) {
            captions = captionsFromLeft(shown);
            QTest::mouseClick(buttonsFromLeft(shown).value(clicked), Qt::LeftButton);
        });
        const int expected[] = {7, 0, -5};
        QCOMPARE(dialog.exec(), expected[clicked]);
        QCOMPARE(captions,
                 (QStringList{QStringLiteral("first"), QStringLiteral("second"), QStringLiteral("third")}));
    }
}

void Tst_MessageDialog::enterPressesTheDefaultOfOwnButtons() {
    MessageDialog dialog;
    dialog.addButton(QStringLiteral("first"), 7, MessageDialog::Positive);
    dialog.addButton(QStringLiteral("second"), 8, MessageDialog::Positive, true);
    dialog.addButton(QStringLiteral("third"), 9, MessageDialog::Negative);
    m_answers.add([](QWidget *shown) { QTest::keyClick(shown, Qt::Key_Return); });
    QCOMPARE(dialog.exec(), 8);
}

void Tst_MessageDialog::laterButtonsReplaceTheEarlier() {
    MessageDialog dialog;
    dialog.addButton(QStringLiteral("own"), 7, MessageDialog::Positive, true);
    dialog.setStandardButtons(MessageDialog::Yes | MessageDialog::No, MessageDialog::Yes);
    dialog.setStandardButtons(MessageDialog::Cancel | MessageDialog::Ok);
    QStringList captions;
    m_answers.add([&captions](QWidget *shown) {
        captions = captionsFromLeft(shown);
        QTest::keyClick(shown, Qt::Key_Escape);
    });
    QCOMPARE(dialog.exec(), 4194304);
    captions.sort();
    QCOMPARE(captions, (QStringList{QStringLiteral("Cancel"), QStringLiteral("Ok")}));
}

void Tst_MessageDialog::ownCaptionsAreTranslatedToo() {
    MessageDialog dialog;
    dialog.addButton(QStringLiteral("&Yes"), 1, MessageDialog::Positive);
    dialog.addButton(QStringLiteral("Keep"), 2, MessageDialog::Negative);
    open(dialog);
    QCOMPARE(captionsFromLeft(&dialog), (QStringList{QStringLiteral("Yes(&Y)"), QStringLiteral("Keep")}));
}

void Tst_MessageDialog::closeResult_data() {
    QTest::addColumn<bool>("told");
    QTest::addColumn<int>("expected");
    QTest::newRow("told") << true << 3;
    QTest::newRow("last negative button") << false << 22;
}

void Tst_MessageDialog::closeResult() {
    QFETCH(bool, told);
    for (const bool byKey : {false, true}) {
        MessageDialog dialog;
        dialog.addButton(QStringLiteral("a"), 1, MessageDialog::Positive);
        dialog.addButton(QStringLiteral("b"), 21, MessageDialog::Negative);
        dialog.addButton(QStringLiteral("c"), 22, MessageDialog::Negative);
        if (told)
            dialog.setCloseResult(3);
        m_answers.add([byKey](QWidget *shown) {
            if (byKey)
                QTest::keyClick(shown, Qt::Key_Escape);
            else
                shown->close();
        });
        QTEST(dialog.exec(), "expected");
    }
}

void Tst_MessageDialog::objectNamesForTheSheet() {
    MessageDialog dialog;
    for (const char *name : {"icon_", "text_", "informativeText_", "bottom_", "btnBox_"})
        QVERIFY2(dialog.findChild<QWidget *>(QLatin1String(name)), name);
    for (const char *name : {"textLayout_", "cbLayout_"})
        QVERIFY2(dialog.findChild<QLayout *>(QLatin1String(name)), name);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Tindra"));
    QVERIFY(qobject_cast<QDialogButtonBox *>(dialog.findChild<QWidget *>(QStringLiteral("btnBox_"))));
    QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
}

void Tst_MessageDialog::buttonNamesByRole() {
    MessageDialog dialog;
    dialog.setStandardButtons(MessageDialog::Yes | MessageDialog::No | MessageDialog::Ok |
                              MessageDialog::Cancel | MessageDialog::Help);
    open(dialog);
    const auto *box = dialog.findChild<QDialogButtonBox *>();
    const auto name = [box](QDialogButtonBox::StandardButton which) {
        return box->button(which)->objectName();
    };
    QCOMPARE(name(QDialogButtonBox::Yes), QStringLiteral("positiveButton"));
    QCOMPARE(name(QDialogButtonBox::Ok), QStringLiteral("positiveButton"));
    QCOMPARE(name(QDialogButtonBox::No), QStringLiteral("negativeButton"));
    QCOMPARE(name(QDialogButtonBox::Cancel), QStringLiteral("negativeButton"));
    QCOMPARE(name(QDialogButtonBox::Help), QStringLiteral("negativeButton"));
    for (QAbstractButton *button : box->buttons())
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
}

void Tst_MessageDialog::iconProperty_data() {
    QTest::addColumn<int>("icon");
    QTest::addColumn<QString>("expected");
    QTest::newRow("0") << 0 << "NoIcon";
    QTest::newRow("1") << 1 << "Information";
    QTest::newRow("2") << 2 << "Warning";
    QTest::newRow("3") << 3 << "Critical";
    QTest::newRow("4") << 4 << "Question";
    QTest::newRow("5") << 5 << "Success";
}

void Tst_MessageDialog::iconProperty() {
    QFETCH(int, icon);
    MessageDialog dialog;
    dialog.setStyleSheet(
        QStringLiteral("#icon_ { min-width: 1px } #icon_[icon=\"Warning\"] { min-width: 77px }"));
    dialog.setIcon(MessageDialog::Icon(icon));
    open(dialog);
    QTEST(label(&dialog, "icon_")->property("icon").toString(), "expected");
    QCOMPARE(label(&dialog, "icon_")->isVisible(), icon != 0);
    QCOMPARE(label(&dialog, "icon_")->minimumWidth() == 77, icon == 2);
}

void Tst_MessageDialog::checkBox() {
    MessageDialog dialog;
    QVERIFY(!dialog.isCheckBoxChecked());
    QVERIFY(!dialog.findChild<QCheckBox *>());
    dialog.setCheckBox(QStringLiteral("Skip"));
    dialog.setStandardButtons(MessageDialog::Ok);
    open(dialog);
    auto *box = dialog.findChild<QCheckBox *>();
    QVERIFY(box && box->isVisible());
    QCOMPARE(box->text(), QStringLiteral("Skip"));
    QVERIFY(!dialog.isCheckBoxChecked());
    box->click();
    QVERIFY(dialog.isCheckBoxChecked());
    // It stands in the bottom row, left of the buttons.
    QVERIFY(box->mapTo(&dialog, QPoint()).x() <
            buttonsFromLeft(&dialog).first()->mapTo(&dialog, QPoint()).x());
}

void Tst_MessageDialog::textsArePlainAndSelectable() {
    MessageDialog dialog;
    const QString text = QStringLiteral("/media/<b>me</b>/&file.png");
    dialog.setText(text);
    dialog.setInformativeText(text);
    open(dialog);
    for (const char *name : {"text_", "informativeText_"}) {
        QCOMPARE(label(&dialog, name)->text(), text);
        QCOMPARE(label(&dialog, name)->textFormat(), Qt::PlainText);
        QVERIFY(label(&dialog, name)->textInteractionFlags() & Qt::TextSelectableByMouse);
    }
}

void Tst_MessageDialog::informativeTextOnlyWhenThereIsOne() {
    MessageDialog dialog;
    dialog.setText(QStringLiteral("text"));
    open(dialog);
    QVERIFY(!label(&dialog, "informativeText_")->isVisible());
    dialog.setInformativeText(QStringLiteral("more"));
    QVERIFY(label(&dialog, "informativeText_")->isVisible());
    QCOMPARE(label(&dialog, "informativeText_")->text(), QStringLiteral("more"));
}

void Tst_MessageDialog::margins_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("informativeText");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QVector<int>>("expected"); // left, top, right, bottom
    QTest::newRow("one line") << "a"
                              << "" << 1.0 << QVector<int>{0, 26, 20, 25};
    QTest::newRow("text and detail") << "a"
                                     << "b" << 1.0 << QVector<int>{0, 26, 20, 25};
    QTest::newRow("two lines and detail") << "a\nb"
                                          << "c" << 1.0 << QVector<int>{0, 22, 20, 20};
    QTest::newRow("three lines") << "a\nb\nc"
                                 << "" << 1.0 << QVector<int>{0, 22, 20, 20};
    QTest::newRow("scaled and truncated") << "a"
                                          << "" << 1.25 << QVector<int>{0, 32, 25, 31};
}

void Tst_MessageDialog::margins() {
    QFETCH(QString, text);
    QFETCH(QString, informativeText);
    QFETCH(double, scale);
    MessageDialog dialog;
    dialog.setText(text);
    dialog.setInformativeText(informativeText);
    open(dialog);
    dialog.onScaleChanged(scale);
    const auto *layout = dialog.findChild<QLayout *>(QStringLiteral("textLayout_"));
    const QMargins margins = layout->contentsMargins();
    QTEST((QVector<int>{margins.left(), margins.top(), margins.right(), margins.bottom()}), "expected");
    QCOMPARE(layout->spacing(), 0);
}

void Tst_MessageDialog::longPathWraps() {
    const QString folders = QStringLiteral("/media/pictures and screens/") + QString(60, QLatin1Char('d')) +
                            QLatin1Char('/') + QString(240, QLatin1Char('x')) + QStringLiteral(".png");
    MessageDialog dialog;
    dialog.setText(QStringLiteral("Saved captured image."));
    dialog.setInformativeText(folders);
    dialog.setStandardButtons(MessageDialog::Ok);
    open(dialog);
    QVERIFY2(dialog.width() <= 640, qPrintable(QString::number(dialog.width())));
    const QLabel *path = label(&dialog, "informativeText_");
    const QFontMetrics metrics = path->fontMetrics();
    // All of it is to be seen: as many lines as its width needs, at the least.
    const int lines = int(std::ceil(metrics.horizontalAdvance(folders) / double(path->width())));
    QVERIFY(lines >= 3);
    QVERIFY(path->height() >= lines * metrics.height());
    QVERIFY(path->height() <= (lines + 3) * metrics.lineSpacing());
}

void Tst_MessageDialog::selectedPathIsCopiedWhole() {
    const QString path = QLatin1Char('/') + QString(300, QLatin1Char('x')) + QStringLiteral(".png");
    MessageDialog dialog;
    dialog.setInformativeText(path);
    open(dialog);
    QLabel *detail = label(&dialog, "informativeText_");
    detail->setSelection(0, detail->text().size());
    QTest::keyClick(detail, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), path);
}

void Tst_MessageDialog::wideCaptionsFit() {
    MessageDialog dialog;
    const QString caption = QStringLiteral("A caption that is far wider than any button should ever be");
    dialog.addButton(caption, 1, MessageDialog::Positive);
    dialog.addButton(QStringLiteral("b"), 2, MessageDialog::Negative);
    open(dialog);
    const QAbstractButton *wide = buttonsFromLeft(&dialog).first();
    QVERIFY(wide->minimumWidth() > QFontMetrics(wide->font()).horizontalAdvance(caption));
    const QAbstractButton *narrow = buttonsFromLeft(&dialog).last();
    QVERIFY(narrow->minimumWidth() < wide->minimumWidth());
}

void Tst_MessageDialog::sizeFollowsTheScale() {
    MessageDialog dialog;
    dialog.setText(QStringLiteral("text"));
    dialog.setStandardButtons(MessageDialog::Ok);
    open(dialog);
    const QSize base = dialog.size();
    dialog.onScaleChanged(1.5);
    const QSize expected(int((1.5 + 0.2) * base.width()), int(1.5 * base.height()));
    QCOMPARE(dialog.minimumSize(), expected);
    QCOMPARE(dialog.maximumSize(), expected);
    dialog.onScaleChanged(1.0);
    QCOMPARE(dialog.size(), QSize(int(1.2 * base.width()), base.height()));
}

void Tst_MessageDialog::sizeIsMeasuredOnce() {
    MessageDialog dialog;
    dialog.setText(QStringLiteral("text"));
    open(dialog);
    const QSize base = dialog.size();
    dialog.hide();
    dialog.setText(QStringLiteral("a text\nof very\nmany\nlines, which make it higher than before"));
    open(dialog);
    dialog.onScaleChanged(2.0);
    QCOMPARE(dialog.size(), QSize(int(2.2 * base.width()), 2 * base.height()));
}

void Tst_MessageDialog::scaleBeforeTheFirstShowFixesNothing() {
    MessageDialog dialog;
    dialog.setText(QStringLiteral("text"));
    dialog.onScaleChanged(2.0);
    QCOMPARE(dialog.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
    open(dialog);
    const QSize base(int(std::ceil(dialog.width() / 2.0)), int(std::ceil(dialog.height() / 2.0)));
    dialog.onScaleChanged(1.0);
    QCOMPARE(dialog.size(), QSize(int(1.2 * base.width()), base.height()));
}

void Tst_MessageDialog::parentMayDieMeanwhile() {
    auto *parent = new QWidget;
    m_answers.add([parent](QWidget *) { delete parent; });
    QCOMPARE(MessageDialog::information(parent, Title, QStringLiteral("text")), 0);
}

void Tst_MessageDialog::screenReadersGetTheText() {
    MessageDialog dialog;
    dialog.setTitle(QStringLiteral("title"));
    dialog.setText(QStringLiteral("what happened"));
    QCOMPARE(dialog.accessibleName(), QStringLiteral("title"));
    QCOMPARE(dialog.accessibleDescription(), QStringLiteral("what happened"));
}

void Tst_MessageDialog::rescaledWindowLeavesTheBorderOfScreens() {
    const int border = QGuiApplication::primaryScreen()->geometry().right() + 1;
    const SecondScreen second(QRect(border, 0, 2000, 1200));
    MessageDialog dialog;
    dialog.setText(QStringLiteral("text"));
    open(dialog);
    dialog.move(border - 50, 300);
    dialog.onScaleChanged(1.25);
    QCOMPARE(dialog.frameGeometry().topLeft(), QPoint(border, 300));
}

QTEST_MAIN(Tst_MessageDialog)
#include "tst_messagedialog.moc"
