#include "app/windowtest.h"

/// The keys that act wherever the focus is.
class Tst_KeyboardActions : public WindowTest {
    Q_OBJECT
private slots:
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

    void keysAct_data();
    void keysAct();
    void openItemTakesEscapeAndReturn_data();
    void openItemTakesEscapeAndReturn();
    void arrowsWalkTheRows();
    void arrowsRest_data();
    void arrowsRest();
};

void Tst_KeyboardActions::keysAct_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("control");
    QTest::addColumn<QStringList>("usage");
    QTest::addColumn<QVector<quint32>>("told");
    QTest::addColumn<int>("rows");
    QTest::newRow("new capture") << int(Qt::Key_N) << true << QStringList{"cap_302_06"_qs} << Messages{0x868}
                                 << 1;
    QTest::newRow("save") << int(Qt::Key_S) << true << QStringList{"cap_302_04"_qs, "cap_30_01"_qs}
                          << Messages{} << 1;
    QTest::newRow("delete") << int(Qt::Key_Delete) << false << QStringList{"cap_302_05"_qs} << Messages{}
                            << 0;
    QTest::newRow("escape hides") << int(Qt::Key_Escape) << false << QStringList{} << Messages{0x86D, 0x86B}
                                  << 1;
    QTest::newRow("return does nothing") << int(Qt::Key_Return) << false << QStringList{} << Messages{} << 1;
}

void Tst_KeyboardActions::keysAct() {
    QFETCH(int, key);
    QFETCH(bool, control);
    preferences()->SetBool(TindraPreferences::NotifyDeleteHistory, false);
    addCapture("a"_qs);
    activate();
    m_session->usage.clear();
    forgetMessages();
    ModalAnswers answers;
    if (key == Qt::Key_S)
        answers.addClose();
    QTest::keyClick(m_window.get(), Qt::Key(key), control ? Qt::ControlModifier : Qt::NoModifier);
    QVERIFY(answers.isDone());
    QTEST(m_session->usage, "usage");
    QTEST(messages(), "told");
    QTEST(list()->count(), "rows");
}

void Tst_KeyboardActions::openItemTakesEscapeAndReturn_data() {
    QTest::addColumn<bool>("crop");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("entry");
    QTest::newRow("escape, crop") << true << int(Qt::Key_Escape) << "crop finish 0";
    QTest::newRow("return, crop") << true << int(Qt::Key_Return) << "crop finish 1";
    QTest::newRow("escape, text") << false << int(Qt::Key_Escape) << "text finish 0";
    QTest::newRow("return, text") << false << int(Qt::Key_Return) << "text finish 1";
}

void Tst_KeyboardActions::openItemTakesEscapeAndReturn() {
    QFETCH(bool, crop);
    QFETCH(int, key);
    QFETCH(QString, entry);
    m_window->show();
    TestEditor *editor = addFake("a"_qs);
    activate();
    if (crop) {
        m_window->onClickCrop();
        editor->crop->frame = QRect(5, 5, 10, 10);
    } else {
        m_window->onClickText();
        sendMouse(QEvent::MouseButtonPress, {5, 5});
        sendMouse(QEvent::MouseButtonRelease, {5, 5});
    }
    QCOMPARE(editor->shapeType(), crop ? Editor::Crop : Editor::TextEditing);
    QTest::keyClick(m_window.get(), Qt::Key(key));
    QCOMPARE(editor->log.filter("finish"_qs), QStringList{entry});
    QVERIFY(editor->shapeType() != Editor::Crop && editor->shapeType() != Editor::TextEditing);
    QVERIFY(m_window->isVisible());
}

void Tst_KeyboardActions::arrowsWalkTheRows() {
    addCapture("a"_qs);
    addCapture("b"_qs);
    activate();
    QCOMPARE(list()->currentRow(), 0);
    QTest::keyClick(m_window.get(), Qt::Key_Down);
    QCOMPARE(list()->currentRow(), 1);
    QTest::keyClick(m_window.get(), Qt::Key_Down);
    QCOMPARE(list()->currentRow(), 1);
    QTest::keyClick(m_window.get(), Qt::Key_Up);
    QCOMPARE(list()->currentRow(), 0);
}

void Tst_KeyboardActions::arrowsRest_data() {
    QTest::addColumn<QString>("state");
    QTest::addColumn<int>("key");
    for (const char *state : {"crop", "text", "nothing selected"}) {
        QTest::addRow("up, %s", state) << QString::fromLatin1(state) << int(Qt::Key_Up);
        QTest::addRow("down, %s", state) << QString::fromLatin1(state) << int(Qt::Key_Down);
    }
}

void Tst_KeyboardActions::arrowsRest() {
    QFETCH(QString, state);
    QFETCH(int, key);
    m_window->show();
    addFake("a"_qs);
    addFake("b"_qs);
    addFake("c"_qs);
    list()->setCurrentRow(1);
    activate();
    if (state == "crop"_qs) {
        m_window->onClickCrop();
    } else if (state == "text"_qs) {
        m_window->onClickText();
        sendMouse(QEvent::MouseButtonPress, {5, 5});
        sendMouse(QEvent::MouseButtonRelease, {5, 5});
        QCOMPARE(scene()->shapeType(), Editor::TextEditing);
    } else {
        list()->clearSelection();
        QVERIFY(!scene());
    }
    const Editor *before = scene();
    QTest::keyClick(m_window.get(), Qt::Key(key));
    QCOMPARE(list()->currentRow(), 1);
    QCOMPARE(scene(), before);
}

QTEST_MAIN(Tst_KeyboardActions)
#include "tst_keyboardactions.moc"
