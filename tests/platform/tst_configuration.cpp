#include "platform/configuration.h"
#include "support/ordinaryuser.h"

#include <QtTest>

#include <sys/stat.h>

namespace {

const QString ConfigKey = QStringLiteral("SOFTWARE\\Norvane\\Tindra\\Config");
constexpr QFile::Permissions PrivateFile =
    QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;

QString settingsPath() {
    return qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/Norvane/Tindra.conf");
}

void writeFile(const QString &path, const QByteArray &content) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QByteArray readFile(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be opened)");
}

QString read(const QString &name, const QString &key = ConfigKey) {
    return ConfigurationLocation(key).value(name).toString();
}

void write(const QString &name, const QVariant &value, const QString &key = ConfigKey) {
    ConfigurationLocation(key).setValue(name, value);
}

quint64 inode(const QString &path) {
    struct stat info;
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? info.st_ino : 0;
}

/// What a second program does to the file: `--write KEY FIRST COUNT` saves numbered values one by one.
int writeValues(const QStringList &arguments) {
    const int first = arguments[3].toInt();
    for (int i = first; i < first + arguments[4].toInt(); ++i)
        write(QStringLiteral("Value%1").arg(i), i, arguments[2]);
    return 0;
}

} // namespace

class Tst_Configuration : public QObject {
    Q_OBJECT
private slots:
    void init();
    void keyNamesFileAndGroup_data();
    void keyNamesFileAndGroup();
    void keyWithoutFileHoldsNothing_data();
    void keyWithoutFileHoldsNothing();
    void relativeConfigurationHomeIsIgnored();
    void textsComeBack_data();
    void textsComeBack();
    void unquotedCommaIsPartOfTheText_data();
    void unquotedCommaIsPartOfTheText();
    void unquotedCommaInANestedGroup();
    void fileIsReadableText();
    void nestedGroups();
    void valuesOfOthersSurviveASave();
    void unquotedCommasSurviveASave();
    void savingThePresentValueLeavesTheFileAlone();
    void removingWhatIsMissingLeavesTheFileAlone();
    void newFileAndFolderArePrivate();
    void openFileBecomesPrivate();
    void readingMakesNoFile();
    void objectsOpenAtOnceKeepEachOthersValues();
    void processesKeepEachOthersValues();
    void damagedFileCostsItsValuesOnly_data();
    void damagedFileCostsItsValuesOnly();
    void firstDamagedStateIsKept();
    void unusableFileCostsNothing_data();
    void unusableFileCostsNothing();
    void linkedFileStaysALink();
    void folderInPlaceOfTheLockDropsTheSave();
    void lockOfAStoppedProgramDropsTheSave();
    void lockOfADeadProgramIsTaken();
    void filesWithoutRightsStayAsTheyAre_data();
    void filesWithoutRightsStayAsTheyAre();
    void machineScopeReadsTheFirstFile();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

void Tst_Configuration::init() {
    m_folder = std::make_unique<QTemporaryDir>();
    qputenv("XDG_CONFIG_HOME", m_folder->path().toLocal8Bit());
}

void Tst_Configuration::keyNamesFileAndGroup_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    const QString tindra = QStringLiteral("Norvane/Tindra.conf");
    QTest::newRow("one group") << ConfigKey << tindra << QByteArray("[Config]\nname=found\n");
    QTest::newRow("nested group") << ConfigKey + QStringLiteral("\\SizePresets") << tindra
                                  << QByteArray("[Config]\nSizePresets\\name=found\n");
    QTest::newRow("root, other case")
        << QStringLiteral("HKEY_CURRENT_USER\\Software\\Norvane\\Tindra\\Config") << tindra
        << QByteArray("[Config]\nname=found\n");
    QTest::newRow("root of the machine")
        << QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane\\Tindra\\Config") << tindra
        << QByteArray("[Config]\nname=found\n");
    QTest::newRow("no leading word") << QStringLiteral("Norvane\\Tindra\\Config") << tindra
                                     << QByteArray("[Config]\nname=found\n");
    QTest::newRow("no group") << QStringLiteral("SOFTWARE\\Norvane\\Tindra") << tindra
                              << QByteArray("[General]\nname=found\n");
    QTest::newRow("other file") << QStringLiteral("HKEY_CURRENT_USER\\Software\\Norvane\\Editor\\FuncTrace")
                                << QStringLiteral("Norvane/Editor.conf")
                                << QByteArray("[FuncTrace]\nname=found\n");
    QTest::newRow("doubled backslashes") << QStringLiteral("SOFTWARE\\\\Norvane\\\\Tindra\\\\Config")
                                         << tindra << QByteArray("[Config]\nname=found\n");
}

