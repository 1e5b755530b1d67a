#include "support/administrator.h"

#include <QtTest>

#include <unistd.h>

bool isAdministrator() {
    const bool isRoot = ::geteuid() == 0;
    if (!isRoot && qgetenv("CI") == "true")
        QTest::qFail("the tests against other users need root", __FILE__, __LINE__);
    return isRoot;
}
