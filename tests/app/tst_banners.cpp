#include "app/bannerframe.h"
#include "app/banners.h"
#include "app/toolbar.h"
#include "app/windowtest.h"
#include "services/bannerlibrary.h"
#include "services/programfolder.h"
#include "support/imagecompare.h"
#include "support/openedurls.h"
#include "support/substitutelibraries.h"
#include "ui/uistyler.h"

#include <QLayout>

/// The banners' frames, and the main window around them.
class Tst_Banners : public WindowTest {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void recordsOfTheKinds_data();
    void recordsOfTheKinds();
    void defaultImageFillsTheFrame_data();
    void defaultImageFillsTheFrame();
    void clickOnTheImageOpensItsLink_data();
    void clickOnTheImageOpensItsLink();
    void shownFrameTellsAndHidesItselfBehindThat();
    void newScaleIsFollowedOnceLater();
    void windowShowsBothAndBothGo();
    void layoutRunsWithTheBannerAndWithoutIt();
    void nobodySeesABannerThatGoes();
    void toolbarBannerTakesRoomAndGivesItBack();
    void toolbarBannerStandsAtTheRightEnd();
    void bottomBannerStandsOnTheCanvas();
    void closeButtonComesAndGoesWithTheBottomBanner();
    void closedBannerStaysAway_data();
    void closedBannerStaysAway();
    void closeTellsTheLibrary();
    void hiddenWindowHasNoBanners();
    void noBannersBehindTheEnd();

private:
    BannerFrame *frame(const char *name) const {
        return m_window->findChild<BannerFrame *>(QLatin1String(name) + "Banner_"_qs);
    }
    QPushButton *closeButton() const { return m_window->findChild<QPushButton *>("bannerClose_"_qs); }
    ::Toolbar *toolbar() const { return m_window->findChild<::Toolbar *>(); }
    /// The window with every button in its toolbar and nothing left to do.
    void showWindow();
    /// What the receivers of queued signals do, and not yet what frames have queued for themselves.
    static void deliverTo(QObject *receiver) {
        QCoreApplication::sendPostedEvents(receiver, QEvent::MetaCall);
    }

    SubstituteLibraries m_libraries;
    std::unique_ptr<QTemporaryDir> m_folder;
};

Q_DECLARE_METATYPE(BannerFrame::Kind)

namespace {

/// Counts how often the toolbar is painted, laid out for a banner or not.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget *toolbar) { toolbar->installEventFilter(this); }
    bool eventFilter(QObject *toolbar, QEvent *event) override {
        if (event->type() == QEvent::Paint)
            ++(toolbar->property("hasBanner").toString() == "true"_qs ? withBanner : withoutBanner);
        return false;
    }
    int withBanner = 0;
    int withoutBanner = 0;
};

const QString closeTimes = QStringLiteral("Software\\Norvane\\Quoin2\\CloseButtonClickTime");

} // namespace

void Tst_Banners::init() {
    m_folder = std::make_unique<QTemporaryDir>();
    setProgramFolder(m_folder->path());
    ConfigurationLocation("Software\\Norvane\\Quoin2"_qs).remove("CloseButtonClickTime"_qs);
    WindowTest::init();
}

void Tst_Banners::cleanup() {
    WindowTest::cleanup();
    setProgramFolder({});
}

void Tst_Banners::showWindow() {
    makeWide();
    QCoreApplication::processEvents();
}

void Tst_Banners::recordsOfTheKinds_data() {
    QTest::addColumn<BannerFrame::Kind>("kind");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("image");
    QTest::addColumn<QString>("area");
    QTest::newRow("toolbar") << BannerFrame::Toolbar << 0 << "toolbar"
                             << "Banner/toolbar_banner_default.png"
                             << "AD_CAP_B02";
    QTest::newRow("bottom") << BannerFrame::Bottom << 1 << "bottom"
                            << "Banner/bottom_banner_default.png"
                            << "AD_CAP_B01";
}

