#pragma once

#include <QtGlobal>

/// The way back to the companion capture process: numbered events with two parameters.
///
/// The capture process is looked up anew for every event; its absence is normal.
class CaptureChannel {
public:
    virtual ~CaptureChannel() = default;

    virtual bool isCaptureProcessPresent() = 0;
    /// Hands the event over without waiting for anybody; false when it could not be handed over.
    virtual bool post(quint32 message, quint64 wParam, qint64 lParam) = 0;
    /// Hands the event over and waits for the answer; 0 when there is none.
    virtual qint64 send(quint32 message, quint64 wParam, qint64 lParam) = 0;
};
