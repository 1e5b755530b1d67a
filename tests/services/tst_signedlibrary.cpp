#include "platform/filesignature.h"
#include "services/signedlibrary.h"
#include "support/substitutelibraries.h"

#include <QDir>
#include <QElapsedTimer>
#include <QtTest>

using Signature = SubstituteLibraries::Signature;

namespace {

using AddFunction = int (*)(int, int);

QStringList lines(std::initializer_list<const char *> texts) {
    QStringList list;
    for (const char *text : texts)
        list.append(QString::fromLatin1(text));
    return list;
}

int openDescriptors() {
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).size();
}

} // namespace

Q_DECLARE_METATYPE(SubstituteLibraries::Signature)

class Tst_SignedLibrary : public QObject {
    Q_OBJECT
private slots:
    void init() { m_libraries.reset(new SubstituteLibraries); }
    void cleanup() { m_libraries.reset(); }
    void functionsAreCalled();
    void isTriedThenLoadedOnceAndUnloaded();
    void onlyTheMakersLibraryRuns_data();
    void onlyTheMakersLibraryRuns();
    void nobodyIsTrustedWithoutTheRoot();
    void whatWasCheckedIsWhatRuns();
    void badConductEndsInTheTrial_data();
    void badConductEndsInTheTrial();
    void hangingLibraryIsGivenUp();
    void withoutTheProgramOfTheTrialNothingRuns();
    void noFileNoLibrary_data();
    void noFileNoLibrary();
    void twoLibrariesStayApart();
    void movingKeepsTheLibrary();
    void nothingStaysOpen();
    void nameOfTheFile();

private:
    QString path(const char *name, Signature signature = Signature::Good) const {
        return m_libraries->add(QString::fromLatin1(name), signature);
    }
    QScopedPointer<SubstituteLibraries> m_libraries;
};

void Tst_SignedLibrary::functionsAreCalled() {
    const SignedLibrary library(path("works"));
    QVERIFY(library.isLoaded());
    const auto add = library.resolve<AddFunction>("Add");
    QVERIFY(add);
    QCOMPARE(add(40, 2), 42);
    QVERIFY(!library.resolve<AddFunction>("Subtract"));
}

void Tst_SignedLibrary::isTriedThenLoadedOnceAndUnloaded() {
    {
        const SignedLibrary library(path("works"));
        QCOMPARE(m_libraries->calls(), lines({"loaded", "unloaded", "loaded"}));
    }
    QCOMPARE(m_libraries->calls(), lines({"loaded", "unloaded", "loaded", "unloaded"}));
}

void Tst_SignedLibrary::onlyTheMakersLibraryRuns_data() {
    QTest::addColumn<Signature>("signature");
    QTest::addColumn<bool>("isLoaded");
    QTest::newRow("the maker's") << Signature::Good << true;
    QTest::newRow("unsigned") << Signature::None << false;
    QTest::newRow("of another maker") << Signature::OfAnother << false;
    QTest::newRow("changed since") << Signature::Broken << false;
}

void Tst_SignedLibrary::onlyTheMakersLibraryRuns() {
    QFETCH(Signature, signature);
    const SignedLibrary library(path("works", signature));
    QTEST(library.isLoaded(), "isLoaded");
    // Not a line of it runs before it is trusted, in no process.
    QTEST(!m_libraries->calls().isEmpty(), "isLoaded");
    QTEST(library.resolve<AddFunction>("Add") != nullptr, "isLoaded");
}

void Tst_SignedLibrary::nobodyIsTrustedWithoutTheRoot() {
    platform::setTrustedRoots(QString());
    QVERIFY(!SignedLibrary(path("works")).isLoaded());
    QCOMPARE(m_libraries->calls(), QStringList());
}

void Tst_SignedLibrary::whatWasCheckedIsWhatRuns() {
    const QString file = path("works");
    const SignedLibrary library(file);
    QVERIFY(library.isLoaded());
    // The memory of a library that is mapped from its file changes with the file.
    QFile changed(file);
    QVERIFY(changed.open(QIODevice::ReadWrite));
    const qint64 size = changed.size();
    changed.write(QByteArray(int(size), '\0'));
    changed.close();
    QCOMPARE(library.resolve<AddFunction>("Add")(1, 2), 3);
}

