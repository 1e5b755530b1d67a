#pragma once

#include <QString>

enum class ConfigurationScope;

namespace platform {

/// Path of the settings file `name` of that vendor. In the machine's scope it is the first existing one
/// of the administrator's folders; empty when there is none.
QString configurationFile(const QString &vendor, const QString &name, ConfigurationScope scope);

} // namespace platform
