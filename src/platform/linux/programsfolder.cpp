#include "platform/programsfolder.h"

QString platform::programsFolder() {
    return QStringLiteral("/opt");
}
