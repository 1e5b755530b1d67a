#include "output/filenameutil.h"
#include "preferences/tindrapreferences.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

namespace {

const QDateTime SomeTime(QDate(2024, 1, 2), QTime(3, 4, 5));

/// Answers every text of the file names with the text in brackets.
class BracketTranslator : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *, int) const override {
        if (qstrcmp(context, "FileNameUtil") != 0)
            return QString();
        return QLatin1Char('<') + QString::fromLatin1(text) + QLatin1Char('>');
    }
};

} // namespace

class Tst_FileNameUtil : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void suffixOfTheFormat_data();
    void suffixOfTheFormat();
    void normalizesTemplates_data();
    void normalizesTemplates();
    void formatEntries();
    void birdNames();
    void tablesFollowTheTranslation();
    void indexOfFormat_data();
    void indexOfFormat();
    void generatesByStyle_data();
    void generatesByStyle();
    void textIsOneNameInTheFolder_data();
    void textIsOneNameInTheFolder();
    void longTextLeavesRoomForNumbersAndEnding();
    void styleWithNothingToSayFallsBack_data();
    void styleWithNothingToSayFallsBack();
    void folderWithPlaceholdersStaysAsItIs();
    void serialTakesTheFirstFreeNumber();
    void serialOfAnotherFormatIsFree();
    void serialPassesOverFolders();
    void serialGrowsBeyondFourDigits();
    void serialNeedsAFolder_data();
    void serialNeedsAFolder();
    void birdShuffle_data();
    void birdShuffle();
    void birdOrderRepeatsWithTheMillisecond();
    void birdFindsTheLastFreeName();
    void birdNumbered();
    void birdTwiceInTheListIsOneName();
    void birdNeedsAFolder();
    void uniquePath_data();
    void uniquePath();
    void uniquePathCountsUp();
    void uniquePathGivesUp();
    void batchNumbersFromOne();
    void batchPassesOverUsedAndExisting();
    void batchSerialTakesTheFolderOfTheBase();
    void batchSerialWaitsForTheWorker();
    void batchWithOwnEmptyTextIsSerial();
    void folderOrDefault();

private:
    void use(int type, const QString &text, int format = 0);
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void touch(const QString &name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void Tst_FileNameUtil::init() {
    TindraPreferences::resetForTesting();
    TindraPreferences::instance()->Init();
    m_folder = std::make_unique<QTemporaryDir>();
    FileNameUtil::setClock([] { return SomeTime; });
}

void Tst_FileNameUtil::cleanup() {
    FileNameUtil::setClock({});
    FileNameUtil::setRandom({});
    FileNameUtil::setBatchWait({});
}

void Tst_FileNameUtil::use(int type, const QString &text, int format) {
    TindraPreferences *preferences = TindraPreferences::instance();
    preferences->SetInt(TindraPreferences::FileNameType, type);
    preferences->SetString(TindraPreferences::FileNameTamplate, text);
    preferences->SetInt(TindraPreferences::FileFormat, format);
}

void Tst_FileNameUtil::touch(const QString &name) const {
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
}

void Tst_FileNameUtil::suffixOfTheFormat_data() {
    QTest::addColumn<int>("format");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("0") << 0 << "png";
    QTest::newRow("1") << 1 << "jpg";
    QTest::newRow("2") << 2 << "bmp";
    QTest::newRow("3") << 3 << "gif";
    QTest::newRow("4") << 4 << "webp";
    QTest::newRow("5") << 5 << "";
    QTest::newRow("negative") << -1 << "";
}

void Tst_FileNameUtil::suffixOfTheFormat() {
    QFETCH(int, format);
    use(2, QString(), format);
    QTEST(FileNameUtil::currentFileSuffix(), "suffix");
}

void Tst_FileNameUtil::normalizesTemplates_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("all") << "%Y%m%d_%H%M%S"
                         << "yyyyMMdd_HHmmss";
    QTest::newRow("twice") << "%Y %Y"
                           << "yyyy yyyy";
    QTest::newRow("case counts") << "%y%D%h%s"
                                 << "%y%D%h%s";
    QTest::newRow("nothing to do") << "yyyy-MM-dd"
                                   << "yyyy-MM-dd";
    QTest::newRow("empty") << ""
                           << "";
}

