#include "platform/commandlinesplitter.h"

#include <QtTest>

class Tst_CommandLineSplitter : public QObject {
    Q_OBJECT
private slots:
    void splits_data();
    void splits();
};

void Tst_CommandLineSplitter::splits_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, const char *line, std::initializer_list<const char *> expected) {
        QStringList tokens;
        for (const char *token : expected)
            tokens.append(QString::fromUtf8(token));
        QTest::newRow(name) << QString::fromUtf8(line) << tokens;
    };
    row("empty line", "", {});

    // The program's token.
    row("program alone", "x", {"x"});
    row("program ends at a blank", "x y", {"x", "y"});
    row("program ends at a tab", "x\ty", {"x", "y"});
    row("quoted program", R"("a b" c)", {"a b", "c"});
    row("quoted program without end", R"("a b)", {"a b"});
    row("program knows no escapes", R"("a\" b)", {"a\\", "b"});
    row("unquoted program keeps quotes", R"(a"b c)", {"a\"b", "c"});
    row("unquoted program ends at a blank in quotes", R"(a"b c" d)", {"a\"b", "c d"});
    row("text right behind a quoted program", R"("a"b c)", {"a", "b", "c"});
    row("doubled quote ends the program", R"("a""b c" d)", {"a", "b c", "d"});
    row("empty quoted program", R"("" a)", {"", "a"});
    row("leading blank makes an empty program", " a b", {"", "a", "b"});
    row("leading tab makes an empty program", "\ta", {"", "a"});
    row("only blanks", "  \t ", {""});

    // Blanks.
    row("blanks and tabs separate", "x a \t b", {"x", "a", "b"});
    row("trailing blanks", "x a  ", {"x", "a"});
    row("trailing tab", "x\t", {"x"});
    row("newline is no separator", "x a\nb", {"x", "a\nb"});

    // Published examples of the rules.
    row("quotes group", R"(x "abc" d e)", {"x", "abc", "d", "e"});
    row("backslashes stand for themselves", R"(x a\\\b d"e f"g h)", {"x", R"(a\\\b)", "de fg", "h"});
    row("three backslashes and a quote", R"(x a\\\"b c d)", {"x", R"(a\"b)", "c", "d"});
    row("four backslashes and a quote", R"(x a\\\\"b c" d e)", {"x", R"(a\\b c)", "d", "e"});
    row("doubled quote inside quotes", R"(x a"b"" c d)", {"x", R"(ab")", "c", "d"});

    // Backslashes before a quote, 0 to 5.
    row("0 open", R"(x "a b")", {"x", "a b"});
    row("1 is literal", R"(x \"a b)", {"x", "\"a", "b"});
    row("2 open", R"(x \\"a b")", {"x", R"(\a b)"});
    row("3 are literal", R"(x \\\"a b)", {"x", R"(\"a)", "b"});
    row("4 open", R"(x \\\\"a b")", {"x", R"(\\a b)"});
    row("5 are literal", R"(x \\\\\"a b)", {"x", R"(\\"a)", "b"});
    row("1 inside quotes is literal", R"(x "a\" b" c)", {"x", "a\" b", "c"});
    row("2 inside quotes close", R"(x "a\\" b)", {"x", R"(a\)", "b"});
    row("3 inside quotes are literal", R"(x "a\\\" b" c)", {"x", R"(a\" b)", "c"});

    // Trailing backslashes.
    row("trailing backslash", R"(x a\)", {"x", R"(a\)"});
    row("trailing backslashes", R"(x a\\)", {"x", R"(a\\)"});
    row("trailing backslash in quotes swallows the end", R"(x "a\" b)", {"x", "a\" b"});
    row("folder", R"(x C:\dir\ b)", {"x", R"(C:\dir\)", "b"});

    // Empty arguments and unclosed quotes.
    row("empty argument", R"(x "" b)", {"x", "", "b"});
    row("empty argument at the end", R"(x "")", {"x", ""});
    row("two empty arguments", R"(x "" "")", {"x", "", ""});
    row("quotes in the middle of a word", R"(x a"b"c)", {"x", "abc"});
    row("unclosed quote", R"(x "a b)", {"x", "a b"});
    row("lone quote", R"(x ")", {"x", ""});

    // Runs of quotes: of three in a row the last two give one.
    row("three quotes", R"(x """)", {"x", "\""});
    row("three quotes and text", R"(x """a b" c)", {"x", "\"a", "b c"});
    row("four quotes open again", R"(x """"a b" c)", {"x", "\"a b", "c"});
    row("doubled quote closes", R"(x "a""b c" d)", {"x", "a\"b", "c d"});
    row("literal quote, then an opening one", R"(x \""a b")", {"x", "\"a b"});

    row("beyond Latin", R"("캡처 도구" /path "그림 1.png")", {"캡처 도구", "/path", "그림 1.png"});
}

void Tst_CommandLineSplitter::splits() {
    QFETCH(QString, line);
    QFETCH(QStringList, expected);
    QCOMPARE(platform::splitCommandLine(line), expected);
}

QTEST_GUILESS_MAIN(Tst_CommandLineSplitter)
#include "tst_commandlinesplitter.moc"
