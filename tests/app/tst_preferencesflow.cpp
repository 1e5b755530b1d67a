#include "app/windowtest.h"
#include "platform/configuration.h"
#include "preferences/dialog/preferencesdialog.h"

#include <QCheckBox>
#include <QListWidget>
#include <QMenu>

/// How the main window opens the preferences, stores them and tells the capture process.
class Tst_PreferencesFlow : public WindowTest {
    Q_OBJECT
private slots:
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

    void everyRoadOpensThem_data();
    void everyRoadOpensThem();
    void openingIsToldBeforeItIsSeen_data();
    void openingIsToldBeforeItIsSeen();
    void keyWorksWhereverTheMenuIs_data();
    void keyWorksWhereverTheMenuIs();
    void entryStandsInTheMenu();
    void commandChoosesThePage_data();
    void commandChoosesThePage();
    void hiddenWindowOpensThem();
    void dialogStandsOnTheScreen_data();
    void dialogStandsOnTheScreen();
    void secondRequestBringsToTheFront();
    void nextRequestAfterTheEndLoadsAnew();
    void endIsTold_data();
    void endIsTold();
    void fileIsWrittenBeforeTheEndIsTold();
    void cancelWritesNoFile();
    void modalDialogIsTold_data();
    void modalDialogIsTold();
    void hideButtonsAreTold_data();
    void hideButtonsAreTold();
    void openDialogEndsWithTheWindow();

private:
    using Event = FakePlatform::Event;
    PreferencesDialog *dialog() const {
        for (auto *found : m_window->findChildren<PreferencesDialog *>()) {
            if (found->isVisible())
                return found;
        }
        return nullptr;
    }
    QAction *entry() const {
        for (QAction *action : button("menu")->menu()->actions()) {
            if (action->text() == "Preferences (&O)"_qs)
                return action;
        }
        return nullptr;
    }
    template <typename Widget> Widget *child(const char *name) const {
        return dialog()->findChild<Widget *>(QLatin1String(name));
    }
    static QVariant stored(const char *key) {
        return ConfigurationLocation("SOFTWARE\\Norvane\\Tindra\\Config"_qs).value(QLatin1String(key));
    }
};

void Tst_PreferencesFlow::everyRoadOpensThem_data() {
    QTest::addColumn<QString>("road");
    QTest::newRow("menu") << "menu";
    QTest::newRow("command") << "command";
    QTest::newRow("slot") << "slot";
}

