#include "canvas/capturefixture.h"
#include "canvas/editorview.h"
#include "canvas/fakeitems.h"
#include "support/imagecompare.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

namespace {

/// Time for the display server to deliver what the mouse did.
constexpr int DeliveryMilliseconds = 200;

} // namespace

/// What the user does while a file is being written.
class Tst_InputDuringSave : public QObject {
    Q_OBJECT
private slots:
    void strokeDrawnDuringASaveComesAfterIt();
};

void Tst_InputDuringSave::strokeDrawnDuringASaveComesAfterIt() {
    capture::resetWorld();
    TestEditor editor;
    const QImage picture = capture::picture(QSize(200, 140));
    capture::load(editor, QStringLiteral("capture"), picture);
    EditorView view;
    view.resize(400, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    view.setEditor(&editor);
    editor.setShape(Editor::Rectangle);
    const auto global = [&](int x, int y) {
        const QPoint pos = view.viewport()->mapToGlobal(view.mapFromScene(QPointF(x, y)));
        return QStringList{QString::number(pos.x()), QString::number(pos.y())};
    };
    const QString xdotool = QStringLiteral("xdotool"), move = QStringLiteral("mousemove");
    QCOMPARE(QProcess::execute(xdotool, QStringList{move} + global(20, 30)), 0);
    QTRY_VERIFY(view.underMouse());

    // From here on the events wait until somebody processes them, as they do while a file is written.
    QCOMPARE(QProcess::execute(xdotool, QStringList{QStringLiteral("mousedown"), QStringLiteral("1"), move} +
                                            global(70, 90) +
                                            QStringList{QStringLiteral("mouseup"), QStringLiteral("1")}),
             0);
    QThread::msleep(DeliveryMilliseconds);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.png"));
    QVERIFY(editor.saveFlattened(path, true, -1));
    QVERIFY(editor.items().isEmpty());
    QVERIFY(editor.isSaved());
    COMPARE_IMAGES(QImage(path), picture, "saved");

    // The toolkit gives out what it held back with the next event of the window system.
    QCOMPARE(QProcess::execute(xdotool, QStringList{move} + global(75, 95)), 0);
    QTRY_VERIFY(editor.canUndo());
    QVERIFY(!editor.isSaved()); // the file does not have it
}

QTEST_MAIN(Tst_InputDuringSave)
#include "tst_inputduringsave.moc"
