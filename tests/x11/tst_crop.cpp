#include "app/windowtest.h"
#include "canvas/capturefixture.h"
#include "canvas/items/drawingcropitem.h"
#include "popups/croppopup.h"
#include "support/imagecompare.h"
#include "ui/rangedspinbox.h"
#include "ui/uistyler.h"

#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QScreen>

namespace {

const QSize ImageSize(600, 400);

} // namespace

/// The crop tool in the whole window, with the mouse and the keyboard of the display server.
class Tst_Crop : public WindowTest {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup() { WindowTest::cleanup(); }

    void cropByMouseAndUndoByKeyboard();
    void cursorsUnderTheRealMouse();
    void escapeAndReturn_data();
    void escapeAndReturn();
    void sizeIsTyped();
    void panelIsUsedByKeysAlone();
    void arrowKeysStepTheSize();
    void returnPressesTheButtonWithTheFocus_data();
    void returnPressesTheButtonWithTheFocus();
    void popupStaysAtTheFrame();

private:
    static void outside(const QStringList &arguments);
    static void keys(const QStringList &names);
    static void click(const QWidget *widget);
    void clickCrop();
    void drag(const QPoint &from, const QPoint &to);
    QPoint onScreen(const QPoint &scenePos) const {
        return view()->viewport()->mapToGlobal(view()->mapFromScene(scenePos));
    }
    QRect frame() const {
        const auto *item = dynamic_cast<DrawingCropItem *>(scene()->currentItem());
        return item ? item->frame() : QRect();
    }
    CropPopup *popup() const { return view()->findChild<CropPopup *>(); }
    RangedSpinBox *box(const char *name) const {
        return popup()->findChild<RangedSpinBox *>(QLatin1String(name));
    }
    static QColor screenColor(const QPoint &pos) {
        return QGuiApplication::primaryScreen()
            ->grabWindow(0, pos.x(), pos.y(), 1, 1)
            .toImage()
            .pixelColor(0, 0);
    }
    QImage saved();

    QImage m_picture;
};

void Tst_Crop::initTestCase() {
    UIStyler::install(qApp);
    UIStyler::setColorsIniPath(qApp, ":/style/editor_variables.ini"_qs);
    UIStyler::setStyleSheetPaths(qApp, {":/style/editor.qss"_qs, ":/style/editor_non_dwm_shadows.qss"_qs});
}

void Tst_Crop::init() {
    WindowTest::init();
    // Shown before the capture comes, the window keeps this size.
    m_window->setGeometry(60, 60, 1500, 800);
    m_window->show();
    activate();
    m_picture = capture::picture(ImageSize);
    const QString path = capture("a"_qs, ImageSize);
    QVERIFY(m_picture.save(path));
    treat("/path \"%1\" /point 10 10"_qs.arg(path));
    QTRY_VERIFY(view()->editor());
    QTest::qWait(100); // for the layout
}

void Tst_Crop::outside(const QStringList &arguments) {
    QProcess process;
    process.start("xdotool"_qs, arguments);
    QVERIFY(process.waitForStarted());
    // The program has to answer meanwhile.
    QTRY_COMPARE(process.state(), QProcess::NotRunning);
    QCOMPARE(process.exitCode(), 0);
}

void Tst_Crop::keys(const QStringList &names) {
    outside(QStringList{"key"_qs, "--delay"_qs, "30"_qs} + names);
}

void Tst_Crop::click(const QWidget *widget) {
    const QPoint target = widget->mapToGlobal(widget->rect().center());
    outside({"mousemove"_qs, QString::number(target.x()), QString::number(target.y()), "click"_qs, "1"_qs});
}

void Tst_Crop::clickCrop() {
    click(button("crop"));
    QTRY_COMPARE(scene()->shapeType(), Editor::Crop);
    QTRY_VERIFY(popup()->isVisible());
    // Until the window manager has brought the popup to its place.
    QTest::qWait(200);
}

/// From and to points of the image, by way of two others.
void Tst_Crop::drag(const QPoint &from, const QPoint &to) {
    const auto move = [this](const QPoint &scenePos) {
        const QPoint pos = onScreen(scenePos);
        return QStringList{"mousemove"_qs, QString::number(pos.x()), QString::number(pos.y()), "sleep"_qs,
                           "0.05"_qs};
    };
    const QPoint step = (to - from) / 3;
    outside(move(from) + QStringList{"mousedown"_qs, "1"_qs} + move(from + step) + move(to - step) +
            move(to) + QStringList{"mouseup"_qs, "1"_qs});
}

/// What an automatic save writes.
QImage Tst_Crop::saved() {
    const auto files = [this] { return QDir(m_target->path()).entryList(QDir::Files); };
    const QStringList before = files();
    treat("/autosave /skip"_qs);
    for (const QString &name : files()) {
        if (!before.contains(name))
            return QImage(m_target->filePath(name)).convertToFormat(QImage::Format_RGB32);
    }
    return QImage();
}

