#include "app/backgroundrest.h"

#include <QWidget>
#include <QtTest>

#include <memory>

using namespace std::chrono_literals;

class Tst_BackgroundRest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void beginsOnceAfterEachHiding();
    void doesNotBeginBeforeTheWaitIsOver();
    void windowThatComesBackIsNotAtRest();
    void windowMayGoFirst();

private:
    std::function<void()> count() {
        return [this] { ++m_begun; };
    }

    int m_begun = 0;
};

void Tst_BackgroundRest::init() {
    m_begun = 0;
}

void Tst_BackgroundRest::beginsOnceAfterEachHiding() {
    QWidget window;
    const BackgroundRest rest(&window, 1ms, count());
    window.show();
    QTest::qWait(50);
    QCOMPARE(m_begun, 0);
    window.hide();
    QTRY_COMPARE(m_begun, 1);
    QTest::qWait(50);
    QCOMPARE(m_begun, 1);
    window.show();
    window.hide();
    QTRY_COMPARE(m_begun, 2);
}

void Tst_BackgroundRest::doesNotBeginBeforeTheWaitIsOver() {
    QWidget window;
    const BackgroundRest rest(&window, 1h, count());
    window.show();
    window.hide();
    QTest::qWait(50);
    QCOMPARE(m_begun, 0);
}

void Tst_BackgroundRest::windowThatComesBackIsNotAtRest() {
    QWidget window;
    const BackgroundRest rest(&window, 1ms, count());
    window.show();
    window.hide();
    window.show();
    QTest::qWait(50);
    QCOMPARE(m_begun, 0);
}

void Tst_BackgroundRest::windowMayGoFirst() {
    auto window = std::make_unique<QWidget>();
    const BackgroundRest rest(window.get(), 1ms, count());
    window->show();
    window.reset();
    QTRY_COMPARE(m_begun, 1);
}

QTEST_MAIN(Tst_BackgroundRest)
#include "tst_backgroundrest.moc"
