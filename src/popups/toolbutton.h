#pragma once

#include <QPushButton>

class QLabel;

/// A button of the toolbar: a picture above its text, and on demand a second half below that opens a menu.
///
/// With the half shown the button itself keeps its click for the tool, and only the half opens the menu;
/// without it the button opens it. The picture is a label "image_", which the style sheet fills by the
/// button's object name. Left and Right move the focus to the next such button beside it, without choosing.
class ToolButton : public QPushButton {
    Q_OBJECT
public:
    explicit ToolButton(QWidget *parent = nullptr);

    /// The menu is not owned.
    virtual void setMenu(QMenu *menu);
    /// The menu, on whichever half it is; null when there is none.
    virtual QMenu *menu() const;

    void setShowMenuButton(bool show);
    /// What the second half is called, for those who do not see it.
    void setMenuAccessibleName(const QString &name);
    bool isMenuButtonShown() const { return m_showMenuButton; }

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// Before a press on either half, or its key, is handled: whoever listens selects the tool.
    void beforePress();

protected:
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setHover(int hover);
    void unlightWhenLeft();
    void focusNeighbour(bool next);

    QPushButton *m_menuButton;
    bool m_showMenuButton = false;
    QLabel *m_image;
};