void Tst_Crop::cropByMouseAndUndoByKeyboard() {
    clickCrop();
    QCOMPARE(frame(), QRect(QPoint(), ImageSize));
    drag({598, 398}, {398, 298});
    QTRY_COMPARE(frame(), QRect(0, 0, 400, 300));
    drag({1, 1}, {101, 61});
    QTRY_COMPARE(frame(), QRect(100, 60, 300, 240));
    drag({250, 180}, {280, 200});
    QTRY_COMPARE(frame(), QRect(130, 80, 300, 240));

    // As it stands on the screen: clear inside, dimmed by half outside, a line between.
    const QColor inside(m_picture.pixelColor(200, 150));
    const QColor outside(m_picture.pixelColor(50, 150));
    const auto dimmed = [](int value) { return value * 128 / 255; };
    QTRY_COMPARE(screenColor(onScreen({130, 200})), QColor(0, 127, 245));
    QCOMPARE(screenColor(onScreen({200, 150})), inside);
    const QColor shown = screenColor(onScreen({50, 150}));
    QVERIFY(qAbs(shown.red() - dimmed(outside.red())) <= 1);
    QVERIFY(qAbs(shown.green() - dimmed(outside.green())) <= 1);
    QVERIFY(qAbs(shown.blue() - dimmed(outside.blue())) <= 1);

    click(popup()->findChild<QPushButton *>("crop_"_qs));
    QTRY_VERIFY(!popup()->isVisible());
    const QRect crop(130, 80, 300, 240);
    QCOMPARE(scene()->cropRect(), crop);
    COMPARE_IMAGES(saved(), m_picture.copy(crop), "cropped");
    QTRY_VERIFY(m_window->isActiveWindow());
    keys({"ctrl+z"_qs});
    QTRY_VERIFY(scene()->cropRect().isNull());
    COMPARE_IMAGES(saved(), m_picture, "undone");
    keys({"ctrl+y"_qs});
    QTRY_COMPARE(scene()->cropRect(), crop);
    COMPARE_IMAGES(saved(), m_picture.copy(crop), "redone");
}

void Tst_Crop::cursorsUnderTheRealMouse() {
    clickCrop();
    drag({598, 398}, {398, 298});
    const auto shape = [this] { return view()->viewport()->cursor().shape(); };
    const auto hover = [this](const QPoint &scenePos) {
        const QPoint pos = onScreen(scenePos);
        outside({"mousemove"_qs, QString::number(pos.x()), QString::number(pos.y())});
    };
    hover({200, 150});
    QTRY_COMPARE(shape(), Qt::OpenHandCursor);
    outside({"mousedown"_qs, "1"_qs});
    QTRY_COMPARE(shape(), Qt::ClosedHandCursor);
    outside({"mouseup"_qs, "1"_qs});
    QTRY_COMPARE(shape(), Qt::OpenHandCursor);
    hover({394, 150});
    QTRY_COMPARE(shape(), Qt::SizeHorCursor);
    hover({200, 295});
    QTRY_COMPARE(shape(), Qt::SizeVerCursor);
    hover({394, 295});
    QTRY_COMPARE(shape(), Qt::SizeFDiagCursor);
    hover({394, 4});
    QTRY_COMPARE(shape(), Qt::SizeBDiagCursor);
    hover({500, 150});
    QTRY_COMPARE(shape(), Qt::ArrowCursor);
    hover({394, 150});
    QTRY_COMPARE(shape(), Qt::SizeHorCursor);
    keys({"Return"_qs});
    QTRY_COMPARE(shape(), Qt::CrossCursor); // the rectangle's, which was chosen before
    hover({200, 150});
    hover({205, 150});
    QTest::qWait(100);
    QCOMPARE(shape(), Qt::CrossCursor);
}

void Tst_Crop::escapeAndReturn_data() {
    QTest::addColumn<bool>("inPopup");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QRect>("crop");
    const QRect accepted(0, 0, 400, 300);
    QTest::newRow("Escape in the window") << false << "Escape" << QRect();
    QTest::newRow("Return in the window") << false << "Return" << accepted;
    QTest::newRow("Escape in the popup") << true << "Escape" << QRect();
    QTest::newRow("Return in the popup") << true << "Return" << accepted;
}

void Tst_Crop::escapeAndReturn() {
    QFETCH(bool, inPopup);
    QFETCH(QString, key);
    clickCrop();
    drag({598, 398}, {398, 298});
    QTRY_COMPARE(frame().size(), QSize(400, 300));
    if (inPopup) {
        click(box("widthSpinBox_")->findChild<QLineEdit *>());
        QTRY_VERIFY(popup()->isActiveWindow());
    } else {
        QTRY_VERIFY(m_window->isActiveWindow());
    }
    keys({key});
    QTRY_VERIFY(!popup()->isVisible());
    QTEST(scene()->cropRect(), "crop");
    QVERIFY(m_window->isVisible());
    QCOMPARE(scene()->shapeType(), Editor::Rectangle);
}

