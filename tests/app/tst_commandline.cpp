#include "app/commandline.h"

#include <QtTest>

using MainAction = CommandLine::MainAction;
using SaveAction = CommandLine::SaveAction;
Q_DECLARE_METATYPE(CommandLine)
Q_DECLARE_METATYPE(CommandLine::MainAction)
Q_DECLARE_METATYPE(CommandLine::SaveAction)

namespace {

/// All fields in one text, so that a failing row shows what differs.
QString described(const CommandLine &line) {
    QStringList fields;
    const auto flag = [&fields](bool set, const char *name) {
        if (set)
            fields.append(QString::fromLatin1(name));
    };
    flag(line.parseFailed, "parseFailed");
    flag(line.close, "close");
    flag(line.kill, "kill");
    flag(line.show, "show");
    flag(line.hide, "hide");
    flag(line.skip, "skip");
    flag(line.memory, "memory");
    flag(line.about, "about");
    flag(line.preference, "preference");
    flag(line.updatePref, "updatePref");
    flag(line.autoSave, "autoSave");
    flag(line.save, "save");
    flag(line.prefValue, "prefValue");
    fields.append(QStringLiteral("path=%1 point=%2,%3 memorySize=%4 page=%5 prefId=%6")
                      .arg(line.path)
                      .arg(line.point.x())
                      .arg(line.point.y())
                      .arg(line.memorySize)
                      .arg(line.preferencePage)
                      .arg(line.prefId));
    return fields.join(QLatin1Char(' '));
}

template <typename Change> CommandLine with(Change change) {
    CommandLine line;
    change(line);
    return line;
}

} // namespace

class Tst_CommandLine : public QObject {
    Q_OBJECT
private slots:
    void parsesWords_data();
    void parsesWords();
    void missingArgumentVoidsTheLine_data();
    void missingArgumentVoidsTheLine();
    void onlyTheFirstMainActionCounts_data();
    void onlyTheFirstMainActionCounts();
    void saveFollowsTheMainAction_data();
    void saveFollowsTheMainAction();
};

void Tst_CommandLine::parsesWords_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<CommandLine>("expected");
    const auto row = [](const char *name, const char *line, const CommandLine &expected) {
        QTest::newRow(name) << QString::fromUtf8(line) << expected;
    };
    row("empty", "", {});
    row("program alone", "\"/usr/bin/tindra-editor\"", {});
    row("close", "x /close", with([](CommandLine &l) { l.close = true; }));
    row("kill", "x /kill", with([](CommandLine &l) { l.kill = true; }));
    row("show", "x /show", with([](CommandLine &l) { l.show = true; }));
    row("hide", "x /hide", with([](CommandLine &l) { l.hide = true; }));
    row("skip", "x /skip", with([](CommandLine &l) { l.skip = true; }));
    row("about", "x /about", with([](CommandLine &l) { l.about = true; }));
    row("autosave", "x /autosave", with([](CommandLine &l) { l.autoSave = true; }));
    row("save", "x /save", with([](CommandLine &l) { l.save = true; }));
    row("path", "x /path a.png", with([](CommandLine &l) { l.path = QStringLiteral("a.png"); }));
    row("path with blanks", "x /path \"/a b/c.png\"",
        with([](CommandLine &l) { l.path = QStringLiteral("/a b/c.png"); }));
    row("path keeps its case", "x /path A.PNG",
        with([](CommandLine &l) { l.path = QStringLiteral("A.PNG"); }));
    row("point", "x /point 12 -34", with([](CommandLine &l) { l.point = QPoint(12, -34); }));
    row("point without numbers", "x /point here there", {});
    row("memory", "x /memory 4096", with([](CommandLine &l) {
            l.memory = true;
            l.memorySize = 4096;
        }));
    row("memory without number", "x /memory much", with([](CommandLine &l) { l.memory = true; }));
    row("memory takes decimals only", "x /memory 0x10", with([](CommandLine &l) { l.memory = true; }));
    row("memory beyond an int", "x /memory 2147483648", with([](CommandLine &l) { l.memory = true; }));
    row("preference", "x /preference 3", with([](CommandLine &l) {
            l.preference = true;
            l.preferencePage = 3;
        }));
    row("preference value on", "x /updateprefvalue 48 1", with([](CommandLine &l) {
            l.updatePref = true;
            l.prefId = 48;
            l.prefValue = true;
        }));
    row("preference value off", "x /updateprefvalue 48 0", with([](CommandLine &l) {
            l.updatePref = true;
            l.prefId = 48;
        }));
    row("any other number is on", "x /updateprefvalue 7 -2", with([](CommandLine &l) {
            l.updatePref = true;
            l.prefId = 7;
            l.prefValue = true;
        }));
    row("preference value that is no number", "x /updateprefvalue 7 true", with([](CommandLine &l) {
            l.updatePref = true;
            l.prefId = 7;
        }));
    row("upper case counts", "x /SHOW /AutoSave", with([](CommandLine &l) { l.show = l.autoSave = true; }));
    row("first token counts", "/show", with([](CommandLine &l) { l.show = true; }));
    row("quoted word counts", "x \"/show\"", with([](CommandLine &l) { l.show = true; }));
    row("unknown words are passed over", "x /nothing show -hide /show2", {});
    row("an argument is no command", "x /path /hide",
        with([](CommandLine &l) { l.path = QStringLiteral("/hide"); }));
    row("arguments of point are no commands", "x /point /hide /close /show",
        with([](CommandLine &l) { l.show = true; }));
    row("the last of two counts", "x /path a /point 1 2 /path b /point 3 4", with([](CommandLine &l) {
            l.path = QStringLiteral("b");
            l.point = QPoint(3, 4);
        }));
    row("a later number takes the value back", "x /updateprefvalue 5 1 /updateprefvalue 6 0",
        with([](CommandLine &l) {
            l.updatePref = true;
            l.prefId = 6;
        }));
    row("an empty argument is one", "x /path \"\" /show", with([](CommandLine &l) { l.show = true; }));
    row("capture through memory", "\"x\" /path cap-1 /point 10 20 /memory 99", with([](CommandLine &l) {
            l.path = QStringLiteral("cap-1");
            l.point = QPoint(10, 20);
            l.memory = true;
            l.memorySize = 99;
        }));
}

