#include <benchmark/benchmark.h>

#include "MSPEScheduleCalendar.h"

// The date that lies some working hours away, in the standard calendar of a zone with daylight-saving time: from a
// day's work to ten years'.

namespace {

constexpr double hour = 3'600;
constexpr MSPCInstant start{1'325'494'800};  // Monday 2012-01-02T09:00:00 in Europe/Berlin

void advance(benchmark::State& state, MSPEDirection direction) {
    const auto calendar =
        MSPEScheduleCalendar::standardCalendar(MSPCGregorianCalendar(*MSPCTimeZone::named("Europe/Berlin")));
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            calendar.dateAdvanceByDurationForward(start, static_cast<double>(state.range(0)) * hour, direction));
    }
}

void advanceForwardByHours(benchmark::State& state) {
    advance(state, MSPEDirection::Forward);
}
BENCHMARK(advanceForwardByHours)->Arg(8)->Arg(160)->Arg(2'080)->Arg(20'800);

void advanceBackwardByHours(benchmark::State& state) {
    advance(state, MSPEDirection::Backward);
}
BENCHMARK(advanceBackwardByHours)->Arg(8)->Arg(160)->Arg(2'080)->Arg(20'800);

}  // namespace
