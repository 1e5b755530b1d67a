// Command lines: the splitter and the parser of the words.

#include "app/commandline.h"

#include "fuzz/support/property.h"
#include "platform/commandlinesplitter.h"

namespace {

bool hasBlank(const QString &text) {
    return text.contains(QLatin1Char(' ')) || text.contains(QLatin1Char('\t'));
}

/// The program's name as the first word of a line; it knows no escapes.
QString asProgram(const QString &token) {
    const bool needsQuotes = token.isEmpty() || hasBlank(token) || token.startsWith(QLatin1Char('"'));
    return needsQuotes ? QLatin1Char('"') + token + QLatin1Char('"') : token;
}

/// Any other word in quotes, with all that has a meaning in them escaped.
QString asArgument(const QString &token) {
    QString text = QStringLiteral("\"");
    int backslashes = 0;
    for (const QChar c : token) {
        if (c == QLatin1Char('\\')) {
            ++backslashes;
        } else {
            if (c == QLatin1Char('"'))
                text += QString(backslashes + 1, QLatin1Char('\\'));
            backslashes = 0;
        }
        text += c;
    }
    return text + QString(backslashes, QLatin1Char('\\')) + QLatin1Char('"');
}

QString written(const QStringList &tokens) {
    QString line = asProgram(tokens.first());
    for (int i = 1; i < tokens.size(); ++i)
        line += QLatin1Char(' ') + asArgument(tokens[i]);
    return line;
}

bool isSame(const CommandLine &a, const CommandLine &b) {
    const auto flags = [](const CommandLine &line) {
        return QVector<bool>{line.parseFailed, line.close,  line.kill,     line.show,       line.hide,
                             line.skip,        line.memory, line.about,    line.preference, line.updatePref,
                             line.autoSave,    line.save,   line.prefValue};
    };
    return flags(a) == flags(b) && a.path == b.path && a.point == b.point && a.memorySize == b.memorySize &&
           a.preferencePage == b.preferencePage && a.prefId == b.prefId;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QString line = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QStringList tokens = platform::splitCommandLine(line);
    const CommandLine parsed = CommandLine::parse(line);
    require(tokens.isEmpty() == line.isEmpty(), "only an empty line has no words");
    int length = 0;
    for (const QString &token : tokens)
        length += token.size();
    require(length <= line.size(), "the words are no longer than the line");

    if (parsed.parseFailed) {
        CommandLine broken;
        broken.parseFailed = true;
        require(isSame(parsed, broken), "a broken line asks for nothing");
    }
    const bool isNothing = parsed.mainAction() == CommandLine::MainAction::None &&
                           parsed.saveAction() == CommandLine::SaveAction::None;
    require(!parsed.parseFailed || isNothing, "a broken line does nothing");

    // The program's name cannot hold a quote and a blank, so a line can be written again from its words.
    if (!tokens.isEmpty()) {
        const QString again = written(tokens);
        require(platform::splitCommandLine(again) == tokens, "the words, written again, are the same words");
        require(isSame(CommandLine::parse(again), parsed), "the line, written again, asks for the same");
    }
    return 0;
}
