#include "app/namedmutex.h"

NamedMutex::NamedMutex(const QString &name, QObject *parent) : QObject(parent), m_lock(name) {}
