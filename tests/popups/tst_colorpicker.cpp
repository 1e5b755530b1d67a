#include "popups/colorpicker.h"
#include "popups/colorpreview.h"
#include "popups/colorsquare.h"
#include "popups/gradientslider.h"
#include "ui/menu.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

class Tst_ColorPicker : public QObject {
    Q_OBJECT
private slots:
    void init() { m_picker.reset(new ColorPicker); }
    void cleanup() { m_picker.reset(); }
    void parts();
    void barOfHues();
    void sliderSetsTheHue_data();
    void sliderSetsTheHue();
    void setColorShowsItEverywhere_data();
    void setColorShowsItEverywhere();
    void setColorIgnores_data();
    void setColorIgnores();
    void squareWritesTheText();
    void fieldTakes_data();
    void fieldTakes();
    void typedTextStaysAsTyped_data();
    void typedTextStaysAsTyped();
    void emptiedFieldKeepsTheNumberSign();
    void editingInTheMiddleKeepsTheCursor();
    void fiveDigitsCannotBeConfirmed();
    void okReportsTheColour();
    void enterConfirms();
    void cancelReportsNothing();
    void everythingIsReachedByTab();

private:
    template <typename T> T *part(const char *name) const {
        T *widget = m_picker->findChild<T *>(QLatin1String(name));
        Q_ASSERT(widget);
        return widget;
    }
    QLineEdit *hex() const { return part<QLineEdit>("hexEdit_"); }
    GradientSlider *slider() const { return part<GradientSlider>("colorSlider_"); }
    ColorSquare *square() const { return part<ColorSquare>("colorSquare_"); }
    QPushButton *ok() const { return part<QPushButton>("okBtn_"); }

    QScopedPointer<ColorPicker> m_picker;
};

void Tst_ColorPicker::parts() {
    QCOMPARE(ok()->text(), QStringLiteral("Ok"));
    QCOMPARE(part<QPushButton>("cancelBtn_")->text(), QStringLiteral("Cancel"));
    QVERIFY(!part<QLabel>("selectColor_")->text().isEmpty());
    QVERIFY(m_picker->findChild<QLayout *>(QStringLiteral("colorLayout_")));
    QCOMPARE(slider()->minimum(), 0);
    QCOMPARE(slider()->maximum(), 359);
    QCOMPARE(slider()->orientation(), Qt::Vertical);
    for (const QWidget *widget :
         {static_cast<QWidget *>(hex()), static_cast<QWidget *>(slider()), static_cast<QWidget *>(square())})
        QVERIFY(!widget->accessibleName().isEmpty());
}

void Tst_ColorPicker::barOfHues() {
    const QList<QColor> colors = slider()->gradient();
    QCOMPARE(colors.size(), 360);
    QCOMPARE(colors.first(), QColor::fromHsvF(359.0 / 359.0, 1.0, 1.0, 1.0));
    QCOMPARE(colors.first().rgb(), qRgb(255, 0, 0));
    QCOMPARE(colors.at(1), QColor::fromHsvF(358.0 / 359.0, 1.0, 1.0, 1.0));
    QCOMPARE(colors.last(), QColor::fromHsvF(0.0, 1.0, 1.0, 1.0));
}

void Tst_ColorPicker::sliderSetsTheHue_data() {
    QTest::addColumn<int>("value");
    QTest::newRow("one") << 1;
    QTest::newRow("middle") << 180;
    QTest::newRow("last") << 359;
}

void Tst_ColorPicker::sliderSetsTheHue() {
    QFETCH(int, value);
    slider()->setValue(value);
    QCOMPARE(square()->hue(), value / 359.0);
    const QColor expected = QColor::fromHsvF(value / 359.0, 1.0, 1.0, 1.0);
    QCOMPARE(hex()->text(), expected.name());
    QCOMPARE(part<ColorPreview>("preview_")->color().name(), expected.name());
}

