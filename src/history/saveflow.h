#pragma once

#include <QCoreApplication>
#include <QString>

class Editor;
class QWidget;

/// The steps of a save: asks for the name or makes one, writes the picture, tells the user how it went.
///
/// The dialogs stand over the panel and speak in its name. GUI thread only.
class SaveFlow {
    Q_DECLARE_TR_FUNCTIONS(HistoryWidget)
public:
    explicit SaveFlow(QWidget *panel) : m_panel(panel) {}

    /// The name that an automatic save uses: never one that exists.
    static QString autoSavePath();
    /// Lets the user choose a name; false when the dialog was cancelled. `ok` tells the same.
    bool askSavePath(QString &path, bool &ok) const;
    /// Writes the picture with its drawings in the format of the path's suffix and marks the capture as
    /// saved. Not into the work folder, which an exit clears.
    static bool writeImage(Editor *editor, const QString &path);
    /// Tells how that went, and remembers the folder for the next name if it went well.
    void reportImage(bool written, const QString &path, bool rememberFolder, bool showResult) const;
    /// Tells that the capture has gone while its name was chosen.
    void reportVanished() const;

    /// The quality to write a picture of that suffix with, from the settings.
    static int qualityFor(const QString &suffix);
    /// Counts the format in the usage statistics; other suffixes are not counted.
    static void reportSaveFormat(const QString &suffix);

    /// Tells how a batch went: `firstPath` is the file that it wrote first.
    void reportBatch(int count, const QString &firstPath) const;

private:
    void reportFailure(const QString &path) const;
    void showResultOf(const QString &path) const;

    QWidget *m_panel;
};
