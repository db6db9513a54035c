#include "MSPEScheduleCalendar.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "MSPCException.h"
#include "MSPEScheduleAdvance.h"
#include "MSPEScheduleDays.h"
#include "MSPEWeekday.h"
#include "MSPEWorkingTimeCount.h"

namespace {

constexpr MSPETimePeriod StandardMorning{8, 0, 0, 12, 0, 0};
constexpr MSPETimePeriod StandardAfternoon{13, 0, 0, 17, 0, 0};
constexpr std::int64_t Monday = 2;
constexpr std::int64_t Friday = 6;

void checkWeekday(std::int64_t weekday) {
    if (!MSPEIsWeekday(weekday)) {
        throw MSPCInternalInconsistency(
            fmt::format("Incorrect value of weekdey ({}). Should be from 1 to 7.", weekday));
    }
}

}  // namespace

MSPEScheduleCalendar::MSPEScheduleCalendar(MSPCGregorianCalendar gregorian) : _gregorian(std::move(gregorian)) {
}

MSPEScheduleCalendar::MSPEScheduleCalendar(MSPCGregorianCalendar gregorian, WorkingDays workingDays)
    : _gregorian(std::move(gregorian)), _workingDays(std::move(workingDays)) {
}

MSPEScheduleCalendar MSPEScheduleCalendar::standardCalendar(MSPCGregorianCalendar gregorian) {
    MSPEScheduleCalendar calendar(std::move(gregorian));
    for (auto weekday = Monday; weekday <= Friday; ++weekday) {
        calendar.addWorkingTimePeriodWeekday(StandardMorning, weekday);
        calendar.addWorkingTimePeriodWeekday(StandardAfternoon, weekday);
    }
    return calendar;
}

void MSPEScheduleCalendar::addWorkingTimePeriodWeekday(const MSPETimePeriod& period, std::int64_t weekday) {
    checkWeekday(weekday);
    auto& day = _workingDays[static_cast<std::size_t>(weekday)];
    day.timePeriods.push_back(period);
    day.isWorkingDay = true;
    _indexes[static_cast<std::size_t>(weekday)].reset();
    _worksOfCycle.clear();
}

