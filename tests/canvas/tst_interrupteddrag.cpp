#include "canvas/capturefixture.h"
#include "canvas/editorview.h"
#include "canvas/fakeitems.h"
#include "ipc/imageprovider.h"
#include "preferences/tindrapreferences.h"
#include "support/fakeplatform.h"
#include "support/imagecompare.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

/// Drags whose release goes elsewhere: whatever was drawn must be a step that undo takes away.
class Tst_InterruptedDrag : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void dragBecomesAStep_data();
    void dragBecomesAStep();
    void eraserTakesTheStrokeThatItEnded();
    void textPressIsNoDrag();
    void savedDuringADragIsAllThatThereIs();
    void copyDuringADragTakesTheStroke();
    void quickSecondPressDraws_data();
    void quickSecondPressDraws();
    void quickSecondClickOfTheEraserErases();

private:
    QPoint at(int x, int y) const { return m_view->mapFromScene(QPointF(x, y)); }
    void openAndCloseContextMenu(const QPoint &pos);
    void doubleClickPress(const QPoint &pos);

    FakePlatform *m_platform = nullptr;
    std::unique_ptr<TestEditor> m_editor;
    std::unique_ptr<EditorView> m_view;
    std::unique_ptr<capture::Mouse> m_mouse;
};

void Tst_InterruptedDrag::init() {
    m_platform = FakePlatform::install();
    capture::resetWorld();
    m_editor = std::make_unique<TestEditor>();
    capture::load(*m_editor, QStringLiteral("capture"), capture::picture(QSize(200, 140)));
    m_view = std::make_unique<EditorView>();
    m_view->resize(400, 300);
    m_view->show();
    m_view->setEditor(m_editor.get());
    m_mouse = std::make_unique<capture::Mouse>(m_view->viewport());
}

void Tst_InterruptedDrag::cleanup() {
    m_view.reset();
    m_editor.reset();
}

void Tst_InterruptedDrag::openAndCloseContextMenu(const QPoint &pos) {
    QTimer::singleShot(0, this, [] {
        if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget()))
            menu->close();
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, pos, m_view->viewport()->mapToGlobal(pos));
    QApplication::sendEvent(m_view->viewport(), &event);
}

void Tst_InterruptedDrag::doubleClickPress(const QPoint &pos) {
    QMouseEvent event(QEvent::MouseButtonDblClick, pos, m_view->viewport()->mapToGlobal(pos), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &event);
}

void Tst_InterruptedDrag::dragBecomesAStep_data() {
    QTest::addColumn<int>("shape");
    QTest::addColumn<QString>("interruption");
    for (int shape : {Editor::Pen, Editor::Highlighter, Editor::Rectangle}) {
        for (const char *interruption : {"menu", "tool", "lost release", "next press"})
            QTest::addRow("%d %s", shape, interruption) << shape << QString::fromLatin1(interruption);
    }
}

void Tst_InterruptedDrag::dragBecomesAStep() {
    QFETCH(int, shape);
    QFETCH(QString, interruption);
    m_editor->setShape(static_cast<Editor::ShapeType>(shape));
    m_mouse->press(at(20, 20));
    m_mouse->move(at(60, 40));
    m_mouse->move(at(90, 50));
    if (interruption == QLatin1String("menu"))
        openAndCloseContextMenu(at(90, 50));
    else if (interruption == QLatin1String("tool"))
        m_editor->setShape(Editor::Arrow);
    else if (interruption == QLatin1String("lost release")) {
        capture::Mouse released(m_view->viewport());
        released.move(at(95, 55));
    } else {
        capture::Mouse again(m_view->viewport());
        again.press(at(30, 30));
        again.release(at(30, 30));
    }
    QVERIFY(m_editor->canUndo());
    QVERIFY(!m_editor->currentItem());
    QCOMPARE(m_editor->items().size(), 1);
    m_mouse->move(at(120, 60));
    m_mouse->release(at(120, 60));
    QCOMPARE(m_editor->items().size(), 1);
    m_editor->undo();
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo());
}