void Tst_ColorPicker::setColorShowsItEverywhere_data() {
    QTest::addColumn<QColor>("color");
    QTest::addColumn<int>("degrees");
    QTest::newRow("green") << QColor(0, 255, 0) << 120;
    QTest::newRow("dark") << QColor(1, 2, 3) << 210;
    QTest::newRow("gray goes to the lower end") << QColor(100, 100, 100) << 0;
    QTest::newRow("white") << QColor(Qt::white) << 0;
}

void Tst_ColorPicker::setColorShowsItEverywhere() {
    QFETCH(QColor, color);
    slider()->setValue(300);
    m_picker->setColor(color);
    QCOMPARE(hex()->text(), color.name());
    QTEST(slider()->value(), "degrees");
    QCOMPARE(square()->color().rgb(), color.rgb());
    QCOMPARE(m_picker->color().rgb(), color.rgb());
    QCOMPARE(part<ColorPreview>("preview_")->color().rgb(), color.rgb());
}

void Tst_ColorPicker::setColorIgnores_data() {
    QTest::addColumn<QColor>("color");
    QTest::newRow("invalid") << QColor();
    QTest::newRow("transparent") << QColor(Qt::transparent);
    QTest::newRow("nearly opaque") << QColor(9, 9, 9, 254);
}

void Tst_ColorPicker::setColorIgnores() {
    QFETCH(QColor, color);
    m_picker->setColor(QColor(10, 200, 30));
    m_picker->setColor(color);
    m_picker->onColorSelected(color);
    QCOMPARE(m_picker->color().name(), QStringLiteral("#0ac81e"));
    QCOMPARE(hex()->text(), QStringLiteral("#0ac81e"));
}

void Tst_ColorPicker::squareWritesTheText() {
    m_picker->setColor(QColor(0, 0, 255));
    square()->setFixedSize(100, 100);
    m_picker->show();
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(0, 0), Qt::LeftButton, Qt::LeftButton, {});
    QApplication::sendEvent(square(), &press);
    QCOMPARE(hex()->text(), QStringLiteral("#ffffff"));
    QCOMPARE(part<ColorPreview>("preview_")->color().name(), QStringLiteral("#ffffff"));
    // The hue stays, though white has none.
    QCOMPARE(slider()->value(), 240);
}

void Tst_ColorPicker::fieldTakes_data() {
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("complete");
    QTest::newRow("six digits") << QStringLiteral("#12aBcF") << QStringLiteral("#12aBcF") << true;
    QTest::newRow("three digits") << QStringLiteral("#0f8") << QStringLiteral("#0f8") << true;
    QTest::newRow("five digits") << QStringLiteral("#12345") << QStringLiteral("#12345") << false;
    QTest::newRow("four digits") << QStringLiteral("#1234") << QStringLiteral("#1234") << false;
    QTest::newRow("seventh digit") << QStringLiteral("#1234567") << QStringLiteral("#123456") << true;
    QTest::newRow("letters that are no digits") << QStringLiteral("#1g2h3") << QStringLiteral("#123") << true;
    QTest::newRow("number sign only") << QStringLiteral("#") << QStringLiteral("#") << false;
    QTest::newRow("second number sign") << QStringLiteral("#1#23") << QStringLiteral("#123") << true;
}

void Tst_ColorPicker::fieldTakes() {
    QFETCH(QString, keys);
    m_picker->show();
    hex()->selectAll();
    QTest::keyClicks(hex(), keys);
    QTEST(hex()->text(), "text");
    QTEST(hex()->hasAcceptableInput(), "complete");
    QTEST(ok()->isEnabled(), "complete");
}

void Tst_ColorPicker::typedTextStaysAsTyped_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("color");
    QTest::newRow("three digits") << QStringLiteral("#0F8") << QStringLiteral("#00ff88");
    QTest::newRow("capitals") << QStringLiteral("#ABCDEF") << QStringLiteral("#abcdef");
    QTest::newRow("no colour yet") << QStringLiteral("#12345") << QStringLiteral("#ff0000");
}

void Tst_ColorPicker::typedTextStaysAsTyped() {
    QFETCH(QString, text);
    hex()->setText(text);
    m_picker->onTextEdited(text);
    QCOMPARE(hex()->text(), text);
    QTEST(m_picker->color().name(), "color");
}

