#include "app/commandline.h"
#include "app/programinformation.h"
#include "ipc/capturemessages.h"
#include "ipc/ipcserver.h"
#include "ipc/ipcsocket.h"
#include "ipc/rawsocket.h"
#include "platform/localserversocket.h"
#include "preferences/tindrapreferences.h"

#include <QLocalServer>
#include <QRegularExpression>
#include <QtTest>

namespace {

/// The document for authors of capture programs, who have nothing else to go by.
QString document() {
    QFile file(QStringLiteral(PROTOCOL_DOCUMENT));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The text below a heading, down to the next one.
QString section(const QString &heading) {
    const QRegularExpression pattern(QStringLiteral("^(#+) %1\n(.*?)(?=^#+ |\\z)").arg(heading),
                                     QRegularExpression::MultilineOption |
                                         QRegularExpression::DotMatchesEverythingOption);
    return pattern.match(document()).captured(2);
}

/// The cells of the tables in a text, row by row, without heads.
QVector<QStringList> tableRows(const QString &text) {
    QVector<QStringList> rows;
    bool isHead = true;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("|--"))) {
            isHead = false;
        } else if (!line.startsWith(QLatin1Char('|'))) {
            isHead = true;
        } else if (!isHead) {
            QStringList cells = line.mid(1, line.size() - 2).split(QLatin1Char('|'));
            for (QString &cell : cells)
                cell = cell.trimmed();
            rows.append(cells);
        }
    }
    return rows;
}

/// What stands between backquotes.
QStringList quoted(const QString &cell) {
    static const QRegularExpression pattern(QStringLiteral("`([^`]*)`"));
    QStringList found;
    for (auto matches = pattern.globalMatch(cell); matches.hasNext();)
        found.append(matches.next().captured(1));
    return found;
}

/// The words of the command tables, by word: how many arguments they have.
QMap<QString, int> wordsOfTables() {
    QMap<QString, int> words;
    for (const QStringList &row : tableRows(section(QStringLiteral("Command lines")))) {
        const int at = row.first().startsWith(QLatin1Char('`')) ? 0 : 1;
        const QStringList word = quoted(row.at(at));
        if (word.isEmpty())
            continue;
        // The table of saves has no column for arguments: there are none.
        const bool hasArguments = at == 0 || row.size() == 4;
        static const QRegularExpression blank(QStringLiteral("\\s+"));
        QString arguments = hasArguments ? row.at(at + 1) : QString();
        arguments.replace(QLatin1String(" or "), QLatin1String("-or-"));
        words.insert(word.first(), arguments.split(blank, Qt::SkipEmptyParts).size());
    }
    return words;
}

/// The words of the program's help.
QStringList wordsOfHelp() {
    static const QRegularExpression line(QStringLiteral("^  (/[a-z]+)"), QRegularExpression::MultilineOption);
    QStringList words;
    for (auto matches = line.globalMatch(ProgramInformation::help()); matches.hasNext();)
        words.append(matches.next().captured(1));
    words.sort();
    return words;
}

struct Example {
    QString text;
    QByteArray bytes;
};

/// The example of a message: the line as it is told, and the bytes as they are printed.
Example example() {
    static const QRegularExpression pattern(QStringLiteral("The line `(.*?)` .*?```\n(.*?)```"),
                                            QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = pattern.match(section(QStringLiteral("Messages over the socket")));
    QByteArray hex;
    for (const QString &line : match.captured(2).split(QLatin1Char('\n')))
        hex += line.section(QLatin1String("  "), 0, 0).toLatin1();
    return {match.captured(1), QByteArray::fromHex(hex)};
}

int idOf(const QString &key) {
    for (int id = 0; id < TindraPreferences::ItemCount; ++id) {
        if (TindraPreferences::instance()->Name(id) == key)
            return id;
    }
    return -1;
}

/// The value of a setting, as the document writes values.
QString valueOf(int id) {
    const TindraPreferences *preferences = TindraPreferences::instance();
    switch (preferences->Type(id)) {
    case Preferences::Bool:
        return QString::number(int(preferences->GetBool(id, false)));
    case Preferences::Int:
        if (preferences->GetInt(id, 0) == TindraPreferences::defaultInt(TindraPreferences::PenColor))
            return QStringLiteral("opaque red");
        return QString::number(preferences->GetInt(id, 0));
    default:
        return preferences->GetString(id, QString());
    }
}

} // namespace

class Tst_ProtocolDocument : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();

    void theExampleIsWhatIsSent();
    void theExampleIsUnderstood();
    void theTablesHaveEveryWordWithItsArguments();
    void theEventsAreThoseOfTheProgram();
    void settingsHaveTheDefaultsThatAreTold();
    void numbersOfSettingsAreTheirs();
};

void Tst_ProtocolDocument::initTestCase() {
    QVERIFY(!document().isEmpty());
    QVERIFY(TindraPreferences::instance()->Init());
}

