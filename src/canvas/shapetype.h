#pragma once

/// The tools and modes of an `Editor`, in a header of their own because the popups below the canvas need
/// them too. The numbers are stored in the preferences.
class ShapeTypes {
public:
    enum ShapeType {
        Eraser = 0,
        Pen = 1,
        Highlighter = 2,
        Line = 3,
        Arrow = 4,
        Rectangle = 5,
        Circle = 6,
        SpeechBalloon = 7,
        Mosaic = 8,
        Text = 9,          ///< waiting for the click that places a text
        TextEditing = 10,  ///< a text item is open; presses belong to it
        TextFinished = 11, ///< a text was just closed; the next press only returns to `Text`
        Crop = 12          ///< the crop frame is open
    };
};
