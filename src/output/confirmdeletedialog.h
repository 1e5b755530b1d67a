#pragma once

#include "ui/messagedialog.h"

/// Asks before captures are thrown away.
class ConfirmDeleteDialog : public MessageDialog {
    Q_OBJECT
public:
    enum Type { OneImage = 0, SelectedImages = 1, AllImages = 2 };
    enum Result { SaveFirst = 0, Delete = 1, Keep = 2, Dismissed = 3 };

    explicit ConfirmDeleteDialog(Type type, QWidget *parent = nullptr);
    /// Whether the user wants no such question again; read it whatever the answer was.
    bool isSkipChecked() const;
};