void Tst_FileNameUtil::normalizesTemplates() {
    QFETCH(QString, text);
    FileNameUtil::normalizeTemplate(text);
    QTEST(text, "expected");
}

void Tst_FileNameUtil::formatEntries() {
    const struct {
        int type;
        const char *format;
        const char *display;
    } expected[] = {{1, "yyyyMMdd_HHmmss", "yyyyMMdd_HHmmss"},
                    {1, "yyyy-MM-dd HH;mm;ss", "yyyy-MM-dd HH;mm;ss"},
                    {1, "MM-dd HH;mm;ss", "MM-dd HH;mm;ss"},
                    {1, "yyyy-MM-dd", "yyyy-MM-dd"},
                    {1, "HH;mm;ss", "HH;mm;ss"},
                    {3, "BIRDNAME", "birdname"},
                    {2, "", "serial"}};
    const QList<FileNameUtil::FormatEntry> &entries = FileNameUtil::formatEntries();
    QCOMPARE(entries.size(), 7);
    for (int row = 0; row < 7; ++row) {
        QCOMPARE(entries[row].type, expected[row].type);
        QCOMPARE(entries[row].format, QString::fromLatin1(expected[row].format));
        QCOMPARE(entries[row].display, QString::fromLatin1(expected[row].display));
    }
}

void Tst_FileNameUtil::birdNames() {
    QStringList expected;
    for (int i = 0; i <= 48; ++i) {
        expected.append(QStringLiteral("name%1").arg(i));
        if (i == 40)
            expected.append(QStringLiteral("name40"));
    }
    QCOMPARE(FileNameUtil::birdNames(), expected);
    QCOMPARE(FileNameUtil::birdNames().size(), 50);
}

void Tst_FileNameUtil::tablesFollowTheTranslation() {
    BracketTranslator translator;
    QCoreApplication::installTranslator(&translator);
    FileNameUtil::initialize();
    const QString bird = FileNameUtil::birdNames().value(0);
    const QString display = FileNameUtil::formatEntries().value(5).display;
    const QString format = FileNameUtil::formatEntries().value(5).format;
    use(9, QString());
    const QString fallback = FileNameUtil::generateFileName(QStringLiteral("/f"), false);
    QCoreApplication::removeTranslator(&translator);
    FileNameUtil::initialize();
    QCOMPARE(bird, QStringLiteral("<name0>"));
    QCOMPARE(display, QStringLiteral("<birdname>"));
    QCOMPARE(format, QStringLiteral("BIRDNAME"));
    QCOMPARE(fallback, QStringLiteral("/f/<Tindra>.png"));
    QCOMPARE(FileNameUtil::birdNames().value(0), QStringLiteral("name0"));
}

void Tst_FileNameUtil::indexOfFormat_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("row");
    QTest::newRow("first") << 1 << "yyyyMMdd_HHmmss" << 0;
    QTest::newRow("last date") << 1 << "HH;mm;ss" << 4;
    QTest::newRow("birds") << 3 << "BIRDNAME" << 5;
    QTest::newRow("serial") << 2 << "" << 6;
    QTest::newRow("case counts") << 3 << "birdname" << -1;
    QTest::newRow("other type") << 2 << "HH;mm;ss" << -1;
    QTest::newRow("own text") << 0 << "" << -1;
    QTest::newRow("own text like a format") << 0 << "HH;mm;ss" << -1;
}

void Tst_FileNameUtil::indexOfFormat() {
    QFETCH(int, type);
    QFETCH(QString, format);
    QTEST(FileNameUtil::indexOfFormat(type, format), "row");
}