void Tst_SignedLibrary::badConductEndsInTheTrial_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("crashes when it is loaded") << QByteArray("crashes") << lines({"crashes"});
    QTest::newRow("crashes when it is unloaded")
        << QByteArray("crashesatend") << lines({"crashes at the end"});
    QTest::newRow("needs what nobody has") << QByteArray("unresolved") << QStringList();
}

void Tst_SignedLibrary::badConductEndsInTheTrial() {
    QFETCH(QByteArray, name);
    QVERIFY(!SignedLibrary(path(name.constData())).isLoaded());
    QTEST(m_libraries->calls(), "calls");
}

void Tst_SignedLibrary::hangingLibraryIsGivenUp() {
    QVERIFY(!SignedLibrary(path("hangs")).isLoaded());
    const QStringList processes = m_libraries->calls();
    QCOMPARE(processes.size(), 2);
    for (const QString &process : processes) {
        const QString folder = QStringLiteral("/proc/") + process.section(QLatin1Char(' '), 1);
        QFile state(folder + QStringLiteral("/stat"));
        // A process that has ended may wait for somebody to be told.
        QTRY_VERIFY(!QDir(folder).exists() ||
                    (state.open(QIODevice::ReadOnly) && state.readAll().contains(") Z ")));
        state.close();
    }
}

void Tst_SignedLibrary::withoutTheProgramOfTheTrialNothingRuns() {
    platform::setLibraryTrialProgram(QStringLiteral("/nonexistent"));
    QVERIFY(!SignedLibrary(path("works")).isLoaded());
    QCOMPARE(m_libraries->calls(), QStringList());
}

void Tst_SignedLibrary::noFileNoLibrary_data() {
    QTest::addColumn<QString>("path");
    QTest::newRow("none") << QString();
    QTest::newRow("not there") << QStringLiteral("/nonexistent/ostler.so");
    QTest::newRow("folder") << QStringLiteral("/tmp");
    QTest::newRow("device") << QStringLiteral("/dev/zero");
}

void Tst_SignedLibrary::noFileNoLibrary() {
    QFETCH(QString, path);
    const SignedLibrary library(path);
    QVERIFY(!library.isLoaded());
    QVERIFY(!library.resolve<AddFunction>("Add"));
    QVERIFY(!SignedLibrary().isLoaded());
}

void Tst_SignedLibrary::twoLibrariesStayApart() {
    const QString file = path("works");
    QScopedPointer<SignedLibrary> first(new SignedLibrary(file));
    const SignedLibrary second(file);
    QVERIFY(first->isLoaded() && second.isLoaded());
    QVERIFY(first->resolve<AddFunction>("Add") != second.resolve<AddFunction>("Add"));
    first.reset();
    QCOMPARE(second.resolve<AddFunction>("Add")(2, 3), 5);
}

void Tst_SignedLibrary::movingKeepsTheLibrary() {
    SignedLibrary first(path("works"));
    SignedLibrary second(std::move(first));
    QVERIFY(second.isLoaded());
    m_libraries->forgetCalls();
    second = SignedLibrary();
    QCOMPARE(m_libraries->calls(), lines({"unloaded"}));
}

void Tst_SignedLibrary::nothingStaysOpen() {
    const QString file = path("works");
    const QString bad = path("crashes");
    const int before = openDescriptors();
    for (int i = 0; i < 3; ++i) {
        QVERIFY(SignedLibrary(file).isLoaded());
        QVERIFY(!SignedLibrary(bad).isLoaded());
    }
    QCOMPARE(openDescriptors(), before);
}

void Tst_SignedLibrary::nameOfTheFile() {
    QCOMPARE(libraryFileName(QStringLiteral("kilnworks")), QStringLiteral("kilnworks.so"));
}

QTEST_GUILESS_MAIN(Tst_SignedLibrary)
#include "tst_signedlibrary.moc"
