#pragma once

#include <QFileDialog>

/// The program's only file dialog, with its own pictures and in its own language, whatever the desktop.
///
/// A desktop's dialog would ask about overwriting by rules of its own, and before the name has its suffix.
/// Use it as any file dialog; GUI thread only.
class FileDialog : public QFileDialog {
    Q_OBJECT
public:
    explicit FileDialog(QWidget *parent = nullptr, const QString &title = QString());

    /// Runs the dialog; empty when it was cancelled.
    QString askPath();
    /// Asks for a folder that exists, beginning as `beginIn` does; empty when cancelled.
    static QString askFolder(QWidget *parent, const QString &title, const QString &folder);

protected:
    /// Shows that folder, or the nearest one above it that exists. At home when that is the root alone, and
    /// for a folder without an absolute path: where the process was started means nothing to the user.
    void beginIn(const QString &folder);
    /// What the dialog stands for now, which `askPath` tells once it is accepted.
    virtual QString chosenPath() const;
};