void Tst_FileNameUtil::generatesByStyle_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("expected");
    QTest::newRow("date") << 1 << "yyyyMMdd_HHmmss"
                          << "/f"
                          << "/f/20240102_030405";
    QTest::newRow("date, from the capture process") << 1 << "%Y%m%d_%H%M%S"
                                                    << "/f"
                                                    << "/f/20240102_030405";
    QTest::newRow("date with semicolons") << 1 << "yyyy-MM-dd HH;mm;ss"
                                          << "/f"
                                          << "/f/2024-01-02 03;04;05";
    QTest::newRow("date, empty") << 1 << ""
                                 << "/f"
                                 << "/f/";
    QTest::newRow("own text") << 0 << "my shot"
                              << "/f"
                              << "/f/my shot";
    QTest::newRow("own text is normalized, too") << 0 << "100%d"
                                                 << "/f"
                                                 << "/f/100dd";
    QTest::newRow("folder ends with a slash") << 0 << "shot"
                                              << "/f/"
                                              << "/f/shot";
    QTest::newRow("folder ends with a backslash") << 0 << "shot"
                                                  << "/f\\"
                                                  << "/f\\shot";
    QTest::newRow("serial") << 2 << "ignored"
                            << "/f"
                            << "/f/0001";
    QTest::newRow("serial, backslash") << 2 << ""
                                       << "/f\\"
                                       << "/f\\0001";
    QTest::newRow("own text, empty") << 0 << ""
                                     << "/f"
                                     << "/f/0001";
    QTest::newRow("no folder") << 0 << "shot"
                               << ""
                               << "/shot";
}

void Tst_FileNameUtil::generatesByStyle() {
    QFETCH(int, type);
    QFETCH(QString, text);
    QFETCH(QString, folder);
    use(type, text);
    QTEST(FileNameUtil::generateFileName(folder, false), "expected");
}

void Tst_FileNameUtil::textIsOneNameInTheFolder_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("name");
    QTest::newRow("out of the folder") << 0 << "../../x"
                                       << ".._.._x";
    QTest::newRow("from the root") << 0 << "/etc/x"
                                   << "_etc_x";
    QTest::newRow("separators of the other platform") << 0 << "..\\a\\b"
                                                      << ".._a_b";
    QTest::newRow("control characters")
        << 0 << QStringLiteral("a\nb\x7f") + QChar(0) + QLatin1Char('c') << "a_b__c";
    QTest::newRow("date in folders") << 1 << "yyyy/MM/dd"
                                     << "2024_01_02";
    QTest::newRow("quoted in a date") << 1 << "'../'yyyy"
                                      << ".._2024";
    QTest::newRow("what a name may have") << 0 << "a:b*c ~.\"<|>?%"
                                          << "a:b*c ~.\"<|>?%";
}

void Tst_FileNameUtil::textIsOneNameInTheFolder() {
    QFETCH(int, type);
    QFETCH(QString, text);
    QFETCH(QString, name);
    use(type, text);
    const QString base = FileNameUtil::generateFileName(QStringLiteral("/f"), false);
    QCOMPARE(base, QStringLiteral("/f/") + name);
    QCOMPARE(FileNameUtil::batchFileName(base, {}), QStringLiteral("/f/%1_1.png").arg(name));
}

void Tst_FileNameUtil::longTextLeavesRoomForNumbersAndEnding() {
    // Three bytes each, behind one: the limit lies within a character.
    use(0, QLatin1Char('a') + QString(1000, QChar(0xD55C)), 4);
    const QString name = QFileInfo(FileNameUtil::generateFileName(m_folder->path(), false)).fileName();
    QCOMPARE(name, QLatin1Char('a') + QString(76, QChar(0xD55C)));
    touch(name + QStringLiteral("_9999 (5000).webp"));

    use(0, QString(230, QLatin1Char('x')));
    QCOMPARE(FileNameUtil::generateFileName(QStringLiteral("/f"), false).size(), 3 + 230);
    use(0, QString(231, QLatin1Char('x')));
    QCOMPARE(FileNameUtil::generateFileName(QStringLiteral("/f"), false).size(), 3 + 230);
}

void Tst_FileNameUtil::styleWithNothingToSayFallsBack_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("expected");
    QTest::newRow("unknown type") << 4 << "/f"
                                  << "/f/Tindra.jpg";
    QTest::newRow("unknown type, slash") << 4 << "/f/"
                                         << "/f/Tindra.jpg";
    QTest::newRow("serial without a folder") << 2 << ""
                                             << "/Tindra.jpg";
    QTest::newRow("bird without a folder") << 3 << ""
                                           << "/Tindra.jpg";
}

void Tst_FileNameUtil::styleWithNothingToSayFallsBack() {
    QFETCH(int, type);
    QFETCH(QString, folder);
    use(type, QString(), 1);
    QTEST(FileNameUtil::generateFileName(folder, false), "expected");
}

