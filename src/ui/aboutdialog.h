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

private:
    void build();
    void applyScale(double scale);

    QLabel *m_picture;
    QLabel *m_version;
    ClickableLabel *m_link;
};
