#include "app/orderlystart.h"

#include <QString>
#include <QtGlobal>

#include <cstdio>
#include <cstdlib>

namespace {

QtMessageHandler before = nullptr;

void tell(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message) {
    std::fprintf(stderr, "tindra-editor: %s\n", message.toLocal8Bit().constData());
    // Nothing that stands can be taken down in order: the object that fails is half built.
    if (type == QtFatalMsg)
        std::_Exit(EXIT_FAILURE);
}

} // namespace

void OrderlyStart::begin() {
    before = qInstallMessageHandler(tell);
}

void OrderlyStart::end() {
    qInstallMessageHandler(before);
}
