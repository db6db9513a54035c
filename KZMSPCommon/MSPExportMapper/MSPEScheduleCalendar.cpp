#include "MSPEScheduleCalendar.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "MSPCException.h"
#include "MSPCTextScanner.h"
#include "MSPEWeekday.h"
#include "MSPEWorkingTimeCount.h"

namespace {

MSPEHourMinuteSecond splitSeconds(std::int64_t seconds) {
    const auto hour = seconds / 3600;
    const auto minute = (seconds - 3600 * hour) / 60;
    return {hour, minute, seconds - 3600 * hour - 60 * minute};
}

// The truncated number of seconds as far as 64 bits hold it.
std::int64_t wholeSeconds(double seconds) {
    constexpr double limit = 9.2e18;
    return static_cast<std::int64_t>(std::clamp(seconds, -limit, limit));
}

// Midnight for a missing attribute, none for a text that is no number.
std::optional<MSPEHourMinuteSecond> timeInAttribute(const MSPCXMLNode& timeSpan, std::string_view name) {
    const auto attribute = timeSpan.attribute(name);
    if (!attribute) {
        return MSPEHourMinuteSecond{};
    }
    const auto seconds = scanDouble(attribute.stringValue());
    return seconds ? std::optional(splitSeconds(wholeSeconds(*seconds))) : std::nullopt;
}

}  // namespace

MSPEScheduleCalendar::MSPEScheduleCalendar(MSPCGregorianCalendar gregorian, MSPEWorkingWeek week)
    : MSPEWorkingWeek(std::move(week)), _gregorian(std::move(gregorian)) {
}

MSPEScheduleCalendar MSPEScheduleCalendar::standardCalendar(MSPCGregorianCalendar gregorian) {
    return MSPEScheduleCalendar(std::move(gregorian), standardWeek());
}

MSPEScheduleCalendar::MSPEScheduleCalendar(MSPCGregorianCalendar gregorian, const MSPCXMLNode& kdzxSchedule)
    : _gregorian(std::move(gregorian)) {
    constexpr std::string_view name = "schedule-day";
    for (auto day = kdzxSchedule.firstChildElement(name); day; day = day.nextSiblingElement(name)) {
        addScheduleDay(day);
    }
}

void MSPEScheduleCalendar::addWorkingTimePeriodWeekday(const MSPETimePeriod& period, MSPCWeekday weekday) {
    MSPEWorkingWeek::addWorkingTimePeriodWeekday(period, weekday);
    _worksOfCycle.clear();
}

void MSPEScheduleCalendar::addScheduleDay(const MSPCXMLNode& scheduleDay) {
    const auto weekday = MSPEWeekdayNamed(scheduleDay.attribute("day-of-week").stringValue());
    if (!weekday) {
        return;
    }
    constexpr std::string_view name = "time-span";
    for (auto span = scheduleDay.firstChildElement(name); span; span = span.nextSiblingElement(name)) {
        const auto from = timeInAttribute(span, "start-time");
        const auto to = timeInAttribute(span, "end-time");
        if (from && to) {
            addWorkingTimePeriodWeekday({from->hour, from->minute, from->second, to->hour, to->minute, to->second},
                                        *weekday);
        }
    }
}

std::string MSPEScheduleCalendar::description() const {
    return fmt::format("<MSPEScheduleCalendar: {}>{}", fmt::ptr(this), descriptionOfDays());
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
    return MSPEScheduleAdvance(*this, _gregorian, *start, direction, edgeTime).dateAfter(duration);
}

std::optional<MSPCInstant> MSPEScheduleCalendar::startDateForDateForward(MSPCInstant date,
                                                                         MSPEDirection direction) const {
    const auto start = startDateStartDurationStartTimePeriodForDateForward(date, direction);
    return start ? std::optional(start->date) : std::nullopt;
}

