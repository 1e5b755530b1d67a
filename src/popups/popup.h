#pragma once

#include <QPointer>
#include <QWidget>

class Menu;
class QWidgetAction;

/// A tool's panel of options: a frameless tool window that floats by itself, or the contents of a `Menu`.
///
/// Tells a choice, its cancelling and its closing by one signal each. In a menu it is shown and closed with
/// the menu, follows the size of its contents while it is open, and takes the keyboard: Tab and Shift+Tab go
/// round its widgets, coming to the chosen one of those that exclude each other, the arrow keys from button
/// to button without choosing, Space and Enter choose, Escape closes.
class Popup : public QWidget {
    Q_OBJECT
public:
    /// What the end of the panel meant.
    enum CloseMode { Triggered = 0, Canceled = 1, Closed = 2 };

    /// Leads the keyboard into a panel that floats over what it belongs to, and back.
    static constexpr Qt::Key EnteringKey = Qt::Key_F6;

    explicit Popup(QWidget *parent = nullptr);
    ~Popup() override;

    /// Emits the signal of that mode; nothing for any other number.
    void emitCloseSignal(int mode);
    /// What the next closing of the menu reports; `Closed` again after it.
    void setCloseMode(int mode);
    int closeMode() const { return m_closeMode; }

    /// The panel in a menu or another holder, at any depth; null when there is none.
    static Popup *findPopup(QWidget *holder);
    /// Makes a menu with this panel as its only entry, which closes whenever the panel emits a signal of its
    /// own. The menu belongs to `parent` and owns the panel from now on.
    Menu *toMenu(QWidget *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void triggered();
    void canceled();
    void closed();

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool focusNextPrevChild(bool next) override;

    /// Escape in a panel that floats by itself.
    virtual void cancelByKey();
    /// The widget that gets the focus when the panel opens in a menu: the first checked button, else the
    /// first widget that takes the focus at all.
    virtual QWidget *firstFocus() const;

private:
    void onMenuAboutToShow();
    void onMenuAboutToHide();
    void closeMenu();
    void remeasureMenu();
    /// Where Tab stops, in this order; of buttons that exclude each other at the chosen one.
    QList<QWidget *> focusChain() const;
    bool isUsable(const QWidget *widget) const;
    QWidget *chosenInPlaceOf(QWidget *widget) const;
    void moveFocus(QWidget *from, int key);

    int m_closeMode = Closed;
    // As a QWidget: the panel is asked for its focus chain while the menu, no longer a `Menu`, is destroyed.
    QPointer<QWidget> m_owner;
    QWidgetAction *m_action = nullptr;
    bool m_closingByOwnSignal = false;
};
