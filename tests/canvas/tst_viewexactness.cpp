#include "canvas/capturefixture.h"
#include "canvas/editorview.h"
#include "canvas/fakeitems.h"
#include "canvas/imagecropper.h"
#include "canvas/imagetoolwidget.h"
#include "canvas/referenceview.h"
#include "ipc/imageprovider.h"
#include "popups/croppopup.h"
#include "preferences/tindrapreferences.h"
#include "support/imagecompare.h"

#include <QBackingStore>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QThreadPool>
#include <QtTest>

namespace {

/// The product's own items, but a crop that the test frames unless it wants the real one.
class CropEditor : public TestEditor {
public:
    bool hasRealCrop = false;

protected:
    NewItem makeItem(ShapeType shape, const QRectF &sceneRect) override {
        return shape == Crop && !hasRealCrop ? TestEditor::makeItem(shape, sceneRect)
                                             : Editor::makeItem(shape, sceneRect);
    }
};

/// Milliseconds without a paint after which the smooth background is made.
constexpr int QuietTime = 66;

/// Keeps the smooth background from being made while it lives, however slow the machine is.
class NoSmoothBackground : public QObject {
public:
    NoSmoothBackground() { qApp->installEventFilter(this); }
    bool eventFilter(QObject *object, QEvent *event) override {
        const auto *timer = event->type() == QEvent::Timer ? qobject_cast<QTimer *>(object) : nullptr;
        return timer && timer->interval() == QuietTime;
    }
};

struct Scene {
    int zoomStep;
    QSize image;
    QPoint scroll;
    QRect crop;
    bool waitForSmooth;
};

using Tools = QVector<int>;

/// Fills its square and counts how often it has to.
class CountingItem : public QGraphicsRectItem {
public:
    explicit CountingItem(const QRectF &rect) : QGraphicsRectItem(rect) {}
    int paints = 0;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *) override {
        ++paints;
        painter->fillRect(rect(), Qt::yellow);
    }
};

} // namespace

Q_DECLARE_METATYPE(Scene)
Q_DECLARE_METATYPE(std::function<void()>)

/// After every single event the view must show what painting everything anew gives, pixel for pixel.
class Tst_ViewExactness : public QObject {
    Q_OBJECT
private slots:
    void init() { capture::resetWorld(); }
    void randomDrags_data();
    void randomDrags();
    void randomCropDrags_data();
    void randomCropDrags();
    void cornerOfACropFrameThatLeavesTheView();
    void cropAroundTheSameCentreRepaintsWhatItHides();
    void partOfAScaledPicture_data();
    void partOfAScaledPicture();
    void redoneItemIsPaintedWithoutThoseElsewhere();
    void undoneAndRedoneItems_data();
    void undoneAndRedoneItems();
    void strokeUnderRedoneItemStaysUnderIt();
    void changeInTheMiddleOfADrag_data();
    void changeInTheMiddleOfADrag();
    void changeAndMoveInOneTurn_data();
    void changeAndMoveInOneTurn();
    void writing_data();
    void writing();
    void randomWriting_data();
    void randomWriting();
    void changeAroundAnOpenText_data();
    void changeAroundAnOpenText();
    void blinkingCursor();

private:
    using Change = std::function<void()>;
    /// What can happen to the view or the picture whatever is going on.
    QVector<QPair<const char *, Change>> changes();
    void compare(const QString &when);
    QImage reference();
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void type(const QString &text);
    void compose(const QString &composed, const QString &finished = QString());
    /// Opens a text by a click there and types into it.
    void openText(const QPoint &pos, const QString &text);
    QImage screen() const;
    void crop(const QRect &frame);
    void setPen(const QColor &color, int width);
    static void setFigure(const QColor &line, const QColor &fill);
    void show(const Scene &scene);
    void randomSettings(QRandomGenerator &random, const Tools &tools);
    QPoint randomPoint(QRandomGenerator &random) const;
    void oneDrag(QRandomGenerator &random, const Tools &tools, const QString &name);
    void between(QRandomGenerator &random);
    void moveText(QRandomGenerator &random);
    void openRealCrop();
    QPoint cropHandle(QRandomGenerator &random) const;
    void oneCropDrag(QRandomGenerator &random, const QString &name);

    std::unique_ptr<CropEditor> m_editor;
    std::unique_ptr<EditorView> m_view;
    std::unique_ptr<ReferenceView> m_reference;
    std::unique_ptr<NoSmoothBackground> m_noSmoothBackground;
};

void Tst_ViewExactness::show(const Scene &scene) {
    m_view.reset();
    m_reference.reset();
    m_editor = std::make_unique<CropEditor>();
    const QImage image = capture::picture(scene.image);
    capture::load(*m_editor, QStringLiteral("capture"), image);
    m_editor->setZoomStep(scene.zoomStep);
    if (!scene.crop.isNull())
        QVERIFY(QMetaObject::invokeMethod(m_editor.get(), "onCrop", Q_ARG(QRect, scene.crop)));
    m_noSmoothBackground.reset(scene.waitForSmooth ? nullptr : new NoSmoothBackground);
    m_view = std::make_unique<EditorView>();
    // It stands before the picture, on the screen.
    m_view->findChild<ImageToolWidget *>()->setMaximumSize(0, 0);
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->resize(303, 211);
    QPalette palette = m_view->viewport()->palette();
    palette.setColor(m_view->viewport()->backgroundRole(), QColor(90, 120, 30));
    m_view->viewport()->setPalette(palette);
    m_view->show();
    m_view->setEditor(m_editor.get());
    m_view->horizontalScrollBar()->setValue(scene.scroll.x());
    m_view->verticalScrollBar()->setValue(scene.scroll.y());

    m_reference = std::make_unique<ReferenceView>();
    m_reference->picture = image;
    m_reference->visible = m_editor->visibleRect();
    m_reference->smooth = scene.waitForSmooth;
    m_reference->setScene(m_editor.get());
    QCoreApplication::processEvents();
    if (scene.waitForSmooth)
        QTest::qWait(150);
}

