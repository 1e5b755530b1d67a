#pragma once

class QString;

/// The library that takes the usage statistics, one per process, bound at run time.
///
/// While it is started it gets every event that `recordUsage` reports. Its functions stand in
/// docs/services.md; without the library nothing is started and nothing else changes. Any thread, one at a
/// time: crashes are reported from the thread that they happen in.
namespace StatisticsLibrary {

/// Loads the library and names the product to it; whether it takes events from now on.
bool start(const QString &libraryPath, const QString &product);
bool isStarted();
/// Whether the library took the event.
bool send(const QString &id);
/// Ends and unloads the library; nothing when it is not started.
void end();

} // namespace StatisticsLibrary
