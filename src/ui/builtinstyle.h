#pragma once

class QApplication;

/// Gives the application the look that is compiled in: UIStyler with the sheets and the colour table of the
/// resources, and families that stand in where the sheets' fonts are not installed. Once a process, before
/// the first window is built; GUI thread.
void installBuiltInStyle(QApplication *application);
