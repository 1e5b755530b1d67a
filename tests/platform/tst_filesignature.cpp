#include "platform/filesignature.h"
#include "platform/linux/certificatechain.h"

#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <openssl/pem.h>
#include <sys/stat.h>

#include <cstdio>
#include <memory>

using platform::Trust;

namespace {

QString fixture(const char *name) {
    return QStringLiteral(TINDRA_SIGNATURES "/") + QLatin1String(name);
}

QByteArray bytesOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList namesOf(const platform::SignatureCheck &check) {
    QStringList names;
    for (const SignerInfo &signer : check.signers)
        names.append(signer.signerName);
    return names;
}

// Places in the fixtures, which are PE32+ with their headers at 64.
constexpr int CheckSum = 64 + 24 + 64;
constexpr int CertificateEntry = 64 + 24 + 112 + 4 * 8;
constexpr int ImageEnd = 1024;

/// Signatures that hold, by makers whose time is over, with stamps that say nothing.
struct SpoiltStamp {
    const char *flaw;
    const char *file;
};
constexpr SpoiltStamp SpoiltStamps[] = {
    {"counter signature that was changed", "counterchanged.dll"},
    {"counter signature of another signature", "counterother.dll"},
    {"counter signature with a digest that can be forged", "counterweak.dll"},
    {"counter signature of one who vouches for himself", "counterself.dll"},
    {"counter signature of a maker", "countermaker.dll"},
    {"token that was changed", "tokenchanged.dll"},
    {"token of another signature", "tokenother.dll"},
    {"token over a digest that can be forged", "tokenweak.dll"},
    {"token signed with a digest that can be forged", "tokenweaklysigned.dll"},
    {"token of one who vouches for himself", "tokenself.dll"},
    {"token of a maker", "tokenmaker.dll"},
};

/// When the fixtures say that they were signed.
const QDateTime June2020(QDate(2020, 6, 1), QTime(0, 0), Qt::UTC);

} // namespace

Q_DECLARE_METATYPE(platform::Trust)

class Tst_FileSignature : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void verdicts_data();
    void verdicts();
    void theSystemTrustsNobodyHere_data();
    void theSystemTrustsNobodyHere();
    void theSystemsOwnRootsAreKnown();
    void signerIsDescribed();
    void programNameOfTwoByteCharacters();
    void timeStampIsRead_data();
    void timeStampIsRead();
    void spoiltTimeStampIsNotRead_data();
    void spoiltTimeStampIsNotRead();
    void bothSignersAreListed();
    void changedByteIsNoticed();
    void changedTableNeverMakesAnotherSigner();
    void tamperedTables_data();
    void tamperedTables();
    void shortenedFilesAreRefused();
    void sharedObjectHasASignatureBesideIt();
    void longSignatureIsNotRead();
    void pipesAreNotWaitedFor();
    void missingFileFails();

private:
    void trustTheTestRoot();
    platform::SignatureCheck check(const QByteArray &bytes, bool cheap = false) const;

    QTemporaryDir m_folder;
};

void Tst_FileSignature::initTestCase() {
    trustTheTestRoot();
    // The first use of the library in a process decides whether it reads its settings. These would end every
    // use of it.
    QFile settings(m_folder.filePath(QStringLiteral("settings")));
    QVERIFY(settings.open(QIODevice::WriteOnly));
    settings.write("openssl_conf = all\nconfig_diagnostics = 1\n[all]\nproviders = modules\n"
                   "[modules]\nown = own\n[own]\nmodule = /nowhere.so\nactivate = 1\n");
    settings.close();
    qputenv("OPENSSL_CONF", QFile::encodeName(settings.fileName()));
    QCOMPARE(platform::checkFileSignature(fixture("norvane.dll"), false).trust, Trust::Good);
    qunsetenv("OPENSSL_CONF");
}

void Tst_FileSignature::trustTheTestRoot() {
    platform::setTrustedRoots(fixture("root.pem"));
}