void Tst_PreferencesFlow::everyRoadOpensThem() {
    QFETCH(QString, road);
    preferences()->SetBool(TindraPreferences::TrayMode, false);
    if (road == "menu"_qs)
        entry()->trigger();
    else if (road == "command"_qs)
        treat("/preference 0"_qs);
    else
        m_window->onClickPreference();
    QVERIFY(dialog());
    QVERIFY(!dialog()->isModal());
    QVERIFY(dialog()->testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(dialog()->parentWidget(), m_window.get());
    QCOMPARE(child<QListWidget>("preferencesList_")->currentRow(), 0);
    QVERIFY(!child<QCheckBox>("trayMode_")->isChecked());
    QCOMPARE(m_session->platform->posted, (QVector<Event>{{0x865, 0, 0}}));
    QVERIFY(m_session->platform->broughtToFront > 0);
    QCOMPARE(dialog()->focusWidget(), child<QWidget>("preferencesList_"));
}

void Tst_PreferencesFlow::openingIsToldBeforeItIsSeen_data() {
    QTest::addColumn<bool>("modal");
    QTest::newRow("modeless") << false;
    QTest::newRow("modal") << true;
}

// The capture process hears of the dialog once it is filled, and before the user can press anything in it.
void Tst_PreferencesFlow::openingIsToldBeforeItIsSeen() {
    QFETCH(bool, modal);
    preferences()->SetBool(TindraPreferences::TrayMode, false);
    QStringList atTheMessage;
    m_session->platform->onPost = [this, &atTheMessage](quint32 message) {
        const auto *dialog = m_window->findChild<PreferencesDialog *>();
        if (message != 0x865 || !dialog)
            return;
        atTheMessage.append(dialog->isVisible() ? "visible"_qs : "hidden"_qs);
        atTheMessage.append("page %1"_qs.arg(dialog->findChild<QListWidget *>()->currentRow()));
        atTheMessage.append(dialog->findChild<QCheckBox *>("trayMode_"_qs)->isChecked() ? "default"_qs
                                                                                        : "loaded"_qs);
    };
    ModalAnswers answers;
    if (modal)
        answers.addClose();
    m_window->onClickPreference(2, modal);
    QVERIFY(answers.isDone());
    QCOMPARE(atTheMessage, (QStringList{"hidden"_qs, "page 2"_qs, "loaded"_qs}));
}

void Tst_PreferencesFlow::keyWorksWhereverTheMenuIs_data() {
    QTest::addColumn<bool>("focusOnCanvas");
    QTest::newRow("window") << false;
    QTest::newRow("canvas") << true;
}

void Tst_PreferencesFlow::keyWorksWhereverTheMenuIs() {
    QFETCH(bool, focusOnCanvas);
    addCapture("a"_qs);
    activate();
    if (focusOnCanvas)
        view()->setFocus();
    QTest::keyClick(m_window.get(), Qt::Key_F4);
    QVERIFY(dialog());
}

void Tst_PreferencesFlow::entryStandsInTheMenu() {
    QVERIFY(entry());
    QCOMPARE(entry()->shortcut(), QKeySequence(Qt::Key_F4));
    QStringList texts;
    for (const QAction *action : button("menu")->menu()->actions())
        texts.append(action->isSeparator() ? "|"_qs : action->text());
    QCOMPARE(texts.mid(texts.size() - 3), (QStringList{"|"_qs, "Preferences (&O)"_qs, "Close (&X)"_qs}));
}

void Tst_PreferencesFlow::commandChoosesThePage_data() {
    QTest::addColumn<QString>("argument");
    QTest::addColumn<int>("page");
    for (int page = 0; page < 4; ++page)
        QTest::addRow("page %d", page) << QString::number(page) << page;
    QTest::newRow("no number") << "shortcut" << 0;
    QTest::newRow("no such page") << "9" << 0;
}

void Tst_PreferencesFlow::commandChoosesThePage() {
    QFETCH(QString, argument);
    QFETCH(int, page);
    treat("/preference "_qs + argument);
    QVERIFY(dialog());
    QCOMPARE(child<QListWidget>("preferencesList_")->currentRow(), page);
}

void Tst_PreferencesFlow::hiddenWindowOpensThem() {
    QVERIFY(!m_window->isVisible());
    treat("/preference 2"_qs);
    QVERIFY(dialog());
    QVERIFY(!m_window->isVisible());
    // The command is the whole action of its line.
    QCOMPARE(list()->count(), 0);
}

void Tst_PreferencesFlow::dialogStandsOnTheScreen_data() {
    QTest::addColumn<QSize>("window");
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    QTest::newRow("small window") << QSize(640, 500);
    QTest::newRow("window as wide as the screen") << QSize(screen.width(), 500);
    QTest::newRow("window smaller than the dialog") << QSize(300, 200);
}

void Tst_PreferencesFlow::dialogStandsOnTheScreen() {
    QFETCH(QSize, window);
    m_window->setMinimumSize(1, 1);
    m_window->resize(window);
    const QSize size = m_window->size();
    const QRect available = m_window->screen()->availableGeometry();
    m_window->onClickPreference();
    const QRect frame = dialog()->frameGeometry();
    QVERIFY(available.contains(frame));
    // By the size of the main window, as far as the screen allows.
    const QPoint centred(available.x() + (available.width() - size.width()) / 2,
                         available.y() + (available.height() - size.height()) / 2);
    const QPoint expected(qMin(centred.x(), available.right() + 1 - frame.width()),
                          qMin(centred.y(), available.bottom() + 1 - frame.height()));
    QCOMPARE(frame.topLeft(), expected);
}

void Tst_PreferencesFlow::secondRequestBringsToTheFront() {
    m_window->onClickPreference(1);
    PreferencesDialog *const first = dialog();
    child<QCheckBox>("trayMode_")->setChecked(false);
    child<QWidget>("editTool_")->setFocus();
    m_session->platform->broughtToFront = 0;
    treat("/preference 3"_qs);
    QCOMPARE(m_window->findChildren<PreferencesDialog *>().size(), 1);
    QCOMPARE(dialog(), first);
    QCOMPARE(m_session->platform->broughtToFront, 1);
    // As it is: neither loaded anew nor on another page nor with another field to type into.
    QCOMPARE(dialog()->focusWidget(), child<QWidget>("editTool_"));
    QVERIFY(!child<QCheckBox>("trayMode_")->isChecked());
    QCOMPARE(child<QListWidget>("preferencesList_")->currentRow(), 1);
    QCOMPARE(messages(), Messages{0x865});
}

void Tst_PreferencesFlow::nextRequestAfterTheEndLoadsAnew() {
    m_window->onClickPreference();
    child<QCheckBox>("trayMode_")->setChecked(false);
    child<QAbstractButton>("cancel_")->click();
    // At once, while the last one waits for its deletion.
    m_window->onClickPreference();
    QVERIFY(dialog());
    QVERIFY(child<QCheckBox>("trayMode_")->isChecked());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(m_window->findChildren<PreferencesDialog *>().size(), 1);
}

void Tst_PreferencesFlow::endIsTold_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("result");
    QTest::newRow("ok") << "ok_" << 1;
    QTest::newRow("cancel") << "cancel_" << 0;
    QTest::newRow("closed") << "" << 0;
}

