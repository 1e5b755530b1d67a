#pragma once

#include <QDialog>

#include <memory>

class QAbstractButton;

/// The program's only message box.
///
/// The static helpers run it and return the pressed button. For dialogs with buttons of their own,
/// `addButton` gives each the result that `exec` returns. Enter presses the default button, or the first
/// positive one. Escape and the window's close button give the close result if there is one, else what a
/// refusal gives: Cancel, No, Close and so on, or the last negative button, or the only button.
///
/// Texts are plain, can be selected, and wrap when they grow too long for a message. The window keeps its
/// first size, times the scale. GUI thread only.
class MessageDialog : public QDialog {
    Q_OBJECT
public:
    /// Values of the toolkit's message box.
    enum StandardButtons {
        NoButton = 0,
        Ok = 1024,
        Save = 2048,
        SaveAll = 4096,
        Open = 8192,
        Yes = 16384,
        YesToAll = 32768,
        No = 65536,
        NoToAll = 131072,
        Abort = 262144,
        Retry = 524288,
        Ignore = 1048576,
        Close = 2097152,
        Cancel = 4194304,
        Discard = 8388608,
        Help = 16777216,
        Apply = 33554432,
        Reset = 67108864,
        RestoreDefaults = 134217728
    };
    enum Icon { NoIcon = 0, Information = 1, Warning = 2, Critical = 3, Question = 4, Success = 5 };
    /// How a button looks, and which of them Enter and Escape press.
    enum ButtonKind { Positive, Negative };

    explicit MessageDialog(QWidget *parent = nullptr);
    ~MessageDialog() override;

    void setTitle(const QString &title);
    void setText(const QString &text);
    void setInformativeText(const QString &text);
    void setIcon(Icon icon);
    /// `buttons`: a combination of `StandardButtons`; each ends the dialog with its value.
    void setStandardButtons(int buttons, int defaultButton = NoButton);
    /// A button with a text of its own, which ends the dialog with `result`.
    QAbstractButton *addButton(const QString &text, int result, ButtonKind kind, bool isDefault = false);
    /// Shows a check box below the text.
    void setCheckBox(const QString &text);
    bool isCheckBoxChecked() const;
    /// What `exec` returns when the dialog is closed without a button.
    void setCloseResult(int result);

    static int information(QWidget *parent, const QString &title, const QString &text, int buttons = Ok,
                           int defaultButton = NoButton);
    static int warning(QWidget *parent, const QString &title, const QString &text, int buttons = Ok,
                       int defaultButton = NoButton);

    void reject() override;

public slots:
    /// Takes the window's scale, logical DPI / 96, and gives the window its size by it.
    void onScaleChanged(double scale);

protected:
    void showEvent(QShowEvent *event) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};