platform::SignatureCheck Tst_FileSignature::check(const QByteArray &bytes, bool cheap) const {
    const QString path = m_folder.filePath(QStringLiteral("file.dll"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write");
    file.close();
    return platform::checkFileSignature(path, cheap);
}

void Tst_FileSignature::verdicts_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<Trust>("full");
    QTest::addColumn<Trust>("cheap");
    QTest::newRow("signed") << QByteArray("norvane.dll") << Trust::Good << Trust::Good;
    QTest::newRow("digest of 384 bits") << QByteArray("quillgate.dll") << Trust::Good << Trust::Good;
    QTest::newRow("digest of 512 bits") << QByteArray("vellumark.dll") << Trust::Good << Trust::Good;
    QTest::newRow("two signatures") << QByteArray("nested.dll") << Trust::Good << Trust::Good;
    QTest::newRow("unsigned") << QByteArray("unsigned.dll") << Trust::NoSignature << Trust::NoSignature;
    QTest::newRow("digest that can be forged")
        << QByteArray("weak.dll") << Trust::BadCertificateTable << Trust::BadCertificateTable;
    QTest::newRow("vouches for itself") << QByteArray("self.dll") << Trust::UntrustedRoot << Trust::Good;
    QTest::newRow("certificate for servers") << QByteArray("tls.dll") << Trust::WrongUsage << Trust::Good;
    QTest::newRow("certificate for nothing") << QByteArray("plain.dll") << Trust::WrongUsage << Trust::Good;
    QTest::newRow("expired") << QByteArray("expired.dll") << Trust::Expired << Trust::Good;
    QTest::newRow("expired, stamped in time") << QByteArray("stamped.dll") << Trust::Good << Trust::Good;
    QTest::newRow("expired, stamped too late")
        << QByteArray("stampedlate.dll") << Trust::Expired << Trust::Good;
    QTest::newRow("expired, stamped in time in the old form")
        << QByteArray("counterstamped.dll") << Trust::Good << Trust::Good;
    QTest::newRow("expired, stamped in time with a bare token")
        << QByteArray("tokenstamped.dll") << Trust::Good << Trust::Good;
    for (const SpoiltStamp &stamp : SpoiltStamps)
        QTest::addRow("expired, %s", stamp.flaw) << QByteArray(stamp.file) << Trust::Expired << Trust::Good;
    QTest::newRow("certificate that can be forged")
        << QByteArray("weakchain.dll") << Trust::UntrustedRoot << Trust::Good;
    QTest::newRow("certificate for encrypting")
        << QByteArray("encipher.dll") << Trust::WrongUsage << Trust::Good;
    QTest::newRow("through an authority") << QByteArray("chained.dll") << Trust::Good << Trust::Good;
    QTest::newRow("through an authority for anything")
        << QByteArray("chainedany.dll") << Trust::Good << Trust::Good;
    QTest::newRow("through an authority for servers")
        << QByteArray("chainedserver.dll") << Trust::WrongUsage << Trust::Good;
    QTest::newRow("vouched for by another maker")
        << QByteArray("chainedmaker.dll") << Trust::UntrustedRoot << Trust::Good;
    QTest::newRow("no executable") << QByteArray("root.pem") << Trust::NotAnExecutable
                                   << Trust::NotAnExecutable;
    QTest::newRow("shared object without a signature")
        << QByteArray("signed.so") << Trust::NoSignature << Trust::NoSignature;
}

void Tst_FileSignature::verdicts() {
    QFETCH(QByteArray, file);
    QTEST(platform::checkFileSignature(fixture(file.constData()), false).trust, "full");
    QTEST(platform::checkFileSignature(fixture(file.constData()), true).trust, "cheap");
}

void Tst_FileSignature::theSystemTrustsNobodyHere_data() {
    QTest::addColumn<bool>("hasVariables");
    QTest::newRow("as it is") << false;
    QTest::newRow("whatever the environment says") << true;
}

void Tst_FileSignature::theSystemTrustsNobodyHere() {
    QFETCH(bool, hasVariables);
    if (hasVariables) {
        qputenv("SSL_CERT_FILE", QFile::encodeName(fixture("root.pem")));
        qputenv("SSL_CERT_DIR", QFile::encodeName(fixture("")));
    }
    platform::setTrustedRoots(QString());
    const platform::SignatureCheck check = platform::checkFileSignature(fixture("norvane.dll"), false);
    trustTheTestRoot();
    qunsetenv("SSL_CERT_FILE");
    qunsetenv("SSL_CERT_DIR");
    QCOMPARE(check.trust, Trust::UntrustedRoot);
    QCOMPARE(namesOf(check), QStringList());
}

void Tst_FileSignature::theSystemsOwnRootsAreKnown() {
    const std::unique_ptr<FILE, int (*)(FILE *)> file(std::fopen("/etc/ssl/certs/ca-certificates.crt", "r"),
                                                      std::fclose);
    const std::unique_ptr<X509, void (*)(X509 *)> root(
        file ? PEM_read_X509(file.get(), nullptr, nullptr, nullptr) : nullptr, X509_free);
    if (!root) {
        QVERIFY2(qgetenv("CI") != "true", "the test of the system's roots needs the package ca-certificates");
        QSKIP("this system has no roots");
    }
    const auto check = [&] {
        return certificatechain::check(root.get(), nullptr, certificatechain::Purpose::CodeSigning,
                                       QDateTime());
    };
    QCOMPARE(check(), Trust::UntrustedRoot); // by the root of the tests alone
    platform::setTrustedRoots(QString());
    const Trust trust = check();
    trustTheTestRoot();
    QVERIFY(trust != Trust::UntrustedRoot); // trusted, though it signs no code itself
    QVERIFY(trust != Trust::Failed);
}

void Tst_FileSignature::signerIsDescribed() {
    const platform::SignatureCheck check = platform::checkFileSignature(fixture("norvane.dll"), false);
    QCOMPARE(check.signers.size(), 1);
    const SignerInfo signer = check.signers.first();
    QCOMPARE(signer.signerName, QStringLiteral("Norvane Corp."));
    QCOMPARE(signer.issuerName, QStringLiteral("Tindra test root"));
    QCOMPARE(signer.programName, QStringLiteral("Tindra plug-in"));
    QCOMPARE(signer.publisherLink, QStringLiteral("https://www.norvane.example/"));
    QCOMPARE(signer.signingTime, June2020);
    QCOMPARE(signer.counterSignerName, QString());
    QVERIFY(!signer.counterSigningTime.isValid());
}

void Tst_FileSignature::programNameOfTwoByteCharacters() {
    platform::SignedFile file;
    file.isRead = file.hasSignatureFile = true;
    file.bytes = bytesOf(fixture("signed.so"));
    file.signature = bytesOf(fixture("named.p7s"));
    const SignerInfo signer = platform::checkSignature(file, false).signers.value(0);
    QCOMPARE(signer.signerName, QStringLiteral("Norvane Corp."));
    QCOMPARE(signer.programName, QStringLiteral("틴드라 플러그인"));
    QCOMPARE(signer.signingTime, June2020);
}

void Tst_FileSignature::timeStampIsRead_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("token") << QByteArray("stamped.dll");
    QTest::newRow("bare token") << QByteArray("tokenstamped.dll");
    QTest::newRow("counter signature") << QByteArray("counterstamped.dll");
}

