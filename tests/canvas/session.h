#pragma once

#include <QString>
#include <QVector>

class QRandomGenerator;

/// A script of what somebody does with the canvas, as data: made up at random, written down, read back.
namespace session {

/// A verb and its numbers. Positions are image pixels, two numbers each.
///
///   tool N              the tool of that number
///   width N, style N, line N, fill N, mosaic N
///                       a setting; colours in the form of the settings, as a signed number
///   drag SHIFT X Y …    press at the first position, moves through the others, release at the last
///   press X Y, move SHIFT X Y, release SHIFT X Y
///                       the parts of a drag, with other steps in between
///   undo, redo, reset
///   zoom N              N steps in or, below 0, out; 0 for 100 %
///   select N            another capture
///   crop ACCEPT X Y W H a crop that is accepted or cancelled
///   text END X Y LENGTH a text of so many letters, closed as `TextEnd` says
///   open X Y LENGTH     a text of so many letters that stays open
///   frame X Y W H       a crop frame that stays open
///   write N             N letters more into an open text or, below 0, fewer
///   close ACCEPT        what is open
///   view W H            the view in that size; 0 0 for as large as the picture
struct Step {
    QString verb;
    QVector<int> numbers;
};

enum TextEnd { Discarded, Kept, ClickElsewhere };

using Script = QVector<Step>;

/// The same script for the same generator. `size` is that of the smallest capture.
Script random(QRandomGenerator &random, int steps, int captures);

/// One line, for a person to copy and `read` to read.
QString write(const Script &script);
Script read(const QString &text);

} // namespace session
