#include "support/openedurls.h"
#include "support/secondscreen.h"
#include "ui/aboutdialog.h"
#include "ui/builtinstyle.h"
#include "ui/clickablelabel.h"
#include "ui/uistyler.h"

#include <QImage>
#include <QScreen>
#include <QtTest>

class Tst_AboutDialog : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void rescaledWindowLeavesTheBorderOfScreens();
    void sizeFollowsTheScale_data();
    void sizeFollowsTheScale();
    void versionAndMakerAreTold();
    void linkOpensTheMakersSite();
    void keysOpenTheMakersSite_data();
    void keysOpenTheMakersSite();
    void linkChangesTheCursor();
    void pictureFillsItsPlace_data();
    void pictureFillsItsPlace();
};

void Tst_AboutDialog::initTestCase() {
    QCoreApplication::setApplicationVersion(QStringLiteral("3.2.1"));
    installBuiltInStyle(qApp);
}

void Tst_AboutDialog::sizeFollowsTheScale_data() {
    QTest::addColumn<double>("scale");
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<QSize>("dialog");
    QTest::newRow("100 %") << 1.0 << QSize(439, 272) << QSize(469, 312);
    QTest::newRow("125 %, truncated") << 1.25 << QSize(548, 340) << QSize(548 + 37, 340 + 50);
    QTest::newRow("150 %, truncated") << 1.5 << QSize(658, 408) << QSize(658 + 45, 408 + 60);
    QTest::newRow("200 %") << 2.0 << QSize(878, 544) << QSize(878 + 60, 544 + 80);
}

void Tst_AboutDialog::sizeFollowsTheScale() {
    QFETCH(double, scale);
    AboutDialog dialog;
    dialog.show();
    UIStyler::applyScale(&dialog, scale);
    QTEST(dialog.minimumSize(), "dialog");
    QTEST(dialog.maximumSize(), "dialog");
    QCoreApplication::processEvents();
    const auto *picture = dialog.findChild<QWidget *>(QStringLiteral("labelAbout"));
    QTEST(picture->size(), "picture");
    QVERIFY(dialog.rect().contains(picture->geometry()));
}

void Tst_AboutDialog::versionAndMakerAreTold() {
    AboutDialog dialog;
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Program Info"));
    QCOMPARE(dialog.findChild<QLabel *>(QStringLiteral("version_"))->text(), QStringLiteral("Version 3.2.1"));
    QCOMPARE(dialog.findChild<ClickableLabel *>()->text(), QStringLiteral("www.norvane.example"));
    dialog.show();
    QCOMPARE(dialog.findChild<ClickableLabel *>()->font().family(), QStringLiteral("dotum"));
}

void Tst_AboutDialog::linkOpensTheMakersSite() {
    OpenedUrls opened;
    AboutDialog dialog;
    dialog.show();
    QTest::mousePress(dialog.findChild<ClickableLabel *>(), Qt::LeftButton);
    QCOMPARE(opened.urls, QVector<QUrl>{QUrl(QStringLiteral("https://www.norvane.example"))});
}

void Tst_AboutDialog::keysOpenTheMakersSite_data() {
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Space") << Qt::Key_Space;
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
}

void Tst_AboutDialog::keysOpenTheMakersSite() {
    QFETCH(Qt::Key, key);
    OpenedUrls opened;
    AboutDialog dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto *link = dialog.findChild<ClickableLabel *>();
    const QFont plain = link->font();
    QTest::keyClick(dialog.windowHandle(), key);
    QVERIFY(opened.urls.isEmpty());
    QVERIFY(!plain.underline());
    QTest::keyClick(dialog.windowHandle(), Qt::Key_Tab);
    QVERIFY(link->hasFocus());
    QVERIFY(link->font().underline());
    QCOMPARE(link->font().family(), plain.family());
    QCOMPARE(link->font().pixelSize(), plain.pixelSize());
    QTest::keyClick(dialog.windowHandle(), key);
    QCOMPARE(opened.urls, QVector<QUrl>{QUrl(QStringLiteral("https://www.norvane.example"))});
    QVERIFY(dialog.isVisible());
    dialog.setFocus();
    QVERIFY(!link->font().underline());
}

void Tst_AboutDialog::linkChangesTheCursor() {
    AboutDialog dialog;
    auto *link = dialog.findChild<ClickableLabel *>();
    emit link->hover();
    QCOMPARE(dialog.cursor().shape(), Qt::PointingHandCursor);
    emit link->leaved();
    QCOMPARE(dialog.cursor().shape(), Qt::ArrowCursor);
}

void Tst_AboutDialog::pictureFillsItsPlace_data() {
    QTest::addColumn<double>("scale");
    for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0})
        QTest::addRow("%g", scale) << scale;
}

void Tst_AboutDialog::pictureFillsItsPlace() {
    QFETCH(double, scale);
    AboutDialog dialog;
    dialog.show();
    UIStyler::applyScale(&dialog, scale);
    QCoreApplication::processEvents();
    auto *label = dialog.findChild<QWidget *>(QStringLiteral("labelAbout"));
    const QImage look = label->grab().toImage();
    // The two grounds of the picture: above the line, and below it to the last corner. The dialog is white.
    QCOMPARE(look.pixelColor(2, 2), QColor(0xE8, 0xEA, 0xF1));
    QCOMPARE(look.pixelColor(look.width() - 3, 2), QColor(0xE8, 0xEA, 0xF1));
    QCOMPARE(look.pixelColor(look.width() - 3, look.height() - 3), QColor(0xF8, 0xF9, 0xFC));
    QCOMPARE(dialog.grab().toImage().pixelColor(2, 5), QColor(Qt::white));
}

void Tst_AboutDialog::rescaledWindowLeavesTheBorderOfScreens() {
    const int border = QGuiApplication::primaryScreen()->geometry().right() + 1;
    const SecondScreen second(QRect(border, 0, 2000, 1200));
    AboutDialog dialog;
    dialog.show();
    dialog.move(border - 50, 300);
    UIStyler::applyScale(&dialog, 1.25);
    QCOMPARE(dialog.frameGeometry().topLeft(), QPoint(border, 300));
}

QTEST_MAIN(Tst_AboutDialog)
#include "tst_aboutdialog.moc"
