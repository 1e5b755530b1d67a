#include "platform/commandlinesplitter.h"

namespace {

bool isBlank(QChar c) {
    return c == QLatin1Char(' ') || c == QLatin1Char('\t');
}

/// Walks over a line, one token after the other.
class Splitter {
public:
    explicit Splitter(const QString &line) : m_line(line) {}

    QStringList tokens();

private:
    bool atEnd() const { return m_at >= m_line.size(); }
    bool quoteAt(int index) const { return index < m_line.size() && m_line.at(index) == QLatin1Char('"'); }
    void skipBlanks();
    QString programToken();
    QString argument();
    QString backslashes();

    const QString &m_line;
    int m_at = 0;
};

QStringList Splitter::tokens() {
    QStringList result;
    if (atEnd())
        return result;
    result.append(programToken());
    for (skipBlanks(); !atEnd(); skipBlanks())
        result.append(argument());
    return result;
}

void Splitter::skipBlanks() {
    while (!atEnd() && isBlank(m_line.at(m_at)))
        ++m_at;
}

/// File names hold no quotes, so the program's name needs no way to write one.
QString Splitter::programToken() {
    const bool quoted = quoteAt(m_at);
    if (quoted)
        ++m_at;
    const int start = m_at;
    while (!atEnd() && !(quoted ? quoteAt(m_at) : isBlank(m_line.at(m_at))))
        ++m_at;
    const QString token = m_line.mid(start, m_at - start);
    if (quoted && !atEnd())
        ++m_at;
    return token;
}

QString Splitter::argument() {
    QString token;
    bool quoted = false;
    while (!atEnd()) {
        const QChar c = m_line.at(m_at);
        if (c == QLatin1Char('\\')) {
            token.append(backslashes());
        } else if (c == QLatin1Char('"')) {
            const bool literal = quoted && quoteAt(m_at + 1);
            if (literal)
                token.append(c);
            m_at += literal ? 2 : 1;
            quoted = !quoted;
        } else if (isBlank(c) && !quoted) {
            break;
        } else {
            token.append(c);
            ++m_at;
        }
    }
    return token;
}

/// Takes a run of backslashes, and the quote behind it if they make that one literal.
QString Splitter::backslashes() {
    const int start = m_at;
    while (!atEnd() && m_line.at(m_at) == QLatin1Char('\\'))
        ++m_at;
    const int count = m_at - start;
    if (!quoteAt(m_at))
        return QString(count, QLatin1Char('\\'));
    QString result(count / 2, QLatin1Char('\\'));
    if (count % 2 == 1) {
        result.append(QLatin1Char('"'));
        ++m_at;
    }
    return result;
}

} // namespace

QStringList platform::splitCommandLine(const QString &line) {
    return Splitter(line).tokens();
}
