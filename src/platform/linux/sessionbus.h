#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariant>

/// The session bus, as a program may use it that must not be held up by one that is stopped.
///
/// Only buses on local sockets count, and only those that answer: without a bus its library would start one
/// of its own, on which nobody listens, and one that is stopped would hold the caller up for 25 s. Here such
/// a bus costs one wait of 250 ms, and is left alone for the next ten seconds. GUI thread only.
namespace sessionbus {

/// The connection of that name, made anew when its bus has gone away or fell silent in between. It is not
/// connected where there is no bus.
QDBusConnection connection(const QString &name);

/// What the bus itself says to a method of its own, over the connection of that name. An error where there is
/// no bus, or none that answers in time.
QDBusMessage ask(const QString &name, const QString &method, const QVariantList &arguments = {});

} // namespace sessionbus
