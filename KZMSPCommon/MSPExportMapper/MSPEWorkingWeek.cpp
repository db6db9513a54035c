#include "MSPEWorkingWeek.h"

#include <fmt/format.h>

#include <iterator>
#include <utility>

#include "MSPCException.h"
#include "MSPEWeekday.h"

namespace {

constexpr MSPETimePeriod StandardMorning{8, 0, 0, 12, 0, 0};
constexpr MSPETimePeriod StandardAfternoon{13, 0, 0, 17, 0, 0};

}  // namespace

MSPEWorkingWeek::MSPEWorkingWeek(WorkingDays workingDays) : _workingDays(std::move(workingDays)) {
}

void MSPEWorkingWeek::raiseNoWeekday(MSPCWeekday weekday) {
    throw MSPCInternalInconsistency(
        fmt::format("Incorrect value of weekdey ({}). Should be from 1 to 7.", MSPCNumberOf(weekday)));
}

const MSPEWorkingWeek& MSPEWorkingWeek::standardWeek() {
    static const auto standard = [] {
        MSPEWorkingWeek week;
        for (auto weekday = MSPCWeekday::Monday; weekday <= MSPCWeekday::Friday; weekday = weekday + 1) {
            week.addWorkingTimePeriodWeekday(StandardMorning, weekday);
            week.addWorkingTimePeriodWeekday(StandardAfternoon, weekday);
        }
        return week;
    }();
    return standard;
}

void MSPEWorkingWeek::addWorkingTimePeriodWeekday(const MSPETimePeriod& period, MSPCWeekday weekday) {
    const auto slot = slotOf(weekday);
    _workingDays[slot].timePeriods.push_back(period);
    _workingDays[slot].isWorkingDay = true;
    _indexes[slot].reset();
}

const MSPEWorkingDayIndex& MSPEWorkingWeek::workingDayIndex(MSPCWeekday weekday) const {
    const auto slot = slotOf(weekday);
    auto& index = _indexes[slot];
    if (!index) {
        const auto& timePeriods = _workingDays[slot].timePeriods;
        index.emplace(timePeriods);
        addStepsTaken(timePeriods.size());
    }
    return *index;
}

const MSPETimePeriod* MSPEWorkingWeek::findTimePeriod(std::int64_t timePeriod, MSPCWeekday weekday) const {
    if (!MSPCIsWeekday(weekday) || timePeriod < 0 || timePeriod >= timePeriodsInWeekday(weekday)) {
        return nullptr;
    }
    return &workingDay(weekday).timePeriods[static_cast<std::size_t>(timePeriod)];
}

std::optional<MSPETimePeriod> MSPEWorkingWeek::timePeriodWeekday(std::int64_t timePeriod, MSPCWeekday weekday) const {
    const auto* period = findTimePeriod(timePeriod, weekday);
    return period != nullptr ? std::optional(*period) : std::nullopt;
}

MSPCTimeOfDay MSPEWorkingWeek::startTimeForTimePeriodWeekday(std::int64_t timePeriod, MSPCWeekday weekday) const {
    const auto* period = findTimePeriod(timePeriod, weekday);
    return period != nullptr ? period->startTime() : MSPCTimeOfDay{-1};
}

MSPCTimeOfDay MSPEWorkingWeek::endTimeForTimePeriodWeekday(std::int64_t timePeriod, MSPCWeekday weekday) const {
    const auto* period = findTimePeriod(timePeriod, weekday);
    return period != nullptr ? period->endTime() : MSPCTimeOfDay{-1};
}

MSPCTimeInterval MSPEWorkingWeek::durationOfTimePeriodWeekday(std::int64_t timePeriod, MSPCWeekday weekday) const {
    const auto* period = findTimePeriod(timePeriod, weekday);
    return period != nullptr ? period->duration() : -1;
}

std::string MSPEWorkingWeek::descriptionOfDays() const {
    std::string text;
    for (std::size_t slot = 0; slot < _workingDays.size(); ++slot) {
        const auto& day = _workingDays[slot];
        fmt::format_to(std::back_inserter(text), "\n  {}: '{}' isWorkingDay={} timePeriods={}: ", slot,
                       slot == 0 ? "(null)" : MSPEWeekdayNames[slot], day.isWorkingDay ? "YES" : "NO",
                       day.timePeriods.size());
        for (const auto& period : day.timePeriods) {
            fmt::format_to(std::back_inserter(text), " {}:{:02}:{:02}-{}:{:02}:{:02}", period.fromHour,
                           period.fromMinute, period.fromSecond, period.toHour, period.toMinute, period.toSecond);
        }
    }
    return text;
}
