#include "app/toolbar.h"
#include "support/literals.h"
#include "support/session.h"

#include <QToolButton>
#include <QtTest>

class Tst_Toolbar : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void buttonsStandInOrder();
    void buttonsTellWhatTheyDo_data();
    void buttonsTellWhatTheyDo();
    void keysWorkAtOnceAndAgain();
    void keysOfDisabledButtonsAreDead();
    void shapeChecksItsButton_data();
    void shapeChecksItsButton();
    void toolsAreChosenWithTheirColor();
    void emptyEditorLeavesOnlyCapture();
    void resetNeedsAnUndo();
    void overflowHasNoExtensionButton();
    void iconsExist();

private:
    QToolButton *button(const QString &name) const { return m_toolbar->findChild<QToolButton *>(name); }
    QString enabled() const {
        QStringList names;
        for (const QString &name : allNames()) {
            if (button(name)->isEnabled())
                names.append(name);
        }
        return names.join(QLatin1Char(' '));
    }
    static QStringList allNames() {
        return "capture save copy undo redo reset pen highlighter eraser"_qs.split(QLatin1Char(' '));
    }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<Toolbar> m_toolbar;
};

void Tst_Toolbar::init() {
    m_session = std::make_unique<Session>();
    m_toolbar = std::make_unique<Toolbar>();
}

void Tst_Toolbar::cleanup() {
    m_toolbar.reset();
    m_session.reset();
}

void Tst_Toolbar::buttonsStandInOrder() {
    QStringList names;
    for (QAction *action : m_toolbar->actions()) {
        const QWidget *widget = m_toolbar->widgetForAction(action);
        names.append(action->isSeparator() ? "|"_qs : widget->objectName());
    }
    QCOMPARE(names.join(QLatin1Char(' ')),
             "capture | save copy undo redo reset | pen highlighter | eraser"_qs);
}

void Tst_Toolbar::buttonsTellWhatTheyDo_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("toolTip");
    QTest::newRow("capture") << "capture"
                             << "Run new capture (Ctrl + N)";
    QTest::newRow("save") << "save"
                          << "Save current image (Ctrl + S)";
    QTest::newRow("copy") << "copy"
                          << "Copy current image (Ctrl + C)";
    QTest::newRow("undo") << "undo"
                          << "Undo last work (Ctrl + Z)";
    QTest::newRow("redo") << "redo"
                          << "Redo last work (Ctrl + Y)";
    QTest::newRow("reset") << "reset"
                           << "Reset all works";
    QTest::newRow("pen") << "pen"
                         << "Draw pen on current image";
    QTest::newRow("highlighter") << "highlighter"
                                 << "Draw highlighter on current image";
    QTest::newRow("eraser") << "eraser"
                            << "Erase drawn object";
}

void Tst_Toolbar::buttonsTellWhatTheyDo() {
    QFETCH(QString, name);
    QVERIFY(button(name));
    QCOMPARE(button(name)->text(), name);
    QTEST(button(name)->toolTip(), "toolTip");
    QCOMPARE(button(name)->isCheckable(),
             name == "pen"_qs || name == "highlighter"_qs || name == "eraser"_qs);
}

