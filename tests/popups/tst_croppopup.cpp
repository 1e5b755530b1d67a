#include "popups/croppopup.h"
#include "ui/rangedspinbox.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

class Tst_CropPopup : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup() { m_popup.reset(); }
    void parts();
    void buttonsReport_data();
    void buttonsReport();
    void escapeLeavesTheCrop();
    void limits_data();
    void limits();
    void writingTheSizeReportsNothing();
    void changeReportsBothSides();
    void typingBelowTheLimitIsNotReported();
    void typedBeyondTheImageIsCut();
    void firstDigitsTypedReplaceTheWidth();
    void nothingIsSelectedWithoutTheKeyboard();
    void imageSmallerThanTheSmallestFrame();

private:
    RangedSpinBox *width() const {
        return m_popup->findChild<RangedSpinBox *>(QStringLiteral("widthSpinBox_"));
    }
    RangedSpinBox *height() const {
        return m_popup->findChild<RangedSpinBox *>(QStringLiteral("heightSpinBox_"));
    }
    void type(RangedSpinBox *box, const QString &text) const {
        box->findChild<QLineEdit *>()->selectAll();
        QTest::keyClicks(box, text);
    }

    QScopedPointer<CropPopup> m_popup;
    QList<QSize> m_sizes;
    QList<bool> m_ends;
};

void Tst_CropPopup::init() {
    m_popup.reset(new CropPopup);
    m_sizes.clear();
    m_ends.clear();
    m_popup->setMaximumCropSize({800, 600});
    m_popup->setCropSize({170, 120});
    connect(m_popup.data(), &CropPopup::sizeChanged, this, [this](QSize &size) { m_sizes += size; });
    connect(m_popup.data(), &CropPopup::cropped, this, [this](bool accepted) { m_ends += accepted; });
    m_popup->show();
}

void Tst_CropPopup::parts() {
    QVERIFY(m_popup->findChild<QLabel *>(QStringLiteral("label_1")));
    QVERIFY(m_popup->findChild<QLabel *>(QStringLiteral("label_2")));
    QStringList texts;
    for (const auto *button : m_popup->findChildren<QPushButton *>()) {
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
        texts += button->text();
    }
    QCOMPARE(texts, (QStringList{QStringLiteral("crop"), QStringLiteral("cancel")}));
    QVERIFY(!width()->accessibleName().isEmpty() && !height()->accessibleName().isEmpty());
}

void Tst_CropPopup::buttonsReport_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("crop") << QStringLiteral("crop_") << true;
    QTest::newRow("cancel") << QStringLiteral("cancel_") << false;
}

void Tst_CropPopup::buttonsReport() {
    QFETCH(QString, button);
    QFETCH(bool, accepted);
    QTest::mouseClick(m_popup->findChild<QPushButton *>(button), Qt::LeftButton);
    QCOMPARE(m_ends, QList<bool>{accepted});
}

void Tst_CropPopup::escapeLeavesTheCrop() {
    QTest::keyClick(width(), Qt::Key_Escape);
    QCOMPARE(m_ends, QList<bool>{false});
}

void Tst_CropPopup::limits_data() {
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("kept");
    QTest::newRow("39") << 39 << 40;
    QTest::newRow("40") << 40 << 40;
    QTest::newRow("the image's width") << 800 << 800;
    QTest::newRow("one more") << 801 << 800;
}

void Tst_CropPopup::limits() {
    QFETCH(int, value);
    type(width(), QString::number(value));
    QTest::keyClick(width(), Qt::Key_Return);
    QTEST(width()->value(), "kept");
    QVERIFY(m_ends.isEmpty());
}

void Tst_CropPopup::writingTheSizeReportsNothing() {
    m_popup->setCropSize({300, 200});
    QCOMPARE(width()->value(), 300);
    QCOMPARE(height()->value(), 200);
    QVERIFY(m_sizes.isEmpty());
    m_popup->onChangedCropSize();
    QCOMPARE(m_sizes, QList<QSize>{QSize(300, 200)});
}

void Tst_CropPopup::changeReportsBothSides() {
    QTest::keyClick(width(), Qt::Key_Up);
    QTest::keyClick(height(), Qt::Key_Down);
    QCOMPARE(m_sizes, (QList<QSize>{QSize(171, 120), QSize(171, 119)}));
}

void Tst_CropPopup::typingBelowTheLimitIsNotReported() {
    type(width(), QStringLiteral("250"));
    QCOMPARE(m_sizes, QList<QSize>{QSize(250, 120)}); // neither 2 nor 25
    type(width(), QStringLiteral("7"));
    QTest::keyClick(width(), Qt::Key_Return);
    QCOMPARE(m_sizes.last(), QSize(40, 120));
}

void Tst_CropPopup::typedBeyondTheImageIsCut() {
    type(height(), QStringLiteral("9999"));
    QCOMPARE(height()->value(), 600);
    QCOMPARE(m_sizes.last(), QSize(170, 600));
}

void Tst_CropPopup::firstDigitsTypedReplaceTheWidth() {
    m_popup->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_popup.data()));
    QVERIFY(width()->hasFocus());
    QTest::keyClick(m_popup->windowHandle(), Qt::Key_5);
    QTest::keyClick(m_popup->windowHandle(), Qt::Key_6);
    QCOMPARE(width()->text(), QStringLiteral("56"));
    QCOMPARE(m_sizes, QList<QSize>{QSize(56, 120)});
}

// In colour it would say that typing replaces it.
void Tst_CropPopup::nothingIsSelectedWithoutTheKeyboard() {
    const auto selected = [](const RangedSpinBox *box) {
        return box->findChild<QLineEdit *>()->selectedText();
    };
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(!m_popup->isActiveWindow());
    QCOMPARE(selected(width()), QString());

    m_popup->takeKeyboard();
    QVERIFY(QTest::qWaitForWindowActive(m_popup.data()));
    QVERIFY(width()->hasFocus());
    QCOMPARE(selected(width()), QStringLiteral("170"));
    height()->setFocus();
    height()->selectAll();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QCOMPARE(selected(height()), QString());
    // Where the keyboard was, it comes back; the key leads to the width again.
    m_popup->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_popup.data()));
    QVERIFY(height()->hasFocus());
    QCOMPARE(selected(width()), QString());
    m_popup->takeKeyboard();
    QVERIFY(width()->hasFocus());
    QCOMPARE(selected(width()), QStringLiteral("170"));
}

void Tst_CropPopup::imageSmallerThanTheSmallestFrame() {
    m_popup->setMaximumCropSize({800, 25});
    m_popup->setCropSize({300, 25});
    type(width(), QStringLiteral("200"));
    QCOMPARE(m_sizes.last(), QSize(200, 25));
    type(height(), QStringLiteral("60"));
    QCOMPARE(height()->value(), 25);
}

QTEST_MAIN(Tst_CropPopup)
#include "tst_croppopup.moc"