void Tst_ProtocolDocument::theExampleIsWhatIsSent() {
    const Example told = example();
    QVERIFY(told.bytes.size() > 6);
    const QString name = QStringLiteral("tst_protocoldocument");
    QLocalServer server;
    QVERIFY(server.listen(platform::localSocketPath(name)));
    IpcSocket socket;
    QVERIFY(socket.ConnectToServer(name));
    QVERIFY(server.waitForNewConnection(5000));
    QLocalSocket *other = server.nextPendingConnection();
    QVERIFY(socket.WriteMessage(told.text));
    QTRY_COMPARE(other->bytesAvailable(), qint64(told.bytes.size()));
    QCOMPARE(other->readAll().toHex(), told.bytes.toHex());
}

void Tst_ProtocolDocument::theExampleIsUnderstood() {
    const Example told = example();
    const QString name = QStringLiteral("tst_protocoldocument");
    IpcServer server;
    QVERIFY(server.Listen(name));
    QSignalSpy messages(&server, &IpcServer::sig_ipcMessage);
    RawSocket sender;
    QVERIFY(sender.connectTo(platform::localSocketPath(name)));
    QVERIFY(sender.writeAll(told.bytes));
    QTRY_COMPARE(messages.size(), 1);
    QCOMPARE(messages.first().first().toString(), told.text);
    QCOMPARE(CommandLine::parse(told.text).mainAction(), CommandLine::MainAction::Show);
}

void Tst_ProtocolDocument::theTablesHaveEveryWordWithItsArguments() {
    const QMap<QString, int> words = wordsOfTables();
    QCOMPARE(QStringList(words.keys()), wordsOfHelp());
    for (auto word = words.cbegin(); word != words.cend(); ++word) {
        const auto failsWith = [&word](int arguments) {
            return CommandLine::parse(QStringLiteral("x ") + word.key() +
                                      QStringLiteral(" 1").repeated(arguments))
                .parseFailed;
        };
        QVERIFY2(!failsWith(word.value()), qPrintable(word.key()));
        QVERIFY2(word.value() == 0 || failsWith(word.value() - 1), qPrintable(word.key()));
    }
}

void Tst_ProtocolDocument::theEventsAreThoseOfTheProgram() {
    QVector<quint32> told;
    for (const QStringList &row : tableRows(section(QStringLiteral("Events to the capture side")))) {
        if (row.first().startsWith(QLatin1String("0x")))
            told.append(row.first().toUInt(nullptr, 16));
    }
    const QVector<quint32> events{CaptureMessage::PreferencesOpened,
                                  CaptureMessage::PreferencesClosed,
                                  CaptureMessage::ProgramEnds,
                                  CaptureMessage::NewCapture,
                                  CaptureMessage::BroughtUp,
                                  CaptureMessage::OnlineUpdate,
                                  CaptureMessage::HiddenByClose,
                                  CaptureMessage::ShownForCapture,
                                  CaptureMessage::Hidden,
                                  CaptureMessage::Shown,
                                  CaptureMessage::LogTargetToggled,
                                  CaptureMessage::SilentCaptureSaved};
    QCOMPARE(told, events);
}

void Tst_ProtocolDocument::settingsHaveTheDefaultsThatAreTold() {
    int compared = 0;
    for (const QStringList &row : tableRows(section(QStringLiteral("Settings")))) {
        const QStringList keys = quoted(row.first());
        const QStringList defaults = row.at(1).split(QStringLiteral(", "));
        // A row about suffixes of keys.
        if (keys.first().startsWith(QLatin1Char('_')))
            continue;
        QCOMPARE(defaults.size(), keys.size());
        for (int i = 0; i < keys.size(); ++i, ++compared) {
            const int id = idOf(keys.at(i));
            QVERIFY2(id >= 0, qPrintable(keys.at(i)));
            QCOMPARE(keys.at(i) + QLatin1Char('=') + valueOf(id),
                     keys.at(i) + QLatin1Char('=') + defaults.at(i));
        }
    }
    QVERIFY2(compared > 20, "the table was not found");
}

void Tst_ProtocolDocument::numbersOfSettingsAreTheirs() {
    QMap<int, QString> told;
    for (const QStringList &row : tableRows(section(QStringLiteral("Settings by number"))))
        told.insert(row.first().toInt(), quoted(row.at(1)).first());
    QMap<int, QString> switches;
    for (int id = 0; id < TindraPreferences::ItemCount; ++id) {
        const TindraPreferences *preferences = TindraPreferences::instance();
        // An old one, which is replaced by others as soon as it is read.
        if (preferences->Type(id) == Preferences::Bool && !preferences->Name(id).isEmpty() &&
            preferences->Name(id) != QLatin1String("HideEditor"))
            switches.insert(id, preferences->Name(id));
    }
    QCOMPARE(told, switches);
}

QTEST_GUILESS_MAIN(Tst_ProtocolDocument)
#include "tst_protocoldocument.moc"
