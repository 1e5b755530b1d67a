#include "app/plugintest.h"
#include "support/openedurls.h"
#include "ui/coachmarkwidget.h"

#include <QLabel>
#include <QPushButton>

/// What the main window does when it is shown: the account's library, the bubble at the AI tools, the offer
/// of the management program.
class Tst_FirstShow : public PluginTest {
    Q_OBJECT
private slots:
    void init();
    void cleanup() { PluginTest::cleanup(); }

    void gradeIsRefreshedAtTheFirstShowOnly();
    void bubblePointsAtTheButton();
    void bubbleComesAfterTheShow();
    void bubbleNeedsTheTools();
    void closedBubbleStaysAway();
    void bubbleFollowsTheButton();
    void bubbleIsAboveWhatCameLater();
    void missedProgramIsOfferedOnce();
    void programThatIsThereIsNotOffered_data();
    void programThatIsThereIsNotOffered();
    void offerOpensThePage_data();
    void offerOpensThePage();
    void offerWaitsForAWindow();
    void updateOffersFirst();

private:
    CoachmarkWidget *bubble() const { return m_window->findChild<CoachmarkWidget *>(); }
    void missProgram() const {
        m_settings->remove("BrindleManager"_qs);
        m_settings->set("BrindleNotes"_qs, "Version"_qs, "3.0"_qs);
    }
    QPoint expectedPlace() const;
};

namespace {
const auto Question =
    "Brindlehub (the management program of Brindle) is not installed.\nWould you like to install "
    "it now?"_qs;
}

void Tst_FirstShow::init() {
    prepareHost("erase|Erase background|");
    m_libraries->add("passkin"_qs);
    WindowTest::init();
}

void Tst_FirstShow::gradeIsRefreshedAtTheFirstShowOnly() {
    QCOMPARE(calls("RefreshUserGrade"_qs), QStringList());
    QStringList before;
    m_session->platform->onPost = [&](quint32) { before = calls("RefreshUserGrade|unloaded"_qs); };
    m_window->show();
    QCOMPARE(calls("RefreshUserGrade"_qs), QStringList{"RefreshUserGrade 1"_qs});
    // The library has been taken out again before anybody hears of the window.
    QCOMPARE(before, (QStringList{"unloaded"_qs, "RefreshUserGrade 1"_qs, "unloaded"_qs}));
    m_window->hide();
    m_window->show();
    QCOMPARE(calls("RefreshUserGrade"_qs).size(), 1);
}

// Below the button, the arrow at 20 % of the bubble's width under the button's middle.
QPoint Tst_FirstShow::expectedPlace() const {
    const QRect anchor(button("aitools")->mapTo(m_window.get(), QPoint()), button("aitools")->size());
    return {int(anchor.x() + anchor.width() / 2.0 - 0.2 * bubble()->width()), anchor.y() + anchor.height()};
}

void Tst_FirstShow::bubblePointsAtTheButton() {
    makeWide();
    QVERIFY(bubble()->isVisible());
    QCOMPARE(bubble()->text(), "Enhance images beautifully with AI features!"_qs);
    QCOMPARE(bubble()->parentWidget(), m_window.get());
    QCOMPARE(bubble()->pos(), expectedPlace());
}

void Tst_FirstShow::bubbleComesAfterTheShow() {
    m_window->resize(1800, 400); // room for the button
    QVERIFY(!bubble()->isVisible());
    m_window->show();
    QVERIFY(!bubble()->isVisible());
    QCoreApplication::processEvents();
    QVERIFY(bubble()->isVisible());
    m_window->hide();
    QVERIFY(!bubble()->isVisible());
    m_window->show();
    QCoreApplication::processEvents();
    QVERIFY(bubble()->isVisible());
}

void Tst_FirstShow::bubbleNeedsTheTools() {
    m_window.reset();
    qputenv("TINDRA_TEST_PLUGINS", "");
    start();
    makeWide();
    QVERIFY(!bubble());
}

void Tst_FirstShow::closedBubbleStaysAway() {
    makeWide();
    bubble()->findChild<QPushButton *>("close_"_qs)->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!bubble());
    QVERIFY(preferences()->GetBool(86, false));
    m_window->hide();
    makeWide(); // and nothing breaks
    m_window->resize(1500, 500);
    m_window.reset();
    start();
    makeWide();
    QVERIFY(!bubble() || !bubble()->isVisible());
}