void Tst_FileSignature::timeStampIsRead() {
    QFETCH(QByteArray, file);
    const SignerInfo signer = platform::checkFileSignature(fixture(file.constData()), false).signers.value(0);
    QCOMPARE(signer.counterSignerName, QStringLiteral("Tindra test time"));
    QCOMPARE(signer.counterSigningTime, June2020);
}

void Tst_FileSignature::spoiltTimeStampIsNotRead_data() {
    QTest::addColumn<QByteArray>("file");
    for (const SpoiltStamp &stamp : SpoiltStamps)
        QTest::newRow(stamp.flaw) << QByteArray(stamp.file);
}

void Tst_FileSignature::spoiltTimeStampIsNotRead() {
    QFETCH(QByteArray, file);
    // The rest of the signature holds, so the signer is listed.
    const SignerInfo signer = platform::checkFileSignature(fixture(file.constData()), true).signers.value(0);
    QCOMPARE(signer.signerName, QStringLiteral("Norvane Corp."));
    QCOMPARE(signer.counterSignerName, QString());
    QVERIFY(!signer.counterSigningTime.isValid());
}

void Tst_FileSignature::bothSignersAreListed() {
    QCOMPARE(namesOf(platform::checkFileSignature(fixture("nested.dll"), false)),
             (QStringList{QStringLiteral("Other Corp."), QStringLiteral("Norvane Corp.")}));
}

