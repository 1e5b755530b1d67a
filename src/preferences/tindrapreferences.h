#pragma once

#include "preferences/preferences.h"

#include <QColor>
#include <QHash>
#include <QList>
#include <QSize>
#include <QStringList>

/// The program's 87 settings, and the lists that do not fit a flat table: custom colours and size presets.
///
/// One instance per process, shared with nobody but, through the settings file, the capture process.
/// Changes reach the file only with `SaveAll`. GUI thread only.
class TindraPreferences : public Preferences {
public:
    /// Index of an item. The numbers are known to the capture process, which sends them in commands.
    enum Id {
        CopyToClipboard = 0,
        HideEditor = 1,
        ShowOverlay = 2,
        TrayMode = 3,
        AutoStart = 4,
        HotKeyMod = 5,
        HotKeyChar = 6,
        HideButtons = 7,
        FileFormat = 8,
        FileNameTamplate = 9, // spelled as in the settings file
        FileNameType = 10,
        ToolFileName = 11,
        LineColor = 12,
        DrawLine = 13,
        SkipEditorNotice = 16,
        SkipTip = 17,
        FilePath = 18,
        CaptureIncludeCursor = 19,
        UsePrintScreen = 20,
        PrintScreenCaptureMode = 21,
        JpgQuality = 22,
        ShowPostSaveDlg = 23,
        ShowPostSaveAllDlg = 24,
        UseHotKey = 25,
        UseHotKey_W = 26,
        UseHotKey_C = 27,
        UseHotKey_F = 28,
        UseHotKey_S = 29,
        UseHotKey_FR = 30,
        HotKeyChar_W = 31,
        HotKeyChar_C = 32,
        HotKeyChar_F = 33,
        HotKeyChar_S = 34,
        HotKeyChar_FR = 35,
        HotKeyMod_W = 36,
        HotKeyMod_C = 37,
        HotKeyMod_F = 38,
        HotKeyMod_S = 39,
        HotKeyMod_FR = 40,
        LastSelRectTop = 41,
        LastSelRectLeft = 42,
        LastSelRectWidth = 43,
        LastSelRectHeight = 44,
        LockCaptureSize = 45,
        LockedSizeCx = 46,
        LockedSizeCy = 47,
        AutoSave = 48,
        ShowFileDlgAfterCapture = 50,
        SkipEditorWnd = 51,
        AutoSavePath = 52,
        NotifyDeleteHistory = 53,
        NotifyDeleteAllHistory = 54,
        SkipExplainReceiveToPC = 55,
        SkipExplainSendToMobile = 56,
        ShowInformationDialog = 57,
        ShowHistoryBar = 58,
        AutoHistoryDelete = 59,
        LastDrawingItem = 60,
        FigureType = 61,
        FigureLineType = 62,
        FigureLineColor = 63,
        FigureFillColor = 64,
        PenColor = 65,
        HighlighterColor = 66,
        LineWidth = 67,
        TextSize = 68,
        TextColor = 69,
        TextStyle = 70,
        MosaicStrength = 71,
        PrinterName = 72,
        PrinterPageSize = 73,
        PrinterCopies = 74,
        PrinterPageOrientation = 75,
        PrinterScale = 76,
        PrinterScaleValue = 77,
        PrinterHCenter = 78,
        PrinterVCenter = 79,
        PrinterPageLeftMargin = 80,
        PrinterPageRightMargin = 81,
        PrinterPageTopMargin = 82,
        PrinterPageBottomMargin = 83,
        PrinterDrawGrayscale = 84,
        PrinterDrawBorder = 85,
        OnceAiToolsCoachmark = 86
    };
    static constexpr int ItemCount = 87;

    /// Keys of the custom-colour lists, as `GetCustomColors` and `SetCustomColors` take them.
    static QString FigureFillCustomColorKey();
    static QString FigureLineCustomColorKey();
    static QString PenCustomColorKey();
    static QString HighlighterCustomColorKey();
    static QString TextCustomColorKey();

    /// The process-wide instance, built at first use; null once the end of the process has destroyed it.
    static TindraPreferences *instance();
    /// Tests only: forgets every value, so that the next `Init` starts like a new process.
    static void resetForTesting();

    /// Defines all items, loads everything and migrates old settings; does nothing when called again.
    bool Init();
    /// Loads presets, colours and items anew.
    void Reload();
    void SaveAll();

    /// Appends the colours of that key; an unknown key gives nothing.
    void GetCustomColors(const QString &key, QList<QColor> &colors) const;
    void SetCustomColors(const QString &key, const QList<QColor> &colors);
    void GetSizePresets(QList<QSize> &presets) const;
    void SetSizePresets(const QList<QSize> &presets);

    /// The default of an item of that type, for readers that fall back to it.
    static bool defaultBool(Id id);
    static int defaultInt(Id id);
    static QString defaultString(Id id);
    /// The item as a colour, alpha included. Stored as alpha<<24 | blue<<16 | green<<8 | red.
    QColor color(Id id) const;

    static QColor colorFromInt(int value, bool withAlpha);
    static int colorToInt(const QColor &color);

private:
    TindraPreferences() = default;

    void defineItems();
    void loadSizePresets();
    void saveSizePresets(ConfigurationLocation &location) const;
    void loadCustomColors();
    void saveCustomColors(ConfigurationLocation &location) const;
    void migrate();
    static QStringList customColorKeys();

    QList<QSize> m_sizePresets;
    QHash<QString, QList<QColor>> m_customColors; ///< by key
};
