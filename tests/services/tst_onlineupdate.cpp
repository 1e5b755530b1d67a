#include "services/onlineupdate.h"
#include "support/literals.h"
#include "support/substitutelibraries.h"

#include <QtTest>

class Tst_OnlineUpdate : public QObject {
    Q_OBJECT
private slots:
    void callsTheFunctionOfItsName();
    void isBoundAtTheFirstCall();
    void nothingWithoutTheLibrary();
    void nothingWithoutTheFunction();
};

void Tst_OnlineUpdate::callsTheFunctionOfItsName() {
    const SubstituteLibraries libraries;
    OnlineUpdate update(libraries.add("Freshet"_qs));
    QCOMPARE(update.init("Tindra"), std::optional<int>(1));
    QCOMPARE(update.updateProduct("Tindra"), std::optional<int>(3));
    QCOMPARE(update.checkEula("Tindra"), std::optional<int>(0));
    QCOMPARE(update.exit("Tindra"), std::optional<int>(2));
    QCOMPARE(libraries.calls(), (QStringList{"Freshet_Init Tindra"_qs, "Freshet_UpdateProduct Tindra"_qs,
                                             "Freshet_CheckEULA Tindra"_qs, "Freshet_Exit Tindra"_qs}));
}

void Tst_OnlineUpdate::isBoundAtTheFirstCall() {
    const SubstituteLibraries libraries;
    { const OnlineUpdate kept(libraries.add("works"_qs)); }
    QCOMPARE(libraries.calls(), QStringList()); // it would tell that it is loaded
}

void Tst_OnlineUpdate::nothingWithoutTheLibrary() {
    OnlineUpdate update("/nonexistent/Freshet.so"_qs);
    QCOMPARE(update.init("Tindra"), std::optional<int>());
    QCOMPARE(update.exit("Tindra"), std::optional<int>());
}

void Tst_OnlineUpdate::nothingWithoutTheFunction() {
    const SubstituteLibraries libraries;
    OnlineUpdate update(libraries.add("works"_qs));
    QCOMPARE(update.updateProduct("Tindra"), std::optional<int>());
}

QTEST_GUILESS_MAIN(Tst_OnlineUpdate)
#include "tst_onlineupdate.moc"