void Tst_FileSignature::changedByteIsNoticed() {
    const QByteArray good = bytesOf(fixture("norvane.dll"));
    for (int place = 0; place < ImageEnd; ++place) {
        QByteArray changed = good;
        changed[place] = static_cast<char>(changed[place] ^ 0x10);
        const bool isCheckSum = place >= CheckSum && place < CheckSum + 4;
        QVERIFY2((check(changed, true).trust == Trust::Good) == isCheckSum,
                 qPrintable(QString::number(place)));
    }
}

void Tst_FileSignature::changedTableNeverMakesAnotherSigner() {
    const QByteArray good = bytesOf(fixture("norvane.dll"));
    constexpr int Step = 3; // each byte costs a check in full
    int refused = 0;
    for (int place = ImageEnd; place < good.size(); place += Step) {
        QByteArray changed = good;
        changed[place] = static_cast<char>(changed[place] ^ 0x01);
        const platform::SignatureCheck result = check(changed);
        refused += result.trust != Trust::Good;
        // A version number that nobody reads may change; who signed may not.
        if (result.trust == Trust::Good)
            QCOMPARE(namesOf(result), QStringList{QStringLiteral("Norvane Corp.")});
        else
            QCOMPARE(namesOf(result), QStringList());
    }
    QVERIFY(refused > (good.size() - ImageEnd) / Step * 9 / 10);
}

void Tst_FileSignature::tamperedTables_data() {
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray good = bytesOf(fixture("norvane.dll"));
    const auto with32 = [&](QByteArray bytes, int place, quint32 value) {
        qToLittleEndian<quint32>(value, bytes.data() + place);
        return bytes;
    };
    const auto tableSize = quint32(good.size() - ImageEnd);
    QTest::newRow("bytes behind the table") << good + QByteArray(8, 'x');
    QTest::newRow("zeros behind the table") << good + QByteArray(8, '\0');
    QTest::newRow("data behind the signature, inside the table") << with32(
        with32(good + QByteArray(8, 'x'), CertificateEntry + 4, tableSize + 8), ImageEnd, tableSize + 8);
    QTest::newRow("much room behind the signature") << with32(
        with32(good + QByteArray(64, '\0'), CertificateEntry + 4, tableSize + 64), ImageEnd, tableSize + 64);
    QTest::newRow("table beyond the file") << with32(good, CertificateEntry + 4, tableSize + 8);
    QTest::newRow("table of 4 GB") << with32(good, CertificateEntry + 4, 0xFFFFFFF8);
    QTest::newRow("table before the section") << with32(good, CertificateEntry, 512);
    QTest::newRow("table at zero") << with32(good, CertificateEntry, 0);
    QTest::newRow("entry of no length") << with32(good, ImageEnd, 0);
    QTest::newRow("entry longer than the table") << with32(good, ImageEnd, tableSize + 1);
    QTest::newRow("entry of 4 GB") << with32(good, ImageEnd, 0xFFFFFFFF);
    QTest::newRow("entry of another kind") << with32(good, ImageEnd + 4, 0x00010200);
    QTest::newRow("old entry") << with32(good, ImageEnd + 4, 0x00020100);
    // What is loaded would lie where nothing is digested.
    constexpr int SectionSize = 64 + 24 + 240 + 16;
    QTest::newRow("section reaches into the table") << with32(good, SectionSize, 1024);
    QTest::newRow("header far away") << with32(good, 0x3C, 0xFFFFFFF0);
    QTest::newRow("signature of another file")
        << bytesOf(fixture("unsigned.dll")).replace(600, 1, "!") + good.mid(ImageEnd);
}