std::string MSPEScheduleCalendar::description() const {
    auto text = fmt::format("<MSPEScheduleCalendar: {}>", fmt::ptr(this));
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

std::optional<MSPCInstant> MSPEScheduleCalendar::dateAdvanceByDurationForward(std::optional<MSPCInstant> date,
                                                                              MSPCTimeInterval duration,
                                                                              MSPEDirection direction) const {
    return dateAdvanceByDurationForwardAllowEdgeTime(date, duration, direction, MSPEEdgeTime::Allowed);
}

std::optional<MSPCInstant> MSPEScheduleCalendar::dateAdvanceByDurationForwardAllowEdgeTime(
    std::optional<MSPCInstant> date, MSPCTimeInterval duration, MSPEDirection direction, MSPEEdgeTime edgeTime) const {
    if (!date) {
        throw MSPCInternalInconsistency("Date to advance from not specified.");
    }
    if (duration < 0) {
        throw MSPCInternalInconsistency(
            "Duration can not be negative. To specify backward advance use argument forward=NO.");
    }
    const auto start = startDateStartDurationStartTimePeriodForDateForward(*date, direction);
    if (!start) {
        return std::nullopt;
    }
    return MSPEScheduleAdvance(*this, *start, direction, edgeTime).dateAfter(duration);
}

std::optional<MSPCInstant> MSPEScheduleCalendar::startDateForDateForward(MSPCInstant date,
                                                                         MSPEDirection direction) const {
    const auto start = startDateStartDurationStartTimePeriodForDateForward(date, direction);
    return start ? std::optional(start->date) : std::nullopt;
}

std::optional<MSPEScheduleStart> MSPEScheduleCalendar::startDateStartDurationStartTimePeriodForDateForward(
    MSPCInstant date, MSPEDirection direction) const {
    const auto timeOfDay = static_cast<MSPCTimeInterval>(_gregorian.timeOfDayOf(date));
    for (int day = 0; day < MSPEDaysOfWeek; ++day) {
        const auto weekday = _gregorian.weekdayOf(date);
        if (isWorkingDayWeekday(weekday)) {
            auto start = day == 0 ? startInFirstDay(weekday, timeOfDay, direction)
                                  : std::optional(startOfLaterDay(weekday, direction));
            if (start) {
                start->date = _gregorian.midnightOf(date) + start->timeOfDay;
                return start;
            }
        }
        date = date + MSPEStepOf(direction);
    }
    return std::nullopt;
}

std::optional<MSPEScheduleStart> MSPEScheduleCalendar::startInFirstDay(std::int64_t weekday, MSPCTimeInterval timeOfDay,
                                                                       MSPEDirection direction) const {
    const auto& index = workingDayIndex(weekday);
    if (direction == MSPEDirection::Forward) {
        const auto found = index.firstEndingAfter(timeOfDay);
        return found ? std::optional(MSPEScheduleStart{
                           {}, std::max(timeOfDay, startTimeForTimePeriodWeekday(*found, weekday)), *found})
                     : std::nullopt;
    }
    const auto found = index.lastStartingBefore(timeOfDay);
    return found ? std::optional(
                       MSPEScheduleStart{{}, std::min(timeOfDay, endTimeForTimePeriodWeekday(*found, weekday)), *found})
                 : std::nullopt;
}

MSPEScheduleStart MSPEScheduleCalendar::startOfLaterDay(std::int64_t weekday, MSPEDirection direction) const {
    if (direction == MSPEDirection::Forward) {
        return {{}, startTimeForTimePeriodWeekday(0, weekday), 0};
    }
    const auto last = timePeriodsInWeekday(weekday) - 1;
    return {{}, endTimeForTimePeriodWeekday(last, weekday), last};
}

MSPCTimeInterval MSPEScheduleCalendar::workingTimeFromDateToDate(MSPCInstant from, MSPCInstant to) const {
    return from < to ? MSPEWorkingTimeCount(*this, from, to).total() : 0;
}

bool MSPEScheduleCalendar::isWorkingDay(MSPCInstant date) const {
    return isWorkingDayWeekday(_gregorian.weekdayOf(date));
}

bool MSPEScheduleCalendar::isWorkingDayWeekday(std::int64_t weekday) const {
    return workingDay(weekday).isWorkingDay;
}

const MSPEWorkingDay& MSPEScheduleCalendar::workingDay(std::int64_t weekday) const {
    checkWeekday(weekday);
    return _workingDays[static_cast<std::size_t>(weekday)];
}

const MSPEWorkingDayIndex& MSPEScheduleCalendar::workingDayIndex(std::int64_t weekday) const {
    const auto& day = workingDay(weekday);
    auto& index = _indexes[static_cast<std::size_t>(weekday)];
    if (!index) {
        index.emplace(day.timePeriods);
        addStepsTaken(day.timePeriods.size());
    }
    return *index;
}

std::int64_t MSPEScheduleCalendar::timePeriodsInWeekday(std::int64_t weekday) const {
    return static_cast<std::int64_t>(workingDay(weekday).timePeriods.size());
}

MSPCTimeInterval MSPEScheduleCalendar::durationOfWeekday(std::int64_t weekday) const {
    const auto& day = workingDay(weekday);
    // Deliberate: a working day counts one second less than its periods hold.
    MSPCTimeInterval duration = -1;
    if (day.isWorkingDay) {
        for (const auto& period : day.timePeriods) {
            duration += period.duration();
        }
    }
    return duration;
}

MSPCTimeInterval MSPEScheduleCalendar::durationOfTimePeriodWeekday(std::int64_t timePeriod,
                                                                   std::int64_t weekday) const {
    const auto* period = findTimePeriod(timePeriod, weekday);
    return period != nullptr ? period->duration() : -1;
}

std::int64_t MSPEScheduleCalendar::timePeriodFromDurationForwardWeekday(MSPCTimeInterval duration,
                                                                        MSPEDirection direction,
                                                                        std::int64_t weekday) const {
    const auto count = timePeriodsInWeekday(weekday);
    const auto isForward = direction == MSPEDirection::Forward;
    MSPCTimeInterval spentBefore = 0;
    for (std::int64_t walked = 0; walked < count; ++walked) {
        const auto timePeriod = isForward ? walked : count - 1 - walked;
        const auto spentAfter = spentBefore + durationOfTimePeriodWeekday(timePeriod, weekday);
        if (spentBefore < duration && spentAfter >= duration) {
            return timePeriod;
        }
        spentBefore = spentAfter;
    }
    return NotFound;
}

std::int64_t MSPEScheduleCalendar::timePeriodEndDurationStartedAtForwardWeekday(MSPCTimeInterval duration,
                                                                                MSPCTimeInterval /*startedAt*/,
                                                                                MSPEDirection direction,
                                                                                std::int64_t weekday) const {
    return timePeriodFromDurationForwardWeekday(duration, direction, weekday);
}

MSPCTimeInterval MSPEScheduleCalendar::dayTimeFromDurationForwardWeekday(MSPCTimeInterval duration,
                                                                         MSPEDirection direction,
                                                                         std::int64_t weekday) const {
    return dayTimeOfFoundTimePeriodWeekday(timePeriodFromDurationForwardWeekday(duration, direction, weekday), weekday);
}

MSPCTimeInterval MSPEScheduleCalendar::dayTimeEndDurationStartedAtForwardWeekday(MSPCTimeInterval duration,
                                                                                 MSPCTimeInterval startedAt,
                                                                                 MSPEDirection direction,
                                                                                 std::int64_t weekday) const {
    return dayTimeOfFoundTimePeriodWeekday(
        timePeriodEndDurationStartedAtForwardWeekday(duration, startedAt, direction, weekday), weekday);
}

MSPCTimeInterval MSPEScheduleCalendar::dayTimeOfFoundTimePeriodWeekday(std::int64_t timePeriod,
                                                                       std::int64_t weekday) const {
    if (timePeriod == NotFound) {
        return -1;
    }
    const auto* period = findTimePeriod(timePeriod, weekday);
    if (period == nullptr) {
        throw MSPCInternalInconsistency(
            fmt::format("Failed to get starting hour of time period {} at weekday {}.", timePeriod, weekday));
    }
    return period->startTime();
}

const MSPETimePeriod* MSPEScheduleCalendar::findTimePeriod(std::int64_t timePeriod, std::int64_t weekday) const {
    if (!MSPEIsWeekday(weekday) || timePeriod < 0 || timePeriod >= timePeriodsInWeekday(weekday)) {
        return nullptr;
    }
    return &workingDay(weekday).timePeriods[static_cast<std::size_t>(timePeriod)];
}

std::optional<MSPETimePeriod> MSPEScheduleCalendar::timePeriodWeekday(std::int64_t timePeriod,
                                                                      std::int64_t weekday) const {
    const auto* period = findTimePeriod(timePeriod, weekday);
    return period != nullptr ? std::optional(*period) : std::nullopt;
}

std::optional<MSPEHourMinuteSecond> MSPEScheduleCalendar::startHourMinuteSecondTimePeriodWeekday(
    std::int64_t timePeriod, std::int64_t weekday) const {
    const auto* period = findTimePeriod(timePeriod, weekday);
    return period != nullptr
               ? std::optional(MSPEHourMinuteSecond{period->fromHour, period->fromMinute, period->fromSecond})
               : std::nullopt;
}

std::optional<MSPEHourMinuteSecond> MSPEScheduleCalendar::endHourMinuteSecondTimePeriodWeekday(
    std::int64_t timePeriod, std::int64_t weekday) const {
    const auto* period = findTimePeriod(timePeriod, weekday);
    return period != nullptr ? std::optional(MSPEHourMinuteSecond{period->toHour, period->toMinute, period->toSecond})
                             : std::nullopt;
}

MSPCTimeInterval MSPEScheduleCalendar::startTimeForTimePeriodWeekday(std::int64_t timePeriod,
                                                                     std::int64_t weekday) const {
    const auto* period = findTimePeriod(timePeriod, weekday);
    return period != nullptr ? period->startTime() : -1;
}

MSPCTimeInterval MSPEScheduleCalendar::endTimeForTimePeriodWeekday(std::int64_t timePeriod,
                                                                   std::int64_t weekday) const {
    const auto* period = findTimePeriod(timePeriod, weekday);
    return period != nullptr ? period->endTime() : -1;
}
