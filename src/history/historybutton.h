#pragma once

#include "history/historyselectmode.h"

#include <QColor>
#include <QPixmap>
#include <QPushButton>

class QLabel;

/// The picture of one capture, with the controls that lie on it: close on hover, a check box in select
/// mode, the pin, and the marks of a saved and of a pinned capture.
class HistoryButton : public QPushButton {
    Q_OBJECT
public:
    explicit HistoryButton(QWidget *parent = nullptr);

    void setThumbnail(const QPixmap &thumbnail);
    QPixmap thumbnail() const { return m_thumbnail; }
    /// Whether hovering offers the pin.
    void setPinnable(bool pinnable) { m_pinnable = pinnable; }

    void setPinned(bool pinned);
    bool isPinned() const { return m_pinned; }
    bool isImageSaved() const { return m_saved; }
    bool isImageSelected() const { return m_selected; }
    HistorySelectMode selectionMode() const { return m_selectionMode; }
    /// What lies over the thumbnail at present.
    QColor overlay() const { return m_overlay; }

signals:
    void clickCloseButton();
    /// The pin state was set, by the user or by the program.
    void clickPinButton(bool pinned);
    void changeSelectChecked(bool checked);
    /// The keyboard has come here.
    void reachedByKey();

public slots:
    void onImageSaved(bool saved);
    /// Checks the row for the commands of select mode.
    void onImageSelected(bool selected);
    void onChangeSelectionMode(HistorySelectMode mode);

protected:
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private slots:
    void onClickCloseButton();
    void onClickPinButton();

private:
    QPushButton *addControl(const QString &name, int side);
    QLabel *addMark(const QString &name);
    void setOverlay(const QColor &overlay);
    QColor restingOverlay() const;
    void placeControls();

    QPushButton *m_closeButton;
    QPushButton *m_selectButton;
    QPushButton *m_pinButton;
    QLabel *m_saveIcon;
    QLabel *m_pinnedIcon;
    QPixmap m_thumbnail;
    QColor m_overlay = Qt::transparent;
    HistorySelectMode m_selectionMode = HistorySelectModes::Normal;
    bool m_saved = false;
    bool m_selected = false;
    bool m_pinned = false;
    bool m_pinnable = true;
};
