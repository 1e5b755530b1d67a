#include "app/boundservices.h"

#include "platform/platform.h"
#include "services/programfolder.h"
#include "services/statisticslibrary.h"
#include "services/usagestatistics.h"
#include "services/wyvern.h"

#include <QCoreApplication>

BoundServices::BoundServices(Wyvern *olderCrashClient)
    : m_olderCrashClient(olderCrashClient), m_update(libraryInProgramFolder(QStringLiteral("Freshet"))) {
    m_banner.start(programFolder());
    StatisticsLibrary::start(libraryInProgramFolder(QStringLiteral("Ostler")), QStringLiteral("Tindra"));
}

void BoundServices::startCrashClient() {
    if (!Platform::instance().usesOlderCrashClient()) {
        m_crashClient.start(libraryInProgramFolder(QStringLiteral("wyvern2_x86")),
                            QStringLiteral("https://crash.norvane.example/tindra"),
                            QStringLiteral("Tindra@") + QCoreApplication::applicationVersion(),
                            QStringLiteral("ko-kr"));
        return;
    }
    if (!m_olderCrashClient)
        return;
    m_olderCrashClient->setCallback([] {
        recordUsage("cap_30_26");
        StatisticsLibrary::end();
    });
    m_olderCrashClient->startThread();
}

void BoundServices::end() {
    m_banner.end();
    StatisticsLibrary::end();
    if (m_olderCrashClient)
        m_olderCrashClient->endThread();
    m_crashClient.end();
}