void Tst_Banners::recordsOfTheKinds() {
    QFETCH(BannerFrame::Kind, kind);
    QTEST(int(kind), "number");
    QWidget window;
    const BannerFrame banner(kind, {}, nullptr, &window);
    QTEST(banner.record().name, "name");
    QTEST(banner.record().defaultImage, "image");
    QTEST(banner.record().areaId, "area");
    QCOMPARE(banner.parentWidget(), &window);
    QVERIFY(!banner.isVisible());
}

void Tst_Banners::defaultImageFillsTheFrame_data() {
    recordsOfTheKinds_data();
}

void Tst_Banners::defaultImageFillsTheFrame() {
    QFETCH(BannerFrame::Kind, kind);
    QFETCH(QString, image);
    QWidget window;
    BannerFrame banner(kind, {}, nullptr, &window);
    const QPixmap expected(":/res/"_qs + image);
    QVERIFY(!expected.isNull());
    const QSize size = banner.record().size * widgetScale(&banner);
    QCOMPARE(banner.size(), size);
    QCOMPARE(banner.minimumSize(), size);
    QCOMPARE(banner.maximumSize(), size);
    // The picture keeps its proportions.
    QCOMPARE(expected.width() * size.height(), expected.height() * size.width());
    COMPARE_IMAGES(banner.grab().toImage().convertToFormat(QImage::Format_RGB32),
                   expected.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                       .toImage()
                       .convertToFormat(QImage::Format_RGB32),
                   "banner");
}

void Tst_Banners::clickOnTheImageOpensItsLink_data() {
    recordsOfTheKinds_data();
}

void Tst_Banners::clickOnTheImageOpensItsLink() {
    QFETCH(BannerFrame::Kind, kind);
    const OpenedUrls opened;
    QWidget window;
    BannerFrame banner(kind, {}, nullptr, &window);
    QTest::mouseClick(banner.findChild<QLabel *>(), Qt::LeftButton);
    QCOMPARE(opened.urls, QVector<QUrl>{banner.record().defaultLink});
    QVERIFY(banner.record().defaultLink.isValid());
}

void Tst_Banners::shownFrameTellsAndHidesItselfBehindThat() {
    QWidget window;
    BannerFrame banner(BannerFrame::Toolbar, {}, nullptr, &window);
    window.show();
    QStringList told;
    const auto note = [&](const char *what) {
        told.append(QLatin1String(what) + (banner.isVisible() ? " visible"_qs : " hidden"_qs));
    };
    connect(&banner, &BannerFrame::sig_showEvent, &window, [&] { note("shown"); });
    connect(
        &banner, &BannerFrame::sig_showEvent, &window, [&] { note("lay out for the show"); },
        Qt::QueuedConnection);
    connect(
        &banner, &BannerFrame::sig_hideEvent, &window, [&] { note("lay out for the hide"); },
        Qt::QueuedConnection);
    banner.show();
    QVERIFY(banner.isVisible());
    QTRY_COMPARE(told.size(), 3);
    QCOMPARE(told, (QStringList{"shown visible"_qs, "lay out for the show visible"_qs,
                                "lay out for the hide hidden"_qs}));
}

void Tst_Banners::newScaleIsFollowedOnceLater() {
    QWidget window;
    BannerSettings settings;
    settings.debounce = 20;
    BannerFrame banner(BannerFrame::Bottom, settings, nullptr, &window);
    const QSize size = banner.size();
    const QSignalSpy sized(&banner, &BannerFrame::sig_updateSize);
    // As if the size were that of another scale.
    banner.setFixedSize(10, 10);
    UIStyler::applyScale(&window, 1.5);
    UIStyler::applyScale(&window, 2.0);
    QCOMPARE(sized.count(), 0);
    QTRY_COMPARE(sized.count(), 1);
    QCOMPARE(banner.size(), size);
    UIStyler::applyScale(&window, 1.0);
    QTest::qWait(60);
    QCOMPARE(sized.count(), 1); // the same size is no news
}