void Tst_FileNameUtil::folderWithPlaceholdersStaysAsItIs() {
    use(0, QStringLiteral("a%1b"));
    QCOMPARE(FileNameUtil::generateFileName(QStringLiteral("/100%1%0"), false),
             QStringLiteral("/100%1%0/a%1b"));
    use(2, QString());
    QCOMPARE(FileNameUtil::serialFileName(QStringLiteral("/100%1%0")), QStringLiteral("/100%1%0/0001"));
}

void Tst_FileNameUtil::serialTakesTheFirstFreeNumber() {
    use(0, QString());
    QCOMPARE(FileNameUtil::generateFileName(m_folder->path(), false), path(QStringLiteral("0001")));
    touch(QStringLiteral("0001.png"));
    QCOMPARE(FileNameUtil::generateFileName(m_folder->path(), false), path(QStringLiteral("0002")));
    touch(QStringLiteral("0003.png"));
    QCOMPARE(FileNameUtil::serialFileName(m_folder->path()), path(QStringLiteral("0002")));
    touch(QStringLiteral("0002.png"));
    QCOMPARE(FileNameUtil::serialFileName(m_folder->path()), path(QStringLiteral("0004")));
}

void Tst_FileNameUtil::serialOfAnotherFormatIsFree() {
    touch(QStringLiteral("0001.png"));
    use(2, QString(), 1);
    QCOMPARE(FileNameUtil::serialFileName(m_folder->path()), path(QStringLiteral("0001")));
}

void Tst_FileNameUtil::serialPassesOverFolders() {
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("0001.png")));
    use(2, QString());
    QCOMPARE(FileNameUtil::serialFileName(m_folder->path()), path(QStringLiteral("0001")));
}

void Tst_FileNameUtil::serialGrowsBeyondFourDigits() {
    use(2, QString());
    for (int i = 1; i <= 9999; ++i)
        touch(QStringLiteral("%1.png").arg(i, 4, 10, QLatin1Char('0')));
    QCOMPARE(FileNameUtil::serialFileName(m_folder->path()), path(QStringLiteral("10000")));
}

void Tst_FileNameUtil::serialNeedsAFolder_data() {
    QTest::addColumn<QString>("folder");
    QTest::newRow("null") << QString();
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("begins with a null character") << QString(QChar::Null) + QStringLiteral("/f");
}

void Tst_FileNameUtil::serialNeedsAFolder() {
    QFETCH(QString, folder);
    QCOMPARE(FileNameUtil::serialFileName(folder), QString());
    QCOMPARE(FileNameUtil::birdFileName(folder, false), QString());
}

void Tst_FileNameUtil::birdShuffle_data() {
    QTest::addColumn<QVector<int>>("draws"); // repeated for ever
    QTest::addColumn<QString>("first");
    QTest::newRow("12 goes to the front") << QVector<int>{12} << "name48";
    QTest::newRow("13 goes to the end") << QVector<int>{13} << "name0";
    QTest::newRow("remainder of 24") << QVector<int>{24 + 13} << "name0";
    QTest::newRow("whole turns go to the front") << QVector<int>{48} << "name48";
    QTest::newRow("end, then front") << QVector<int>{23, 0} << "name48";
    QTest::newRow("front, then end") << QVector<int>{0, 23} << "name47";
}

void Tst_FileNameUtil::birdShuffle() {
    QFETCH(QVector<int>, draws);
    int next = 0;
    FileNameUtil::setRandom([&] { return draws[next++ % draws.size()]; });
    QTEST(FileNameUtil::birdFileName(m_folder->path(), false).section(QLatin1Char('/'), -1), "first");
    QCOMPARE(next, 50);
}

void Tst_FileNameUtil::birdOrderRepeatsWithTheMillisecond() {
    QSet<QString> names;
    for (int millisecond = 0; millisecond < 200; ++millisecond) {
        QDateTime time = SomeTime.addMSecs(millisecond);
        FileNameUtil::setClock([&] { return time; });
        const QString name = FileNameUtil::birdFileName(m_folder->path(), false);
        time = time.addDays(3); // the same millisecond of another day
        QCOMPARE(FileNameUtil::birdFileName(m_folder->path(), false), name);
        names.insert(name);
    }
    // Only a name that came late can stand at the front, so they are few, but not one alone.
    QVERIFY(names.size() > 3);
}

