#include "canvas/imagetoolwidget.h"
#include "popups/itembutton.h"

#include <QLabel>
#include <QSignalSpy>
#include <QtTest>

class Tst_ImageToolWidget : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup() { m_tool.reset(); }

    void tellsSizeAndScale();
    void buttonsAskForAnotherScale_data();
    void buttonsAskForAnotherScale();
    void buttonsTellTheirPurpose();
    void clickLeavesTheFocusWhereItIs();
    void keysZoomWithTheFocusInIt_data();
    void keysZoomWithTheFocusInIt();
    void otherKeysGoOn();

private:
    ItemButton *button(const char *name) const {
        return m_tool->findChild<ItemButton *>(QString::fromLatin1(name));
    }
    QString label(const char *name) const {
        return m_tool->findChild<QLabel *>(QString::fromLatin1(name))->text();
    }
    /// What was asked for, one letter a request: in, out, reset.
    QString m_asked;
    std::unique_ptr<ImageToolWidget> m_tool;
};

void Tst_ImageToolWidget::init() {
    m_tool = std::make_unique<ImageToolWidget>();
    m_asked.clear();
    connect(m_tool.get(), &ImageToolWidget::zoomIn, this, [this] { m_asked += QLatin1Char('i'); });
    connect(m_tool.get(), &ImageToolWidget::zoomOut, this, [this] { m_asked += QLatin1Char('o'); });
    connect(m_tool.get(), &ImageToolWidget::zoomReset, this, [this] { m_asked += QLatin1Char('r'); });
}

void Tst_ImageToolWidget::tellsSizeAndScale() {
    m_tool->setImageSize(QSize(1920, 1080));
    m_tool->setPercent(96);
    QCOMPARE(label("imageSize_"), QStringLiteral("1920 \u00D7 1080"));
    QCOMPARE(label("percent_"), QStringLiteral("96%"));
}

void Tst_ImageToolWidget::buttonsAskForAnotherScale_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("asked");
    QTest::newRow("in") << QByteArray("zoomIn_") << QStringLiteral("i");
    QTest::newRow("out") << QByteArray("zoomOut_") << QStringLiteral("o");
    QTest::newRow("original size") << QByteArray("originalSize_") << QStringLiteral("r");
}

void Tst_ImageToolWidget::buttonsAskForAnotherScale() {
    QFETCH(QByteArray, name);
    QTEST((QTest::mouseClick(button(name), Qt::LeftButton), m_asked), "asked");
    QCOMPARE(button(name)->cursor().shape(), Qt::PointingHandCursor);
}

void Tst_ImageToolWidget::buttonsTellTheirPurpose() {
    QCOMPARE(button("zoomIn_")->accessibleName(), QStringLiteral("Zoom in"));
    QCOMPARE(button("zoomOut_")->accessibleName(), QStringLiteral("Zoom out"));
    QCOMPARE(button("originalSize_")->accessibleName(), QStringLiteral("Original size"));
    for (const ItemButton *each : m_tool->findChildren<ItemButton *>())
        QCOMPARE(each->toolTip(), each->accessibleName());
    QVERIFY(!m_tool->accessibleName().isEmpty());
}

void Tst_ImageToolWidget::clickLeavesTheFocusWhereItIs() {
    for (const ItemButton *each : m_tool->findChildren<ItemButton *>())
        QCOMPARE(each->focusPolicy(), Qt::TabFocus);
}

void Tst_ImageToolWidget::keysZoomWithTheFocusInIt_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("asked");
    QTest::newRow("plus") << int(Qt::Key_Plus) << QStringLiteral("i");
    QTest::newRow("plus without Shift") << int(Qt::Key_Equal) << QStringLiteral("i");
    QTest::newRow("minus") << int(Qt::Key_Minus) << QStringLiteral("o");
    QTest::newRow("space presses the button that has the focus") << int(Qt::Key_Space) << QStringLiteral("r");
}

void Tst_ImageToolWidget::keysZoomWithTheFocusInIt() {
    QFETCH(int, key);
    m_tool->show();
    QTEST((QTest::keyClick(button("originalSize_"), Qt::Key(key)), m_asked), "asked");
}

void Tst_ImageToolWidget::otherKeysGoOn() {
    QWidget window;
    m_tool->setParent(&window);
    QKeyEvent event(QEvent::KeyPress, Qt::Key_F4, Qt::NoModifier);
    QCoreApplication::sendEvent(m_tool.get(), &event);
    QVERIFY(!event.isAccepted());
    QVERIFY(m_asked.isEmpty());
    m_tool->setParent(nullptr);
}

QTEST_MAIN(Tst_ImageToolWidget)
#include "tst_imagetoolwidget.moc"
