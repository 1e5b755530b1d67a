#pragma once

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;

/// Asks for names, format and folder before many captures are saved.
///
/// Shows the settings and writes them back when the user goes ahead; a cancelled dialog writes nothing.
/// Ends with `QDialog::Accepted` or `Rejected`.
class ConfirmSaveDialog : public QDialog {
    Q_OBJECT
public:
    enum Type { SelectedImages = 0, AllImages = 1 };

    explicit ConfirmSaveDialog(Type type, QWidget *parent = nullptr);

    /// The chosen format, such as "PNG".
    QString formatText() const;

private slots:
    void onFormatTextChanged(const QString &text);
    void onClickSetFileNameFormat();
    void onClickBrowse();
    void onOK();
    void onCancel();

private:
    void setTexts(Type type);
    void buildForm();
    QWidget *buildFields();
    QWidget *buildButtons();
    void load();
    void showFileNameFormat();

    QLabel *m_saveText;
    QLabel *m_saveText2;
    QComboBox *m_format;
    QLabel *m_fileName;
    QSpinBox *m_quality;
    QLineEdit *m_savePath;
    int m_nameType = 0;
    QString m_nameTemplate;
};
