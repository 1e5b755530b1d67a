#include "canvas/editor.h"
#include "history/historybutton.h"
#include "history/historybuttonwidget.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "support/literals.h"
#include "support/session.h"
#include "ui/debouncefunc.h"
#include "ui/throttlefunc.h"
#include "ui/uistyler.h"

#include <QGraphicsRectItem>
#include <QtTest>

class Tst_HistoryButtonWidget : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void rowIsAsHighAsItsButton();
    void thumbnailComesAfterTheRow();
    void firstUpdateDependsOnTheArea_data();
    void firstUpdateDependsOnTheArea();
    void updatesInABurstWaitForItsInterval();
    void intervalOfTheUpdates_data();
    void intervalOfTheUpdates();
    void drawingShowsInTheThumbnail();
    void cropShowsInTheThumbnail();
    void cachedPictureIsScaledOnly();
    void changeOfScaleScalesThePictureOnly();
    void changeOfScaleWithoutAPictureWaits();
    void missingPictureKeepsTheThumbnail();
    void pinIsOfferedForFilesOnly();
    void detachedRowStaysQuiet();

private:
    void add(const QString &key) {
        m_list->insertImage(key, true, -1);
        m_row = m_list->rowWidget(m_list->rowItem(0));
        m_button = m_row->findChild<HistoryButton *>();
    }
    Editor *editor() const { return m_list->rowItem(0)->editor(); }
    QColor thumbnailColor(double x = 0.5, double y = 0.5) const {
        const QImage image = m_button->thumbnail().toImage();
        if (image.isNull())
            return {};
        return image.pixelColor(int(x * image.width()), int(y * image.height()));
    }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<HistoryListWidget> m_list;
    HistoryButtonWidget *m_row = nullptr;
    HistoryButton *m_button = nullptr;
};

void Tst_HistoryButtonWidget::init() {
    m_session = std::make_unique<Session>();
    m_list = std::make_unique<HistoryListWidget>();
}

void Tst_HistoryButtonWidget::cleanup() {
    m_list.reset();
    m_session.reset();
}

void Tst_HistoryButtonWidget::rowIsAsHighAsItsButton() {
    add(Session::captureFile("a"_qs));
    m_list->show();
    m_button->setFixedSize(156, 156); // as the style sheet does on a screen of twice the density
    QTRY_COMPARE(m_list->rowItem(0)->sizeHint().height(), 156);
}

void Tst_HistoryButtonWidget::thumbnailComesAfterTheRow() {
    add(Session::captureFile("a"_qs, {200, 100}, Qt::green));
    QVERIFY(m_button->thumbnail().isNull());
    QCoreApplication::processEvents();
    QCOMPARE(m_button->thumbnail().size(), QSize(80, 40));
    QCOMPARE(thumbnailColor(), QColor(Qt::green));
}

void Tst_HistoryButtonWidget::firstUpdateDependsOnTheArea_data() {
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("atOnce");
    QTest::newRow("small") << QSize(40, 30) << true;
    QTest::newRow("just below a 4K screen") << QSize(3840, 2159) << true;
    QTest::newRow("a 4K screen") << QSize(3840, 2160) << false;
    QTest::newRow("the area counts, not the sides") << QSize(2160, 3840) << false;
}

void Tst_HistoryButtonWidget::firstUpdateDependsOnTheArea() {
    QFETCH(QSize, size);
    add(Session::captureInMemory("m"_qs, size));
    m_row->onUpdateThumbnail();
    QTEST(!m_button->thumbnail().isNull(), "atOnce");
    QTRY_VERIFY(!m_button->thumbnail().isNull());
}

void Tst_HistoryButtonWidget::updatesInABurstWaitForItsInterval() {
    add(Session::captureInMemory("m"_qs));
    m_row->onUpdateThumbnail();
    const qint64 first = m_button->thumbnail().cacheKey();
    m_row->onUpdateThumbnail();
    m_row->onUpdateThumbnail();
    QCOMPARE(m_button->thumbnail().cacheKey(), first);
    QTRY_VERIFY(m_button->thumbnail().cacheKey() != first);
}

void Tst_HistoryButtonWidget::intervalOfTheUpdates_data() {
    QTest::addColumn<QSize>("size");
    QTest::newRow("small") << QSize(40, 30);
    QTest::newRow("a 4K screen") << QSize(3840, 2160);
}

void Tst_HistoryButtonWidget::intervalOfTheUpdates() {
    QFETCH(QSize, size);
    add(Session::captureInMemory("m"_qs, size));
    m_row->onUpdateThumbnail();
    const QTimer *throttle = m_row->findChild<ThrottleFunc *>()->findChild<QTimer *>();
    const QTimer *debounce = m_row->findChild<DebounceFunc *>()->findChild<QTimer *>();
    const bool isSmall = size.width() < 3840;
    QCOMPARE(throttle->isActive(), isSmall);
    QCOMPARE(debounce->isActive(), !isSmall);
    QCOMPARE((isSmall ? throttle : debounce)->interval(), 33);
}

