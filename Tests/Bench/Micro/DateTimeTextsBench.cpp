#include <benchmark/benchmark.h>

#include "FuzzWorld.h"
#include "MSPCISO8601Text.h"
#include "MSPIUtilities.h"

// Date-time texts, read and printed: several of each task.

namespace {

constexpr std::string_view mspdiText = "2012-07-05T08:00:00";
constexpr std::string_view kdzxText = "2012-07-05T08:00:00+02:00";

void readDateTime(benchmark::State& state) {
    for (auto _ : state) {
        MSPCDateComponents components;
        benchmark::DoNotOptimize(updateDateTimeComponentsFromISODateTime(components, kdzxText));
    }
}
BENCHMARK(readDateTime);

void printDateTime(benchmark::State& state) {
    MSPCDateComponents components;
    const auto units = updateDateTimeComponentsFromISODateTime(components, kdzxText);
    for (auto _ : state) {
        benchmark::DoNotOptimize(stringFromComponentsUnitFlags(components, units));
    }
}
BENCHMARK(printDateTime);

void mspdiToKdzx(benchmark::State& state) {
    const FuzzWorld world;
    const MSPIUtilities conversions(world.services);
    for (auto _ : state) {
        benchmark::DoNotOptimize(conversions.mspdiToKdzxDateTime(mspdiText));
    }
}
BENCHMARK(mspdiToKdzx);

void mspdiToInstant(benchmark::State& state) {
    const FuzzWorld world;
    const MSPIUtilities conversions(world.services);
    for (auto _ : state) {
        benchmark::DoNotOptimize(conversions.mspdiToMppDateTime(mspdiText));
    }
}
BENCHMARK(mspdiToInstant);

void instantToKdzx(benchmark::State& state) {
    const FuzzWorld world;
    const MSPIUtilities conversions(world.services);
    const auto instant = conversions.mspdiToMppDateTime(mspdiText);
    for (auto _ : state) {
        benchmark::DoNotOptimize(conversions.mppToKdzxDateTime(instant));
    }
}
BENCHMARK(instantToKdzx);

}  // namespace