void Tst_PreferencesFlow::endIsTold() {
    QFETCH(QString, button);
    QFETCH(int, result);
    m_window->onClickPreference();
    forgetMessages();
    if (button.isEmpty())
        dialog()->close();
    else
        child<QAbstractButton>(qPrintable(button))->click();
    QVERIFY(!dialog());
    QCOMPARE(m_session->platform->posted, (QVector<Event>{{0x866, quint64(result), 0}}));
}

void Tst_PreferencesFlow::fileIsWrittenBeforeTheEndIsTold() {
    m_window->onClickPreference();
    child<QCheckBox>("trayMode_")->setChecked(false);
    QVariant atTheMessage;
    m_session->platform->onPost = [&atTheMessage](quint32 message) {
        if (message == 0x866)
            atTheMessage = stored("TrayMode");
    };
    QVERIFY(!stored("TrayMode").isValid());
    child<QAbstractButton>("ok_")->click();
    QCOMPARE(atTheMessage.toString(), "0"_qs);
}

void Tst_PreferencesFlow::cancelWritesNoFile() {
    m_window->onClickPreference();
    child<QCheckBox>("trayMode_")->setChecked(false);
    child<QAbstractButton>("cancel_")->click();
    QVERIFY(!stored("TrayMode").isValid());
    QVERIFY(preferences()->GetBool(TindraPreferences::TrayMode, false));
}

void Tst_PreferencesFlow::modalDialogIsTold_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("result");
    QTest::newRow("ok") << "ok" << 1;
    QTest::newRow("cancel") << "cancel" << 0;
}

void Tst_PreferencesFlow::modalDialogIsTold() {
    QFETCH(QString, button);
    QFETCH(int, result);
    ModalAnswers answers;
    answers.add([button](QWidget *widget) {
        QVERIFY(qobject_cast<PreferencesDialog *>(widget));
        QVERIFY(widget->isModal());
        QCOMPARE(widget->findChild<QListWidget *>()->currentRow(), 2);
        ModalAnswers::press(widget, button);
    });
    m_window->onClickPreference(2, true);
    QVERIFY(answers.isDone());
    QCOMPARE(m_session->platform->posted, (QVector<Event>{{0x865, 0, 0}, {0x866, quint64(result), 1}}));
    m_window->onClickPreference();
    QVERIFY(dialog());
}

void Tst_PreferencesFlow::hideButtonsAreTold_data() {
    QTest::addColumn<bool>("modal");
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("after");
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("bits");
    QTest::newRow("turned on") << false << false << true << "ok" << 2;
    QTest::newRow("turned on, modal") << true << false << true << "ok" << 3;
    QTest::newRow("stays on") << false << true << true << "ok" << 0;
    QTest::newRow("turned off, modal") << true << true << false << "ok" << 1;
    // Without an OK the message tells what is stored.
    QTest::newRow("cancelled") << false << false << true << "cancel" << 0;
    QTest::newRow("cancelled, stored on") << false << true << false << "cancel" << 2;
    QTest::newRow("cancelled, stored on, modal") << true << true << false << "cancel" << 3;
}

void Tst_PreferencesFlow::hideButtonsAreTold() {
    QFETCH(bool, modal);
    QFETCH(bool, before);
    QFETCH(bool, after);
    QFETCH(QString, button);
    QFETCH(int, bits);
    preferences()->SetBool(TindraPreferences::HideButtons, before);
    const auto answer = [after, button](QWidget *widget) {
        widget->findChild<QCheckBox *>("hideButtons_"_qs)->setChecked(after);
        ModalAnswers::press(widget, button);
    };
    ModalAnswers answers;
    if (modal)
        answers.add(answer);
    m_window->onClickPreference(0, modal);
    if (!modal)
        answer(dialog());
    QVERIFY(answers.isDone());
    QCOMPARE(m_session->platform->posted.last(), (Event{0x866, quint64(button == "ok"_qs ? 1 : 0), bits}));
}

void Tst_PreferencesFlow::openDialogEndsWithTheWindow() {
    m_window->onClickPreference();
    child<QCheckBox>("trayMode_")->setChecked(false);
    const QPointer<PreferencesDialog> open(dialog());
    m_window.reset();
    QVERIFY(!open);
    QVERIFY(preferences()->GetBool(TindraPreferences::TrayMode, false));
}

QTEST_MAIN(Tst_PreferencesFlow)
#include "tst_preferencesflow.moc"
