#include "canvas/toolusage.h"

namespace {

struct Row {
    ShapeTypes::ShapeType shape;
    const char *code;
    const char *dottedCode; ///< with a dotted line; null where the style does not count
};

constexpr Row Rows[] = {
    {ShapeTypes::Eraser, "cap_303_12", nullptr},      {ShapeTypes::Pen, "cap_303_11", nullptr},
    {ShapeTypes::Highlighter, "cap_30_13", nullptr},  {ShapeTypes::Line, "cap_303_07", "cap_303_08"},
    {ShapeTypes::Arrow, "cap_303_09", "cap_303_10"},  {ShapeTypes::Rectangle, "cap_303_01", "cap_303_02"},
    {ShapeTypes::Circle, "cap_303_03", "cap_303_04"}, {ShapeTypes::SpeechBalloon, "cap_303_05", "cap_303_06"},
    {ShapeTypes::Mosaic, "cap_30_05", nullptr},       {ShapeTypes::Text, "cap_30_12", nullptr},
    {ShapeTypes::Crop, "cap_30_04", nullptr},
};

constexpr int DottedLine = 3;

} // namespace

bool isFigure(ShapeTypes::ShapeType shape) {
    return shape >= ShapeTypes::Line && shape <= ShapeTypes::SpeechBalloon;
}

const char *toolUsageCode(ShapeTypes::ShapeType shape, int lineStyle) {
    for (const Row &row : Rows) {
        if (row.shape == shape)
            return row.dottedCode && lineStyle == DottedLine ? row.dottedCode : row.code;
    }
    return nullptr;
}
