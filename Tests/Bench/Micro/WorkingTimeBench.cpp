#include <benchmark/benchmark.h>

#include "MSPEScheduleCalendar.h"

// Working time between two dates in the standard calendar of a zone with daylight-saving time, up to ten years.

namespace {

constexpr double day = 86'400;
constexpr MSPCInstant start{1'325'494'800};  // Monday 2012-01-02T09:00:00 in Europe/Berlin

void workingTimeOverDays(benchmark::State& state) {
    const auto calendar =
        MSPEScheduleCalendar::standardCalendar(MSPCGregorianCalendar(*MSPCTimeZone::named("Europe/Berlin")));
    const MSPCInstant end{start.secondsSince1970 + static_cast<double>(state.range(0)) * day};
    for (auto _ : state) {
        benchmark::DoNotOptimize(calendar.workingTimeFromDateToDate(start, end));
    }
}
BENCHMARK(workingTimeOverDays)->Arg(1)->Arg(30)->Arg(365)->Arg(3'653);

}  // namespace