void Tst_HistoryButtonWidget::drawingShowsInTheThumbnail() {
    add(Session::captureFile("a"_qs, {80, 80}, Qt::white));
    QTRY_COMPARE(thumbnailColor(0.25), QColor(Qt::white));
    editor()->addRect(0, 0, 40, 80, Qt::NoPen, Qt::blue);
    QTRY_COMPARE(thumbnailColor(0.25), QColor(Qt::blue));
    QCOMPARE(thumbnailColor(0.75), QColor(Qt::white));
}

void Tst_HistoryButtonWidget::cropShowsInTheThumbnail() {
    add(Session::captureFile("a"_qs, {80, 80}));
    QTRY_COMPARE(m_button->thumbnail().size(), QSize(80, 80));
    QMetaObject::invokeMethod(editor(), "onCrop", Q_ARG(QRect, QRect(0, 0, 80, 20)));
    QTRY_COMPARE(m_button->thumbnail().size(), QSize(80, 20));
}

void Tst_HistoryButtonWidget::cachedPictureIsScaledOnly() {
    add(Session::captureFile("a"_qs, {80, 80}, Qt::white));
    m_row->updateThumbnail(false);
    editor()->setImageKey(Session::captureFile("b"_qs, {80, 80}, Qt::red));
    m_button->setIconSize({40, 40});
    m_row->updateThumbnail(true);
    QCOMPARE(m_button->thumbnail().size(), QSize(40, 40));
    QCOMPARE(thumbnailColor(), QColor(Qt::white));
    m_row->updateThumbnail(false);
    QCOMPARE(thumbnailColor(), QColor(Qt::red));
}

void Tst_HistoryButtonWidget::changeOfScaleScalesThePictureOnly() {
    add(Session::captureFile("a"_qs, {80, 80}, Qt::white));
    m_row->updateThumbnail(false);
    editor()->setImageKey(Session::captureFile("b"_qs, {80, 80}, Qt::red));
    m_button->setIconSize({40, 40});
    UIStyler::applyScale(m_row, 1.5);
    QCOMPARE(m_button->thumbnail().size(), m_button->iconSize());
    QVERIFY(m_button->thumbnail().size() != QSize(80, 80));
    QCOMPARE(thumbnailColor(), QColor(Qt::white));
}

void Tst_HistoryButtonWidget::changeOfScaleWithoutAPictureWaits() {
    add(Session::captureFile("a"_qs));
    UIStyler::applyScale(m_row, 1.5);
    QVERIFY(m_button->thumbnail().isNull());
    QCoreApplication::processEvents();
    QVERIFY(!m_button->thumbnail().isNull());
}

void Tst_HistoryButtonWidget::missingPictureKeepsTheThumbnail() {
    add(Session::captureFile("a"_qs, {80, 80}, Qt::red));
    m_row->updateThumbnail(false);
    editor()->setImageKey("nothing"_qs);
    m_row->updateThumbnail(false);
    QCOMPARE(thumbnailColor(), QColor(Qt::red));
}

void Tst_HistoryButtonWidget::pinIsOfferedForFilesOnly() {
    const auto offersPin = [this] {
        m_row->updateThumbnail(false);
        QEvent enter(QEvent::Enter);
        QCoreApplication::sendEvent(m_button, &enter);
        return !m_button->findChild<QPushButton *>("pinButton_"_qs)->isHidden();
    };
    add(Session::captureFile("a"_qs));
    QVERIFY(offersPin());
    add(Session::captureInMemory("m"_qs));
    QVERIFY(!offersPin());
}

void Tst_HistoryButtonWidget::detachedRowStaysQuiet() {
    add(Session::captureFile("a"_qs));
    editor()->setSavedPath("/saved.png"_qs); // would be deleted without a question
    int pins = 0;
    connect(m_row, &HistoryButtonWidget::pinHistory, this, [&] { ++pins; });
    m_row->detach();
    m_row->updateThumbnail(false);
    m_row->onUpdateThumbnail();
    QVERIFY(m_button->thumbnail().isNull());
    m_row->setPinned(true);
    QCOMPARE(pins, 0);
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint());
    QCoreApplication::sendEvent(m_row, &event);
    QVERIFY(!m_row->findChild<QMenu *>()->isVisible());
    m_row->onContextMenuDelete();
    QCOMPARE(m_list->count(), 1);
}

QTEST_MAIN(Tst_HistoryButtonWidget)
#include "tst_historybuttonwidget.moc"
