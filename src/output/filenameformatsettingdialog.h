#pragma once

#include <QDialog>

class QComboBox;
class QLineEdit;
class QRadioButton;

/// Lets the user choose how files are named: by one of the ready styles or by a text of his own.
///
/// Works on the values it is given and writes no setting. Ends with `QDialog::Accepted` or `Rejected`.
class FileNameFormatSettingDialog : public QDialog {
    Q_OBJECT
public:
    /// `type` is a `FileNameUtil::NameType`; `format` its date format, or the user's text.
    FileNameFormatSettingDialog(int type, const QString &format, QWidget *parent = nullptr);

    int type() const;
    QString format() const;

private slots:
    void onRadioToggled();
    void onOK();
    void onCancel();

private:
    void buildForm();
    void load(int type, const QString &format);

    QRadioButton *m_radioLegacy;
    QComboBox *m_legacyFormats;
    QRadioButton *m_radioCustom;
    QLineEdit *m_userFormat;
};
