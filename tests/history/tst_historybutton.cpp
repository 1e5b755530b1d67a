#include "history/historybutton.h"
#include "services/usagestatistics.h"

#include <QLabel>
#include <QtTest>

namespace {

const QColor highlight(255, 255, 255, 127);
const QColor dimmed(0, 0, 0, 25);
const QColor none(Qt::transparent);

enum class Hover { No, Yes };

} // namespace

class Tst_HistoryButton : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void beginsPlain();
    void overlayFollowsTheState_data();
    void overlayFollowsTheState();
    void overlayLiesOverTheThumbnail();
    void hoverOffersCloseAndPin();
    void hoverHidesThePinMark();
    void noPinForAnImageInMemory();
    void selectModeShowsAnUncheckedBox();
    void checkBoxIsReported();
    void pinIsToggledAndReported();
    void settingThePinIsReportedToo();
    void keyPins();
    void keyDoesNotPinAnImageInMemory();
    void keyChecksInSelectMode();
    void keyboardIsReported();
    void smallButtonsHaveNames();
    void closeIsReported();
    void controlsStandInTheCorners();

private:
    template <typename Widget> Widget *child(const char *name) {
        return m_button->findChild<Widget *>(QLatin1String(name));
    }
    bool isShown(const char *name) { return !child<QWidget>(name)->isHidden(); }
    void hover(Hover hover) {
        QEvent event(hover == Hover::Yes ? QEvent::Enter : QEvent::Leave);
        QCoreApplication::sendEvent(m_button.get(), &event);
    }

    std::unique_ptr<HistoryButton> m_button;
    QStringList m_usage;
};

void Tst_HistoryButton::init() {
    m_usage.clear();
    setUsageRecorder([this](const QString &code) { m_usage.append(code); });
    m_button = std::make_unique<HistoryButton>();
}

void Tst_HistoryButton::cleanup() {
    m_button.reset();
    setUsageRecorder({});
}

void Tst_HistoryButton::beginsPlain() {
    QVERIFY(m_button->isCheckable());
    QCOMPARE(m_button->overlay(), none);
    QVERIFY(!m_button->isPinned());
    for (const char *name : {"closeButton_", "selectButton_", "pinButton_", "saveIcon_", "pinnedIcon_"})
        QVERIFY2(!isShown(name), name);
    for (const char *name : {"closeButton_", "selectButton_", "pinButton_"})
        QCOMPARE(child<QPushButton>(name)->cursor().shape(), Qt::PointingHandCursor);
}

void Tst_HistoryButton::overlayFollowsTheState_data() {
    QTest::addColumn<bool>("saved");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<bool>("hovered");
    QTest::addColumn<QColor>("overlay");
    QTest::newRow("plain") << false << false << false << none;
    QTest::newRow("saved") << true << false << false << dimmed;
    QTest::newRow("checked") << false << true << false << highlight;
    QTest::newRow("checked and saved") << true << true << false << highlight;
    QTest::newRow("hovered") << false << false << true << highlight;
    QTest::newRow("hovered and saved") << true << false << true << highlight;
}

void Tst_HistoryButton::overlayFollowsTheState() {
    QFETCH(bool, saved);
    QFETCH(bool, selected);
    QFETCH(bool, hovered);
    m_button->onImageSaved(saved);
    m_button->onImageSelected(selected);
    hover(Hover::Yes);
    QCOMPARE(m_button->overlay(), highlight);
    if (!hovered)
        hover(Hover::No);
    QTEST(m_button->overlay(), "overlay");
    QCOMPARE(isShown("saveIcon_"), saved);
}

void Tst_HistoryButton::overlayLiesOverTheThumbnail() {
    QPixmap white(40, 40);
    white.fill(Qt::white);
    m_button->setThumbnail(white);
    const QPoint centre = m_button->rect().center();
    QCOMPARE(m_button->grab().toImage().pixelColor(centre), QColor(Qt::white));

    m_button->onImageSaved(true);
    // Black at 25 of 255 leaves 230 of 255.
    QCOMPARE(m_button->grab().toImage().pixelColor(centre), QColor(230, 230, 230));
}

void Tst_HistoryButton::hoverOffersCloseAndPin() {
    hover(Hover::Yes);
    QVERIFY(isShown("closeButton_"));
    QVERIFY(isShown("pinButton_"));
    hover(Hover::No);
    QVERIFY(!isShown("closeButton_"));
    QVERIFY(!isShown("pinButton_"));
}

void Tst_HistoryButton::hoverHidesThePinMark() {
    m_button->setPinned(true);
    QVERIFY(isShown("pinnedIcon_"));
    hover(Hover::Yes);
    QVERIFY(!isShown("pinnedIcon_"));
    QVERIFY(child<QPushButton>("pinButton_")->isChecked());
    hover(Hover::No);
    QVERIFY(isShown("pinnedIcon_"));
}

void Tst_HistoryButton::noPinForAnImageInMemory() {
    m_button->setPinnable(false);
    hover(Hover::Yes);
    QVERIFY(isShown("closeButton_"));
    QVERIFY(!isShown("pinButton_"));
}