void Tst_Banners::windowShowsBothAndBothGo() {
    QStringList told;
    for (const char *name : {"toolbar", "bottom"}) {
        BannerFrame *banner = frame(name);
        connect(banner, &BannerFrame::sig_showEvent, this, [&told, banner] {
            told += banner->record().name + (banner->isVisible() ? " visible"_qs : " hidden"_qs);
        });
    }
    const QStringList both{"toolbar visible"_qs, "bottom visible"_qs};
    m_window->show();
    QCOMPARE(told, both);
    QVERIFY(!frame("toolbar")->isVisible() && !frame("bottom")->isVisible());
    m_window->hide();
    m_window->show();
    QCOMPARE(told, both + both);
}

void Tst_Banners::layoutRunsWithTheBannerAndWithoutIt() {
    QStringList states;
    connect(toolbar(), &::Toolbar::laidOut, this, [&] {
        const QString state = toolbar()->property("hasBanner").toString();
        if (states.isEmpty() || states.last() != state)
            states += state;
    });
    m_window->show();
    QCOMPARE(states.mid(states.indexOf("true"_qs)), (QStringList{"true"_qs, "false"_qs}));
    QCOMPARE(toolbar()->layout()->contentsMargins().right(), 0);
}

void Tst_Banners::nobodySeesABannerThatGoes() {
    PaintWatch watch(toolbar());
    for (int i = 0; i < 5; ++i) {
        watch.withoutBanner = 0;
        m_window->show();
        QTRY_VERIFY(watch.withoutBanner > 0);
        m_window->hide();
    }
    QCOMPARE(watch.withBanner, 0);
}

void Tst_Banners::toolbarBannerTakesRoomAndGivesItBack() {
    const auto visibleButtons = [this] {
        int count = 0;
        for (const QAction *action : toolbar()->actions())
            count += action->isVisible();
        return count;
    };
    showWindow();
    BannerFrame *banner = frame("toolbar");
    // Just wide enough for all.
    while (m_window->width() > 400 && button("help")->isVisible()) {
        m_window->resize(m_window->width() - 10, m_window->height());
        QCoreApplication::processEvents();
    }
    m_window->resize(m_window->width() + 10, m_window->height());
    QCoreApplication::processEvents();
    const int all = visibleButtons();
    banner->show();
    deliverTo(m_window->findChild<Banners *>());
    QCOMPARE(toolbar()->layout()->contentsMargins().right(), banner->width());
    QVERIFY(visibleButtons() < all);
    QVERIFY(button("menu")->isVisible());
    QTRY_VERIFY(!banner->isVisible());
    QCoreApplication::processEvents();
    QCOMPARE(toolbar()->layout()->contentsMargins().right(), 0);
    QCOMPARE(visibleButtons(), all);
}

void Tst_Banners::toolbarBannerStandsAtTheRightEnd() {
    showWindow();
    BannerFrame *banner = frame("toolbar");
    const auto expected = [&] {
        return QPoint(m_window->width() - banner->width(),
                      toolbar()->y() + int((toolbar()->height() - banner->height()) / 2.0));
    };
    banner->show();
    deliverTo(m_window->findChild<Banners *>());
    QCOMPARE(banner->pos(), expected());
    QCOMPARE(m_window->children().last(), banner);
    m_window->resize(m_window->width() - 50, m_window->height());
    QCOMPARE(banner->pos(), expected());
    // The toolbar is another height with a banner, as soon as its own layout has run.
    toolbar()->resize(toolbar()->width(), toolbar()->height() + 21);
    QCOMPARE(banner->pos(), expected());
}

void Tst_Banners::bottomBannerStandsOnTheCanvas() {
    showWindow();
    BannerFrame *banner = frame("bottom");
    banner->show();
    deliverTo(m_window->findChild<Banners *>());
    const QRect canvas(view()->mapTo(m_window.get(), QPoint()), view()->size());
    QCOMPARE(banner->y() + banner->height(), canvas.y() + canvas.height());
    QCOMPARE(banner->x(), canvas.x() + (canvas.width() - banner->width()) / 2);
    QCOMPARE(closeButton()->y(), banner->y());
    QCOMPARE(closeButton()->x() + closeButton()->width(), banner->x() + banner->width());
    const int before = banner->y();
    m_window->resize(m_window->width(), m_window->height() + 40);
    QCOMPARE(banner->y(), before + 40);
}

