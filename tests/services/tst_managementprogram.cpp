#include "services/managementprogram.h"
#include "support/literals.h"
#include "support/machinesettings.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const auto Manager = "BrindleManager"_qs;
const auto UsualPlace = "/opt/Norvane/BrindleManager"_qs;

} // namespace

class Tst_ManagementProgram : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup() { m_settings.reset(); }
    void isWhereTheMachineSays();
    void isInTheUsualPlaceOtherwise_data();
    void isInTheUsualPlaceOtherwise();
    void usersOwnSettingsDoNotCount();
    void librariesLieBesideIt();
    void isMissedBesideAnotherProduct_data();
    void isMissedBesideAnotherProduct();
    void refreshesTheUser();
    void waitsNoLongerThanTold();
    void missingProgramIsSkipped_data();
    void missingProgramIsSkipped();

private:
    /// Puts a program there that runs those lines of a shell script.
    void install(const QByteArray &lines, bool isExecutable = true,
                 const QByteArray &interpreter = "/bin/sh") const;
    QByteArray written() const;

    std::unique_ptr<MachineSettings> m_settings;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void Tst_ManagementProgram::init() {
    m_settings = std::make_unique<MachineSettings>();
    m_folder = std::make_unique<QTemporaryDir>();
}

void Tst_ManagementProgram::install(const QByteArray &lines, bool isExecutable,
                                    const QByteArray &interpreter) const {
    m_settings->set(Manager, "RootDir"_qs, m_folder->path());
    QFile program(m_folder->filePath(Manager));
    QVERIFY(program.open(QIODevice::WriteOnly));
    program.write("#!" + interpreter + "\ncd \"$(dirname \"$0\")\"\n" + lines + "\n");
    if (isExecutable)
        program.setPermissions(program.permissions() | QFile::ExeOwner);
}

QByteArray Tst_ManagementProgram::written() const {
    QFile file(m_folder->filePath("out"_qs));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void Tst_ManagementProgram::isWhereTheMachineSays() {
    m_settings->set(Manager, "RootDir"_qs, m_folder->path());
    QCOMPARE(ManagementProgram::folder(), m_folder->path());
    m_settings->set(Manager, "RootDir"_qs, m_folder->path() + QLatin1Char('/'));
    QCOMPARE(ManagementProgram::folder(), m_folder->path());
}

void Tst_ManagementProgram::isInTheUsualPlaceOtherwise_data() {
    QTest::addColumn<QString>("told");
    QTest::newRow("nothing told") << QString();
    QTest::newRow("no such folder") << "/nonexistent/BrindleManager"_qs;
    QTest::newRow("a file") << "/etc/passwd"_qs;
    QTest::newRow("a folder that follows the working directory") << "here"_qs;
}

void Tst_ManagementProgram::isInTheUsualPlaceOtherwise() {
    QFETCH(QString, told);
    if (!told.isEmpty())
        m_settings->set(Manager, "RootDir"_qs, told);
    QVERIFY(QDir(m_folder->path()).mkpath("here"_qs));
    QVERIFY(QDir::setCurrent(m_folder->path()));
    QCOMPARE(ManagementProgram::folder(), UsualPlace);
}

void Tst_ManagementProgram::usersOwnSettingsDoNotCount() {
    const QString path = qEnvironmentVariable("XDG_CONFIG_HOME") + "/Norvane/BrindleManager.conf"_qs;
    QSettings(path, QSettings::IniFormat).setValue("RootDir"_qs, m_folder->path());
    QCOMPARE(ManagementProgram::folder(), UsualPlace);
    QVERIFY(QFile::remove(path));
}

void Tst_ManagementProgram::librariesLieBesideIt() {
    QCOMPARE(ManagementProgram::libraryPath("kilnworks"_qs), UsualPlace + "/kilnworks.so"_qs);
    m_settings->set(Manager, "RootDir"_qs, m_folder->path());
    QCOMPARE(ManagementProgram::libraryPath("passkin"_qs), m_folder->path() + "/passkin.so"_qs);
}

void Tst_ManagementProgram::isMissedBesideAnotherProduct_data() {
    QTest::addColumn<QString>("product");
    QTest::addColumn<QString>("value"); // of the management program
    QTest::addColumn<bool>("isMissed");
    const QString none;
    QTest::newRow("nothing installed") << none << none << false;
    QTest::newRow("first product") << "BrindleNotes"_qs << none << true;
    QTest::newRow("second product") << "BrindleBoard"_qs << none << true;
    QTest::newRow("third product") << "BrindlePaper"_qs << none << true;
    QTest::newRow("some other program") << "BrindleOther"_qs << none << false;
    QTest::newRow("this product") << "Tindra"_qs << none << false;
    QTest::newRow("both") << "BrindleNotes"_qs
                          << "Version"_qs << false;
    QTest::newRow("a place but no version") << "BrindleNotes"_qs
                                            << "RootDir"_qs << true;
}

void Tst_ManagementProgram::isMissedBesideAnotherProduct() {
    QFETCH(QString, product);
    QFETCH(QString, value);
    if (!product.isEmpty())
        m_settings->set(product, "Version"_qs, "2.0"_qs);
    if (!value.isEmpty())
        m_settings->set(Manager, value, "1.0"_qs);
    QTEST(ManagementProgram::isMissed(), "isMissed");
}

void Tst_ManagementProgram::refreshesTheUser() {
    install("echo \"$# $*\" >out");
    QVERIFY(ManagementProgram::refreshUser(10000));
    QCOMPARE(written(), QByteArray("1 --refresh-user\n"));
}

void Tst_ManagementProgram::waitsNoLongerThanTold() {
    install("head -c 300000 /dev/zero\nwhile [ ! -e go ]; do sleep 0.05; done\necho done >out");
    QVERIFY(!ManagementProgram::refreshUser(100));
    QCOMPARE(written(), QByteArray());
    // It goes on by itself.
    QVERIFY(QFile(m_folder->filePath("go"_qs)).open(QIODevice::WriteOnly));
    QTRY_COMPARE(written(), QByteArray("done\n"));
}

void Tst_ManagementProgram::missingProgramIsSkipped_data() {
    QTest::addColumn<QByteArray>("interpreter");
    QTest::addColumn<bool>("isExecutable");
    QTest::newRow("missing") << QByteArray() << false;
    QTest::newRow("may not be run") << QByteArray("/bin/sh") << false;
    QTest::newRow("does not start") << QByteArray("/nonexistent/sh") << true;
}

void Tst_ManagementProgram::missingProgramIsSkipped() {
    QFETCH(QByteArray, interpreter);
    QFETCH(bool, isExecutable);
    m_settings->set(Manager, "RootDir"_qs, m_folder->path());
    if (!interpreter.isEmpty())
        install("echo run >out", isExecutable, interpreter);
    QVERIFY(!ManagementProgram::refreshUser(10000));
    QCOMPARE(written(), QByteArray());
}

QTEST_GUILESS_MAIN(Tst_ManagementProgram)
#include "tst_managementprogram.moc"