/// What stands on the screen: the sum of all that was painted, each time within what was asked for.
QImage Tst_ViewExactness::screen() const {
    const QPaintDevice *device = m_view->backingStore()->paintDevice();
    if (device->devType() != QInternal::Image)
        return QImage();
    const QRect place(m_view->viewport()->mapTo(m_view.get(), QPoint()), m_view->viewport()->size());
    return static_cast<const QImage *>(device)->copy(place).convertToFormat(QImage::Format_RGB32);
}

void Tst_ViewExactness::crop(const QRect &frame) {
    m_editor->setShape(Editor::Crop);
    m_editor->startCrop();
    m_editor->crop->frame = frame;
    m_editor->finishCurrentItem(true);
}

void Tst_ViewExactness::setPen(const QColor &color, int width) {
    auto &preferences = *TindraPreferences::instance();
    preferences.SetInt(TindraPreferences::PenColor, TindraPreferences::colorToInt(color));
    preferences.SetInt(TindraPreferences::LineWidth, width);
    m_editor->setShape(Editor::Pen);
}

void Tst_ViewExactness::setFigure(const QColor &line, const QColor &fill) {
    auto &preferences = *TindraPreferences::instance();
    preferences.SetInt(TindraPreferences::FigureLineColor, TindraPreferences::colorToInt(line));
    preferences.SetInt(TindraPreferences::FigureFillColor, TindraPreferences::colorToInt(fill));
}

QImage Tst_ViewExactness::reference() {
    m_reference->visible = m_editor->visibleRect();
    return m_reference->shownBy(*m_view);
}

void Tst_ViewExactness::compare(const QString &when) {
    // What a mosaic shows during its drag depends on how far its job is.
    QThreadPool::globalInstance()->waitForDone();
    // The job tells that it is done, the item that it has changed, the scene as well, and that is painted.
    for (int turn = 0; turn < 5; ++turn)
        QCoreApplication::processEvents();
    const QImage expected = reference();
    QCOMPARE(m_reference->viewportTransform(), m_view->viewportTransform());
    QString message;
    QVERIFY2(sameImage(screen(), expected, QStringLiteral("view"), &message),
             qPrintable(when + QLatin1String(": ") + message));
}

void Tst_ViewExactness::randomDrags_data() {
    QTest::addColumn<Scene>("scene");
    QTest::addColumn<Tools>("tools");
    const QVector<QPair<QByteArray, Scene>> scenes{
        {"100 %, image smaller than the view", {20, {200, 140}, {}, {}, true}},
        {"100 %, scrolled", {20, {700, 500}, {111, 73}, {}, true}},
        {"37 %, smooth background", {6, {1500, 1100}, {31, 17}, {}, true}},
        {"37 %, scaled on the fly", {6, {1500, 1100}, {31, 17}, {}, false}},
        {"96 %, scaled on the fly", {19, {251, 173}, {}, {}, false}},
        {"crop at 37 %, scaled on the fly", {6, {1500, 1100}, {}, {101, 57, 641, 433}, false}},
        {"37 %, whole image in view", {6, {700, 400}, {}, {}, true}},
        {"250 %", {30, {300, 200}, {57, 41}, {}, true}},
        {"250 %, image smaller than the view", {30, {90, 60}, {}, {}, true}},
        {"800 %", {44, {300, 200}, {501, 333}, {}, true}},
        {"96 %, fractional border", {19, {251, 173}, {}, {}, true}},
        {"crop at 100 %", {20, {700, 500}, {}, {40, 30, 217, 151}, true}},
        {"crop at 250 %, scrolled", {30, {300, 200}, {33, 21}, {31, 17, 201, 133}, true}},
        {"crop at 37 %", {6, {1500, 1100}, {}, {101, 57, 641, 433}, true}}};
    const Tools strokes{Editor::Pen, Editor::Highlighter};
    const Tools figures{Editor::Line,   Editor::Arrow,         Editor::Rectangle,
                        Editor::Circle, Editor::SpeechBalloon, Editor::Mosaic};
    for (const auto &scene : scenes) {
        QTest::newRow(("strokes, " + scene.first).constData()) << scene.second << strokes;
        QTest::newRow(("figures and strokes, " + scene.first).constData())
            << scene.second << strokes + figures + figures;
    }
}

