#include "app/commandline.h"
#include "app/programinformation.h"

#include <QRegularExpression>
#include <QTranslator>
#include <QtTest>

namespace {

/// The lines of the help that tell a command, by its word: how many arguments stand behind it.
QHash<QString, int> commandsOf(const QString &help) {
    QHash<QString, int> commands;
    static const QRegularExpression line(QStringLiteral("^  (/[a-z]+)((?: [A-Z]+)*)(?:  |$)"),
                                         QRegularExpression::MultilineOption);
    for (auto matches = line.globalMatch(help); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        commands.insert(match.captured(1), match.captured(2).count(QLatin1Char(' ')));
    }
    return commands;
}

/// Without a language the English of the sources. The translator goes again with its owner.
bool speaks(QTranslator *translator, const QString &language) {
    return language.isEmpty() || (translator->load(QStringLiteral(":/TindraEditor_%0.qm").arg(language)) &&
                                  QCoreApplication::installTranslator(translator));
}

} // namespace

class Tst_ProgramInformation : public QObject {
    Q_OBJECT
private slots:
    void onlyALoneOptionIsAQuestion_data();
    void onlyALoneOptionIsAQuestion();
    void theHelpHasEveryCommandWithItsArguments_data();
    void theHelpHasEveryCommandWithItsArguments();
    void theHelpFitsATerminal_data();
    void theHelpFitsATerminal();
    void theVersionIsThatOfTheProject();
    void toTheCommandProtocolTheOptionsAreNoCommands();

private:
    static void addLanguages();
};

void Tst_ProgramInformation::onlyALoneOptionIsAQuestion_data() {
    QTest::addColumn<QList<QByteArray>>("arguments");
    QTest::addColumn<bool>("isQuestion");
    QTest::newRow("nothing") << QList<QByteArray>{} << false;
    QTest::newRow("help") << QList<QByteArray>{"--help"} << true;
    QTest::newRow("version") << QList<QByteArray>{"--version"} << true;
    QTest::newRow("other case") << QList<QByteArray>{"--HELP"} << false;
    QTest::newRow("longer") << QList<QByteArray>{"--help-all"} << false;
    QTest::newRow("shorter") << QList<QByteArray>{"--hel"} << false;
    QTest::newRow("a command") << QList<QByteArray>{"/show"} << false;
    QTest::newRow("before a command") << QList<QByteArray>{"--help", "/show"} << false;
    QTest::newRow("an argument") << QList<QByteArray>{"/path", "--version"} << false;
    QTest::newRow("both") << QList<QByteArray>{"--help", "--version"} << false;
}

void Tst_ProgramInformation::onlyALoneOptionIsAQuestion() {
    QFETCH(QList<QByteArray>, arguments);
    QFETCH(bool, isQuestion);
    arguments.prepend("--help"); // the program's own name plays no part
    QVector<char *> argv;
    for (QByteArray &argument : arguments)
        argv.append(argument.data());
    argv.append(nullptr);
    QCOMPARE(ProgramInformation::isCall(arguments.size(), argv.data()), isQuestion);
}

void Tst_ProgramInformation::addLanguages() {
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("usage");
    QTest::newRow("English") << QString() << QStringLiteral("Usage:");
    QTest::newRow("Korean") << QStringLiteral("ko") << QStringLiteral("사용법:");
}

void Tst_ProgramInformation::theHelpHasEveryCommandWithItsArguments_data() {
    addLanguages();
}

void Tst_ProgramInformation::theHelpHasEveryCommandWithItsArguments() {
    QFETCH(QString, language);
    QFETCH(QString, usage);
    QTranslator translator;
    QVERIFY(speaks(&translator, language));
    const QString help = ProgramInformation::help();
    QVERIFY2(help.startsWith(usage), qPrintable(help));
    const QHash<QString, int> commands = commandsOf(help);
    const QHash<QString, int> expected{
        {QStringLiteral("/close"), 0},    {QStringLiteral("/kill"), 0},
        {QStringLiteral("/path"), 1},     {QStringLiteral("/point"), 2},
        {QStringLiteral("/show"), 0},     {QStringLiteral("/hide"), 0},
        {QStringLiteral("/skip"), 0},     {QStringLiteral("/memory"), 1},
        {QStringLiteral("/about"), 0},    {QStringLiteral("/preference"), 1},
        {QStringLiteral("/autosave"), 0}, {QStringLiteral("/updateprefvalue"), 2},
        {QStringLiteral("/save"), 0}};
    QCOMPARE(commands, expected);
    // The parser agrees: with one argument less the line is void, with all it is not.
    for (auto command = commands.cbegin(); command != commands.cend(); ++command) {
        const QString arguments = QStringLiteral(" 1").repeated(command.value());
        QVERIFY2(!CommandLine::parse(QStringLiteral("x ") + command.key() + arguments).parseFailed,
                 qPrintable(command.key()));
        if (command.value() > 0)
            QVERIFY2(
                CommandLine::parse(QStringLiteral("x ") + command.key() + arguments.chopped(2)).parseFailed,
                qPrintable(command.key()));
    }
}

void Tst_ProgramInformation::theHelpFitsATerminal_data() {
    addLanguages();
}

void Tst_ProgramInformation::theHelpFitsATerminal() {
    QFETCH(QString, language);
    QTranslator translator;
    QVERIFY(speaks(&translator, language));
    const QString help = ProgramInformation::help();
    QVERIFY(help.endsWith(QLatin1Char('\n')));
    for (const QString &line : help.split(QLatin1Char('\n'))) {
        const auto isWide = [](QChar letter) { return letter.script() == QChar::Script_Hangul; };
        const auto columns =
            static_cast<qptrdiff>(line.size()) + std::count_if(line.begin(), line.end(), isWide);
        QVERIFY2(columns <= 80, qPrintable(line));
    }
}

void Tst_ProgramInformation::theVersionIsThatOfTheProject() {
    QCOMPARE(ProgramInformation::version(), QStringLiteral("Tindra " PROJECT_VERSION "\n"));
}

void Tst_ProgramInformation::toTheCommandProtocolTheOptionsAreNoCommands() {
    for (const char *line : {"x --help", "x --version", "x --help --version"}) {
        const CommandLine parsed = CommandLine::parse(QString::fromLatin1(line));
        QVERIFY(!parsed.parseFailed);
        QCOMPARE(parsed.mainAction(), CommandLine::MainAction::None);
        QCOMPARE(parsed.saveAction(), CommandLine::SaveAction::None);
    }
    const CommandLine shown = CommandLine::parse(QStringLiteral("x --help /show"));
    QCOMPARE(shown.mainAction(), CommandLine::MainAction::Show);
}

QTEST_GUILESS_MAIN(Tst_ProgramInformation)
#include "tst_programinformation.moc"