void Tst_Configuration::keyNamesFileAndGroup() {
    QFETCH(QString, key);
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    const QString path = m_folder->filePath(file);
    QCOMPARE(ConfigurationLocation(key).fileName(), path);
    writeFile(path, content);
    QCOMPARE(read(QStringLiteral("name"), key), QStringLiteral("found"));
}

void Tst_Configuration::keyWithoutFileHoldsNothing_data() {
    QTest::addColumn<QString>("key");
    QTest::newRow("empty") << QString();
    QTest::newRow("vendor alone") << QStringLiteral("SOFTWARE\\Norvane");
    QTest::newRow("way up") << QStringLiteral("SOFTWARE\\..\\Tindra\\Config");
    QTest::newRow("path in a component") << QStringLiteral("SOFTWARE\\Norvane\\a/b\\Config");
}

void Tst_Configuration::keyWithoutFileHoldsNothing() {
    QFETCH(QString, key);
    write(QStringLiteral("name"), 1, key);
    ConfigurationLocation location(key);
    location.remove(QStringLiteral("name"));
    QVERIFY(!location.value(QStringLiteral("name")).isValid());
    QCOMPARE(location.childGroups(), QStringList());
    QCOMPARE(location.fileName(), QString());
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

void Tst_Configuration::relativeConfigurationHomeIsIgnored() {
    qputenv("XDG_CONFIG_HOME", "somewhere");
    QCOMPARE(ConfigurationLocation(ConfigKey).fileName(),
             QDir::homePath() + QStringLiteral("/.config/Norvane/Tindra.conf"));
}

void Tst_Configuration::textsComeBack_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("template") << QStringLiteral("%Y%m%d_%H%M%S");
    QTest::newRow("comma") << QStringLiteral("/home/a, b");
    QTest::newRow("quotes, semicolon, equals") << QStringLiteral("\"a\"; b = 'c'");
    QTest::newRow("backslashes") << QStringLiteral("C:\\new\\x41");
    QTest::newRow("leading at sign") << QStringLiteral("@Invalid()");
    QTest::newRow("hangul") << QString::fromUtf8("\xed\x99\x94\xeb\xa9\xb4 \xec\xba\xa1\xec\xb2\x98");
    QTest::newRow("beyond the basic plane") << QString::fromUtf8("\xf0\x9f\x96\xbc");
    QTest::newRow("line break, outer blanks") << QStringLiteral(" a\nb\t ");
}

void Tst_Configuration::textsComeBack() {
    QFETCH(QString, text);
    write(QStringLiteral("name"), text);
    QCOMPARE(read(QStringLiteral("name")), text);
}