void Tst_ViewExactness::randomSettings(QRandomGenerator &random, const Tools &tools) {
    auto &preferences = *TindraPreferences::instance();
    const int alpha = random.bounded(2) ? 255 : 40 + random.bounded(160);
    const QColor color(random.bounded(256), random.bounded(256), random.bounded(256), alpha);
    preferences.SetInt(TindraPreferences::PenColor, TindraPreferences::colorToInt(color));
    preferences.SetInt(TindraPreferences::HighlighterColor, TindraPreferences::colorToInt(color));
    const QColor fill(random.bounded(256), random.bounded(256), random.bounded(256), random.bounded(3) * 127);
    preferences.SetInt(TindraPreferences::FigureLineColor, TindraPreferences::colorToInt(color));
    preferences.SetInt(TindraPreferences::FigureFillColor, TindraPreferences::colorToInt(fill));
    preferences.SetInt(TindraPreferences::FigureLineType, random.bounded(2) ? Qt::SolidLine : Qt::DotLine);
    preferences.SetInt(TindraPreferences::LineWidth, 1 + random.bounded(12));
    m_editor->setShape(static_cast<Editor::ShapeType>(tools.at(random.bounded(tools.size()))));
}

QPoint Tst_ViewExactness::randomPoint(QRandomGenerator &random) const {
    // Now and then outside the viewport, as a drag that leaves the window is.
    const QSize size = m_view->viewport()->size();
    return QPoint(random.bounded(size.width() + 120) - 60, random.bounded(size.height() + 120) - 60);
}

// What can happen between two moves of a drag.
void Tst_ViewExactness::between(QRandomGenerator &random) {
    switch (random.bounded(12)) {
    case 0:
        // Closes an open frame, which ends the drag.
        if (!m_editor->hasRealCrop)
            m_editor->undo();
        break;
    case 1:
        if (!m_editor->hasRealCrop)
            m_editor->redo();
        break;
    case 2:
        m_view->viewport()->update(QRect(randomPoint(random), QSize(40, 30)));
        break;
    case 3:
        m_editor->update(
            QRectF(random.bounded(100), random.bounded(80), 1 + random.bounded(90), 1 + random.bounded(70)));
        break;
    case 4:
        m_view->horizontalScrollBar()->setValue(m_view->horizontalScrollBar()->value() + random.bounded(31) -
                                                15);
        break;
    case 5:
        m_view->verticalScrollBar()->setValue(m_view->verticalScrollBar()->value() + random.bounded(31) - 15);
        break;
    default:
        break;
    }
}

void Tst_ViewExactness::oneDrag(QRandomGenerator &random, const Tools &tools, const QString &name) {
    randomSettings(random, tools);
    capture::Mouse mouse(m_view->viewport());
    QPoint pos = randomPoint(random);
    mouse.press(pos);
    compare(name + QStringLiteral(" press"));
    for (int move = 0; move < 14 && !QTest::currentTestFailed(); ++move) {
        const bool jump = random.bounded(4) == 0;
        pos = jump ? randomPoint(random) : pos + QPoint(random.bounded(25) - 12, random.bounded(25) - 12);
        mouse.move(pos, random.bounded(3) == 0 ? Qt::ShiftModifier : Qt::NoModifier);
        between(random);
        compare(name + QStringLiteral(" move %1").arg(move));
    }
    mouse.release(pos + QPoint(3, 2));
    compare(name + QStringLiteral(" release"));
}

void Tst_ViewExactness::randomDrags() {
    QFETCH(Scene, scene);
    QFETCH(Tools, tools);
    show(scene);
    compare(QStringLiteral("before"));
    for (quint32 seed = 1; seed <= 12 && !QTest::currentTestFailed(); ++seed) {
        QRandomGenerator random(seed);
        oneDrag(random, tools, QStringLiteral("drag %1").arg(seed));
    }
    m_editor->undo();
    compare(QStringLiteral("undo"));
    m_editor->reset();
    compare(QStringLiteral("reset"));
}

void Tst_ViewExactness::randomCropDrags_data() {
    QTest::addColumn<Scene>("scene");
    QTest::addColumn<int>("zoomIns");
    const auto row = [](const char *name, const Scene &scene, int zoomIns = 0) {
        QTest::newRow(name) << scene << zoomIns;
    };
    row("100 %, image smaller than the view", {20, {200, 140}, {}, {}, true});
    row("100 %, over a crop", {20, {280, 200}, {}, {40, 30, 117, 101}, true});
    // Opening the frame brings the whole image into the view.
    row("reduced to fit", {20, {700, 500}, {111, 73}, {}, true});
    row("reduced to fit, scaled on the fly", {20, {700, 500}, {111, 73}, {}, false});
    row("reduced, but not enough to fit", {20, {700, 500}, {}, {}, true}, 5);
    row("hardly reduced, and far from fitting", {20, {400, 300}, {}, {}, true}, 4);
    row("over a crop, reduced to fit", {20, {1500, 1100}, {}, {101, 57, 641, 433}, true});
    row("96 %, fractional border", {19, {251, 173}, {}, {}, true});
    row("250 %, scrolled", {30, {290, 200}, {57, 41}, {}, true});
    row("800 %", {44, {290, 200}, {501, 333}, {}, true});
}

void Tst_ViewExactness::openRealCrop() {
    m_editor->hasRealCrop = true;
    m_editor->setShape(Editor::Crop);
    m_editor->startCrop();
}

// Somewhere on a corner, an edge or inside the frame, as far as that is seen, or anywhere.
QPoint Tst_ViewExactness::cropHandle(QRandomGenerator &random) const {
    const auto *item = dynamic_cast<DrawingCropItem *>(m_editor->currentItem());
    const QRect frame = item->frame();
    const int right = random.bounded(3);
    const int down = random.bounded(3);
    const QPoint handle(frame.left() + right * (frame.width() - 1) / 2,
                        frame.top() + down * (frame.height() - 1) / 2);
    const QPoint pos = m_view->mapFromScene(handle);
    return m_view->viewport()->rect().contains(pos) ? pos : randomPoint(random);
}