void Tst_Toolbar::keysWorkAtOnceAndAgain() {
    m_toolbar->show();
    m_toolbar->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_toolbar.get()));
    QSignalSpy undo(m_toolbar.get(), &Toolbar::undoClicked);
    QSignalSpy redo(m_toolbar.get(), &Toolbar::redoClicked);
    QSignalSpy copy(m_toolbar.get(), &Toolbar::copyClicked);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(m_toolbar.get(), Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(m_toolbar.get(), Qt::Key_Y, Qt::ControlModifier);
    QTest::keyClick(m_toolbar.get(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(undo.count(), 3);
    QCOMPARE(redo.count(), 1);
    QCOMPARE(copy.count(), 1);
}

void Tst_Toolbar::keysOfDisabledButtonsAreDead() {
    m_toolbar->show();
    m_toolbar->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_toolbar.get()));
    QSignalSpy undo(m_toolbar.get(), &Toolbar::undoClicked);
    m_toolbar->onCanUndo(false);
    QTest::keyClick(m_toolbar.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(undo.count(), 0);
}

void Tst_Toolbar::shapeChecksItsButton_data() {
    QTest::addColumn<int>("shape");
    QTest::addColumn<QString>("checked");
    QTest::newRow("eraser") << 0 << "eraser";
    QTest::newRow("pen") << 1 << "pen";
    QTest::newRow("highlighter") << 2 << "highlighter";
    QTest::newRow("figure has no button yet") << 5 << "";
}

void Tst_Toolbar::shapeChecksItsButton() {
    QFETCH(int, shape);
    QFETCH(QString, checked);
    m_toolbar->showShape(ShapeTypes::Pen);
    m_toolbar->showShape(ShapeTypes::ShapeType(shape));
    for (const QString &name : allNames())
        QCOMPARE(button(name)->isChecked(), name == checked);
}

void Tst_Toolbar::toolsAreChosenWithTheirColor() {
    m_session->preferences->SetInt(TindraPreferences::PenColor,
                                   TindraPreferences::colorToInt(QColor(1, 2, 3)));
    m_session->preferences->SetInt(TindraPreferences::HighlighterColor,
                                   TindraPreferences::colorToInt(QColor(4, 5, 6)));
    QSignalSpy pen(m_toolbar.get(), &Toolbar::penSelected);
    QSignalSpy highlighter(m_toolbar.get(), &Toolbar::highlighterSelected);
    QSignalSpy eraser(m_toolbar.get(), &Toolbar::eraserClicked);
    button("pen"_qs)->click();
    button("highlighter"_qs)->click();
    button("eraser"_qs)->click();
    QCOMPARE(pen.count(), 1);
    QCOMPARE(pen.at(0).at(0).value<QColor>(), QColor(1, 2, 3));
    QCOMPARE(highlighter.count(), 1);
    QCOMPARE(highlighter.at(0).at(0).value<QColor>(), QColor(4, 5, 6));
    QCOMPARE(eraser.count(), 1);
    QVERIFY(button("eraser"_qs)->isChecked());
    QVERIFY(!button("pen"_qs)->isChecked());
}

void Tst_Toolbar::emptyEditorLeavesOnlyCapture() {
    m_toolbar->onEmptyEditor(true);
    QCOMPARE(enabled(), "capture"_qs);
    m_toolbar->onEmptyEditor(false);
    QCOMPARE(enabled(), allNames().join(QLatin1Char(' ')));
}

void Tst_Toolbar::resetNeedsAnUndo() {
    m_toolbar->onCanUndo(false);
    m_toolbar->onCanRedo(true);
    QCOMPARE(enabled(), "capture save copy redo pen highlighter eraser"_qs);
    m_toolbar->onCanUndo(true);
    m_toolbar->onCanRedo(false);
    QCOMPARE(enabled(), "capture save copy undo reset pen highlighter eraser"_qs);
}

void Tst_Toolbar::overflowHasNoExtensionButton() {
    const auto *extension = m_toolbar->findChild<QToolButton *>("qt_toolbar_ext_button"_qs);
    QVERIFY(extension);
    QCOMPARE(extension->maximumSize(), QSize(0, 0));
    QCOMPARE(m_toolbar->contextMenuPolicy(), Qt::PreventContextMenu);
    QVERIFY(!m_toolbar->isMovable());
}

void Tst_Toolbar::iconsExist() {
    for (const QString &name : allNames()) {
        const QIcon icon = button(name)->icon();
        const QImage normal = icon.pixmap(32, 32, QIcon::Normal).toImage();
        const QImage disabled = icon.pixmap(32, 32, QIcon::Disabled).toImage();
        QVERIFY2(!normal.isNull() && normal != disabled, qPrintable(name));
    }
}

QTEST_MAIN(Tst_Toolbar)
#include "tst_toolbar.moc"
