#include "services/accountlibrary.h"
#include "support/literals.h"
#include "support/machinesettings.h"
#include "support/substitutelibraries.h"

#include <QtTest>

class Tst_AccountLibrary : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void forwardsEachCall_data();
    void forwardsEachCall();
    void loadsForOneCallOnly();
    void withoutTheLibraryNothingIsKnown_data();
    void withoutTheLibraryNothingIsKnown();

private:
    std::unique_ptr<MachineSettings> m_settings;
    std::unique_ptr<SubstituteLibraries> m_libraries;
};

namespace {

struct Forwarder {
    const char *name;
    std::function<QVariant()> call;
    QVariant answer;
    const char *recorded;
    QVariant without; ///< the library
};

QVector<Forwarder> forwarders() {
    using namespace AccountLibrary;
    return {
        {"SignIn", signIn, true, "SignIn", false},
        {"SignOut", signOut, true, "SignOut", false},
        {"FetchSignInResult", fetchSignInResult, 7U, "FetchSignInResult", 0U},
        {"IsSignIn", isSignIn, true, "IsSignIn", false},
        {"RefreshUser", refreshUser, true, "RefreshUser", false},
        {"RefreshUserGrade", [] { return refreshUserGrade(AtFirstShow); }, true, "RefreshUserGrade 1", false},
        {"UserName", userName, QString::fromUtf8("홍길동"), "UserName 100", QString()},
        {"UserLoginId", userLoginId, "gildong"_qs, "UserLoginId 100", QString()},
        {"TokenGrantType", tokenGrantType, "refresh"_qs, "TokenGrantType 100", QString()},
        {"EncryptedAccessToken", encryptedAccessToken, QString(4096, QLatin1Char('x')),
         "EncryptedAccessToken 4096", QString()},
    };
}

void addForwarders() {
    QTest::addColumn<int>("forwarder");
    const QVector<Forwarder> all = forwarders();
    for (int i = 0; i < all.size(); ++i)
        QTest::newRow(all.at(i).name) << i;
}

} // namespace

void Tst_AccountLibrary::init() {
    m_settings = std::make_unique<MachineSettings>();
    m_libraries = std::make_unique<SubstituteLibraries>();
    m_settings->set("BrindleManager"_qs, "RootDir"_qs, m_libraries->folder());
}

void Tst_AccountLibrary::cleanup() {
    m_libraries.reset();
    m_settings.reset();
}

void Tst_AccountLibrary::forwardsEachCall_data() {
    addForwarders();
}

void Tst_AccountLibrary::forwardsEachCall() {
    QFETCH(int, forwarder);
    const Forwarder expected = forwarders().at(forwarder);
    m_libraries->add("passkin"_qs);
    QCOMPARE(expected.call(), expected.answer);
    QCOMPARE(m_libraries->calls().filter(QRegularExpression("^[A-Z]"_qs)),
             QStringList{QString::fromLatin1(expected.recorded)});
}

void Tst_AccountLibrary::loadsForOneCallOnly() {
    m_libraries->add("passkin"_qs);
    QVERIFY(AccountLibrary::isSignIn());
    QVERIFY(AccountLibrary::isSignIn());
    // Each is tried by another process first.
    const QStringList once{"loaded"_qs, "unloaded"_qs, "loaded"_qs, "IsSignIn"_qs, "unloaded"_qs};
    QCOMPARE(m_libraries->calls(), once + once);
    QVERIFY(QFile::remove(m_libraries->folder() + "/passkin.so"_qs));
    QVERIFY(!AccountLibrary::isSignIn());
}

void Tst_AccountLibrary::withoutTheLibraryNothingIsKnown_data() {
    addForwarders();
}

void Tst_AccountLibrary::withoutTheLibraryNothingIsKnown() {
    QFETCH(int, forwarder);
    const Forwarder expected = forwarders().at(forwarder);
    QCOMPARE(expected.call(), expected.without);
    m_libraries->add("passkin"_qs, SubstituteLibraries::Signature::None);
    QCOMPARE(expected.call(), expected.without);
    QCOMPARE(m_libraries->calls(), QStringList());
    // One without the functions.
    QVERIFY(QFile::remove(m_libraries->folder() + "/passkin.so"_qs));
    const QString other = m_libraries->add("works"_qs);
    QVERIFY(QFile::rename(other, m_libraries->folder() + "/passkin.so"_qs));
    QVERIFY(QFile::rename(other + ".p7s"_qs, m_libraries->folder() + "/passkin.so.p7s"_qs));
    QCOMPARE(expected.call(), expected.without);
    QVERIFY(m_libraries->calls().contains("loaded"_qs));
}

QTEST_GUILESS_MAIN(Tst_AccountLibrary)
#include "tst_accountlibrary.moc"
