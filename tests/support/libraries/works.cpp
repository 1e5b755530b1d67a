#include "support/recordedcall.h"

namespace {

struct Loaded {
    Loaded() { recordCall("loaded"); }
    ~Loaded() { recordCall("unloaded"); }
} loaded;

} // namespace

EXPORTED int Add(int a, int b) {
    recordCall("Add");
    return a + b;
}
