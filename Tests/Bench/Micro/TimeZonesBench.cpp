#include <benchmark/benchmark.h>

#include "MSPCTimeZone.h"

// Look-ups in a zone with daylight-saving time, walking through the days of 30 years: each date of a plan needs some.

namespace {

constexpr std::int64_t day = 86'400;
constexpr std::int64_t firstDay = 10'957 * day;  // 2000-01-01T00:00:00Z
constexpr std::int64_t dayCount = 30 * 365;

MSPCTimeZone berlin() {
    return *MSPCTimeZone::named("Europe/Berlin");
}

// Calls `lookUp` with the noon of one day after the other, in seconds since 1970.
template <typename LookUp>
void lookUpDays(benchmark::State& state, const LookUp& lookUp) {
    std::int64_t position = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(lookUp(firstDay + position * day + day / 2));
        position = (position + 1) % dayCount;
    }
}

void secondsFromGMT(benchmark::State& state) {
    const auto zone = berlin();
    lookUpDays(state, [&](std::int64_t noon) { return zone.secondsFromGMT({static_cast<double>(noon)}); });
}
BENCHMARK(secondsFromGMT);

void daylightSavingOffset(benchmark::State& state) {
    const auto zone = berlin();
    lookUpDays(state, [&](std::int64_t noon) { return zone.daylightSavingOffset({static_cast<double>(noon)}); });
}
BENCHMARK(daylightSavingOffset);

void instantFromWallClock(benchmark::State& state) {
    const auto zone = berlin();
    lookUpDays(state, [&](std::int64_t noon) { return zone.instantFromWallClock(noon).secondsSince1970; });
}
BENCHMARK(instantFromWallClock);

// What an import pays once.
void zoneByName(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(berlin());
    }
}
BENCHMARK(zoneByName);

}  // namespace