void Tst_FileSignature::tamperedTables() {
    QFETCH(QByteArray, bytes);
    const platform::SignatureCheck result = check(bytes, true);
    QVERIFY(result.trust != Trust::Good);
    QVERIFY(static_cast<qint32>(result.trust) < 0);
    QVERIFY(result.signers.isEmpty());
}

void Tst_FileSignature::shortenedFilesAreRefused() {
    const QByteArray good = bytesOf(fixture("norvane.dll"));
    for (int size = 0; size < good.size(); size += size < 400 ? 1 : 37)
        QVERIFY2(check(good.left(size), true).trust != Trust::Good, qPrintable(QString::number(size)));
}

void Tst_FileSignature::sharedObjectHasASignatureBesideIt() {
    const QString path = m_folder.filePath(QStringLiteral("plugin.so"));
    const QString signature = path + QStringLiteral(".p7s");
    QVERIFY(QFile::copy(fixture("signed.so"), path));
    QVERIFY(QFile::copy(fixture("norvane.p7s"), signature));
    platform::SignatureCheck result = platform::checkFileSignature(path, false);
    QCOMPARE(result.trust, Trust::Good);
    QCOMPARE(namesOf(result), QStringList{QStringLiteral("Norvane Corp.")});

    const auto rewrite = [](const QString &name, const QByteArray &bytes) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
    };
    const QByteArray good = bytesOf(fixture("norvane.p7s"));
    rewrite(signature, good + '\0');
    QCOMPARE(platform::checkFileSignature(path, false).trust, Trust::BadCertificateTable);
    rewrite(signature, "no signature");
    QCOMPARE(platform::checkFileSignature(path, false).trust, Trust::BadCertificateTable);
    // An executable's signature says nothing of this file.
    rewrite(signature, bytesOf(fixture("norvane.dll")).mid(ImageEnd + 8));
    QVERIFY(platform::checkFileSignature(path, false).trust != Trust::Good);
    rewrite(signature, good);
    QCOMPARE(platform::checkFileSignature(path, false).trust, Trust::Good);
    rewrite(path, bytesOf(path) + '\n');
    QCOMPARE(platform::checkFileSignature(path, false).trust, Trust::BadDigest);
}

void Tst_FileSignature::longSignatureIsNotRead() {
    const QString path = m_folder.filePath(QStringLiteral("long.so"));
    QVERIFY(QFile::copy(fixture("signed.so"), path));
    QFile signature(path + QStringLiteral(".p7s"));
    QVERIFY(signature.open(QIODevice::WriteOnly));
    constexpr qint64 Most = 1024 * 1024;
    QVERIFY(signature.resize(Most));
    QCOMPARE(platform::readSignedFile(path).signature.size(), int(Most));
    QVERIFY(signature.resize(Most + 1));
    const platform::SignedFile file = platform::readSignedFile(path);
    QVERIFY(file.hasSignatureFile);
    QCOMPARE(file.signature.size(), 0);
}

void Tst_FileSignature::pipesAreNotWaitedFor() {
    // Nobody ever opens the other end.
    const QString path = m_folder.filePath(QStringLiteral("piped.so"));
    QVERIFY(QFile::copy(fixture("signed.so"), path));
    const QString pipe = path + QStringLiteral(".p7s");
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QCOMPARE(platform::checkFileSignature(path, false).trust, Trust::BadCertificateTable);
    QCOMPARE(platform::checkFileSignature(pipe, false).trust, Trust::Failed);
}

void Tst_FileSignature::missingFileFails() {
    QCOMPARE(platform::checkFileSignature(m_folder.filePath(QStringLiteral("none")), false).trust,
             Trust::Failed);
    QCOMPARE(platform::checkFileSignature(m_folder.path(), false).trust, Trust::Failed);
    QCOMPARE(platform::checkFileSignature(QStringLiteral("/dev/zero"), false).trust, Trust::Failed);
}

QTEST_GUILESS_MAIN(Tst_FileSignature)
#include "tst_filesignature.moc"
