#pragma once

#include <QDialog>

class ClickableLabel;
class QLabel;

/// What the user holds: a picture of the product with its version, and a link to the maker.
class AboutDialog : public QDialog {
    Q_OBJECT
public:
    explicit AboutDialog(QWidget *parent = nullptr);

public slots:
    void onUrlClicked();
    void onUrlHover();
    void onUrlLeaved();
    /// Gives way to the panel for support: Ctrl+Alt+Shift+D, which no menu names.
    void openDebugDialog();

signals:
    /// The panel for support was asked for pictures through memory (true) or as files.
    void fileMemoryModeChanged(bool memory);

private:
    void build();
    void applyScale(double scale);

    QLabel *m_picture;
    QLabel *m_version;
    ClickableLabel *m_link;
};
