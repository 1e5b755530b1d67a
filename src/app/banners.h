#pragma once

#include <QObject>

class BannerFrame;
class BannerLibrary;
class QMainWindow;
class QPushButton;
class QWidget;
class Toolbar;

/// The two web banners of the main window: one over the toolbar's right end, one over the bottom of the
/// canvas, which the user can close.
class Banners : public QObject {
    Q_OBJECT
public:
    /// All are borrowed and outlive this object; the frames are the window's children.
    Banners(BannerLibrary *library, Toolbar *toolbar, QWidget *canvas, QMainWindow *window);

    void show();
    void hide();
    /// Lays the toolbar out in the room that its banner leaves.
    void layOutToolbar();
    void placeAtBottom();
    /// The program ends: from now on there are no banners.
    void forget();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// What the toolbar's banner takes of the toolbar, in device pixels; 0 while it is not to be seen.
    int widthInToolbar() const;
    void placeInToolbar();
    void connectToolbarBanner();
    void connectBottomBanner();

    QMainWindow *m_window;
    Toolbar *m_toolbar;
    QWidget *m_canvas;
    QPushButton *m_close;
    BannerFrame *m_toolbarBanner;
    BannerFrame *m_bottomBanner;
};
