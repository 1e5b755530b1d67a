#include "app/pluginimage.h"

#include "platform/folderaccess.h"
#include "services/workfolder.h"

#include <QDir>

namespace {

bool isFileName(const QString &name) {
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") &&
           !name.contains(QLatin1Char('/')) && !name.contains(QChar::Null);
}

bool canBeTold(const QString &path) {
    return !path.contains(QLatin1Char('"')) && !path.contains(QLatin1Char('|'));
}

} // namespace

QString makePluginImagePath(const QString &pluginId, qint64 time) {
    const QString base = QDir::fromNativeSeparators(workFolder());
    if (base.isEmpty() || !isFileName(pluginId))
        return QString();
    const QString folder = base + QStringLiteral("/capture_") + pluginId;
    const QString path = QStringLiteral("%1/%2_%3.png").arg(folder, pluginId, QString::number(time));
    return canBeTold(path) && platform::makePrivateFolder(folder) ? path : QString();
}
