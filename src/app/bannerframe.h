#pragma once

#include "services/bannersettings.h"

#include <QFrame>
#include <QMap>
#include <QTimer>
#include <QUrl>

#include <functional>

class BannerLibrary;

/// The place of a web banner in the main window.
///
/// Holds a default image until there is content, which nobody delivers yet. Therefore a frame that is shown
/// hides itself again, from the event loop: who is told that it was shown still finds it visible, and is told
/// of the hiding after that. Its size is fixed; it is designed at 96 DPI and follows the window's scale a
/// moment later. GUI thread only.
class BannerFrame : public QFrame {
    Q_OBJECT
public:
    enum Kind { Toolbar = 0, Bottom = 1 };

    /// What a kind of banner is made of.
    struct Record {
        QString name;
        QString defaultImage; ///< below ":/res/"
        QString areaId;       ///< by which the banner library knows the area
        QUrl content;         ///< where the banner comes from; none yet
        QUrl defaultLink;     ///< opened by a click on the default image
        QSize size;           ///< at 96 DPI
    };

    /// `mainWindow` becomes the parent. The library is borrowed, outlives this object, and may be null.
    BannerFrame(Kind kind, const BannerSettings &settings, BannerLibrary *library, QWidget *mainWindow);

    const Record &record() const { return m_record; }
    /// False for a while after the user has closed this banner.
    bool mayShow() const;

    /// Tests only: seconds since the epoch instead of the system's clock.
    void setClock(std::function<qint64()> clock) { m_clock = std::move(clock); }

public slots:
    /// The user closes the banner: it goes, and stays away for a while.
    void onClickCloseBanner();

signals:
    void sig_showEvent();
    void sig_hideEvent();
    /// Width or height have changed.
    void sig_updateSize();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    static const QMap<Kind, Record> &records();
    QSize scaledSize() const;
    void updateSize();

    const Record m_record;
    const BannerSettings m_settings;
    BannerLibrary *m_library;
    QTimer m_debounce{this};
    std::function<qint64()> m_clock;
};
