#include "preferences/tindrapreferences.h"

#include <algorithm>

namespace {

using P = TindraPreferences;

struct ItemDefinition {
    P::Id id;
    const char *name;
    Preferences::ItemType type;
    int number; ///< of int and bool items
    const char *text;
};

constexpr ItemDefinition boolean(P::Id id, const char *name, bool value) {
    return {id, name, Preferences::Bool, value ? 1 : 0, ""};
}

constexpr ItemDefinition number(P::Id id, const char *name, int value) {
    return {id, name, Preferences::Int, value, ""};
}

constexpr ItemDefinition text(P::Id id, const char *name, const char *value) {
    return {id, name, Preferences::String, 0, value};
}

constexpr int colour(unsigned red, unsigned green, unsigned blue, unsigned alpha) {
    return static_cast<int>(alpha << 24 | blue << 16 | green << 8 | red);
}

constexpr int OpaqueRed = colour(255, 0, 0, 255);
constexpr int OpaqueYellow = colour(255, 240, 0, 255);
constexpr int Transparent = 0;
/// Hot key modifiers: control is 2, shift is 4.
constexpr int ControlAndShift = 2 + 4;

/// Ids 14, 15 and 49 belonged to settings that are gone; their places stay empty.
constexpr ItemDefinition Definitions[] = {
    boolean(P::CopyToClipboard, "CopyToClipboard", true),
    boolean(P::HideEditor, "HideEditor", false),
    boolean(P::ShowOverlay, "ShowOverlay", true),
    boolean(P::TrayMode, "TrayMode", true),
    boolean(P::AutoStart, "AutoStart", true),
    number(P::HotKeyMod, "HotKeyMod", ControlAndShift),
    number(P::HotKeyChar, "HotKeyChar", 0x43),
    boolean(P::HideButtons, "HideButtons", false),
    number(P::FileFormat, "FileFormat", 0),
    text(P::FileNameTamplate, "FileNameTamplate", "%Y%m%d_%H%M%S"),
    number(P::FileNameType, "FileNameType", 1),
    text(P::ToolFileName, "ToolFileName", ""),
    number(P::LineColor, "LineColor", OpaqueRed),
    boolean(P::DrawLine, "DrawLine", false),
    boolean(P::SkipEditorNotice, "SkipEditorNotice", false),
    boolean(P::SkipTip, "SkipTip", false),
    text(P::FilePath, "FilePath", ""),
    boolean(P::CaptureIncludeCursor, "CaptureIncludeCursor", false),
    boolean(P::UsePrintScreen, "UsePrintScreen", true),
    number(P::PrintScreenCaptureMode, "PrintScreenCaptureMode", 0),
    text(P::JpgQuality, "JpgQuality", "100"),
    boolean(P::ShowPostSaveDlg, "ShowPostSaveDlg", true),
    boolean(P::ShowPostSaveAllDlg, "ShowPostSaveAllDlg", true),
    boolean(P::UseHotKey, "UseHotKey", true),
    boolean(P::UseHotKey_W, "UseHotKey_W", true),
    boolean(P::UseHotKey_C, "UseHotKey_C", true),
    boolean(P::UseHotKey_F, "UseHotKey_F", true),
    boolean(P::UseHotKey_S, "UseHotKey_S", true),
    boolean(P::UseHotKey_FR, "UseHotKey_FR", true),
    number(P::HotKeyChar_W, "HotKeyChar_W", 0x57),
    number(P::HotKeyChar_C, "HotKeyChar_C", 0x44),
    number(P::HotKeyChar_F, "HotKeyChar_F", 0x41),
    number(P::HotKeyChar_S, "HotKeyChar_S", 0x53),
    number(P::HotKeyChar_FR, "HotKeyChar_FR", 0x46),
    number(P::HotKeyMod_W, "HotKeyMod_W", ControlAndShift),
    number(P::HotKeyMod_C, "HotKeyMod_C", ControlAndShift),
    number(P::HotKeyMod_F, "HotKeyMod_F", ControlAndShift),
    number(P::HotKeyMod_S, "HotKeyMod_S", ControlAndShift),
    number(P::HotKeyMod_FR, "HotKeyMod_FR", ControlAndShift),
    number(P::LastSelRectTop, "LastSelRectTop", -1),
    number(P::LastSelRectLeft, "LastSelRectLeft", -1),
    number(P::LastSelRectWidth, "LastSelRectWidth", 400),
    number(P::LastSelRectHeight, "LastSelRectHeight", 300),
    boolean(P::LockCaptureSize, "LockCaptureSize", false),
    number(P::LockedSizeCx, "LockedSizeCx", -1),
    number(P::LockedSizeCy, "LockedSizeCy", -1),
    boolean(P::AutoSave, "AutoSave", false),
    boolean(P::ShowFileDlgAfterCapture, "ShowFileDlgAfterCapture", false),
    boolean(P::SkipEditorWnd, "SkipEditorWnd", false),
    text(P::AutoSavePath, "AutoSavePath", ""),
    boolean(P::NotifyDeleteHistory, "NotifyDeleteHistory", true),
    boolean(P::NotifyDeleteAllHistory, "NotifyDeleteAllHistory", true),
    boolean(P::SkipExplainReceiveToPC, "SkipExplainReceiveToPC", false),
    boolean(P::SkipExplainSendToMobile, "SkipExplainSendToMobile", false),
    boolean(P::ShowInformationDialog, "ShowInformationDialog", true),
    boolean(P::ShowHistoryBar, "ShowHistoryBar", true),
    boolean(P::AutoHistoryDelete, "AutoHistoryDelete", false),
    number(P::LastDrawingItem, "LastDrawingItem", 5),
    number(P::FigureType, "FigureType", 5),
    number(P::FigureLineType, "FigureLineType", 1),
    number(P::FigureLineColor, "FigureLineColor", OpaqueRed),
    number(P::FigureFillColor, "FigureFillColor", Transparent),
    number(P::PenColor, "PenColor", OpaqueRed),
    number(P::HighlighterColor, "HighlighterColor", OpaqueYellow),
    number(P::LineWidth, "LineWidth", 3),
    number(P::TextSize, "TextSize", 14),
    number(P::TextColor, "TextColor", OpaqueRed),
    number(P::TextStyle, "TextStyle", 0),
    number(P::MosaicStrength, "MosaicStrength", 6),
    text(P::PrinterName, "PrinterName", ""),
    number(P::PrinterPageSize, "PrinterPageSize", 9),
    number(P::PrinterCopies, "PrinterCopies", 1),
    number(P::PrinterPageOrientation, "PrinterPageOrientation", 1),
    number(P::PrinterScale, "PrinterScale", 1),
    number(P::PrinterScaleValue, "PrinterScaleValue", 1),
    boolean(P::PrinterHCenter, "PrinterHCenter", false),
    boolean(P::PrinterVCenter, "PrinterVCenter", false),
    number(P::PrinterPageLeftMargin, "PrinterPageLeftMargin", 10),
    number(P::PrinterPageRightMargin, "PrinterPageRightMargin", 10),
    number(P::PrinterPageTopMargin, "PrinterPageTopMargin", 10),
    number(P::PrinterPageBottomMargin, "PrinterPageBottomMargin", 10),
    boolean(P::PrinterDrawGrayscale, "PrinterDrawGrayscale", false),
    boolean(P::PrinterDrawBorder, "PrinterDrawBorder", false),
    boolean(P::OnceAiToolsCoachmark, "OnceAiToolsCoachmark", false),
};

/// Null for an item of another type.
const ItemDefinition *definition(P::Id id, Preferences::ItemType type) {
    const auto *found = std::find_if(std::begin(Definitions), std::end(Definitions),
                                     [id](const ItemDefinition &item) { return item.id == id; });
    return found != std::end(Definitions) && found->type == type ? found : nullptr;
}

} // namespace

void TindraPreferences::defineItems() {
    for (const ItemDefinition &item : Definitions) {
        const QString name = QLatin1String(item.name);
        switch (item.type) {
        case Bool:
            Define(item.id, name, item.number != 0);
            break;
        case Int:
            Define(item.id, name, item.number);
            break;
        default:
            Define(item.id, name, QString(QLatin1String(item.text)));
            break;
        }
    }
}

bool TindraPreferences::defaultBool(Id id) {
    const ItemDefinition *item = definition(id, Bool);
    return item && item->number != 0;
}

int TindraPreferences::defaultInt(Id id) {
    const ItemDefinition *item = definition(id, Int);
    return item ? item->number : 0;
}

QString TindraPreferences::defaultString(Id id) {
    const ItemDefinition *item = definition(id, String);
    return QLatin1String(item ? item->text : "");
}
