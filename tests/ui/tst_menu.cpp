#include "support/fakeplatform.h"
#include "ui/menu.h"
#include "ui/negativebutton.h"
#include "ui/popupshadow.h"
#include "ui/positivebutton.h"

#include <QTest>

/// The menu class, its shadow, and the buttons that are only selectors.
class Tst_Menu : public QObject {
    Q_OBJECT
private slots:
    void init() { m_platform = FakePlatform::install(); }
    void cleanupTestCase() { Platform::setInstance(nullptr); }
    void nativeWindowGetsTheShadow_data();
    void nativeWindowGetsTheShadow();
    void nothingToShadow();
    void selectorsOfTheStyleSheet();

private:
    FakePlatform *m_platform = nullptr;
};

void Tst_Menu::nativeWindowGetsTheShadow_data() {
    QTest::addColumn<bool>("offered");
    QTest::newRow("desktop with shadows") << true;
    QTest::newRow("desktop without") << false;
}

void Tst_Menu::nativeWindowGetsTheShadow() {
    QFETCH(bool, offered);
    m_platform->nativeShadow = offered;
    Menu menu;
    QVERIFY(m_platform->shadowed.isEmpty());
    menu.addAction(QStringLiteral("entry"));
    menu.popup(QPoint());
    QCOMPARE(m_platform->shadowed.contains(menu.windowHandle()), offered);
    QCOMPARE(m_platform->shadowed.isEmpty(), !offered);
}

void Tst_Menu::nothingToShadow() {
    m_platform->nativeShadow = true;
    addPopupShadow(nullptr);
    QWidget withoutWindow;
    addPopupShadow(&withoutWindow);
    QVERIFY(m_platform->shadowed.isEmpty());
}

void Tst_Menu::selectorsOfTheStyleSheet() {
    QWidget window;
    window.setStyleSheet(
        QStringLiteral("PositiveButton { min-width: 31px; } NegativeButton { min-width: 47px; }"
                       "Menu { min-width: 61px; }"));
    PositiveButton positive(&window);
    NegativeButton negative(QStringLiteral("n"), &window);
    Menu menu(&window);
    for (QWidget *widget : {static_cast<QWidget *>(&positive), static_cast<QWidget *>(&negative),
                            static_cast<QWidget *>(&menu)})
        widget->ensurePolished();
    QVERIFY(positive.minimumWidth() >= 31 && positive.minimumWidth() < 47);
    QVERIFY(negative.minimumWidth() >= 47 && negative.minimumWidth() < 61);
    QVERIFY(menu.minimumWidth() >= 61);
}

QTEST_MAIN(Tst_Menu)
#include "tst_menu.moc"
