#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <random>
#include <string>

#include "MSPEScheduleCalendar.h"
#include "MSPEScheduleIterator.h"

// Working time worked out period by period and day by day, for comparison with what leaps, sums and indexes give.

inline constexpr MSPCTimeInterval PlainDay = 86'400;

// Working time counted over the stops of the iterator.
inline MSPCTimeInterval plainCount(const MSPEScheduleCalendar& calendar, MSPCInstant from, MSPCInstant to) {
    const auto& gregorian = calendar.gregorian();
    const auto fromDay = gregorian.midnightOf(from);
    const auto toDay = gregorian.midnightOf(to);
    const auto fromTime = gregorian.timeOfDayOf(from);
    const auto toTime = gregorian.timeOfDayOf(to);
    MSPCTimeInterval total = 0;
    MSPEScheduleIterator iterator(calendar, gregorian, from, MSPEDirection::Forward);
    for (auto stop = iterator.nextTimePeriodTimePeriodIndexDateFlag(); from < to && stop && stop->date <= toDay;
         stop = iterator.nextTimePeriodTimePeriodIndexDateFlag()) {
        const auto lower = stop->date == fromDay ? fromTime : MSPCMidnight;
        const auto upper = stop->date == toDay ? toTime : MSPCEndOfDay;
        total +=
            std::max(0.0, std::min(upper, stop->timePeriod.endTime()) - std::max(lower, stop->timePeriod.startTime()));
    }
    return total;
}

// Where working time begins, found by looking at each period.
inline std::optional<MSPEScheduleStart> plainStart(const MSPEScheduleCalendar& calendar, MSPCInstant date,
                                                   MSPEDirection direction) {
    const auto isForward = direction == MSPEDirection::Forward;
    const auto& gregorian = calendar.gregorian();
    const auto time = gregorian.timeOfDayOf(date);
    for (int k = 0; k <= 6; ++k, date = isForward ? date + PlainDay : date - PlainDay) {
        const auto weekday = gregorian.weekdayOf(date);
        if (!calendar.isWorkingDayWeekday(weekday)) {
            continue;
        }
        const auto midnight = gregorian.midnightOf(date);
        const auto count = calendar.timePeriodsInWeekday(weekday);
        if (k > 0) {
            const auto period = isForward ? 0 : count - 1;
            const auto start = isForward ? calendar.startTimeForTimePeriodWeekday(period, weekday)
                                         : calendar.endTimeForTimePeriodWeekday(period, weekday);
            return MSPEScheduleStart{midnight + start, start, period};
        }
        for (std::int64_t walked = 0; walked < count; ++walked) {
            const auto period = isForward ? walked : count - 1 - walked;
            const auto begin = calendar.startTimeForTimePeriodWeekday(period, weekday);
            const auto end = calendar.endTimeForTimePeriodWeekday(period, weekday);
            if (isForward ? end > time : begin < time) {
                const auto start = isForward ? std::max(time, begin) : std::min(time, end);
                return MSPEScheduleStart{midnight + start, start, period};
            }
        }
    }
    return std::nullopt;
}

// What came of a walk: a date, no date, a failure, or nothing within the days it was given.
struct PlainAdvance {
    std::optional<MSPCInstant> date;
    bool hasRaised = false;
    bool isUnfinished = false;
};

// A duration (of a second or more) worked off day by day, from a start with a period.
inline PlainAdvance plainAdvance(const MSPEScheduleCalendar& calendar, MSPCInstant from, MSPCTimeInterval duration,
                                 MSPEDirection direction, MSPEEdgeTime edgeTime, std::int64_t mostDays) {
    const auto start = plainStart(calendar, from, direction);
    if (!start) {
        return {};
    }
    const auto sign = direction == MSPEDirection::Forward ? 1 : -1;
    const auto near = [&](std::int64_t period, MSPCWeekday weekday) {
        return sign > 0 ? calendar.startTimeForTimePeriodWeekday(period, weekday)
                        : calendar.endTimeForTimePeriodWeekday(period, weekday);
    };
    const auto far = [&](std::int64_t period, MSPCWeekday weekday) {
        return sign > 0 ? calendar.endTimeForTimePeriodWeekday(period, weekday)
                        : calendar.startTimeForTimePeriodWeekday(period, weekday);
    };
    auto midnight = calendar.gregorian().midnightOf(start->date);
    auto remaining = duration;
    auto period = start->timePeriod;
    std::int64_t consumed = 0;
    std::int64_t days = 0;
    const auto step = [&] {
        midnight = midnight + sign * PlainDay;
        ++days;
    };
    for (; days <= mostDays; step()) {
        auto weekday = calendar.gregorian().weekdayOf(midnight);
        if (!calendar.isWorkingDayWeekday(weekday)) {
            continue;
        }
        const auto count = calendar.timePeriodsInWeekday(weekday);
        if (count < period) {
            return {std::nullopt, true, false};
        }
        if (days > 0) {
            period = sign > 0 ? 0 : count - 1;
        }
        // Backward from a period that the day has not, a walk can begin: its times read as -1.
        for (auto i = period; sign > 0 ? i < count : i >= 0; i += sign) {
            const auto begin = consumed == 0 ? start->timeOfDay : near(i, weekday);
            const auto end = far(i, weekday);
            const auto result = begin + sign * remaining;
            if (sign > 0 ? result > end : result < end) {
                remaining -= sign * (end - begin);
                ++consumed;
                continue;
            }
            if (result != end || edgeTime == MSPEEdgeTime::Allowed) {
                return {midnight + result};
            }
            if (sign > 0 ? i < count - 1 : i > 0) {
                return {midnight + near(i + sign, weekday)};
            }
            while (days < 7) {
                step();
                weekday = calendar.gregorian().weekdayOf(midnight);
                const auto nextCount = calendar.timePeriodsInWeekday(weekday);
                if (calendar.isWorkingDayWeekday(weekday) && nextCount > 0) {
                    return {midnight + near(sign > 0 ? 0 : nextCount - 1, weekday)};
                }
            }
            break;
        }
    }
    return {std::nullopt, false, true};
}

// Calendars of all kinds, the same in every run.
class RandomSchedules {
public:
    std::int64_t between(std::int64_t low, std::int64_t high) {
        return std::uniform_int_distribution<std::int64_t>(low, high)(_engine);
    }

    // Periods in ascending order, as plans have them.
    MSPEScheduleCalendar calendar(const MSPCGregorianCalendar& gregorian) {
        MSPEScheduleCalendar calendar(gregorian);
        for (const auto weekday : MSPCWeekdays) {
            for (auto hour = between(0, 20); between(0, 2) > 0 && hour < 24; hour += 3) {
                calendar.addWorkingTimePeriodWeekday({hour, between(0, 59), 0, hour + between(1, 2), 0, between(0, 59)},
                                                     weekday);
            }
        }
        return calendar;
    }

    // Few working days, and periods that overlap, are empty, out of order, reversed, or reach beyond their day.
    MSPEScheduleCalendar oddCalendar(const MSPCGregorianCalendar& gregorian) {
        MSPEScheduleCalendar calendar(gregorian);
        for (auto days = between(1, 3); days > 0; --days) {
            const MSPCWeekday weekday{between(1, 7)};
            for (auto periods = between(1, 3); periods > 0; --periods) {
                const auto farthest = between(0, 9) == 0 ? 200'000 : 86'400;
                calendar.addWorkingTimePeriodWeekday(
                    {0, 0, between(86'400 - farthest, farthest), 0, 0, between(86'400 - farthest, farthest)}, weekday);
            }
        }
        return calendar;
    }

private:
    std::mt19937_64 _engine{20120305};
};