void Tst_HistoryButton::selectModeShowsAnUncheckedBox() {
    m_button->onChangeSelectionMode(HistorySelectModes::Select);
    QVERIFY(isShown("selectButton_"));
    child<QPushButton>("selectButton_")->click();
    QVERIFY(m_button->isImageSelected());

    m_button->onChangeSelectionMode(HistorySelectModes::Normal);
    QVERIFY(!isShown("selectButton_"));
    QVERIFY(!m_button->isImageSelected());
    QVERIFY(!child<QPushButton>("selectButton_")->isChecked());
    QCOMPARE(m_button->overlay(), none);
}

void Tst_HistoryButton::checkBoxIsReported() {
    QSignalSpy spy(m_button.get(), &HistoryButton::changeSelectChecked);
    m_button->onChangeSelectionMode(HistorySelectModes::Select);
    QCOMPARE(spy.count(), 0);
    child<QPushButton>("selectButton_")->click();
    m_button->onImageSelected(false);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0).at(0).toBool(), true);
    QCOMPARE(spy.at(1).at(0).toBool(), false);
}

void Tst_HistoryButton::pinIsToggledAndReported() {
    QSignalSpy spy(m_button.get(), &HistoryButton::clickPinButton);
    child<QPushButton>("pinButton_")->click();
    QVERIFY(m_button->isPinned());
    child<QPushButton>("pinButton_")->click();
    QVERIFY(!m_button->isPinned());
    QVERIFY(!child<QPushButton>("pinButton_")->isChecked());
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0).at(0).toBool(), true);
    QCOMPARE(spy.at(1).at(0).toBool(), false);
    QCOMPARE(m_usage, QStringList{QStringLiteral("cap_303_21")});
}

void Tst_HistoryButton::settingThePinIsReportedToo() {
    QSignalSpy spy(m_button.get(), &HistoryButton::clickPinButton);
    m_button->setPinned(true);
    QCOMPARE(spy.count(), 1);
    QVERIFY(m_usage.isEmpty());
}

void Tst_HistoryButton::keyPins() {
    QTest::keyClick(m_button.get(), Qt::Key_P);
    QVERIFY(m_button->isPinned());
    QCOMPARE(m_usage, QStringList{QStringLiteral("cap_303_21")});
    QTest::keyClick(m_button.get(), Qt::Key_P, Qt::ControlModifier);
    QVERIFY(m_button->isPinned());
    QTest::keyClick(m_button.get(), Qt::Key_P);
    QVERIFY(!m_button->isPinned());
}

void Tst_HistoryButton::keyDoesNotPinAnImageInMemory() {
    m_button->setPinnable(false);
    QTest::keyClick(m_button.get(), Qt::Key_P);
    QVERIFY(!m_button->isPinned());
}

void Tst_HistoryButton::keyChecksInSelectMode() {
    QTest::keyClick(m_button.get(), Qt::Key_S);
    QVERIFY(!m_button->isImageSelected());
    m_button->onChangeSelectionMode(HistorySelectModes::Select);
    QTest::keyClick(m_button.get(), Qt::Key_S);
    QVERIFY(m_button->isImageSelected());
    QTest::keyClick(m_button.get(), Qt::Key_S);
    QVERIFY(!m_button->isImageSelected());
}

void Tst_HistoryButton::keyboardIsReported() {
    QSignalSpy reached(m_button.get(), &HistoryButton::reachedByKey);
    QFocusEvent byMouse(QEvent::FocusIn, Qt::MouseFocusReason);
    QCoreApplication::sendEvent(m_button.get(), &byMouse);
    QCOMPARE(reached.size(), 0);
    for (const Qt::FocusReason reason : {Qt::TabFocusReason, Qt::BacktabFocusReason}) {
        QFocusEvent byKey(QEvent::FocusIn, reason);
        QCoreApplication::sendEvent(m_button.get(), &byKey);
    }
    QCOMPARE(reached.size(), 2);
}

void Tst_HistoryButton::smallButtonsHaveNames() {
    for (const char *name : {"closeButton_", "selectButton_", "pinButton_"})
        QVERIFY2(!child<QPushButton>(name)->accessibleName().isEmpty(), name);
}

void Tst_HistoryButton::closeIsReported() {
    QSignalSpy spy(m_button.get(), &HistoryButton::clickCloseButton);
    child<QPushButton>("closeButton_")->click();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(m_usage, QStringList{QStringLiteral("cap_302_03")});
}

void Tst_HistoryButton::controlsStandInTheCorners() {
    m_button->grab();
    const QRect button = m_button->rect();
    QCOMPARE(child<QWidget>("closeButton_")->geometry().topRight(), button.topRight());
    QCOMPARE(child<QWidget>("selectButton_")->pos(), QPoint(4, 4));
    QCOMPARE(child<QWidget>("pinButton_")->geometry().bottomRight(), button.bottomRight());
    QCOMPARE(child<QWidget>("pinnedIcon_")->geometry().bottomRight(), button.bottomRight());
    QCOMPARE(child<QWidget>("saveIcon_")->geometry().bottomLeft(), button.bottomLeft());
}

QTEST_MAIN(Tst_HistoryButton)
#include "tst_historybutton.moc"
