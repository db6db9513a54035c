#include <benchmark/benchmark.h>

#include "MSPCISO8601Text.h"
#include "MSPIUtilities.h"

// Duration texts, read and printed: two of each task, and one of each piece of timephased work.

namespace {

constexpr std::string_view mspdiText = "PT16H30M0S";

void readDuration(benchmark::State& state) {
    for (auto _ : state) {
        MSPCDateComponents components;
        benchmark::DoNotOptimize(updateDateTimeComponentsFromISODuration(components, mspdiText));
    }
}
BENCHMARK(readDuration);

void mspdiToKdzxDuration(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(MSPIUtilities::mspdiToKdzxDuration(mspdiText));
    }
}
BENCHMARK(mspdiToKdzxDuration);

void mspdiToSeconds(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(MSPIUtilities::mspdiToMppDuration(mspdiText));
    }
}
BENCHMARK(mspdiToSeconds);

void secondsToMspdi(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(MSPIUtilities::mppToMspdiDuration(59'400));
    }
}
BENCHMARK(secondsToMspdi);

void secondsToKdzx(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(MSPIUtilities::mppToKdzxDuration(59'400));
    }
}
BENCHMARK(secondsToKdzx);

}  // namespace
