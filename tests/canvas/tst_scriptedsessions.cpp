#include "canvas/capturefixture.h"
#include "canvas/editorview.h"
#include "canvas/imagecropper.h"
#include "canvas/items/drawinginterface.h"
#include "canvas/referenceview.h"
#include "canvas/session.h"
#include "preferences/tindrapreferences.h"

#include <QGraphicsTextItem>
#include <QRandomGenerator>
#include <QThreadPool>
#include <QtTest>

#include <array>

namespace {

/// A script in this variable, as a failure prints it, is played in place of all others.
constexpr const char *ReplayVariable = "TINDRA_SESSION";

constexpr int Captures = 2;
constexpr int StepsPerSession = 25;
constexpr int SessionsPerRow = 100;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int Rows = 2;
#else
constexpr int Rows = 25;
#endif

/// Below it the lines of a crop frame are so thin that a pixel depends on where they were cut before.
constexpr double SmallestFrameScale = 0.3;

const QSize Sizes[Captures] = {QSize(61, 44), QSize(72, 45)};

/// Two captures and the view of them, in which a script takes place.
class World {
public:
    World();
    ~World() { m_view.setEditor(nullptr); }

    /// Does a step; what is wrong afterwards, or nothing.
    QString play(const session::Step &step);
    bool isTextOpen() { return editor().shapeType() == Editor::TextEditing; }
    bool isFrameOpen() { return editor().shapeType() == Editor::Crop; }
    /// What the open text says.
    QString written();

private:
    using Action = void (World::*)(const QVector<int> &);
    static const QHash<QString, Action> &actions();

    void setTool(const QVector<int> &numbers);
    void drag(const QVector<int> &numbers);
    void press(const QVector<int> &numbers);
    void move(const QVector<int> &numbers);
    void release(const QVector<int> &numbers);
    void undo(const QVector<int> &);
    void redo(const QVector<int> &);
    void reset(const QVector<int> &);
    void zoom(const QVector<int> &numbers);
    void select(const QVector<int> &numbers);
    void crop(const QVector<int> &numbers);
    void text(const QVector<int> &numbers);
    void openText(const QVector<int> &numbers);
    void openFrame(const QVector<int> &numbers);
    void write(const QVector<int> &numbers);
    void close(const QVector<int> &numbers) { editor().finishCurrentItem(numbers.first()); }
    void resize(const QVector<int> &numbers) { m_viewSize = QSize(numbers.at(0), numbers.at(1)); }
    template <int Id> void set(const QVector<int> &numbers) {
        TindraPreferences::instance()->SetInt(Id, numbers.first());
    }

    Editor &editor() { return m_editors.at(m_current); }
    QPoint inView(const QVector<int> &numbers, int at) const;
    bool isOpen() { return isTextOpen() || isFrameOpen(); }
    void takeSteps(void (Editor::*take)());
    void mouseMayDraw();
    QImage flattened() { return editor().flatten(true, false).toImage(); }

    void fitView();
    void settle();
    QString check();
    QString shownDiffers();
    QString viewDiffers();
    QString undoAndRedoDiffer();
    QString resetAndRedosDiffer();

