#include "ui/wrappinglabel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>

namespace {

/// A character without width behind which a line may end. The label's own wrapping knows only words.
constexpr QChar BreakPoint(0x200B);

/// The text with break points in the words that are wider than a line.
QString breakable(const QString &text, const QFontMetrics &metrics, int lineWidth) {
    QString result;
    QString word;
    const auto flush = [&] {
        const bool tooWide = metrics.horizontalAdvance(word) > lineWidth;
        for (const QChar character : qAsConst(word)) {
            result += character;
            if (tooWide && !character.isHighSurrogate())
                result += BreakPoint;
        }
        word.clear();
    };
    for (const QChar character : text) {
        if (!character.isSpace()) {
            word += character;
            continue;
        }
        flush();
        result += character;
    }
    flush();
    return result;
}

} // namespace

WrappingLabel::WrappingLabel(QWidget *parent) : QLabel(parent) {
    // A path may hold anything, tags included.
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    // The menu would copy the break points along.
    setContextMenuPolicy(Qt::NoContextMenu);
    setWordWrap(true);
}

void WrappingLabel::setWrappedText(const QString &text, int lineWidth) {
    setText(breakable(text, fontMetrics(), lineWidth));
    setMinimumSize(lineWidth, qMax(0, heightForWidth(lineWidth)));
}

int WrappingLabel::naturalWidth(const QString &text, const QFontMetrics &metrics) {
    int width = 0;
    for (const QString &line : text.split(QLatin1Char('\n')))
        width = qMax(width, metrics.size(Qt::TextExpandTabs, line).width());
    return width;
}

void WrappingLabel::keyPressEvent(QKeyEvent *event) {
    if (event->matches(QKeySequence::Copy) && hasSelectedText()) {
        QGuiApplication::clipboard()->setText(cleanSelection());
        event->accept();
        return;
    }
    QLabel::keyPressEvent(event);
}

void WrappingLabel::mouseReleaseEvent(QMouseEvent *event) {
    QLabel::mouseReleaseEvent(event);
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (clipboard->supportsSelection() && hasSelectedText())
        clipboard->setText(cleanSelection(), QClipboard::Selection);
}

QString WrappingLabel::cleanSelection() const {
    return selectedText().remove(BreakPoint);
}
