#pragma once

/// Ends a start that the toolkit gives up with code 1 and a sentence on standard error.
///
/// The toolkit itself aborts, which looks like a crash of the program: a core file, a report, and for whoever
/// started it a signal in place of an exit code. The one such end that is to be expected is a missing
/// display, which shows while the application object is built. GUI thread.
class OrderlyStart {
public:
    /// From now on messages of the toolkit are lines on standard error, and a fatal one ends the process.
    static void begin();
    /// Messages go where they went before.
    static void end();
};