void Tst_Configuration::unquotedCommaIsPartOfTheText_data() {
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QString>("text");
    QTest::newRow("no blank") << QByteArray("/home/a,b") << QStringLiteral("/home/a,b");
    QTest::newRow("blank behind") << QByteArray("/a, b") << QStringLiteral("/a, b");
    QTest::newRow("blanks on both sides") << QByteArray("/a ,  b") << QStringLiteral("/a ,  b");
    QTest::newRow("each its own") << QByteArray("/a,b, c ,d") << QStringLiteral("/a,b, c ,d");
    QTest::newRow("a blank between commas") << QByteArray("/a, , b") << QStringLiteral("/a, , b");
    QTest::newRow("nothing between commas") << QByteArray("/a,,b") << QStringLiteral("/a,,b");
    QTest::newRow("nothing behind the last comma") << QByteArray("/a,") << QStringLiteral("/a,");
    QTest::newRow("a blank behind the last comma") << QByteArray("/a, ") << QStringLiteral("/a, ");
    QTest::newRow("blanks around the whole") << QByteArray("  /a, b  ") << QStringLiteral("/a, b");
    QTest::newRow("a part in quotes") << QByteArray("\"/a, x\", b") << QStringLiteral("/a, x, b");
    QTest::newRow("escaped letter") << QByteArray("/\\x61, b") << QStringLiteral("/a, b");
    QTest::newRow("hangul") << QByteArray("/\xed\x99\x88, b") << QString::fromUtf8("/\xed\x99\x88, b");
}

void Tst_Configuration::unquotedCommaIsPartOfTheText() {
    QFETCH(QByteArray, written);
    // Other groups and names, and a line that a later one replaces, do not count.
    writeFile(settingsPath(), "[Other]\nFilePath=x,    y\n[Config]\nFilePath=x,    y\nFilePath2=x,    y\n" +
                                  QByteArray("FilePath = ") + written + "\n[More]\nFilePath=x,    y\n");
    QTEST(read(QStringLiteral("FilePath")), "text");
}

void Tst_Configuration::unquotedCommaInANestedGroup() {
    writeFile(settingsPath(), "[General]\nname=a, b\n[Config]\nDeep\\0\\name=c,  d\n");
    QCOMPARE(read(QStringLiteral("Deep/0/name")), QStringLiteral("c,  d"));
    QCOMPARE(read(QStringLiteral("0/name"), ConfigKey + QStringLiteral("\\Deep")), QStringLiteral("c,  d"));
    QCOMPARE(read(QStringLiteral("name"), QStringLiteral("SOFTWARE\\Norvane\\Tindra")),
             QStringLiteral("a, b"));
}

void Tst_Configuration::fileIsReadableText() {
    write(QStringLiteral("TrayMode"), 1);
    write(QStringLiteral("FilePath"), QString::fromUtf8("/\xed\x99\x88"));
    QCOMPARE(readFile(settingsPath()), QByteArray("[Config]\nFilePath=/\xed\x99\x88\nTrayMode=1\n"));
}

void Tst_Configuration::nestedGroups() {
    const QString key = ConfigKey + QStringLiteral("\\SizePresets");
    {
        ConfigurationLocation location(key);
        location.setValue(QStringLiteral("0/width"), 640);
        location.setValue(QStringLiteral("0/height"), 480);
        location.setValue(QStringLiteral("1/width"), 800);
    }
    QCOMPARE(read(QStringLiteral("SizePresets/0/height")), QStringLiteral("480"));
    QCOMPARE(ConfigurationLocation(key).childGroups(),
             (QStringList{QStringLiteral("0"), QStringLiteral("1")}));
    ConfigurationLocation(key).remove(QStringLiteral("0"));
    QCOMPARE(ConfigurationLocation(key).childGroups(), QStringList{QStringLiteral("1")});
    QCOMPARE(readFile(settingsPath()), QByteArray("[Config]\nSizePresets\\1\\width=800\n"));
}

void Tst_Configuration::valuesOfOthersSurviveASave() {
    writeFile(settingsPath(), "[Capture]\nDelay=3\nPath=\"a,b\"\n\n[Config]\nUnknown=x\nTrayMode=1\n");
    write(QStringLiteral("TrayMode"), 0);
    QCOMPARE(readFile(settingsPath()),
             QByteArray("[Capture]\nDelay=3\nPath=\"a,b\"\n\n[Config]\nTrayMode=0\nUnknown=x\n"));
}

