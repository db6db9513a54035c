#include "MSPCDay.h"

#include <chrono>

// The standard library's calendar ends at the year 32767. So each date is moved by whole cycles of 400 years into the
// first one, and the cycles are counted apart.

namespace {

constexpr std::int64_t YearsPerCycle = 400;

}  // namespace

MSPCDay MSPCDayOf(const MSPCCivilDate& date) noexcept {
    using namespace std::chrono;
    const auto cycles = MSPCFloorDivide(date.year, YearsPerCycle);
    const auto yearOfCycle = year(static_cast<int>(date.year - cycles * YearsPerCycle));
    const auto dayOfCycle =
        sys_days(yearOfCycle / static_cast<int>(date.month) / static_cast<int>(date.day)).time_since_epoch().count();
    return {dayOfCycle + cycles * MSPCDaysPerCycle};
}

MSPCCivilDate MSPCDateOf(MSPCDay day) noexcept {
    using namespace std::chrono;
    const auto cycles = MSPCFloorDivide(day.since1970, MSPCDaysPerCycle);
    const auto dayOfCycle = static_cast<int>(day.since1970 - cycles * MSPCDaysPerCycle);
    const year_month_day date{sys_days(days(dayOfCycle))};
    return {static_cast<int>(date.year()) + cycles * YearsPerCycle, static_cast<unsigned>(date.month()),
            static_cast<unsigned>(date.day())};
}

MSPCWeekday MSPCWeekdayOf(MSPCDay day) noexcept {
    constexpr std::int64_t weekdayOf1970 = 4;  // a Thursday, counted from Sunday as 0
    return MSPCWeekday{MSPCFloorModulo(day.since1970 + weekdayOf1970, MSPCDaysOfWeek) + 1};
}
