#include "services/managementprogram.h"

#include "platform/configuration.h"
#include "platform/programsfolder.h"
#include "services/signedlibrary.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>

namespace {

const auto Key = QStringLiteral("SOFTWARE\\Norvane\\BrindleManager");

/// The keys of the family's other products, each of which its installation makes for the whole machine.
const QString ProductKeys[] = {
    QStringLiteral("SOFTWARE\\Norvane\\BrindleNotes"),
    QStringLiteral("SOFTWARE\\Norvane\\BrindleBoard"),
    QStringLiteral("SOFTWARE\\Norvane\\BrindlePaper"),
};

QVariant machineValue(const QString &name) {
    return ConfigurationLocation(Key, ConfigurationScope::Machine).value(name);
}

bool isInstalled(const QString &productKey) {
    return !ConfigurationLocation(productKey, ConfigurationScope::Machine).fileName().isEmpty();
}

} // namespace

namespace ManagementProgram {

QString folder() {
    const QString told = machineValue(QStringLiteral("RootDir")).toString();
    // A relative path would follow the working directory, which anybody may choose.
    if (QDir::isAbsolutePath(told) && QFileInfo(told).isDir())
        return QDir::cleanPath(told);
    return platform::programsFolder() + QStringLiteral("/Norvane/BrindleManager");
}

QString libraryPath(const QString &baseName) {
    return folder() + QLatin1Char('/') + libraryFileName(baseName);
}

bool isMissed() {
    return std::any_of(std::begin(ProductKeys), std::end(ProductKeys), isInstalled) &&
           !machineValue(QStringLiteral("Version")).isValid();
}

bool refreshUser(int timeout) {
    const QString program = QStandardPaths::findExecutable(QStringLiteral("BrindleManager"), {folder()});
    if (program.isEmpty())
        return false;
    // Lives as long as the program runs, since its end would take the program along.
    auto *process = new QProcess;
    QObject::connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), process,
                     &QObject::deleteLater);
    // What nobody reads would fill a pipe and stop the program.
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    process->start(program, {QStringLiteral("--refresh-user")});
    if (!process->waitForStarted()) {
        delete process;
        return false;
    }
    return process->waitForFinished(timeout);
}

} // namespace ManagementProgram