void Tst_Configuration::unquotedCommasSurviveASave() {
    writeFile(settingsPath(),
              "[Capture]\nFolder=/a,b\nNames=x, \nSizes=1, 2, 3\n[Config]\nFilePath=/c , d,  e\nTrayMode=1\n"
              "Lists\\0\\Text=x,y\n");
    write(QStringLiteral("TrayMode"), 0);
    QCOMPARE(read(QStringLiteral("TrayMode")), QStringLiteral("0"));
    QCOMPARE(read(QStringLiteral("FilePath")), QStringLiteral("/c , d,  e"));
    QCOMPARE(read(QStringLiteral("Lists/0/Text")), QStringLiteral("x,y"));
    QCOMPARE(read(QStringLiteral("Folder"), QStringLiteral("SOFTWARE\\Norvane\\Tindra\\Capture")),
             QStringLiteral("/a,b"));
    // What another program stores as a list stays one.
    QVERIFY(readFile(settingsPath()).contains("\nNames=x, \nSizes=1, 2, 3\n"));
}

void Tst_Configuration::savingThePresentValueLeavesTheFileAlone() {
    const QByteArray content = "; a note of the user\n[Config]\nTrayMode=1\n";
    writeFile(settingsPath(), content);
    const quint64 before = inode(settingsPath());
    write(QStringLiteral("TrayMode"), 1);
    QCOMPARE(inode(settingsPath()), before);
    QCOMPARE(readFile(settingsPath()), content);
}

void Tst_Configuration::removingWhatIsMissingLeavesTheFileAlone() {
    writeFile(settingsPath(), "[Config]\nTrayMode=1\n");
    const quint64 before = inode(settingsPath());
    ConfigurationLocation(ConfigKey).remove(QStringLiteral("5"));
    QCOMPARE(inode(settingsPath()), before);
}

void Tst_Configuration::newFileAndFolderArePrivate() {
    const mode_t usual = ::umask(022);
    write(QStringLiteral("TrayMode"), 1);
    ::umask(usual);
    struct stat info;
    QCOMPARE(::stat(QFile::encodeName(settingsPath()).constData(), &info), 0);
    QCOMPARE(int(info.st_mode & 0777), 0600);
    QCOMPARE(::stat(QFile::encodeName(m_folder->filePath(QStringLiteral("Norvane"))).constData(), &info), 0);
    QCOMPARE(int(info.st_mode & 0777), 0700);
}

void Tst_Configuration::openFileBecomesPrivate() {
    writeFile(settingsPath(), "[Config]\nTrayMode=1\n");
    QFile::setPermissions(settingsPath(), PrivateFile | QFile::ReadOther | QFile::ReadGroup);
    write(QStringLiteral("TrayMode"), 0);
    QCOMPARE(QFile::permissions(settingsPath()), PrivateFile);
}

void Tst_Configuration::readingMakesNoFile() {
    QCOMPARE(read(QStringLiteral("TrayMode")), QString());
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

void Tst_Configuration::objectsOpenAtOnceKeepEachOthersValues() {
    {
        ConfigurationLocation first(ConfigKey);
        ConfigurationLocation second(ConfigKey);
        first.setValue(QStringLiteral("A"), 1);
        second.setValue(QStringLiteral("B"), 2);
    }
    QCOMPARE(readFile(settingsPath()), QByteArray("[Config]\nA=1\nB=2\n"));
}

void Tst_Configuration::processesKeepEachOthersValues() {
    constexpr int writers = 3;
    constexpr int count = 15;
    QProcess processes[writers];
    for (int i = 0; i < writers; ++i)
        processes[i].start(
            QCoreApplication::applicationFilePath(),
            {QStringLiteral("--write"), ConfigKey, QString::number(i * count), QString::number(count)});
    for (QProcess &process : processes) {
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 0);
    }
    for (int i = 0; i < writers * count; ++i)
        QCOMPARE(read(QStringLiteral("Value%1").arg(i)), QString::number(i));
}

