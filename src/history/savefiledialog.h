#pragma once

#include <QFileDialog>

/// Asks for the name of a picture to write.
///
/// A name without the suffix of a picture format gets the one of the selected filter, before the question
/// whether to overwrite. Desktops with a dialog of their own may add the suffix too late for that; then the
/// name gets a number rather than hit an existing file.
class SaveFileDialog : public QFileDialog {
    Q_OBJECT
public:
    /// `suggested`: full path without suffix. `filters`: entries like "png file (*.png)"; `selected`: the
    /// index of the first choice, the first entry if out of range.
    SaveFileDialog(QWidget *parent, const QString &suggested, const QStringList &filters, int selected);

    /// Runs the dialog; empty when it was cancelled.
    QString askPath();

protected:
    void accept() override;

private:
    QString withSuffix(const QString &path) const;
};