    std::array<Editor, Captures> m_editors;
    EditorView m_view;
    ReferenceView m_reference;
    QSize m_viewSize; ///< empty: that of the picture
    capture::Mouse m_mouse;
    int m_current = 0;
    bool m_buttonDown = false;
    /// Whether an item may lie below one that was finished before it: what is redone while another item is
    /// being drawn comes to lie above that. Undo and redo of the two then change their order.
    std::array<bool, Captures> m_mixedOrder{};
    /// What the picture was before something was opened, to come back when that is thrown away; null if it
    /// may be another since.
    QImage m_before;
};

World::World() : m_mouse(m_view.viewport()) {
    capture::resetWorld();
    for (int i = 0; i < Captures; ++i) {
        capture::load(m_editors.at(i), QStringLiteral("capture %1").arg(i), capture::picture(Sizes[i]));
        m_editors.at(i).setShape(Editor::Pen);
    }
    m_view.setFrameShape(QFrame::NoFrame);
    m_view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The smooth copy of a reduced picture waits for a timer, and none runs out here.
    m_reference.smooth = false;
    m_view.setEditor(&editor());
    fitView();
    m_view.show();
}

const QHash<QString, World::Action> &World::actions() {
    using Preferences = TindraPreferences;
    static const QHash<QString, Action> all{
        {QStringLiteral("tool"), &World::setTool},
        {QStringLiteral("width"), &World::set<Preferences::LineWidth>},
        {QStringLiteral("style"), &World::set<Preferences::FigureLineType>},
        {QStringLiteral("line"), &World::set<Preferences::FigureLineColor>},
        {QStringLiteral("fill"), &World::set<Preferences::FigureFillColor>},
        {QStringLiteral("mosaic"), &World::set<Preferences::MosaicStrength>},
        {QStringLiteral("drag"), &World::drag},
        {QStringLiteral("press"), &World::press},
        {QStringLiteral("move"), &World::move},
        {QStringLiteral("release"), &World::release},
        {QStringLiteral("undo"), &World::undo},
        {QStringLiteral("redo"), &World::redo},
        {QStringLiteral("reset"), &World::reset},
        {QStringLiteral("zoom"), &World::zoom},
        {QStringLiteral("select"), &World::select},
        {QStringLiteral("crop"), &World::crop},
        {QStringLiteral("text"), &World::text},
        {QStringLiteral("open"), &World::openText},
        {QStringLiteral("frame"), &World::openFrame},
        {QStringLiteral("write"), &World::write},
        {QStringLiteral("close"), &World::close},
        {QStringLiteral("view"), &World::resize},
    };
    return all;
}

QString World::play(const session::Step &step) {
    const Action action = actions().value(step.verb);
    if (!action)
        return QStringLiteral("no such step: %1").arg(step.verb);
    const bool isToolChange = step.verb == QLatin1String("tool");
    const bool isCancel = step.verb == QLatin1String("close") && !step.numbers.first();
    const bool throwsAway = isOpen() && (isToolChange || isCancel);
    (this->*action)(step.numbers);
    if (throwsAway && !m_before.isNull() && flattened() != m_before)
        return QStringLiteral("something is left of what was thrown away");
    return check();
}

// In an open frame it draws nothing. With a text the press may close that, and another one open.
void World::mouseMayDraw() {
    if (!isFrameOpen())
        m_before = QImage();
}

QPoint World::inView(const QVector<int> &numbers, int at) const {
    return m_view.mapFromScene(numbers.at(at), numbers.at(at + 1));
}

void World::setTool(const QVector<int> &numbers) {
    TindraPreferences::instance()->SetInt(TindraPreferences::LastDrawingItem, numbers.first());
    editor().setShape(Editor::ShapeType(numbers.first()));
}

void World::drag(const QVector<int> &numbers) {
    mouseMayDraw();
    QVector<QPoint> points;
    for (int i = 1; i < numbers.size(); i += 2)
        points.append(inView(numbers, i));
    m_mouse.drag(points, numbers.first() ? Qt::ShiftModifier : Qt::NoModifier);
    m_buttonDown = false;
}

void World::press(const QVector<int> &numbers) {
    mouseMayDraw();
    m_mouse.press(inView(numbers, 0));
    m_buttonDown = true;
}

void World::move(const QVector<int> &numbers) {
    m_mouse.move(inView(numbers, 1), numbers.first() ? Qt::ShiftModifier : Qt::NoModifier);
}

void World::release(const QVector<int> &numbers) {
    mouseMayDraw();
    m_mouse.release(inView(numbers, 1), Qt::LeftButton, numbers.first() ? Qt::ShiftModifier : Qt::NoModifier);
    m_buttonDown = false;
}

// The buttons are off meanwhile.
void World::takeSteps(void (Editor::*take)()) {
    if (isOpen())
        return;
    m_mixedOrder.at(m_current) = m_mixedOrder.at(m_current) || m_buttonDown;
    (editor().*take)();
}

void World::undo(const QVector<int> &) {
    takeSteps(&Editor::undo);
}

void World::redo(const QVector<int> &) {
    takeSteps(&Editor::redo);
}

void World::reset(const QVector<int> &) {
    takeSteps(&Editor::reset);
}

void World::zoom(const QVector<int> &numbers) {
    const int steps = numbers.first();
    if (steps == 0)
        m_view.onZoomReset();
    for (int i = 0; i < steps; ++i)
        m_view.onZoomIn();
    for (int i = 0; i > steps; --i)
        m_view.onZoomOut();
}

void World::select(const QVector<int> &numbers) {
    editor().finishCurrentItem(false);
    m_before = QImage();
    m_current = numbers.first() % Captures;
    m_view.setEditor(&editor());
}

void World::openFrame(const QVector<int> &numbers) {
    editor().setShape(Editor::Crop);
    editor().startCrop();
    for (QGraphicsItem *item : editor().items()) {
        const auto *proxy = qgraphicsitem_cast<QGraphicsProxyWidget *>(item);
        if (auto *cropper = proxy ? qobject_cast<ImageCropper *>(proxy->widget()) : nullptr)
            cropper->setCropRect(QRect(numbers.at(0), numbers.at(1), numbers.at(2), numbers.at(3)));
    }
}

void World::crop(const QVector<int> &numbers) {
    openFrame(numbers.mid(1));
    editor().finishCurrentItem(numbers.first());
}

void World::openText(const QVector<int> &numbers) {
    setTool({Editor::Text});
    m_mouse.click(inView(numbers, 0));
    m_buttonDown = false;
    write({numbers.at(2)});
}

void World::write(const QVector<int> &numbers) {
    const int letters = numbers.first();
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_W, Qt::NoModifier, QStringLiteral("W"));
    QKeyEvent backspace(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
    for (int i = 0; i < qAbs(letters) && isTextOpen(); ++i)
        QCoreApplication::sendEvent(&m_view, letters > 0 ? &letter : &backspace);
}

QString World::written() {
    const auto *text = dynamic_cast<QGraphicsTextItem *>(editor().currentItem());
    return text ? text->toPlainText() : QString();
}

void World::text(const QVector<int> &numbers) {
    setTool({Editor::Text});
    m_mouse.click(inView(numbers, 1));
    if (auto *open = dynamic_cast<QGraphicsTextItem *>(editor().currentItem()))
        open->setPlainText(QString(numbers.at(3), QLatin1Char('W')));
    if (numbers.first() == session::ClickElsewhere)
        m_mouse.click(inView({-400, -400}, 0));
    else
        editor().finishCurrentItem(numbers.first() == session::Kept);
}

// Lines that leave a picture are cut at its border before they become pixels, and come out a little different
// where that border is another. So the view is compared with the picture where it shows at 100 % just what
// that holds, and in any size with another view.
void World::fitView() {
    const QSize size = m_viewSize.isEmpty() ? editor().visibleRect().size() : m_viewSize;
    if (m_view.size() != size)
        m_view.resize(size);
}

QString World::check() {
    fitView();
    settle();
    QString problem = shownDiffers();
    if (m_buttonDown || isOpen() || !problem.isEmpty())
        return problem;
    problem = viewDiffers();
    if (problem.isEmpty() && !m_mixedOrder.at(m_current))
        problem = undoAndRedoDiffer();
    if (problem.isEmpty())
        problem = resetAndRedosDiffer();
    if (problem.isEmpty()) {
        settle();
        problem = shownDiffers();
    }
    m_before = flattened();
    return problem;
}

void World::settle() {
    if (m_buttonDown && editor().shapeType() == Editor::Mosaic)
        QThreadPool::globalInstance()->waitForDone();
    // What a job, an item and the scene tell of a change, each in a turn of its own.
    for (int turn = 0; turn < 4; ++turn)
        QCoreApplication::sendPostedEvents();
}

QString World::shownDiffers() {
    if (isFrameOpen() && m_view.transform().m11() < SmallestFrameScale)
        return QString();
    m_reference.picture = capture::picture(Sizes[m_current]);
    m_reference.visible = editor().visibleRect();
    m_reference.setScene(&editor());
    const QImage expected = m_reference.shownBy(m_view);
    // The scene has one view, which its items know as the first.
    m_reference.setScene(nullptr);
    const QImage shown = m_view.viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    return shown == expected ? QString() : QStringLiteral("the view shows another picture than is there");
}

QString World::viewDiffers() {
    if (m_view.transform().m11() != 1.0 || m_view.size() != editor().visibleRect().size())
        return QString();
    const QImage expected = flattened().convertToFormat(QImage::Format_RGB32);
    const QImage shown = m_view.viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    return shown == expected ? QString() : QStringLiteral("the view at 100 % shows another picture");
}

QString World::undoAndRedoDiffer() {
    if (!editor().canUndo())
        return QString();
    const QImage before = flattened();
    editor().undo();
    editor().redo();
    return flattened() == before ? QString() : QStringLiteral("undo and redo change the picture");
}

QString World::resetAndRedosDiffer() {
    const int steps = editor().items().size();
    const QImage before = flattened();
    editor().reset();
    if (!editor().items().isEmpty() || editor().canUndo())
        return QStringLiteral("something is left after a reset");
    if (flattened() != capture::picture(Sizes[m_current]))
        return QStringLiteral("a reset does not bring back the capture");
    for (int i = 0; i < steps; ++i)
        editor().redo();
    if (m_mixedOrder.at(m_current)) {
        // The steps are back in their own order.
        m_mixedOrder.at(m_current) = false;
        return QString();
    }
    return flattened() == before ? QString() : QStringLiteral("reset and redos change the picture");
}

/// What goes wrong in a script and how far it gets until then, or an empty text.
QString play(const session::Script &script) {
    World world;
    for (int i = 0; i < script.size(); ++i) {
        const QString problem = world.play(script.at(i));
        if (!problem.isEmpty())
            return QStringLiteral("after step %1: %2").arg(i + 1).arg(problem);
    }
    return QString();
}

/// The script without the steps that the failure does not need.
session::Script shortened(session::Script script) {
    for (int i = script.size() - 1; i >= 0; --i) {
        session::Script shorter = script;
        shorter.remove(i);
        if (!play(shorter).isEmpty())
            script = shorter;
    }
    return script;
}

} // namespace

