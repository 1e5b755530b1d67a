// usage: bench_functions [GOOGLE BENCHMARK ARGUMENT …]
//
// The functions by themselves; function-figures makes figures of what this reports.

#include "preferences/tindrapreferences.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <memory>

/// Adds those that work with whole pictures; what they work with lives as long as what this returns.
std::shared_ptr<void> addPictures();

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    TindraPreferences::instance()->Init();
    const std::shared_ptr<void> pictures = addPictures();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