void Tst_FirstShow::bubbleFollowsTheButton() {
    makeWide();
    const QPoint before = bubble()->pos();
    button("capture")->hide();
    QCoreApplication::processEvents();
    auto *toolbar = m_window->findChild<QToolBar *>("toolbar_"_qs);
    toolbar->actions().first()->setVisible(false);
    QCoreApplication::processEvents();
    QVERIFY(bubble()->x() < before.x());
    QCOMPARE(bubble()->pos(), expectedPlace());
    // In a window that has no room for the button there is nothing to point at.
    m_window->resize(200, 400);
    QCoreApplication::processEvents();
    QVERIFY(!button("aitools")->isVisible());
    QVERIFY(!bubble()->isVisible());
    makeWide();
    QVERIFY(bubble()->isVisible());
    QCOMPARE(bubble()->pos(), expectedPlace());
}

void Tst_FirstShow::bubbleIsAboveWhatCameLater() {
    makeWide();
    auto *late = new QWidget(m_window.get());
    late->setGeometry(bubble()->geometry());
    late->show();
    QCOMPARE(m_window->childAt(bubble()->geometry().center()), late);
    m_window->resize(1700, 400);
    QCoreApplication::processEvents();
    const QWidget *top = m_window->childAt(bubble()->geometry().center());
    QVERIFY(top == bubble() || bubble()->isAncestorOf(top));
}

void Tst_FirstShow::missedProgramIsOfferedOnce() {
    missProgram();
    ModalAnswers answers;
    answers.addPress("No"_qs);
    m_window->show();
    QVERIFY(answers.texts().isEmpty()); // not in the event's handler
    QTRY_COMPARE(answers.texts(), QStringList{Question});
    m_window->hide();
    m_window->show();
    QTest::qWait(50);
    QCOMPARE(answers.texts().size(), 1);
    QVERIFY(answers.isDone());
}

void Tst_FirstShow::programThatIsThereIsNotOffered_data() {
    QTest::addColumn<bool>("isOtherThere");
    QTest::newRow("no other product") << false;
    QTest::newRow("other product and program") << true;
}

void Tst_FirstShow::programThatIsThereIsNotOffered() {
    QFETCH(bool, isOtherThere);
    if (isOtherThere)
        m_settings->set("BrindleNotes"_qs, "Version"_qs, "3.0"_qs);
    else
        m_settings->remove("BrindleManager"_qs);
    ModalAnswers answers;
    m_window->show();
    QTest::qWait(50);
    m_window->onClickUpdate();
    QVERIFY(answers.isDone());
    QVERIFY(answers.texts().isEmpty());
}

void Tst_FirstShow::offerOpensThePage_data() {
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QVector<QUrl>>("urls");
    QTest::newRow("yes") << "Yes"_qs << QVector<QUrl>{QUrl("https://www.brindle.example/download"_qs)};
    QTest::newRow("no") << "No"_qs << QVector<QUrl>();
}

void Tst_FirstShow::offerOpensThePage() {
    QFETCH(QString, answer);
    missProgram();
    OpenedUrls opened;
    ModalAnswers answers;
    QStringList seen;
    answers.add([&](QWidget *dialog) {
        seen << dialog->windowTitle() << dialog->findChild<QLabel *>("icon_"_qs)->property("icon").toString();
        ModalAnswers::press(dialog, answer);
    });
    m_window->show();
    QTRY_VERIFY(answers.isDone());
    QTRY_VERIFY(!QApplication::activeModalWidget());
    QCOMPARE(seen, (QStringList{"Tindra"_qs, "Information"_qs}));
    QTEST(opened.urls, "urls");
}

void Tst_FirstShow::offerWaitsForAWindow() {
    missProgram();
    ModalAnswers answers;
    m_window->show();
    m_window->hide();
    QTest::qWait(50);
    QVERIFY(answers.isDone() && answers.texts().isEmpty());
    answers.addPress("No"_qs);
    m_window->show();
    QTRY_COMPARE(answers.texts(), QStringList{Question});
}

void Tst_FirstShow::updateOffersFirst() {
    m_window->show();
    QCoreApplication::processEvents();
    missProgram();
    forgetMessages();
    for (int i = 0; i < 2; ++i) {
        forgetMessages();
        ModalAnswers answers;
        Messages before{1};
        answers.add([&](QWidget *dialog) {
            before = messages();
            ModalAnswers::press(dialog, "No"_qs);
        });
        m_window->onClickUpdate();
        QCOMPARE(answers.texts(), QStringList{Question});
        QCOMPARE(before, Messages());
        QCOMPARE(messages(), Messages{0x86A});
    }
}

QTEST_MAIN(Tst_FirstShow)
#include "tst_firstshow.moc"