void Tst_InterruptedDrag::eraserTakesTheStrokeThatItEnded() {
    m_editor->setShape(Editor::Pen);
    m_mouse->press(at(20, 20));
    m_mouse->move(at(60, 20));
    m_mouse->move(at(90, 20));
    m_editor->setShape(Editor::Eraser);
    m_mouse->move(at(40, 20));
    QVERIFY(m_editor->items().isEmpty());
    // What is erased must not grow on.
    m_editor->setShape(Editor::Pen);
    m_mouse->move(at(40, 90));
    m_mouse->release(at(40, 90));
    QVERIFY(m_editor->items().isEmpty());
    m_editor->redo();
    QCOMPARE(m_editor->items().size(), 1);
    QVERIFY(m_editor->items().first()->sceneBoundingRect().bottom() < 60);
}

void Tst_InterruptedDrag::textPressIsNoDrag() {
    m_editor->setShape(Editor::Text);
    m_mouse->press(at(20, 20));
    QCOMPARE(int(m_editor->shapeType()), int(Editor::TextEditing));
    QVERIFY(m_editor->currentItem());
    m_mouse->release(at(20, 20));
    m_mouse->move(at(25, 25));
    m_mouse->move(at(30, 25));
    QCOMPARE(m_editor->log.last(), QStringLiteral("text hover 25,25 30,25"));
}

void Tst_InterruptedDrag::savedDuringADragIsAllThatThereIs() {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.png"));
    m_editor->setShape(Editor::Pen);
    m_mouse->press(at(20, 20));
    m_mouse->move(at(90, 50));
    QVERIFY(m_editor->saveFlattened(path, true, -1));
    m_mouse->move(at(150, 100));
    m_mouse->release(at(150, 100));
    QVERIFY(m_editor->isSaved());
    COMPARE_IMAGES(QImage(path), m_editor->flatten(true, false).toImage(), "saved-in-a-drag");
    QVERIFY(m_editor->canUndo());
}

void Tst_InterruptedDrag::copyDuringADragTakesTheStroke() {
    m_editor->setShape(Editor::Pen);
    m_mouse->press(at(20, 20));
    m_mouse->move(at(90, 50));
    QVERIFY(m_editor->copyToClipboard(m_view.get()));
    m_mouse->release(at(150, 100));
    COMPARE_IMAGES(m_platform->clipboard, m_editor->flatten(true, false).toImage(), "copied-in-a-drag");
    QVERIFY(m_editor->canUndo());
}

void Tst_InterruptedDrag::quickSecondPressDraws_data() {
    QTest::addColumn<int>("shape");
    QTest::newRow("pen") << int(Editor::Pen);
    QTest::newRow("figure") << int(Editor::Rectangle);
}

void Tst_InterruptedDrag::quickSecondPressDraws() {
    QFETCH(int, shape);
    m_editor->setShape(static_cast<Editor::ShapeType>(shape));
    m_mouse->drag({at(20, 20), at(60, 40)});
    doubleClickPress(at(61, 40));
    QVERIFY(m_editor->currentItem());
    capture::Mouse held(m_view->viewport());
    QMouseEvent move(QEvent::MouseMove, at(90, 80), m_view->viewport()->mapToGlobal(at(90, 80)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &move);
    held.release(at(90, 80));
    QCOMPARE(m_editor->items().size(), 2);
}

void Tst_InterruptedDrag::quickSecondClickOfTheEraserErases() {
    m_editor->setShape(Editor::Pen);
    m_mouse->drag({at(20, 20), at(60, 20)});
    m_editor->setShape(Editor::Eraser);
    m_mouse->click(at(100, 100));
    doubleClickPress(at(30, 20));
    QVERIFY(m_editor->items().isEmpty());
}

QTEST_MAIN(Tst_InterruptedDrag)
#include "tst_interrupteddrag.moc"