void Tst_ViewExactness::oneCropDrag(QRandomGenerator &random, const QString &name) {
    capture::Mouse mouse(m_view->viewport());
    QPoint pos = cropHandle(random);
    mouse.press(pos);
    compare(name + QStringLiteral(" press"));
    for (int move = 0; move < 8 && !QTest::currentTestFailed(); ++move) {
        const bool jump = random.bounded(3) == 0;
        pos = jump ? randomPoint(random) : pos + QPoint(random.bounded(61) - 30, random.bounded(61) - 30);
        mouse.move(pos);
        between(random);
        compare(name + QStringLiteral(" move %1").arg(move));
    }
    mouse.release(pos);
    compare(name + QStringLiteral(" release"));
    // Typed sizes can be smaller than the marks of the corners.
    const int longest = random.bounded(2) ? 30 : 300;
    QSize typed(1 + random.bounded(longest), 1 + random.bounded(longest));
    emit m_view->findChild<CropPopup *>()->sizeChanged(typed);
    compare(name + QStringLiteral(" typed"));
}

void Tst_ViewExactness::randomCropDrags() {
    QFETCH(Scene, scene);
    QFETCH(int, zoomIns);
    show(scene);
    setPen(QColor(200, 30, 30, 120), 9);
    capture::Mouse(m_view->viewport()).drag({{90, 60}, {160, 110}, {170, 120}});
    const auto settled = [this, &scene](const QString &when) {
        QCoreApplication::processEvents();
        if (scene.waitForSmooth)
            QTest::qWait(150);
        compare(when);
    };
    openRealCrop();
    if (zoomIns > 0) {
        // The toolkit cuts lines at the border of its picture, which is to be the same one for both views.
        m_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        m_view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }
    for (int i = 0; i < zoomIns; ++i)
        m_view->onZoomIn();
    settled(QStringLiteral("opened"));
    for (quint32 seed = 1; seed <= 8 && !QTest::currentTestFailed(); ++seed) {
        QRandomGenerator random(seed);
        oneCropDrag(random, QStringLiteral("drag %1").arg(seed));
    }
    m_editor->finishCurrentItem(true);
    settled(QStringLiteral("accepted"));
    m_editor->undo();
    settled(QStringLiteral("undo"));
    m_editor->redo();
    settled(QStringLiteral("redo"));
    openRealCrop();
    settled(QStringLiteral("opened again"));
    m_editor->finishCurrentItem(false);
    settled(QStringLiteral("cancelled"));
}

// Whether the toolkit paints the pixel of this corner hangs on where the line to the next one ends.
void Tst_ViewExactness::cornerOfACropFrameThatLeavesTheView() {
    show({20, {700, 500}, {}, {}, true});
    openRealCrop();
    m_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    while (m_view->transform().m11() < 0.69)
        m_view->onZoomIn();
    QCOMPARE(m_view->transform().m11(), 0.69);
    m_view->horizontalScrollBar()->setValue(51);
    m_view->verticalScrollBar()->setValue(69);
    QTest::qWait(150);
    compare(QStringLiteral("opened"));
    ImageCropper *cropper = nullptr;
    for (QGraphicsItem *item : m_editor->items()) {
        if (item->isWidget())
            cropper = qobject_cast<ImageCropper *>(static_cast<QGraphicsProxyWidget *>(item)->widget());
    }
    QVERIFY(cropper);
    cropper->setCropRect(QRect(140, 156, 560, 208));
    emit cropper->move();
    compare(QStringLiteral("moved"));
    const QPoint corner = m_view->mapFromScene(140, 156);
    m_view->viewport()->update(QRect(corner - QPoint(5, 5), QSize(11, 11)));
    compare(QStringLiteral("corner painted anew"));
}

void Tst_ViewExactness::cropAroundTheSameCentreRepaintsWhatItHides() {
    show({20, {200, 140}, {}, {}, true});
    // The view does not move: the image stays centred around the same point.
    QVERIFY(QMetaObject::invokeMethod(m_editor.get(), "onCrop", Q_ARG(QRect, QRect(20, 20, 160, 100))));
    compare(QStringLiteral("crop"));
}

void Tst_ViewExactness::partOfAScaledPicture_data() {
    QTest::addColumn<int>("zoomStep");
    QTest::newRow("96 %, smooth") << 19;
    QTest::newRow("100 %") << 20;
    // Each 23rd pixel shows just the border between two of the picture.
    QTest::newRow("115 %") << 21;
    QTest::newRow("190 %") << 26;
    QTest::newRow("310 %") << 34;
}

// Wherever the part begins.
void Tst_ViewExactness::partOfAScaledPicture() {
    QFETCH(int, zoomStep);
    show({zoomStep, {400, 300}, {57, 41}, {}, true});
    for (int start = 0; start < 25 && !QTest::currentTestFailed(); ++start) {
        const QRectF part(100 + start, 80 + start, 30, 20);
        m_editor->update(m_view->viewportTransform().inverted().mapRect(part));
        compare(QStringLiteral("from %1").arg(start));
    }
}