/// Random sessions. Whatever was done before: undo then redo restores the same pixels, reset then redo as
/// many times does too, what is thrown away leaves nothing, the flattened picture is what the view shows at
/// 100 %, and at any scale, in a view of any size and with a text or a crop frame open the view shows what
/// painting everything anew gives.
class Tst_ScriptedSessions : public QObject {
    Q_OBJECT
private slots:
    void scriptSurvivesItsText();
    void scriptsLeaveTextsAndFramesOpen();
    void picturesHoldTogether_data();
    void picturesHoldTogether();

private:
    static void verify(const session::Script &script);
};

void Tst_ScriptedSessions::scriptSurvivesItsText() {
    QRandomGenerator random(7);
    const QString text = session::write(session::random(random, 200, Captures));
    QVERIFY(text.contains(QLatin1String("drag")));
    QCOMPARE(session::write(session::read(text)), text);
}

void Tst_ScriptedSessions::scriptsLeaveTextsAndFramesOpen() {
    World world;
    const auto play = [&world](const char *text) {
        for (const session::Step &step : session::read(QString::fromLatin1(text)))
            QCOMPARE(world.play(step), QString());
    };
    play("tool 1; drag 0 5 5 30 20; open 10 20 3; zoom 2; undo; view 30 25; write 2");
    QVERIFY(world.isTextOpen());
    QCOMPARE(world.written(), QStringLiteral("WWWWW"));
    play("write -4; zoom 0");
    QCOMPARE(world.written(), QStringLiteral("W"));
    play("close 1; frame 10 8 30 20; redo; drag 0 20 15 25 18; zoom -2");
    QVERIFY(world.isFrameOpen());
    play("close 0");
    QVERIFY(!world.isFrameOpen());
    // A session of the usual length has some of it.
    QRandomGenerator random(3);
    const QString script = session::write(session::random(random, 200, Captures));
    for (const char *verb : {"open ", "frame ", "write ", "close ", "view "})
        QVERIFY2(script.contains(QLatin1String(verb)), verb);
}

void Tst_ScriptedSessions::picturesHoldTogether_data() {
    QTest::addColumn<int>("seed");
    const int rows = qEnvironmentVariableIsSet(ReplayVariable) ? 1 : Rows;
    for (int row = 0; row < rows; ++row)
        QTest::addRow("seed %d", row) << row;
}

void Tst_ScriptedSessions::picturesHoldTogether() {
    QFETCH(int, seed);
    if (qEnvironmentVariableIsSet(ReplayVariable)) {
        verify(session::read(qEnvironmentVariable(ReplayVariable)));
        return;
    }
    QRandomGenerator random(static_cast<quint32>(seed));
    for (int i = 0; i < SessionsPerRow && !QTest::currentTestFailed(); ++i)
        verify(session::random(random, StepsPerSession, Captures));
}

void Tst_ScriptedSessions::verify(const session::Script &script) {
    if (play(script).isEmpty())
        return;
    const session::Script shorter = shortened(script);
    QFAIL(qPrintable(QStringLiteral("%1\n   replay with %2='%3'")
                         .arg(play(shorter), QLatin1String(ReplayVariable), session::write(shorter))));
}

QTEST_MAIN(Tst_ScriptedSessions)
#include "tst_scriptedsessions.moc"
