#pragma once

class QString;
class QWidget;

/// Downloads an installer behind a progress bar and has the desktop start it; whether it was handed over.
///
/// Only what one of the accepted makers signed is started, certificates included. It arrives in a file of the
/// temporary folder that no other user can read, write or exchange, is checked there, and is left there for
/// the desktop. What does not arrive or is refused is deleted again, nothing is shown, and the trace log says
/// why. GUI thread.
bool downloadAndRun(const QString &url, QWidget *parent = nullptr);
