#pragma once

#include <QPointer>

#include <memory>

class CropPopup;
class DrawingCropItem;
class QAction;
class QGraphicsView;

/// The crop's popup as it floats over a view, bound to the crop that is open there. Owned by the view.
///
/// While it is, `Popup::EnteringKey` leads the keyboard from the view's window into it and back.
class FloatingCropPopup {
public:
    explicit FloatingCropPopup(QGraphicsView *view);
    ~FloatingCropPopup();
    FloatingCropPopup(const FloatingCropPopup &) = delete;
    FloatingCropPopup &operator=(const FloatingCropPopup &) = delete;

    CropPopup *popup() const { return m_popup.get(); }
    /// Binds the popup to that crop, which shows it. Null: there is nothing to bind.
    void open(DrawingCropItem *item);
    /// That crop is closed, or is no longer shown.
    void finish();
    /// Puts the popup at the frame. Without an open crop nothing happens.
    void place();
    /// Follows the view to the screen and away from it, while a crop is open.
    void setShown(bool shown);

private:
    void moveKeyboard();

    QGraphicsView *m_view;
    std::unique_ptr<CropPopup> m_popup;
    QAction *m_enter; ///< belongs to the view
    QPointer<DrawingCropItem> m_item;
};