void Tst_Configuration::damagedFileCostsItsValuesOnly_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("other");
    QByteArray noise;
    for (int i = 0; i < 20000; ++i)
        noise.append(char((i * 7919 + i / 251) % 256));
    QTest::newRow("zeros after a power cut") << QByteArray(4096, '\0') << QString();
    QTest::newRow("noise") << noise << QString();
    QTest::newRow("stray line") << QByteArray("[Config]\nOther=kept\nwhat is this\n")
                                << QStringLiteral("kept");
    QTest::newRow("cut off") << QByteArray("[Config]\nOther=kept\nTray") << QStringLiteral("kept");
    QTest::newRow("two-byte encoding")
        << QByteArray("[\0C\0o\0n\0f\0i\0g\0]\0\n\0O\0t\0h\0e\0r\0=\0x\0\n\0", 32) << QString();
    QTest::newRow("one-byte encoding")
        << QByteArray("[Config]\nName=Caf\xe9\nOther=kept\n") << QStringLiteral("kept");
}

void Tst_Configuration::damagedFileCostsItsValuesOnly() {
    QFETCH(QByteArray, content);
    QFETCH(QString, other);
    writeFile(settingsPath(), content);
    QCOMPARE(read(QStringLiteral("TrayMode")), QString());
    write(QStringLiteral("TrayMode"), 1);
    QCOMPARE(read(QStringLiteral("TrayMode")), QStringLiteral("1"));
    QCOMPARE(read(QStringLiteral("Other")), other);
    QCOMPARE(readFile(settingsPath() + QStringLiteral(".damaged")), content);
}

void Tst_Configuration::firstDamagedStateIsKept() {
    writeFile(settingsPath(), "first\n");
    write(QStringLiteral("A"), 1);
    writeFile(settingsPath(), "second state\n");
    write(QStringLiteral("B"), 2);
    QCOMPARE(readFile(settingsPath() + QStringLiteral(".damaged")), QByteArray("first\n"));
}

void Tst_Configuration::unusableFileCostsNothing_data() {
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"folder", "pipe", "device", "huge", "file as vendor folder"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void Tst_Configuration::unusableFileCostsNothing() {
    QFETCH(QString, kind);
    const QByteArray path = QFile::encodeName(settingsPath());
    if (kind != QLatin1String("file as vendor folder"))
        QVERIFY(QDir().mkpath(QFileInfo(settingsPath()).path()));
    if (kind == QLatin1String("folder")) {
        QVERIFY(QDir().mkpath(settingsPath()));
    } else if (kind == QLatin1String("pipe")) {
        QCOMPARE(::mkfifo(path.constData(), 0600), 0);
    } else if (kind == QLatin1String("device")) {
        QVERIFY(QFile::link(QStringLiteral("/dev/zero"), settingsPath()));
    } else if (kind == QLatin1String("huge")) {
        writeFile(settingsPath(), "[Config]\nTrayMode=1\n");
        QVERIFY(QFile::resize(settingsPath(), 8 * 1024 * 1024));
    } else {
        writeFile(m_folder->filePath(QStringLiteral("Norvane")), "no folder");
    }
    QCOMPARE(read(QStringLiteral("TrayMode")), QString());
    write(QStringLiteral("TrayMode"), 1);
    QCOMPARE(read(QStringLiteral("TrayMode")), QString());
}

void Tst_Configuration::linkedFileStaysALink() {
    const QString target = m_folder->filePath(QStringLiteral("dotfiles.conf"));
    writeFile(target, "[Config]\nOther=kept\n");
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("Norvane")));
    QVERIFY(QFile::link(target, settingsPath()));
    write(QStringLiteral("TrayMode"), 1);
    QVERIFY(QFileInfo(settingsPath()).isSymLink());
    QCOMPARE(readFile(target), QByteArray("[Config]\nOther=kept\nTrayMode=1\n"));
}

void Tst_Configuration::folderInPlaceOfTheLockDropsTheSave() {
    writeFile(settingsPath(), "[Config]\nTrayMode=1\n");
    QVERIFY(QDir().mkpath(settingsPath() + QStringLiteral(".lock")));
    ConfigurationLocation location(ConfigKey);
    QVERIFY(!location.setValue(QStringLiteral("TrayMode"), 0));
    QVERIFY(location.setValue(QStringLiteral("TrayMode"), 1)); // stands there already
    QCOMPARE(readFile(settingsPath()), QByteArray("[Config]\nTrayMode=1\n"));
}

