#include "app/toolbar.h"
#include "app/windowtest.h"
#include "support/openedurls.h"
#include "ui/aboutdialog.h"
#include "ui/debugdialog.h"

#include <QMenu>
#include <QPushButton>

/// The menu of the help button, and what its entries and the command for the about dialog open.
class Tst_HelpMenu : public WindowTest {
    Q_OBJECT
private slots:
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

    void entriesStandInOrder();
    void entriesOpenPages_data();
    void entriesOpenPages();
    void keyOpensHelp_data();
    void keyOpensHelp();
    void aboutShowsTheDialog_data();
    void aboutShowsTheDialog();
    void aboutCanBeModal();
    void supportPanelTellsTheCaptureProcess();

private:
    QMenu *menu() const { return button("help")->menu(); }
    AboutDialog *about() const { return m_window->findChild<AboutDialog *>(); }
};

void Tst_HelpMenu::entriesStandInOrder() {
    QCOMPARE(menu()->objectName(), "help_"_qs);
    QStringList texts;
    for (const QAction *action : menu()->actions())
        texts.append(action->isSeparator() ? "|"_qs : action->text());
    QCOMPARE(texts, (QStringList{"Help (&H)"_qs, "Read me (&R)"_qs, "|"_qs, "FAQ (&F)"_qs,
                                 "Customer services (&S)"_qs, "|"_qs, "Brindle Page (&A)"_qs,
                                 "Norvane Page (&E)"_qs, "|"_qs, "About (&I)"_qs}));
    QCOMPARE(menu()->actions().first()->shortcut(), QKeySequence(Qt::Key_F1));
}

void Tst_HelpMenu::entriesOpenPages_data() {
    QTest::addColumn<int>("entry");
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<QStringList>("usage");
    const auto page = [](const char *address) { return QUrl(QLatin1String(address)); };
    QTest::newRow("help") << 0 << page("https://www.norvane.example/tindra/help")
                          << QStringList{"capt_1_052"_qs};
    QTest::newRow("read me") << 1
                             << QUrl::fromLocalFile(QCoreApplication::applicationDirPath() + "/readme.txt"_qs)
                             << QStringList();
    QTest::newRow("questions") << 3 << page("https://www.norvane.example/tindra/faq") << QStringList();
    QTest::newRow("services") << 4 << page("https://www.norvane.example/support") << QStringList();
    QTest::newRow("Brindle") << 6 << page("https://www.brindle.example") << QStringList();
    QTest::newRow("Norvane") << 7 << page("https://www.norvane.example") << QStringList();
}

void Tst_HelpMenu::entriesOpenPages() {
    QFETCH(int, entry);
    QFETCH(QUrl, url);
    OpenedUrls opened;
    menu()->actions().at(entry)->trigger();
    QCOMPARE(opened.urls, QVector<QUrl>{url});
    QTEST(m_session->usage, "usage");
}

void Tst_HelpMenu::keyOpensHelp_data() {
    QTest::addColumn<int>("width");
    QTest::newRow("help in the toolbar") << 1800;
    QTest::newRow("help in the menu") << 400;
}

void Tst_HelpMenu::keyOpensHelp() {
    QFETCH(int, width);
    m_window->show();
    m_window->resize(width, 400);
    activate();
    QCOMPARE(button("help")->isVisible(), width == 1800);
    OpenedUrls opened;
    QTest::keyClick(m_window.get(), Qt::Key_F1);
    QCOMPARE(opened.urls.size(), 1);
}

void Tst_HelpMenu::aboutShowsTheDialog_data() {
    QTest::addColumn<bool>("command");
    QTest::newRow("entry") << false;
    QTest::newRow("command") << true;
}

void Tst_HelpMenu::aboutShowsTheDialog() {
    QFETCH(bool, command);
    if (command)
        treat("/about"_qs);
    else
        menu()->actions().last()->trigger();
    QVERIFY(about() && about()->isVisible());
    QVERIFY(!about()->isModal());
    QCOMPARE(about()->parentWidget(), m_window.get());
    QVERIFY(m_session->platform->broughtToFront > 0);
    about()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!about());
}

void Tst_HelpMenu::aboutCanBeModal() {
    ModalAnswers answers;
    answers.add([](QWidget *dialog) {
        QVERIFY(qobject_cast<AboutDialog *>(dialog));
        dialog->close();
    });
    m_window->onClickAbout(true);
    QVERIFY(answers.isDone());
}

void Tst_HelpMenu::supportPanelTellsTheCaptureProcess() {
    m_window->onClickAbout(false);
    forgetMessages();
    ModalAnswers answers;
    answers.add([](QWidget *dialog) {
        QVERIFY(qobject_cast<DebugDialog *>(dialog));
        auto *mode = dialog->findChild<QPushButton *>("fileMemoryMode_"_qs);
        mode->click();
        mode->click();
        dialog->close();
    });
    about()->openDebugDialog();
    QVERIFY(answers.isDone());
    QCOMPARE(m_session->platform->posted, (QVector<FakePlatform::Event>{{0x86F, 1, 0}, {0x86F, 0, 0}}));
}

QTEST_MAIN(Tst_HelpMenu)
#include "tst_helpmenu.moc"