void Tst_ViewExactness::redoneItemIsPaintedWithoutThoseElsewhere() {
    show({20, {303, 211}, {}, {}, true});
    CountingItem elsewhere(QRectF(220, 150, 20, 20));
    CountingItem below(QRectF(90, 50, 20, 20));
    m_editor->addItem(&elsewhere);
    m_editor->addItem(&below);
    setPen(Qt::red, 12);
    capture::Mouse(m_view->viewport()).drag({{60, 60}, {140, 60}, {141, 60}});
    m_editor->undo();
    compare(QStringLiteral("undo"));
    elsewhere.paints = 0;
    below.paints = 0;
    m_editor->redo();
    for (int turn = 0; turn < 5; ++turn)
        QCoreApplication::processEvents();
    const int paintsElsewhere = elsewhere.paints;
    const int paintsBelow = below.paints;
    compare(QStringLiteral("redo")); // paints everything for its own picture
    QCOMPARE(paintsElsewhere, 0);
    QCOMPARE(paintsBelow, 1);
    m_editor->removeItem(&elsewhere);
    m_editor->removeItem(&below);
}

void Tst_ViewExactness::undoneAndRedoneItems_data() {
    QTest::addColumn<Scene>("scene");
    QTest::newRow("100 %") << Scene{20, {400, 300}, {57, 41}, {}, true};
    QTest::newRow("50 %, smooth") << Scene{9, {700, 500}, {11, 23}, {}, true};
    QTest::newRow("50 %, still rough") << Scene{9, {700, 500}, {11, 23}, {}, false};
    QTest::newRow("190 %") << Scene{26, {400, 300}, {57, 41}, {}, true};
    QTest::newRow("cropped") << Scene{20, {400, 300}, {}, {90, 70, 180, 120}, true};
}

// One item of each tool, each across those before, that reach beyond the crop; a crop in the middle.
void Tst_ViewExactness::undoneAndRedoneItems() {
    QFETCH(Scene, scene);
    show(scene);
    setFigure(QColor(200, 30, 60, 170), QColor(40, 90, 200, 90));
    const Tools tools{Editor::Pen,  Editor::Highlighter, Editor::Mosaic, Editor::SpeechBalloon,
                      Editor::Line, Editor::Rectangle,   Editor::Circle, Editor::Arrow};
    QRect visible = m_editor->visibleRect();
    const auto settled = [&](const QString &when) {
        // A crop can change the scale, and then the smooth background comes later.
        if (scene.waitForSmooth && m_editor->visibleRect() != visible)
            QTest::qWait(150);
        visible = m_editor->visibleRect();
        compare(when);
    };
    capture::Mouse mouse(m_view->viewport());
    for (int i = 0; i < tools.size(); ++i) {
        TindraPreferences::instance()->SetInt(TindraPreferences::LineWidth, 3 + 4 * (i % 4));
        m_editor->setShape(static_cast<Editor::ShapeType>(tools.at(i)));
        const QPoint from(40 + 20 * i, 30 + 11 * i);
        // A narrow balloon has a tail that reaches beyond what the toolkit takes for the item's place.
        const int width = tools.at(i) == Editor::SpeechBalloon ? 20 : 70;
        mouse.drag({from, from + QPoint(30, 55), from + QPoint(71, 8), from + QPoint(width, 40)});
        if (i == 3)
            crop(QRect(100, 75, 160, 100));
        settled(QStringLiteral("drawn with tool %1").arg(tools.at(i)));
    }
    int steps = 0;
    for (; m_editor->canUndo() && !QTest::currentTestFailed(); ++steps) {
        m_editor->undo();
        settled(QStringLiteral("undo of step %1 from the end").arg(steps));
    }
    QCOMPARE(steps, tools.size() + 1);
    for (int step = 0; m_editor->canRedo() && !QTest::currentTestFailed(); ++step) {
        m_editor->redo();
        settled(QStringLiteral("redo of step %1").arg(step));
    }
    // Several in one turn, both ways.
    for (int step = 0; step < 5; ++step)
        m_editor->undo();
    for (int step = 0; step < 3; ++step)
        m_editor->redo();
    settled(QStringLiteral("back and forth"));
}

void Tst_ViewExactness::strokeUnderRedoneItemStaysUnderIt() {
    show({20, {200, 140}, {}, {}, true});
    setPen(Qt::red, 12);
    capture::Mouse mouse(m_view->viewport());
    mouse.drag({{100, 60}, {200, 60}, {201, 60}});
    m_editor->undo();
    setPen(Qt::blue, 12);
    mouse.press({150, 40});
    mouse.move({150, 42});
    m_editor->redo();
    QCoreApplication::processEvents();
    mouse.move({150, 100});
    compare(QStringLiteral("move after redo"));
    QCOMPARE(screen().pixelColor(150, 60), QColor(Qt::red));
    QCOMPARE(screen().pixelColor(150, 80), QColor(Qt::blue));
}

QVector<QPair<const char *, Tst_ViewExactness::Change>> Tst_ViewExactness::changes() {
    const auto style = [this] {
        QEvent event(QEvent::StyleChange);
        QCoreApplication::sendEvent(m_view.get(), &event);
    };
    const auto palette = [this] {
        QPalette changed = m_view->viewport()->palette();
        changed.setColor(m_view->viewport()->backgroundRole(), Qt::magenta);
        m_view->viewport()->setPalette(changed);
    };
    return {{"zoom in", [this] { m_view->onZoomIn(); }},
            {"zoom out", [this] { m_view->onZoomOut(); }},
            {"zoom reset", [this] { m_view->onZoomReset(); }},
            {"resize", [this] { m_view->resize(251, 260); }},
            {"enlarge", [this] { m_view->resize(400, 330); }},
            {"other crop", [this] { m_editor->applyCrop(QRect(60, 50, 90, 80)); }},
            {"style", style},
            {"palette", palette}};
}