void Tst_Configuration::lockOfAStoppedProgramDropsTheSave() {
    QVERIFY(QDir().mkpath(QFileInfo(settingsPath()).path()));
    QLockFile lock(settingsPath() + QStringLiteral(".lock"));
    QVERIFY(lock.lock());
    write(QStringLiteral("TrayMode"), 0); // comes back at all
    QVERIFY(!QFileInfo::exists(settingsPath()));
}

void Tst_Configuration::lockOfADeadProgramIsTaken() {
    QProcess program;
    program.start(QCoreApplication::applicationFilePath(),
                  {QStringLiteral("--write"), ConfigKey, QStringLiteral("0"), QStringLiteral("0")});
    QVERIFY(program.waitForStarted());
    const qint64 id = program.processId();
    QVERIFY(program.waitForFinished());
    const QString content =
        QStringLiteral("%1\ntst_configuration\n%2\n").arg(id).arg(QSysInfo::machineHostName());
    writeFile(settingsPath() + QStringLiteral(".lock"), content.toUtf8());
    write(QStringLiteral("TrayMode"), 0);
    QCOMPARE(readFile(settingsPath()), QByteArray("[Config]\nTrayMode=0\n"));
}

void Tst_Configuration::filesWithoutRightsStayAsTheyAre_data() {
    QTest::addColumn<int>("fileMode");
    QTest::addColumn<QString>("expected");
    QTest::newRow("unreadable") << 0 << QString();
    QTest::newRow("write only") << 0200 << QString();
    QTest::newRow("read only") << 0400 << QStringLiteral("1");
}

void Tst_Configuration::filesWithoutRightsStayAsTheyAre() {
    QFETCH(int, fileMode);
    QFETCH(QString, expected);
    const int result = asOrdinaryUser([&](const QString &folder) {
        qputenv("XDG_CONFIG_HOME", folder.toLocal8Bit());
        const QByteArray content = "[Config]\nTrayMode=1\n";
        writeFile(settingsPath(), content);
        const QByteArray path = QFile::encodeName(settingsPath());
        ::chmod(path.constData(), mode_t(fileMode));
        if (read(QStringLiteral("TrayMode")) != expected)
            return 1;
        write(QStringLiteral("TrayMode"), 0);
        ::chmod(path.constData(), 0600);
        return readFile(settingsPath()) == content ? 0 : 2;
    });
    QCOMPARE(result, 0);
}

void Tst_Configuration::machineScopeReadsTheFirstFile() {
    QTemporaryDir folders[3];
    const QString relative = QStringLiteral("/Norvane/Tindra.conf");
    writeFile(folders[1].path() + relative, "[Config]\nPolicy=second\n");
    writeFile(folders[2].path() + relative, "[Config]\nPolicy=third\n");
    const QString list =
        QStringLiteral("relative:%1:%2:%3").arg(folders[0].path(), folders[1].path(), folders[2].path());
    qputenv("XDG_CONFIG_DIRS", list.toLocal8Bit());

    ConfigurationLocation location(ConfigKey, ConfigurationScope::Machine);
    QCOMPARE(location.value(QStringLiteral("Policy")).toString(), QStringLiteral("second"));
    QVERIFY(!location.setValue(QStringLiteral("Policy"), QStringLiteral("changed")));
    location.remove(QStringLiteral("Policy"));
    QCOMPARE(ConfigurationLocation(ConfigKey, ConfigurationScope::Machine)
                 .value(QStringLiteral("Policy"))
                 .toString(),
             QStringLiteral("second"));
    QCOMPARE(readFile(folders[1].path() + relative), QByteArray("[Config]\nPolicy=second\n"));
    QCOMPARE(read(QStringLiteral("Policy")), QString());
}

int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    if (application.arguments().value(1) == QLatin1String("--write"))
        return writeValues(application.arguments());
    Tst_Configuration test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_configuration.moc"
