#include "services/tracelog.h"

#include <QElapsedTimer>
#include <QVector>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int Calls = 2000000;
constexpr int Runs = 11;
constexpr double TargetNanoseconds = 10.0;

long allocations = 0;

/// What the compiler must believe to be looked at, so that it keeps the loop.
void keep(const void *value) {
    asm volatile("" : : "r"(value) : "memory");
}

template <class Call> double nanosecondsOf(Call call) {
    QVector<double> times;
    for (int run = 0; run < Runs; ++run) {
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; i < Calls; ++i)
            call(i);
        times.append(double(clock.nsecsElapsed()) / Calls);
    }
    std::sort(times.begin(), times.end());
    return times.at(Runs / 2);
}

template <class Call> void print(const char *name, double emptyLoop, Call call) {
    const double time = std::max(0.0, nanosecondsOf(call) - emptyLoop);
    const long before = allocations;
    for (int i = 0; i < Calls; ++i)
        call(i);
    const long made = allocations - before;
    std::printf("%-58s %8.2f %-4s %8.2f %s\n", name, time, "ns", TargetNanoseconds,
                time <= TargetNanoseconds ? "met" : "missed");
    std::printf("%-58s %8ld %-4s %8d %s\n", "   allocations of all calls", made, "", 0,
                made == 0 ? "met" : "missed");
}

} // namespace

extern "C" {
void *__libc_malloc(std::size_t size);

/// Every allocation of the process, the toolkit's too.
void *malloc(std::size_t size) {
    ++allocations;
    return __libc_malloc(size);
}
}

int main() {
    if (TraceLog::threshold() != TraceLog::Off)
        return EXIT_FAILURE;
    const QString tag = QStringLiteral("Bench");
    const double emptyLoop = nanosecondsOf([&](int i) { keep(&i); });
    print("filtered trace", emptyLoop, [&](int i) {
        keep(&i);
        trace(1, tag, "%d", i);
    });
    print("filtered traceMessage", emptyLoop, [&](int i) {
        keep(&i);
        traceMessage(tag, 1, "message");
    });
    print("filtered TraceScope", emptyLoop, [&](int i) {
        keep(&i);
        const TraceScope scope(tag);
    });
    return EXIT_SUCCESS;
}