void Tst_FileNameUtil::birdFindsTheLastFreeName() {
    use(3, QString());
    for (int i = 0; i <= 48; ++i) {
        if (i != 17)
            touch(QStringLiteral("name%1.png").arg(i));
    }
    for (int millisecond = 0; millisecond < 50; ++millisecond) {
        FileNameUtil::setClock([millisecond] { return SomeTime.addMSecs(millisecond); });
        QCOMPARE(FileNameUtil::generateFileName(m_folder->path(), false), path(QStringLiteral("name17")));
    }
    touch(QStringLiteral("name17.png"));
    QCOMPARE(FileNameUtil::birdFileName(m_folder->path(), false), QString());
    QCOMPARE(FileNameUtil::generateFileName(m_folder->path(), false), path(QStringLiteral("Tindra.png")));
    use(3, QString(), 1); // no jpg is taken
    QVERIFY(!FileNameUtil::birdFileName(m_folder->path(), false).isEmpty());
}

void Tst_FileNameUtil::birdNumbered() {
    FileNameUtil::setRandom([] { return 13; });
    QCOMPARE(FileNameUtil::birdFileName(m_folder->path(), true), path(QStringLiteral("name0_1")));
    touch(QStringLiteral("name0.png"));
    QCOMPARE(FileNameUtil::birdFileName(m_folder->path(), true), path(QStringLiteral("name0_1")));
    touch(QStringLiteral("name0_1.png"));
    QCOMPARE(FileNameUtil::birdFileName(m_folder->path(), true), path(QStringLiteral("name1_1")));
    // With a separator at the end of the folder the number is left out.
    QCOMPARE(FileNameUtil::birdFileName(m_folder->path() + QLatin1Char('/'), true),
             path(QStringLiteral("name1")));
}

void Tst_FileNameUtil::birdTwiceInTheListIsOneName() {
    for (int i = 0; i <= 48; ++i) {
        if (i != 40)
            touch(QStringLiteral("name%1.png").arg(i));
    }
    use(3, QString());
    QCOMPARE(FileNameUtil::birdFileName(m_folder->path(), false), path(QStringLiteral("name40")));
    touch(QStringLiteral("name40.png"));
    QCOMPARE(FileNameUtil::birdFileName(m_folder->path(), false), QString());
}

void Tst_FileNameUtil::birdNeedsAFolder() {
    QCOMPARE(FileNameUtil::birdFileName(QString(), true), QString());
}

void Tst_FileNameUtil::uniquePath_data() {
    QTest::addColumn<QString>("existing");
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QString>("expected");
    QTest::newRow("free") << ""
                          << "a.png"
                          << "a.png";
    QTest::newRow("free, many dots") << ""
                                     << "a.b.c.png"
                                     << "a.b.c.png";
    QTest::newRow("taken") << "a.png"
                           << "a.png"
                           << "a (1).png";
    QTest::newRow("taken, loses what stands between dots") << "a.b.png"
                                                           << "a.b.png"
                                                           << "a (1).png";
    QTest::newRow("taken, no suffix") << "a"
                                      << "a"
                                      << "a (1)";
    QTest::newRow("taken, dot at the end") << "a."
                                           << "a."
                                           << "a (1)";
    QTest::newRow("taken, dot at the start") << ".png"
                                             << ".png"
                                             << " (1).png";
    QTest::newRow("other suffix is free") << "a.png"
                                          << "a.jpg"
                                          << "a.jpg";
    QTest::newRow("percent signs") << "100%1.png"
                                   << "100%1.png"
                                   << "100%1 (1).png";
}

void Tst_FileNameUtil::uniquePath() {
    QFETCH(QString, existing);
    QFETCH(QString, asked);
    QFETCH(QString, expected);
    if (!existing.isEmpty())
        touch(existing);
    QCOMPARE(FileNameUtil::uniqueFilePath(path(asked)), path(expected));
    QCOMPARE(FileNameUtil::uniqueFilePath(QString()), QString());
}