std::optional<MSPEScheduleStart> MSPEScheduleCalendar::startDateStartDurationStartTimePeriodForDateForward(
    MSPCInstant date, MSPEDirection direction) const {
    const auto timeOfDay = _gregorian.timeOfDayOf(date);
    for (int day = 0; day < MSPCDaysOfWeek; ++day) {
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

std::optional<MSPEScheduleStart> MSPEScheduleCalendar::startInFirstDay(MSPCWeekday weekday, MSPCTimeOfDay timeOfDay,
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

MSPEScheduleStart MSPEScheduleCalendar::startOfLaterDay(MSPCWeekday weekday, MSPEDirection direction) const {
    if (direction == MSPEDirection::Forward) {
        return {{}, startTimeForTimePeriodWeekday(0, weekday), 0};
    }
    const auto last = timePeriodsInWeekday(weekday) - 1;
    return {{}, endTimeForTimePeriodWeekday(last, weekday), last};
}

MSPCTimeInterval MSPEScheduleCalendar::workingTimeFromDateToDate(MSPCInstant from, MSPCInstant to) const {
    return from < to ? MSPEWorkingTimeCount(*this, _gregorian, _worksOfCycle, from, to).total() : 0;
}

bool MSPEScheduleCalendar::isWorkingDay(MSPCInstant date) const {
    return isWorkingDayWeekday(_gregorian.weekdayOf(date));
}

MSPCTimeInterval MSPEScheduleCalendar::durationOfWeekday(MSPCWeekday weekday) const {
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

std::int64_t MSPEScheduleCalendar::timePeriodFromDurationForwardWeekday(MSPCTimeInterval duration,
                                                                        MSPEDirection direction,
                                                                        MSPCWeekday weekday) const {
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
                                                                                MSPCTimeOfDay /*startedAt*/,
                                                                                MSPEDirection direction,
                                                                                MSPCWeekday weekday) const {
    return timePeriodFromDurationForwardWeekday(duration, direction, weekday);
}

MSPCTimeOfDay MSPEScheduleCalendar::dayTimeFromDurationForwardWeekday(MSPCTimeInterval duration,
                                                                      MSPEDirection direction,
                                                                      MSPCWeekday weekday) const {
    return dayTimeOfFoundTimePeriodWeekday(timePeriodFromDurationForwardWeekday(duration, direction, weekday), weekday);
}

MSPCTimeOfDay MSPEScheduleCalendar::dayTimeEndDurationStartedAtForwardWeekday(MSPCTimeInterval duration,
                                                                              MSPCTimeOfDay startedAt,
                                                                              MSPEDirection direction,
                                                                              MSPCWeekday weekday) const {
    return dayTimeOfFoundTimePeriodWeekday(
        timePeriodEndDurationStartedAtForwardWeekday(duration, startedAt, direction, weekday), weekday);
}

MSPCTimeOfDay MSPEScheduleCalendar::dayTimeOfFoundTimePeriodWeekday(std::int64_t timePeriod,
                                                                    MSPCWeekday weekday) const {
    if (timePeriod == NotFound) {
        return {-1};
    }
    const auto period = timePeriodWeekday(timePeriod, weekday);
    if (!period) {
        throw MSPCInternalInconsistency(fmt::format("Failed to get starting hour of time period {} at weekday {}.",
                                                    timePeriod, MSPCNumberOf(weekday)));
    }
    return period->startTime();
}

std::optional<MSPEHourMinuteSecond> MSPEScheduleCalendar::startHourMinuteSecondTimePeriodWeekday(
    std::int64_t timePeriod, MSPCWeekday weekday) const {
    const auto period = timePeriodWeekday(timePeriod, weekday);
    return period ? std::optional(MSPEHourMinuteSecond{period->fromHour, period->fromMinute, period->fromSecond})
                  : std::nullopt;
}

std::optional<MSPEHourMinuteSecond> MSPEScheduleCalendar::endHourMinuteSecondTimePeriodWeekday(
    std::int64_t timePeriod, MSPCWeekday weekday) const {
    const auto period = timePeriodWeekday(timePeriod, weekday);
    return period ? std::optional(MSPEHourMinuteSecond{period->toHour, period->toMinute, period->toSecond})
                  : std::nullopt;
}
