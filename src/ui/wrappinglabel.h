#pragma once

#include <QLabel>

/// A label for plain text of any kind, paths above all: it wraps inside a word too if that is wider than the
/// line, the text can be selected, and what is copied is the text as it was set. GUI thread only.
class WrappingLabel : public QLabel {
    Q_OBJECT
public:
    explicit WrappingLabel(QWidget *parent = nullptr);

    /// Shows the text in lines of that many pixels at the most, and takes the height that this needs.
    void setWrappedText(const QString &text, int lineWidth);
    /// Pixels of the longest line as it is told, unwrapped.
    static int naturalWidth(const QString &text, const QFontMetrics &metrics);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QString cleanSelection() const;
};
