#include "ipc/capturemessages.h"

#include "platform/capturechannel.h"
#include "platform/platform.h"
#include "services/tracelog.h"

namespace {

void traceEvent(const QString &tag, quint32 message, quint64 wParam, qint64 lParam) {
    trace(2, tag, "%d [%d] [%d]", int(message), int(wParam), int(lParam));
}

} // namespace

bool PostMessageToTindra(quint32 message, quint64 wParam, qint64 lParam) {
    if (!findCaptureWindow())
        return false;
    traceEvent(QStringLiteral("PostMessageToTindra"), message, wParam, lParam);
    return Platform::instance().captureChannel().post(message, wParam, lParam);
}

qint64 SendMessageToTindra(quint32 message, quint64 wParam, qint64 lParam) {
    if (!findCaptureWindow())
        return 0;
    traceEvent(QStringLiteral("SendMessageToTindra"), message, wParam, lParam);
    return Platform::instance().captureChannel().send(message, wParam, lParam);
}

bool findCaptureWindow() {
    return Platform::instance().captureChannel().isCaptureProcessPresent();
}
