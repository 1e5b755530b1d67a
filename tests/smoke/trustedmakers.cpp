#include "platform/filesignature.h"

namespace {

/// Set before `main`, so that the program is otherwise the real one.
const bool isSet = [] {
    platform::setTrustedRoots(QStringLiteral(TINDRA_MAKERS "/root.pem"));
    return true;
}();

} // namespace
