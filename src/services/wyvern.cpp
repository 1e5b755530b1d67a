#include "services/wyvern.h"

#include <QString>

bool Wyvern::start(const QString &, const QString &, const QString &, const QString &) {
    return false;
}

void Wyvern::end() {}