void Tst_FileNameUtil::uniquePathCountsUp() {
    // Two automatic saves in one second.
    use(1, QStringLiteral("yyyyMMdd_HHmmss"));
    const QString wanted = FileNameUtil::generateFileName(m_folder->path(), false) + QLatin1Char('.') +
                           FileNameUtil::currentFileSuffix();
    QCOMPARE(FileNameUtil::uniqueFilePath(wanted), path(QStringLiteral("20240102_030405.png")));
    touch(QStringLiteral("20240102_030405.png"));
    QCOMPARE(FileNameUtil::uniqueFilePath(wanted), path(QStringLiteral("20240102_030405 (1).png")));
    touch(QStringLiteral("20240102_030405 (1).png"));
    touch(QStringLiteral("20240102_030405 (3).png"));
    QCOMPARE(FileNameUtil::uniqueFilePath(wanted), path(QStringLiteral("20240102_030405 (2).png")));
}

void Tst_FileNameUtil::uniquePathGivesUp() {
    touch(QStringLiteral("a.png"));
    for (int i = 1; i < 5000; ++i)
        touch(QStringLiteral("a (%1).png").arg(i));
    const QString last = path(QStringLiteral("a (5000).png"));
    QCOMPARE(FileNameUtil::uniqueFilePath(path(QStringLiteral("a.png"))), last);
    touch(QStringLiteral("a (5000).png"));
    QCOMPARE(FileNameUtil::uniqueFilePath(path(QStringLiteral("a.png"))), last);
}

void Tst_FileNameUtil::batchNumbersFromOne() {
    use(1, QStringLiteral("yyyyMMdd"), 1);
    const QString base = path(QStringLiteral("20240102"));
    QStringList used;
    for (int i = 1; i <= 3; ++i) {
        used.append(FileNameUtil::batchFileName(base, used));
        QCOMPARE(used.last(), path(QStringLiteral("20240102_%1.jpg").arg(i)));
    }
}

void Tst_FileNameUtil::batchPassesOverUsedAndExisting() {
    use(0, QStringLiteral("own"));
    touch(QStringLiteral("own_2.png"));
    const QString base = path(QStringLiteral("own"));
    QCOMPARE(FileNameUtil::batchFileName(base, {path(QStringLiteral("own_1.png"))}),
             path(QStringLiteral("own_3.png")));
    // The comparison counts case.
    QCOMPARE(FileNameUtil::batchFileName(base, {path(QStringLiteral("OWN_1.png"))}),
             path(QStringLiteral("own_1.png")));
}

void Tst_FileNameUtil::batchSerialTakesTheFolderOfTheBase() {
    use(2, QString());
    touch(QStringLiteral("0001.png"));
    FileNameUtil::setBatchWait([] { QFAIL("there is nothing to wait for"); });
    QCOMPARE(FileNameUtil::batchFileName(path(QStringLiteral("0007")), {}), path(QStringLiteral("0002.png")));
}

void Tst_FileNameUtil::batchSerialWaitsForTheWorker() {
    use(2, QString());
    const QString base = path(QStringLiteral("0001"));
    const QString first = FileNameUtil::batchFileName(base, {});
    QCOMPARE(first, path(QStringLiteral("0001.png")));
    int waits = 0;
    FileNameUtil::setBatchWait([&] {
        if (++waits == 4)
            touch(QStringLiteral("0001.png"));
    });
    QCOMPARE(FileNameUtil::batchFileName(base, {first}), path(QStringLiteral("0002.png")));
    QCOMPARE(waits, 4);
}

void Tst_FileNameUtil::batchWithOwnEmptyTextIsSerial() {
    use(0, QString(), 2);
    QCOMPARE(FileNameUtil::batchFileName(path(QStringLiteral("0001")), {}), path(QStringLiteral("0001.bmp")));
}

void Tst_FileNameUtil::folderOrDefault() {
    QCOMPARE(FileNameUtil::folderOrDefault(QStringLiteral("/f")), QStringLiteral("/f"));
    QCOMPARE(FileNameUtil::folderOrDefault(QString()),
             QStandardPaths::standardLocations(QStandardPaths::PicturesLocation).first());
}

QTEST_GUILESS_MAIN(Tst_FileNameUtil)
#include "tst_filenameutil.moc"
