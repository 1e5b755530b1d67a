#pragma once

#include "ui/filedialog.h"

class QLineEdit;

/// Asks for the name of a picture to write.
///
/// A name without the suffix of a picture format gets the one of the selected filter, before the question
/// whether to replace a file of that name. No to that leads back to the dialog. A double quote is a letter of
/// the name like any other.
class SaveFileDialog : public FileDialog {
    Q_OBJECT
public:
    /// `suggested`: full path without suffix; its folder may be missing. `filters`: entries like "png file
    /// (*.png)"; `selected`: the index of the first choice, the first entry if out of range.
    SaveFileDialog(QWidget *parent, const QString &suggested, const QStringList &filters, int selected);

protected:
    void accept() override;
    QString chosenPath() const override;

private:
    QLineEdit *nameField() const;
    bool hasQuote() const;
    QString withSuffix(const QString &path) const;
    /// Makes that the chosen file.
    void setPath(const QString &path);
    /// Asks if there is a file of that name; true if it may be written.
    bool mayWrite(const QString &path);
};