void Tst_ViewExactness::changeInTheMiddleOfADrag_data() {
    QTest::addColumn<std::function<void()>>("change");
    QTest::addColumn<int>("zoomStep");
    QTest::addColumn<int>("tool");
    const auto row = [](const char *name, const std::function<void()> &change) {
        for (const int step : {6, 20, 30}) {
            QTest::addRow("%s at step %d, pen", name, step) << change << step << int(Editor::Pen);
            QTest::addRow("%s at step %d, circle", name, step) << change << step << int(Editor::Circle);
        }
        QTest::addRow("%s, mosaic", name) << change << 20 << int(Editor::Mosaic);
    };
    for (const auto &change : changes())
        row(change.first, change.second);
    row("undo of a crop", [this] { m_editor->undo(); });
    row("undo and redo of a crop", [this] {
        m_editor->undo();
        QCoreApplication::processEvents();
        m_editor->redo();
    });
    row("other capture and back", [this] {
        TestEditor other;
        capture::load(other, QStringLiteral("other"), capture::picture(QSize(90, 70)));
        m_view->setEditor(&other);
        QCoreApplication::processEvents();
        m_view->setEditor(m_editor.get());
    });
    row("hide and show", [this] {
        m_view->hide();
        QCoreApplication::processEvents();
        capture::Mouse(m_view->viewport()).move({130, 140});
        m_view->show();
    });
}

void Tst_ViewExactness::changeInTheMiddleOfADrag() {
    QFETCH(std::function<void()>, change);
    QFETCH(int, zoomStep);
    QFETCH(int, tool);
    setFigure(QColor(200, 30, 200, 120), QColor(30, 200, 30, 90));
    show({zoomStep, {280, 200}, {}, {}, false});
    setPen(QColor(200, 30, 30, 120), 9);
    capture::Mouse mouse(m_view->viewport());
    mouse.drag({{90, 60}, {160, 110}, {170, 120}});
    crop(QRect(30, 20, 221, 151));
    setPen(QColor(30, 30, 200, 120), 7);
    m_editor->setShape(Editor::ShapeType(tool));
    compare(QStringLiteral("before"));
    mouse.press({100, 90});
    mouse.move({120, 100});
    mouse.move({125, 130});
    compare(QStringLiteral("dragging"));
    change();
    compare(QStringLiteral("changed"));
    for (const QPoint &pos : {QPoint(140, 120), QPoint(170, 125), QPoint(165, 90)}) {
        mouse.move(pos);
        compare(QStringLiteral("move after the change"));
    }
    mouse.release({160, 80});
    compare(QStringLiteral("released"));
}

void Tst_ViewExactness::changeAndMoveInOneTurn_data() {
    QTest::addColumn<std::function<void()>>("change");
    QTest::addColumn<int>("tool");
    const auto row = [](const char *name, const std::function<void()> &change) {
        QTest::addRow("%s, pen", name) << change << int(Editor::Pen);
        QTest::addRow("%s, circle", name) << change << int(Editor::Circle);
        QTest::addRow("%s, mosaic", name) << change << int(Editor::Mosaic);
    };
    row("redo", [this] { m_editor->redo(); });
    row("undo", [this] { m_editor->undo(); });
    row("undo and redo", [this] {
        m_editor->undo();
        m_editor->redo();
    });
    row("update of a part of the scene", [this] { m_editor->update(QRectF(60, 40, 50, 40)); });
    row("update of a part of the view", [this] { m_view->viewport()->update(QRect(140, 70, 20, 30)); });
    row("update of everything", [this] { m_editor->update(); });
    row("scrolled by a crop", [this] { m_editor->applyCrop(QRect(30, 20, 150, 110)); });
}

void Tst_ViewExactness::changeAndMoveInOneTurn() {
    QFETCH(std::function<void()>, change);
    QFETCH(int, tool);
    setFigure(QColor(200, 30, 200, 120), QColor(30, 200, 30, 90));
    show({20, {200, 140}, {}, {}, true});
    setPen(QColor(200, 30, 30, 120), 12);
    capture::Mouse mouse(m_view->viewport());
    // One stroke to take back and one that was taken back, both across the way of the drag.
    mouse.drag({{90, 60}, {220, 110}, {221, 110}});
    mouse.drag({{90, 110}, {220, 60}, {221, 60}});
    m_editor->undo();
    setPen(QColor(30, 30, 200, 120), 9);
    m_editor->setShape(Editor::ShapeType(tool));
    mouse.press({150, 50});
    mouse.move({152, 60});
    compare(QStringLiteral("dragging"));
    change();
    mouse.move({155, 100});
    compare(QStringLiteral("change, then move"));
    mouse.move({160, 110});
    change();
    mouse.move({120, 90});
    compare(QStringLiteral("move, change, move"));
    mouse.release({110, 80});
    compare(QStringLiteral("released"));
}

void Tst_ViewExactness::key(int key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(m_view.get(), static_cast<Qt::Key>(key), modifiers);
}

