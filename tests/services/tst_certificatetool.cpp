#include "platform/filesignature.h"
#include "services/certificatetool.h"

#include <QTemporaryDir>
#include <QtTest>

using CertificateTool::FileObejct;
using CertificateTool::Verifier;

namespace {

QString fixture(const char *name) {
    return QStringLiteral(TINDRA_SIGNATURES "/") + QLatin1String(name);
}

constexpr qint32 Failed = qint32(0x80004005);
constexpr qint32 NoSignature = qint32(0x800B0100);
constexpr qint32 UntrustedRoot = qint32(0x800B0109);

} // namespace

class Tst_CertificateTool : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void filesForUse_data();
    void filesForUse();
    void suffixDecidesFirst_data();
    void suffixDecidesFirst();
    void sharedObjectWithItsSignature();
    void codesOfTheVerifier_data();
    void codesOfTheVerifier();
    void timeStampersNameCounts();
    void nobodyStampsWithABorrowedName_data();
    void nobodyStampsWithABorrowedName();
    void signersAreCompared_data();
    void signersAreCompared();
    void fileWithoutAPathFails();
};

void Tst_CertificateTool::initTestCase() {
    platform::setTrustedRoots(fixture("root.pem"));
}

void Tst_CertificateTool::filesForUse_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("full");
    QTest::addColumn<bool>("cheap");
    QTest::newRow("first maker") << QByteArray("norvane.dll") << true << true;
    QTest::newRow("second maker") << QByteArray("quillgate.dll") << true << true;
    QTest::newRow("third maker") << QByteArray("vellumark.dll") << true << true;
    QTest::newRow("anybody else") << QByteArray("other.dll") << false << false;
    QTest::newRow("only the second signature matches") << QByteArray("nested.dll") << true << true;
    QTest::newRow("unsigned") << QByteArray("unsigned.dll") << false << false;
    QTest::newRow("no root") << QByteArray("self.dll") << false << true;
    QTest::newRow("expired") << QByteArray("expired.dll") << false << true;
    QTest::newRow("not there") << QByteArray("nothing.dll") << false << false;
}

void Tst_CertificateTool::filesForUse() {
    QFETCH(QByteArray, file);
    QTEST(verifyFileSignature(fixture(file.constData()), true), "full");
    QTEST(verifyFileSignature(fixture(file.constData()), false), "cheap");
}

void Tst_CertificateTool::suffixDecidesFirst_data() {
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<bool>("allowed");
    for (const char *suffix : {"exe", "dll", "qve", "qvc", "DLL", "Exe", "so"})
        QTest::newRow(suffix) << QString::fromLatin1(suffix) << true;
    for (const char *suffix : {"txt", "dl", "dllx", "", "so.1", "ocx"})
        QTest::newRow(*suffix ? suffix : "none") << QString::fromLatin1(suffix) << false;
}

void Tst_CertificateTool::suffixDecidesFirst() {
    QFETCH(QString, suffix);
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("file.") + suffix);
    QVERIFY(QFile::copy(fixture("norvane.dll"), path));
    QTEST(verifyFileSignature(path, true), "allowed");
}

void Tst_CertificateTool::sharedObjectWithItsSignature() {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("plugin.so"));
    QVERIFY(QFile::copy(fixture("signed.so"), path));
    QVERIFY(!verifyFileSignature(path, true));
    QVERIFY(QFile::copy(fixture("other.p7s"), path + QStringLiteral(".p7s")));
    QVERIFY(!verifyFileSignature(path, true));
    QVERIFY(QFile::remove(path + QStringLiteral(".p7s")));
    QVERIFY(QFile::copy(fixture("norvane.p7s"), path + QStringLiteral(".p7s")));
    QVERIFY(verifyFileSignature(path, true));
}

void Tst_CertificateTool::codesOfTheVerifier_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("accepted");
    QTest::addColumn<uint>("flags");
    QTest::addColumn<int>("code");
    const QStringList norvane{QStringLiteral("Norvane Corp.")};
    QTest::newRow("match") << QByteArray("norvane.dll") << norvane << 2U << 0;
    QTest::newRow("other case is another name")
        << QByteArray("norvane.dll") << QStringList{QStringLiteral("norvane corp.")} << 2U << Failed;
    QTest::newRow("no match") << QByteArray("other.dll") << norvane << 2U << Failed;
    QTest::newRow("nobody asked for a match") << QByteArray("other.dll") << norvane << 0U << 0;
    QTest::newRow("nobody to match") << QByteArray("other.dll") << QStringList() << 2U << 0;
    QTest::newRow("no root, in full") << QByteArray("self.dll") << norvane << 2U << UntrustedRoot;
    QTest::newRow("no root, cheap") << QByteArray("self.dll") << norvane << 3U << 0;
    QTest::newRow("unsigned") << QByteArray("unsigned.dll") << norvane << 2U << NoSignature;
    QTest::newRow("not there") << QByteArray("nothing.dll") << norvane << 2U << Failed;
}

