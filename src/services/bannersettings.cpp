#include "services/bannersettings.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// Far above what two numbers need.
constexpr qint64 LargestFile = 65536;

void readNumber(const QJsonObject &object, const char *key, int *number) {
    constexpr int None = -1;
    const int value = object.value(QLatin1String(key)).toInt(None);
    if (value > None)
        *number = value;
}

} // namespace

BannerSettings BannerSettings::read(const QString &path) {
    BannerSettings settings;
    QFile file(path);
    if (!QFileInfo(path).isFile() || file.size() > LargestFile || !file.open(QIODevice::ReadOnly))
        return settings;
    const QJsonObject object = QJsonDocument::fromJson(file.readAll()).object();
    readNumber(object, "bannerDebounce", &settings.debounce);
    readNumber(object, "bannerShowInterval", &settings.showInterval);
    return settings;
}
