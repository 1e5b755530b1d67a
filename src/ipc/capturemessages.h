#pragma once

#include <QtGlobal>

/// Events to the capture process. The numbers are fixed between the two programs.
namespace CaptureMessage {
enum : quint32 {
    PreferencesOpened = 0x865,
    PreferencesClosed = 0x866, ///< wParam: result code; lParam bit 0: modal, bit 1: "hide buttons" turned on
    ProgramEnds = 0x867,
    NewCapture = 0x868,
    BroughtUp = 0x869, ///< by `/show`, or for the exit question
    OnlineUpdate = 0x86A,
    HiddenByClose = 0x86B,
    ShownForCapture = 0x86C,
    Hidden = 0x86D, ///< wParam: 1 when the recent list is full
    Shown = 0x86E,
    LogTargetToggled = 0x86F, ///< by the debug dialog; wParam: 1 for memory, which pictures then come through
    SilentCaptureSaved = 0x870
};
}

/// Posts an event and returns at once; dropped silently without a capture process. GUI thread only.
bool PostMessageToTindra(quint32 message, quint64 wParam, qint64 lParam);
/// The same, waiting for an answer.
qint64 SendMessageToTindra(quint32 message, quint64 wParam, qint64 lParam);
/// Whether a capture process is there.
bool findCaptureWindow();