void Tst_CertificateTool::codesOfTheVerifier() {
    QFETCH(QByteArray, file);
    QFETCH(QStringList, accepted);
    QFETCH(uint, flags);
    Verifier verifier;
    for (const QString &name : qAsConst(accepted))
        verifier.addSigner(name);
    QTEST(int(verifier.verify(FileObejct(fixture(file.constData())), flags)), "code");
}

void Tst_CertificateTool::timeStampersNameCounts() {
    Verifier verifier;
    verifier.addSigner(QStringLiteral("Tindra test time"));
    QCOMPARE(verifier.verify(FileObejct(fixture("stamped.dll")), 2), 0);
    QCOMPARE(verifier.verify(FileObejct(fixture("counterstamped.dll")), 2), 0);
    // One that does not hold names nobody, not even where nobody asks for the certificates.
    QCOMPARE(verifier.verify(FileObejct(fixture("counterchanged.dll")), 3), Failed);
    QCOMPARE(verifier.verify(FileObejct(fixture("counterother.dll")), 3), Failed);
    QCOMPARE(verifier.verify(FileObejct(fixture("norvane.dll")), 2), Failed);
}

void Tst_CertificateTool::nobodyStampsWithABorrowedName_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("name");
    const QString himself = QStringLiteral("Quillgate Corp.");
    const QString maker = QStringLiteral("Vellumark Corp.");
    QTest::newRow("counter signature, vouches for himself") << QByteArray("counterself.dll") << himself;
    QTest::newRow("counter signature of a maker") << QByteArray("countermaker.dll") << maker;
    QTest::newRow("token, vouches for himself") << QByteArray("tokenself.dll") << himself;
    QTest::newRow("token of a maker") << QByteArray("tokenmaker.dll") << maker;
}

void Tst_CertificateTool::nobodyStampsWithABorrowedName() {
    QFETCH(QByteArray, file);
    QFETCH(QString, name);
    Verifier verifier;
    verifier.addSigner(name);
    QCOMPARE(verifier.verify(FileObejct(fixture(file.constData())), 3), Failed);
}

void Tst_CertificateTool::signersAreCompared_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("ignoreCase");
    QTest::addColumn<int>("order");
    QTest::newRow("same") << QByteArray("norvane.dll") << QStringLiteral("Norvane Corp.") << false << 0;
    QTest::newRow("other case") << QByteArray("norvane.dll") << QStringLiteral("norvane corp.") << false
                                << -1;
    QTest::newRow("case ignored") << QByteArray("norvane.dll") << QStringLiteral("NORVANE corp.") << true
                                  << 0;
    QTest::newRow("before") << QByteArray("norvane.dll") << QStringLiteral("Other") << false << -1;
    QTest::newRow("behind") << QByteArray("norvane.dll") << QStringLiteral("Apple") << false << 1;
    QTest::newRow("first of two") << QByteArray("nested.dll") << QStringLiteral("Other Corp.") << false << 0;
    QTest::newRow("no name") << QByteArray("unsigned.dll") << QStringLiteral("x") << false << -2;
    QTest::newRow("no file") << QByteArray("nothing.dll") << QStringLiteral("x") << false << -2;
}

void Tst_CertificateTool::signersAreCompared() {
    QFETCH(QByteArray, file);
    QFETCH(QString, expected);
    QFETCH(bool, ignoreCase);
    QTEST(Verifier::compareSigner(fixture(file.constData()), expected, ignoreCase), "order");
}

void Tst_CertificateTool::fileWithoutAPathFails() {
    QVERIFY(!FileObejct().isSet());
    QCOMPARE(Verifier().verify(FileObejct(), 0), Failed);
    QCOMPARE(FileObejct(QStringLiteral("a")).data(), QStringLiteral("a"));
}

QTEST_GUILESS_MAIN(Tst_CertificateTool)
#include "tst_certificatetool.moc"
