#pragma once

#include <QDialog>
#include <QList>
#include <QSize>

class RangedSpinBox;

/// Asks for the width and height of a capture, in pixels of the desktop.
///
/// Refuses a size that is in the list already, also when that is the one under edit. Ends with
/// `QDialog::Accepted` or `Rejected`.
class SizeInputDialog : public QDialog {
    Q_OBJECT
public:
    enum Mode { Add = 0, Edit = 1 };

    /// `presets` is borrowed and must outlive the dialog.
    SizeInputDialog(Mode mode, const QList<QSize> *presets, QWidget *parent = nullptr);

    /// Shows the size, as near to it as the screens allow.
    void setSize(const QSize &size);
    QSize size() const;

private slots:
    void onOK();
    void onCancel();

private:
    QWidget *buildTop();
    QWidget *buildBottom();

    RangedSpinBox *m_width;
    RangedSpinBox *m_height;
    const QList<QSize> *m_presets;
};
