#include "ui/clickablelabel.h"

#include <QAccessible>
#include <QApplication>
#include <QHoverEvent>
#include <QSignalSpy>
#include <QTest>

class Tst_ClickableLabel : public QObject {
    Q_OBJECT
private slots:
    void pressIsAClick();
    void mouseComesAndGoes();
    void eventsReachTheLabelAsWell();
    void keysClick_data();
    void keysClick();
    void isALinkForScreenReaders();
};

void Tst_ClickableLabel::pressIsAClick() {
    ClickableLabel label(QStringLiteral("text"));
    QSignalSpy clicked(&label, &ClickableLabel::clicked);
    QTest::mousePress(&label, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
    QTest::mouseRelease(&label, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
}

void Tst_ClickableLabel::mouseComesAndGoes() {
    ClickableLabel label;
    QVERIFY(label.testAttribute(Qt::WA_Hover));
    QSignalSpy hover(&label, &ClickableLabel::hover);
    QSignalSpy leaved(&label, &ClickableLabel::leaved);
    QHoverEvent enter(QEvent::HoverEnter, QPointF(1, 1), QPointF(-1, -1));
    QApplication::sendEvent(&label, &enter);
    QCOMPARE(hover.count(), 1);
    QCOMPARE(label.cursor().shape(), Qt::PointingHandCursor);
    QHoverEvent leave(QEvent::HoverLeave, QPointF(-1, -1), QPointF(1, 1));
    QApplication::sendEvent(&label, &leave);
    QCOMPARE(leaved.count(), 1);
    QCOMPARE(hover.count(), 1);
    QCOMPARE(label.cursor().shape(), Qt::ArrowCursor);
}

void Tst_ClickableLabel::eventsReachTheLabelAsWell() {
    ClickableLabel label(QStringLiteral("<a href='x'>link</a>"));
    label.setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::TextSelectableByMouse);
    label.resize(label.sizeHint());
    label.show();
    QSignalSpy link(&label, &QLabel::linkActivated);
    QTest::mouseClick(&label, Qt::LeftButton, {}, QPoint(6, label.height() / 2));
    QCOMPARE(link.count(), 1);
}

void Tst_ClickableLabel::keysClick_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("clicks");
    QTest::newRow("space") << int(Qt::Key_Space) << true;
    QTest::newRow("Enter") << int(Qt::Key_Return) << true;
    QTest::newRow("Enter of the keypad") << int(Qt::Key_Enter) << true;
    // Escape, for one, is the dialog's.
    QTest::newRow("Escape") << int(Qt::Key_Escape) << false;
    QTest::newRow("a letter") << int(Qt::Key_A) << false;
}

void Tst_ClickableLabel::keysClick() {
    QFETCH(int, key);
    QFETCH(bool, clicks);
    ClickableLabel label(QStringLiteral("text"));
    QSignalSpy clicked(&label, &ClickableLabel::clicked);
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&label, &press);
    QCOMPARE(clicked.count(), clicks ? 1 : 0);
    // What the label does not want goes on to the window.
    QCOMPARE(press.isAccepted(), clicks);
}

void Tst_ClickableLabel::isALinkForScreenReaders() {
    ClickableLabel label(QStringLiteral("www.example.com"));
    QAccessibleInterface *face = QAccessible::queryAccessibleInterface(&label);
    QVERIFY(face);
    QCOMPARE(face->role(), QAccessible::Link);
    QCOMPARE(face->text(QAccessible::Name), QStringLiteral("www.example.com"));
    label.setAccessibleName(QStringLiteral("home page"));
    QCOMPARE(face->text(QAccessible::Name), QStringLiteral("home page"));
    QSignalSpy clicked(&label, &ClickableLabel::clicked);
    QAccessibleActionInterface *actions = face->actionInterface();
    QVERIFY(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
    actions->doAction(QAccessibleActionInterface::setFocusAction());
    QCOMPARE(clicked.count(), 0);
    actions->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(clicked.count(), 1);
    // A plain label stays a text.
    QLabel plain(QStringLiteral("text"));
    QCOMPARE(QAccessible::queryAccessibleInterface(&plain)->role(), QAccessible::StaticText);
}

QTEST_MAIN(Tst_ClickableLabel)
#include "tst_clickablelabel.moc"
