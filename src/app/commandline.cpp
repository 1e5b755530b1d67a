#include "app/commandline.h"

#include "platform/commandlinesplitter.h"

#include <QHash>
#include <QStringList>

#include <optional>

namespace {

/// Carries out the words of one line on a `CommandLine`, from first to last.
class Parser {
public:
    explicit Parser(const QString &line) : m_tokens(platform::splitCommandLine(line)) {}

    std::optional<CommandLine> parse();

private:
    /// Takes the command's arguments; false when the line ends before them.
    using Reader = bool (Parser::*)();
    struct Command {
        bool CommandLine::*flag;
        Reader readArguments;
    };
    static const QHash<QString, Command> &commands();

    bool readNothing() { return true; }
    bool readPath() { return next(m_line.path); }
    bool readPoint() { return nextNumber(m_line.point.rx()) && nextNumber(m_line.point.ry()); }
    bool readMemorySize() { return nextNumber(m_line.memorySize); }
    bool readPreferencePage() { return nextNumber(m_line.preferencePage); }
    bool readPreferenceValue();

    bool next(QString &token);
    bool nextNumber(int &number);

    const QStringList m_tokens;
    int m_at = 0;
    CommandLine m_line;
};

const QHash<QString, Parser::Command> &Parser::commands() {
    static const QHash<QString, Command> table = {
        {QStringLiteral("/close"), {&CommandLine::close, &Parser::readNothing}},
        {QStringLiteral("/kill"), {&CommandLine::kill, &Parser::readNothing}},
        {QStringLiteral("/path"), {nullptr, &Parser::readPath}},
        {QStringLiteral("/point"), {nullptr, &Parser::readPoint}},
        {QStringLiteral("/show"), {&CommandLine::show, &Parser::readNothing}},
        {QStringLiteral("/hide"), {&CommandLine::hide, &Parser::readNothing}},
        {QStringLiteral("/skip"), {&CommandLine::skip, &Parser::readNothing}},
        {QStringLiteral("/memory"), {&CommandLine::memory, &Parser::readMemorySize}},
        {QStringLiteral("/about"), {&CommandLine::about, &Parser::readNothing}},
        {QStringLiteral("/autosave"), {&CommandLine::autoSave, &Parser::readNothing}},
        {QStringLiteral("/preference"), {&CommandLine::preference, &Parser::readPreferencePage}},
        {QStringLiteral("/updateprefvalue"), {&CommandLine::updatePref, &Parser::readPreferenceValue}},
        {QStringLiteral("/save"), {&CommandLine::save, &Parser::readNothing}},
    };
    return table;
}

std::optional<CommandLine> Parser::parse() {
    for (QString token; next(token);) {
        const auto command = commands().constFind(token.toLower());
        if (command == commands().constEnd())
            continue;
        if (!(this->*command->readArguments)())
            return std::nullopt;
        if (command->flag)
            m_line.*command->flag = true;
    }
    return m_line;
}

bool Parser::readPreferenceValue() {
    int value = 0;
    if (!nextNumber(m_line.prefId) || !nextNumber(value))
        return false;
    m_line.prefValue = value != 0;
    return true;
}

bool Parser::next(QString &token) {
    if (m_at >= m_tokens.size())
        return false;
    token = m_tokens.at(m_at++);
    return true;
}

bool Parser::nextNumber(int &number) {
    QString token;
    if (!next(token))
        return false;
    number = token.toInt();
    return true;
}

} // namespace

CommandLine CommandLine::parse(const QString &line) {
    if (const std::optional<CommandLine> parsed = Parser(line).parse())
        return *parsed;
    CommandLine broken;
    broken.parseFailed = true;
    return broken;
}

CommandLine::MainAction CommandLine::mainAction() const {
    if (parseFailed)
        return MainAction::None;
    if (close)
        return MainAction::Close;
    if (kill)
        return MainAction::Kill;
    if (show)
        return MainAction::Show;
    if (hide)
        return MainAction::Hide;
    if (preference)
        return MainAction::Preference;
    if (about)
        return MainAction::About;
    if (updatePref)
        return MainAction::UpdatePref;
    return path.isEmpty() ? MainAction::None : MainAction::AddImage;
}

CommandLine::SaveAction CommandLine::saveAction() const {
    if (parseFailed)
        return SaveAction::None;
    if (autoSave)
        return SaveAction::AutoSave;
    return save ? SaveAction::Save : SaveAction::None;
}
