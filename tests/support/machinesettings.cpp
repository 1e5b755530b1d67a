#include "support/machinesettings.h"

#include <QDir>
#include <QSettings>

namespace {

QString folder() {
    return qEnvironmentVariable("XDG_CONFIG_DIRS") + QStringLiteral("/Norvane");
}

} // namespace

MachineSettings::MachineSettings() {
    QDir().mkpath(folder());
}

MachineSettings::~MachineSettings() {
    QDir(folder()).removeRecursively();
}

QString MachineSettings::path(const QString &product) {
    return QStringLiteral("%1/%2.conf").arg(folder(), product);
}

void MachineSettings::set(const QString &product, const QString &name, const QString &value) const {
    QSettings(path(product), QSettings::IniFormat).setValue(name, value);
}

void MachineSettings::remove(const QString &product) const {
    QFile::remove(path(product));
}