void Tst_CommandLine::parsesWords() {
    QFETCH(QString, line);
    QFETCH(CommandLine, expected);
    QCOMPARE(described(CommandLine::parse(line)), described(expected));
}

void Tst_CommandLine::missingArgumentVoidsTheLine_data() {
    QTest::addColumn<QString>("line");
    QTest::newRow("path") << "x /path";
    QTest::newRow("an earlier hide goes with it") << "x /hide /path";
    QTest::newRow("and an earlier save") << "x /save /autosave /path";
    QTest::newRow("point") << "x /point";
    QTest::newRow("point with one number") << "x /path a /point 5";
    QTest::newRow("memory") << "x /path a /memory";
    QTest::newRow("preference") << "x /show /preference";
    QTest::newRow("preference value") << "x /close /updateprefvalue";
    QTest::newRow("preference value without value") << "x /kill /updateprefvalue 48";
}

void Tst_CommandLine::missingArgumentVoidsTheLine() {
    QFETCH(QString, line);
    const CommandLine parsed = CommandLine::parse(line);
    QCOMPARE(described(parsed), described(with([](CommandLine &l) { l.parseFailed = true; })));
    QCOMPARE(parsed.mainAction(), MainAction::None);
    QCOMPARE(parsed.saveAction(), SaveAction::None);
}

void Tst_CommandLine::onlyTheFirstMainActionCounts_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<MainAction>("expected");
    // From the lowest to the highest: each line adds the word that beats all before it.
    const QList<QPair<QString, MainAction>> rising = {
        {QStringLiteral("/path a"), MainAction::AddImage},
        {QStringLiteral("/updateprefvalue 1 1"), MainAction::UpdatePref},
        {QStringLiteral("/about"), MainAction::About},
        {QStringLiteral("/preference 0"), MainAction::Preference},
        {QStringLiteral("/hide"), MainAction::Hide},
        {QStringLiteral("/show"), MainAction::Show},
        {QStringLiteral("/kill"), MainAction::Kill},
        {QStringLiteral("/close"), MainAction::Close},
    };
    QString all = QStringLiteral("x");
    for (const auto &[word, action] : rising) {
        QTest::newRow(qPrintable(word + QStringLiteral(" alone"))) << QStringLiteral("x ") + word << action;
        all += QLatin1Char(' ') + word;
        QTest::newRow(qPrintable(word + QStringLiteral(" after the lower"))) << all << action;
    }
    QTest::newRow("order in the line does not matter") << QStringLiteral("x /show /hide") << MainAction::Show;
    QTest::newRow("close beats a path before it") << QStringLiteral("x /path a /close") << MainAction::Close;
    QTest::newRow("nothing") << QStringLiteral("x") << MainAction::None;
    QTest::newRow("empty path") << QStringLiteral("x /path \"\"") << MainAction::None;
    QTest::newRow("memory without path") << QStringLiteral("x /memory 10") << MainAction::None;
    QTest::newRow("point alone") << QStringLiteral("x /point 1 2") << MainAction::None;
    QTest::newRow("skip alone") << QStringLiteral("x /skip") << MainAction::None;
    QTest::newRow("save alone") << QStringLiteral("x /save /autosave") << MainAction::None;
}

void Tst_CommandLine::onlyTheFirstMainActionCounts() {
    QFETCH(QString, line);
    QFETCH(MainAction, expected);
    QCOMPARE(CommandLine::parse(line).mainAction(), expected);
}

void Tst_CommandLine::saveFollowsTheMainAction_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<SaveAction>("expected");
    QTest::newRow("none") << QStringLiteral("x /path a") << SaveAction::None;
    QTest::newRow("save") << QStringLiteral("x /save") << SaveAction::Save;
    QTest::newRow("autosave") << QStringLiteral("x /autosave") << SaveAction::AutoSave;
    QTest::newRow("autosave beats save") << QStringLiteral("x /save /autosave") << SaveAction::AutoSave;
    QTest::newRow("after an image") << QStringLiteral("x /path a /autosave /skip") << SaveAction::AutoSave;
    QTest::newRow("after show") << QStringLiteral("x /show /save") << SaveAction::Save;
    QTest::newRow("after close") << QStringLiteral("x /close /save") << SaveAction::Save;
}

void Tst_CommandLine::saveFollowsTheMainAction() {
    QFETCH(QString, line);
    QFETCH(SaveAction, expected);
    QCOMPARE(CommandLine::parse(line).saveAction(), expected);
}

QTEST_GUILESS_MAIN(Tst_CommandLine)
#include "tst_commandline.moc"
