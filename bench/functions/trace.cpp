// A line of the log that is not written, with the default threshold.

#include "services/tracelog.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>

namespace {

constexpr int CountedCalls = 1000;

std::atomic<long> allocations{0};

/// Times the call, and counts what many calls allocate.
template <class Call> void measure(benchmark::State &state, Call call) {
    if (TraceLog::threshold() != TraceLog::Off)
        state.SkipWithError("the log is on");
    int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(++i);
        call(i);
    }
    const long before = allocations;
    for (int counted = 0; counted < CountedCalls; ++counted)
        call(counted);
    state.counters["allocations"] = double(allocations - before);
}

void filteredTrace(benchmark::State &state) {
    const QString tag = QStringLiteral("Bench");
    measure(state, [&](int i) { trace(1, tag, "%d", i); });
}
BENCHMARK(filteredTrace)->Name("trace/trace");

void filteredMessage(benchmark::State &state) {
    const QString tag = QStringLiteral("Bench");
    measure(state, [&](int) { traceMessage(tag, 1, "message"); });
}
BENCHMARK(filteredMessage)->Name("trace/traceMessage");

void filteredScope(benchmark::State &state) {
    const QString tag = QStringLiteral("Bench");
    measure(state, [&](int) { const TraceScope scope(tag); });
}
BENCHMARK(filteredScope)->Name("trace/TraceScope");

} // namespace

extern "C" {
void *__libc_malloc(std::size_t size);

/// Every allocation of the process, the toolkit's too.
void *malloc(std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_malloc(size);
}
}