void Tst_ViewExactness::type(const QString &text) {
    for (const QChar character : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(character));
        QCoreApplication::sendEvent(m_view.get(), &press);
    }
}

void Tst_ViewExactness::compose(const QString &composed, const QString &finished) {
    QTextCharFormat underlined;
    underlined.setFontUnderline(true);
    const QInputMethodEvent::Attribute format(QInputMethodEvent::TextFormat, 0, composed.size(), underlined);
    QInputMethodEvent event(composed, {format});
    event.setCommitString(finished);
    QCoreApplication::sendEvent(m_view.get(), &event);
}

void Tst_ViewExactness::openText(const QPoint &pos, const QString &text) {
    m_editor->setShape(Editor::Text);
    capture::Mouse(m_view->viewport()).click(pos);
    QCOMPARE(m_editor->shapeType(), Editor::TextEditing);
    type(text);
}

void Tst_ViewExactness::writing_data() {
    QTest::addColumn<Scene>("scene");
    QTest::addColumn<QPoint>("pos");
    const auto row = [](const char *name, const Scene &scene, const QPoint &pos) {
        QTest::newRow(name) << scene << pos;
    };
    row("100 %", {20, {700, 500}, {111, 73}, {}, true}, {60, 70});
    row("beyond the image", {20, {120, 90}, {}, {}, true}, {150, 120});
    row("above the image", {20, {200, 140}, {}, {}, true}, {90, 37});
    row("37 %", {6, {1500, 1100}, {31, 17}, {}, true}, {60, 70});
    row("37 %, scaled on the fly", {6, {1500, 1100}, {31, 17}, {}, false}, {60, 70});
    row("96 %", {19, {251, 173}, {}, {}, true}, {60, 70});
    row("250 %", {30, {300, 200}, {57, 41}, {}, true}, {31, 77});
    row("800 %", {44, {300, 200}, {501, 333}, {}, true}, {31, 77});
    row("across a crop", {20, {700, 500}, {}, {40, 30, 217, 151}, true}, {180, 100});
    row("across a crop at 250 %", {30, {300, 200}, {33, 21}, {31, 17, 201, 133}, true}, {200, 100});
}

void Tst_ViewExactness::writing() {
    QFETCH(Scene, scene);
    QFETCH(QPoint, pos);
    QApplication::setCursorFlashTime(0); // between two looks at it, it would be another cursor
    show(scene);
    m_view->activateWindow();
    m_view->setFocus();
    openText(pos, QString());
    compare(QStringLiteral("open"));
    for (const QString &typed :
         {QStringLiteral("a"), QStringLiteral("j"), QStringLiteral(" Wide, wider, widest W"),
          QStringLiteral("!"), QStringLiteral("\ufb01\uac00")}) {
        type(typed);
        compare(QStringLiteral("typed ") + typed);
    }
    compose(QStringLiteral("\u3131"));
    compare(QStringLiteral("composing"));
    compose(QStringLiteral("\uac00"));
    compare(QStringLiteral("composing on"));
    compose(QString(), QStringLiteral("\uac00"));
    compare(QStringLiteral("composed"));
    key(Qt::Key_Return);
    type(QStringLiteral("second line"));
    compare(QStringLiteral("second line"));
    key(Qt::Key_Up);
    compare(QStringLiteral("cursor moved"));
    key(Qt::Key_Home, Qt::ShiftModifier);
    compare(QStringLiteral("selected"));
    key(Qt::Key_Delete);
    compare(QStringLiteral("narrow again"));
    capture::Mouse mouse(m_view->viewport());
    const QGraphicsItem *text = m_editor->items().first();
    const QPoint border = m_view->mapFromScene(text->mapToScene(text->boundingRect().center().x(), 2));
    mouse.press(border);
    for (const QPoint &step : {QPoint(5, 3), QPoint(-20, 17), QPoint(31, -40), QPoint(-9, 11)}) {
        mouse.move(border + step);
        compare(QStringLiteral("moved"));
    }
    mouse.release(border);
    m_editor->finishCurrentItem(true);
    compare(QStringLiteral("closed"));
    m_editor->undo();
    compare(QStringLiteral("undone"));
    m_editor->redo();
    compare(QStringLiteral("redone"));
    openText(pos, QStringLiteral("nothing of this stays"));
    compare(QStringLiteral("open again"));
    m_editor->finishCurrentItem(false);
    compare(QStringLiteral("thrown away"));
}

void Tst_ViewExactness::randomWriting_data() {
    QTest::addColumn<Scene>("scene");
    QTest::newRow("100 %") << Scene{20, {700, 500}, {111, 73}, {}, true};
    QTest::newRow("crop at 37 %") << Scene{6, {1500, 1100}, {}, {101, 57, 641, 433}, true};
    QTest::newRow("250 %") << Scene{30, {300, 200}, {57, 41}, {}, true};
}

// By its left border, as far as that is seen.
void Tst_ViewExactness::moveText(QRandomGenerator &random) {
    const QRectF box = dynamic_cast<QGraphicsItem *>(m_editor->currentItem())->sceneBoundingRect();
    QPoint pos = m_view->mapFromScene(box.left() + 3, box.center().y());
    if (!m_view->viewport()->rect().contains(pos))
        return;
    capture::Mouse mouse(m_view->viewport());
    mouse.press(pos);
    for (int move = 0; move < 3 && !QTest::currentTestFailed(); ++move) {
        pos += QPoint(random.bounded(61) - 30, random.bounded(61) - 30);
        mouse.move(pos);
        between(random);
        compare(QStringLiteral("box moved"));
    }
    mouse.release(pos);
}

