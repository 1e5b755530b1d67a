#pragma once

#include <QColor>
#include <QPointer>
#include <QWidget>

class QLabel;
class QPushButton;

/// A speech bubble that points at another widget until the user closes it for good.
///
/// A child of the window that holds the anchor, hidden at first. Closing sets the given boolean preference
/// and deletes the bubble. Sizes are designed at 96 DPI and follow the window's scale.
class CoachmarkWidget : public QWidget {
    Q_OBJECT
public:
    /// Where the bubble stands, seen from its anchor.
    enum Side { RightOfAnchor = 0, BelowAnchor = 1, LeftOfAnchor = 2, AboveAnchor = 3 };

    /// `preferenceId`: the item of the preferences that remembers that the bubble was closed.
    CoachmarkWidget(int preferenceId, QWidget *parent);

    /// Whether the user closed this bubble, now or in an earlier run.
    bool wasClosed() const;

    void setText(const QString &text);
    QString text() const;
    /// `position`: where the arrow leaves the bubble, in percent along its side.
    void setAnchor(QWidget *anchor, Side side, double position);
    /// Colour of the bubble.
    void setColor(const QColor &color);
    /// Moves the bubble to its anchor; without one it stays where it is.
    void place();

public slots:
    void onChangedText();

signals:
    void updateText();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void onClose();
    void onScale(double scale);
    int scaled(int units) const;
    bool isBeside() const { return m_arrowSide == RightOfAnchor || m_arrowSide == LeftOfAnchor; }
    /// The bubble without its arrow.
    QRect bubbleRect() const;
    QPolygonF arrow() const;

    Side m_arrowSide = BelowAnchor;
    double m_arrowPosition = 50.0;
    QPointer<QWidget> m_anchor;
    QLabel *m_label;
    QPushButton *m_close;
    QColor m_color;
    double m_scale = 1.0;
    int m_preferenceId;
};