void Tst_ColorPicker::emptiedFieldKeepsTheNumberSign() {
    m_picker->show();
    hex()->selectAll();
    QTest::keyClick(hex(), Qt::Key_Delete);
    QCOMPARE(hex()->text(), QStringLiteral("#"));
    QCOMPARE(m_picker->color().name(), QStringLiteral("#ff0000"));
    QVERIFY(!ok()->isEnabled());
    QTest::keyClicks(hex(), QStringLiteral("00f"));
    QCOMPARE(m_picker->color().name(), QStringLiteral("#0000ff"));
}

void Tst_ColorPicker::editingInTheMiddleKeepsTheCursor() {
    m_picker->show();
    hex()->setText(QStringLiteral("#12456"));
    hex()->setCursorPosition(3);
    QTest::keyClick(hex(), Qt::Key_3);
    QCOMPARE(hex()->text(), QStringLiteral("#123456"));
    QCOMPARE(hex()->cursorPosition(), 4);
}

void Tst_ColorPicker::fiveDigitsCannotBeConfirmed() {
    m_picker->show();
    QSignalSpy selected(m_picker.data(), &ColorPicker::colorSelected);
    hex()->selectAll();
    QTest::keyClicks(hex(), QStringLiteral("#12345"));
    QTest::keyClick(hex(), Qt::Key_Return);
    QTest::mouseClick(ok(), Qt::LeftButton);
    QCOMPARE(selected.count(), 0);
    QTest::keyClick(hex(), Qt::Key_6);
    QTest::mouseClick(ok(), Qt::LeftButton);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.first().first().value<QColor>().name(), QStringLiteral("#123456"));
}

void Tst_ColorPicker::okReportsTheColour() {
    m_picker->setColor(QColor(1, 2, 3));
    QSignalSpy selected(m_picker.data(), &ColorPicker::colorSelected);
    QSignalSpy triggered(m_picker.data(), &Popup::triggered);
    QTest::mouseClick(ok(), Qt::LeftButton);
    QCOMPARE(triggered.count(), 1);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.first().first().value<QColor>().rgb(), qRgb(1, 2, 3));
}

void Tst_ColorPicker::enterConfirms() {
    m_picker->show();
    QSignalSpy selected(m_picker.data(), &ColorPicker::colorSelected);
    QTest::keyClick(hex(), Qt::Key_Return);
    QCOMPARE(selected.count(), 1);
}

void Tst_ColorPicker::cancelReportsNothing() {
    QSignalSpy selected(m_picker.data(), &ColorPicker::colorSelected);
    QSignalSpy canceled(m_picker.data(), &Popup::canceled);
    QTest::mouseClick(part<QPushButton>("cancelBtn_"), Qt::LeftButton);
    QCOMPARE(canceled.count(), 1);
    QCOMPARE(selected.count(), 0);
}

void Tst_ColorPicker::everythingIsReachedByTab() {
    QWidget parent;
    parent.show();
    ColorPicker *picker = m_picker.take();
    Menu *menu = picker->toMenu(&parent);
    menu->popup(QPoint(20, 20));
    QCOMPARE(menu->focusWidget(), picker->findChild<QLineEdit *>());
    // From the digits down and round, and the same way back.
    const QStringList order{QStringLiteral("hexEdit_"), QStringLiteral("okBtn_"),
                            QStringLiteral("cancelBtn_"), QStringLiteral("colorSquare_"),
                            QStringLiteral("colorSlider_")};
    for (const QString &name : order) {
        QCOMPARE(menu->focusWidget()->objectName(), name);
        QTest::keyClick(menu->focusWidget(), Qt::Key_Tab);
    }
    for (int i = order.size() - 1; i >= 0; --i) {
        QTest::keyClick(menu->focusWidget(), Qt::Key_Backtab);
        QCOMPARE(menu->focusWidget()->objectName(), order[i]);
    }
    QVERIFY(menu->isVisible());
}

QTEST_MAIN(Tst_ColorPicker)
#include "tst_colorpicker.moc"