// Everything that can become stale around an open text, in any order.
void Tst_ViewExactness::randomWriting() {
    QFETCH(Scene, scene);
    QApplication::setCursorFlashTime(0);
    for (quint32 seed = 1; seed <= 6 && !QTest::currentTestFailed(); ++seed) {
        show(scene);
        m_view->activateWindow();
        m_view->setFocus();
        QRandomGenerator random(seed);
        auto &preferences = *TindraPreferences::instance();
        preferences.SetInt(TindraPreferences::TextSize, 7 + random.bounded(40));
        preferences.SetInt(TindraPreferences::TextStyle, random.bounded(8));
        preferences.SetInt(TindraPreferences::TextColor,
                           TindraPreferences::colorToInt(QColor(30, 200, 90, random.bounded(2) ? 255 : 120)));
        setPen(Qt::blue, 5);
        capture::Mouse(m_view->viewport()).drag({{20, 20}, {200, 120}, {280, 60}});
        openText(randomPoint(random), QString());
        for (int step = 0; step < 25 && !QTest::currentTestFailed(); ++step) {
            switch (random.bounded(4)) {
            case 0:
                key(random.bounded(2) ? Qt::Key_Backspace : Qt::Key_Return);
                break;
            case 1:
                compose(QStringLiteral("\uac00"), random.bounded(2) ? QStringLiteral("\ub098") : QString());
                break;
            default:
                type(QString(QChar(0x21 + random.bounded(0x50))).repeated(1 + random.bounded(6)));
            }
            if (random.bounded(4) == 0)
                moveText(random);
            const QRectF box = m_editor->items().first()->sceneBoundingRect();
            // Right at the frame, where a part alone is painted anew.
            const double height = random.bounded(6) * 0.5;
            switch (random.bounded(6)) {
            case 0:
                m_editor->update(QRectF(box.left() + random.bounded(40), box.bottom(), 20, height));
                break;
            case 1:
                m_editor->update(QRectF(box.left() + random.bounded(40), box.top() - height, 20, height));
                break;
            case 2:
                m_view->viewport()->update(QRect(randomPoint(random), QSize(40, 30)));
                break;
            case 3:
                m_editor->update(QRectF(box.left() + random.bounded(90), box.top(), 3.3, box.height() / 2));
                break;
            default:
                between(random);
            }
            compare(QStringLiteral("seed %1, step %2").arg(seed).arg(step));
        }
        m_editor->finishCurrentItem(true);
        compare(QStringLiteral("closed"));
    }
}

void Tst_ViewExactness::changeAroundAnOpenText_data() {
    QTest::addColumn<Change>("change");
    QTest::addColumn<int>("zoomStep");
    const auto row = [](const char *name, int step, const Change &change) {
        QTest::addRow("%s at step %d", name, step) << change << step;
    };
    for (const int step : {6, 20, 30}) {
        for (const auto &change : changes())
            row(change.first, step, change.second);
        row("other picture", step, [this] {
            m_reference->picture.invertPixels();
            ImageProvider::instance()->insert(QStringLiteral("capture"),
                                              QPixmap::fromImage(m_reference->picture));
            m_editor->update();
        });
        row("hide and show", step, [this] {
            m_view->hide();
            QCoreApplication::processEvents();
            m_view->show();
        });
    }
    row("smooth copy", 6, [this] {
        m_noSmoothBackground.reset();
        m_reference->smooth = true;
        QTest::qWait(150);
    });
}

void Tst_ViewExactness::changeAroundAnOpenText() {
    QFETCH(Change, change);
    QFETCH(int, zoomStep);
    QApplication::setCursorFlashTime(0);
    show({zoomStep, {280, 200}, {}, {}, false});
    m_view->activateWindow();
    m_view->setFocus();
    setPen(QColor(200, 30, 30, 120), 9);
    const QPoint middle = m_view->viewport()->rect().center();
    capture::Mouse(m_view->viewport())
        .drag({middle - QPoint(40, 20), middle + QPoint(30, 10), middle + QPoint(40, -20)});
    openText(middle, QStringLiteral("abc"));
    compare(QStringLiteral("open"));
    change();
    compare(QStringLiteral("changed"));
    type(QStringLiteral("W"));
    compare(QStringLiteral("typed after the change"));
    type(QStringLiteral("i"));
    change();
    type(QStringLiteral("j"));
    compare(QStringLiteral("typed, changed and typed"));
    QCOMPARE(m_editor->shapeType(), Editor::TextEditing);
    m_editor->finishCurrentItem(true);
    compare(QStringLiteral("closed"));
}

// In both of its states, once each is painted.
void Tst_ViewExactness::blinkingCursor() {
    QApplication::setCursorFlashTime(400);
    show({20, {200, 140}, {}, {}, true});
    m_view->activateWindow();
    m_view->setFocus();
    openText({80, 90}, QStringLiteral("a"));
    QVector<QImage> seen;
    QTRY_VERIFY([&] {
        const QImage expected = reference();
        if (screen() == expected && !seen.contains(expected))
            seen.append(expected);
        return seen.size() == 2;
    }());
}

QTEST_MAIN(Tst_ViewExactness)
#include "tst_viewexactness.moc"
