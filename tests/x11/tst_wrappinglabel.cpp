#include "ui/wrappinglabel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

/// Where text that is marked can be pasted by the middle button at once.
class Tst_WrappingLabel : public QObject {
    Q_OBJECT
private slots:
    void markedTextIsPastedWithoutBreakPoints();
    void clickWithoutAMarkLeavesWhatWasMarkedBefore();
};

namespace {

constexpr int LineWidth = 120;

void show(WrappingLabel &label, const QString &text) {
    label.setWrappedText(text, LineWidth);
    label.show();
    QVERIFY(QTest::qWaitForWindowActive(&label));
}

} // namespace

void Tst_WrappingLabel::markedTextIsPastedWithoutBreakPoints() {
    const QString path = QLatin1Char('/') + QString(60, QLatin1Char('x')) + QStringLiteral(".png");
    WrappingLabel label;
    show(label, path);
    QVERIFY(label.text() != path);
    QTest::mousePress(&label, Qt::LeftButton);
    label.setSelection(0, label.text().size());
    QTest::mouseRelease(&label, Qt::LeftButton);
    QCOMPARE(label.selectedText(), label.text());
    QCOMPARE(QGuiApplication::clipboard()->text(QClipboard::Selection), path);
}

void Tst_WrappingLabel::clickWithoutAMarkLeavesWhatWasMarkedBefore() {
    WrappingLabel label;
    show(label, QStringLiteral("text"));
    const QString before = QStringLiteral("marked elsewhere");
    QGuiApplication::clipboard()->setText(before, QClipboard::Selection);
    QTest::mouseClick(&label, Qt::LeftButton, {}, label.rect().center());
    QCOMPARE(QGuiApplication::clipboard()->text(QClipboard::Selection), before);
}

QTEST_MAIN(Tst_WrappingLabel)
#include "tst_wrappinglabel.moc"
