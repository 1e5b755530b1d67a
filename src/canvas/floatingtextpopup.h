#pragma once

#include <QObject>
#include <QPointer>

#include <memory>

class DrawingTextItem;
class QGraphicsView;
class TextPopup;

/// The text's popup as it floats over a view, bound to the text that is open there. Owned by the view.
///
/// The text shows and hides it; here it is put in its place, and out of sight when its place changes in a way
/// that has nothing to do with writing. The next key press in the text brings it back.
class FloatingTextPopup : public QObject {
    Q_OBJECT
public:
    explicit FloatingTextPopup(QGraphicsView *view);
    ~FloatingTextPopup() override;

    TextPopup *popup() const { return m_popup.get(); }
    /// Binds the popup, with the stored settings, to that text. Null: there is nothing to bind.
    void open(DrawingTextItem *item);
    /// The text is closed.
    void finish();
    /// Puts the popup above the open text, or below it at the upper edge of the screen; nothing without a
    /// text.
    void place();
    void hide();
    /// Follows the view to the screen and away from it, while a text is open.
    void setShown(bool shown);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void onScrolled();
    void onBoxResized();
    QPoint wantedPlace() const;
    void moveInputMethod() const;

    QGraphicsView *m_view;
    std::unique_ptr<TextPopup> m_popup;
    QPointer<DrawingTextItem> m_item;
};