void Tst_Banners::closeButtonComesAndGoesWithTheBottomBanner() {
    showWindow();
    QVERIFY(!closeButton()->isVisible());
    QCOMPARE(closeButton()->cursor().shape(), Qt::PointingHandCursor);
    frame("toolbar")->show();
    QVERIFY(!closeButton()->isVisible());
    frame("bottom")->show();
    QVERIFY(closeButton()->isVisible());
    QCoreApplication::processEvents();
    QVERIFY(!closeButton()->isVisible());
}

void Tst_Banners::closedBannerStaysAway_data() {
    QTest::addColumn<int>("interval");
    QTest::addColumn<qint64>("later");
    QTest::addColumn<bool>("mayShow");
    QTest::newRow("at once") << 3600 << qint64(0) << false;
    QTest::newRow("a second too early") << 3600 << qint64(3599) << false;
    QTest::newRow("in time") << 3600 << qint64(3600) << true;
    QTest::newRow("clock set back") << 3600 << qint64(-1) << true;
    QTest::newRow("no interval") << 0 << qint64(0) << true;
}

void Tst_Banners::closedBannerStaysAway() {
    QFETCH(int, interval);
    QFETCH(qint64, later);
    constexpr qint64 now = 1700000000;
    QWidget window;
    BannerSettings settings;
    settings.showInterval = interval;
    {
        BannerFrame banner(BannerFrame::Bottom, settings, nullptr, &window);
        QVERIFY(banner.mayShow());
        banner.setClock([] { return now; });
        window.show();
        banner.show();
        banner.onClickCloseBanner();
        QVERIFY(!banner.isVisible());
    }
    QCOMPARE(ConfigurationLocation(closeTimes).value("AD_CAP_B01"_qs).toString(), "1700000000"_qs);
    BannerFrame next(BannerFrame::Bottom, settings, nullptr, &window);
    next.setClock([later] { return now + later; });
    QTEST(next.mayShow(), "mayShow");
    QVERIFY(BannerFrame(BannerFrame::Toolbar, settings, nullptr, &window).mayShow());
}

void Tst_Banners::closeTellsTheLibrary() {
    m_window.reset();
    m_libraries.add("Quoin"_qs);
    setProgramFolder(m_libraries.folder());
    QFile settings(QDir(m_libraries.folder()).filePath("rconfig.json"_qs));
    QVERIFY(settings.open(QIODevice::WriteOnly));
    settings.write(R"({"bannerShowInterval": 100000})");
    settings.close();
    start();
    showWindow();
    m_libraries.forgetCalls();
    frame("bottom")->show();
    closeButton()->click();
    QVERIFY(!frame("bottom")->isVisible());
    QCOMPARE(m_libraries.calls(), QStringList{"Quoin_DeleteArea AD_CAP_B01"_qs});
    m_window->hide();
    const QSignalSpy shown(frame("bottom"), &BannerFrame::sig_showEvent);
    const QSignalSpy other(frame("toolbar"), &BannerFrame::sig_showEvent);
    m_window->show();
    QCOMPARE(shown.count(), 0);
    QCOMPARE(other.count(), 1);
}

void Tst_Banners::hiddenWindowHasNoBanners() {
    m_window->show();
    frame("toolbar")->show();
    frame("bottom")->show();
    m_window->hide();
    QVERIFY(frame("toolbar")->isHidden());
    QVERIFY(frame("bottom")->isHidden());
}

void Tst_Banners::noBannersBehindTheEnd() {
    showWindow();
    m_window->findChild<Banners *>()->forget();
    const QSignalSpy shown(frame("toolbar"), &BannerFrame::sig_showEvent);
    m_window->hide();
    m_window->show();
    m_window->resize(1000, 500);
    QCOMPARE(shown.count(), 0);
    QVERIFY(!frame("bottom")->isVisible());
}

QTEST_MAIN(Tst_Banners)
#include "tst_banners.moc"