void Tst_Crop::sizeIsTyped() {
    clickCrop();
    drag({1, 1}, {101, 61});
    QTRY_COMPARE(frame(), QRect(100, 60, 500, 340));
    click(box("widthSpinBox_")->findChild<QLineEdit *>());
    QTRY_VERIFY(popup()->isActiveWindow());
    keys({"ctrl+a"_qs, "2"_qs, "0"_qs, "0"_qs});
    QTRY_COMPARE(frame(), QRect(100, 60, 200, 340));
    // Too little for the height, which the end of the crop makes the least there is.
    keys({"Tab"_qs, "ctrl+a"_qs, "1"_qs, "2"_qs});
    QTRY_COMPARE(box("heightSpinBox_")->value(), 12);
    QCOMPARE(frame(), QRect(100, 60, 200, 340));
    keys({"Return"_qs});
    QTRY_COMPARE(scene()->cropRect(), QRect(100, 60, 200, 40));
    QCOMPARE(saved().size(), QSize(200, 40));
}

void Tst_Crop::panelIsUsedByKeysAlone() {
    clickCrop();
    const auto *width = box("widthSpinBox_")->findChild<QLineEdit *>();
    QTRY_VERIFY(m_window->isActiveWindow());
    QVERIFY(!width->hasSelectedText());
    keys({"F6"_qs});
    QTRY_VERIFY(popup()->isActiveWindow());
    QTRY_COMPARE(width->selectedText(), "600"_qs);
    keys({"2"_qs, "0"_qs, "0"_qs});
    QTRY_COMPARE(frame(), QRect(0, 0, 200, 400));
    keys({"F6"_qs});
    QTRY_VERIFY(m_window->isActiveWindow());
    QVERIFY(!width->hasSelectedText());
    keys({"F6"_qs});
    QTRY_VERIFY(popup()->isActiveWindow());
    // From a button as well, and the crop ends where it is told to.
    keys({"Tab"_qs, "Tab"_qs, "F6"_qs});
    QTRY_VERIFY(m_window->isActiveWindow());
    keys({"Return"_qs});
    QTRY_COMPARE(scene()->cropRect(), QRect(0, 0, 200, 400));
}

void Tst_Crop::arrowKeysStepTheSize() {
    clickCrop();
    click(box("widthSpinBox_")->findChild<QLineEdit *>());
    QTRY_VERIFY(popup()->isActiveWindow());
    keys({"Down"_qs, "Down"_qs, "Up"_qs, "Down"_qs});
    QTRY_COMPARE(frame(), QRect(0, 0, 598, 400));
}

void Tst_Crop::returnPressesTheButtonWithTheFocus_data() {
    QTest::addColumn<int>("tabs");
    QTest::addColumn<QRect>("crop");
    QTest::newRow("crop") << 2 << QRect(0, 0, 300, 400);
    QTest::newRow("cancel") << 3 << QRect();
}

void Tst_Crop::returnPressesTheButtonWithTheFocus() {
    QFETCH(int, tabs);
    clickCrop();
    click(box("widthSpinBox_")->findChild<QLineEdit *>());
    QTRY_VERIFY(popup()->isActiveWindow());
    keys({"ctrl+a"_qs, "3"_qs, "0"_qs, "0"_qs});
    for (int i = 0; i < tabs; ++i)
        keys({"Tab"_qs});
    keys({"Return"_qs});
    QTRY_VERIFY(!popup()->isVisible());
    QTEST(scene()->cropRect(), "crop");
}

void Tst_Crop::popupStaysAtTheFrame() {
    clickCrop();
    drag({598, 398}, {398, 298});
    const auto isAtTheFrame = [this] {
        const QPoint corner = onScreen({399, 299});
        return popup()->pos() == corner + QPoint(-popup()->width(), 10);
    };
    QTRY_VERIFY(isAtTheFrame());
    const QPoint before = popup()->pos();
    m_window->move(160, 110);
    QTRY_VERIFY((popup()->pos() - before).manhattanLength() > 100);
    QTRY_VERIFY(isAtTheFrame());
    m_window->hide();
    QTRY_VERIFY(!popup()->isVisible());
    QCOMPARE(scene()->shapeType(), Editor::Crop);
    m_window->show();
    QTRY_VERIFY(popup()->isVisible());
    QTRY_VERIFY(isAtTheFrame());
}

QTEST_MAIN(Tst_Crop)
#include "tst_crop.moc"
