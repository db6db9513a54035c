#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>

#include "MSPCGregorianCalendar.h"
#include "MSPCXMLNode.h"
#include "MSPEDirection.h"
#include "MSPETimePeriod.h"
#include "MSPEWorkingDay.h"
#include "MSPEWorkingDayIndex.h"

// A clock time as three fields.
struct MSPEHourMinuteSecond {
    std::int64_t hour = 0;
    std::int64_t minute = 0;
    std::int64_t second = 0;

    friend bool operator==(const MSPEHourMinuteSecond&, const MSPEHourMinuteSecond&) = default;
};

// Where working time begins, seen from a date.
struct MSPEScheduleStart {
    MSPCInstant date;                // midnight of the day found plus the time of day
    MSPCTimeInterval timeOfDay = 0;  // seconds since midnight
    std::int64_t timePeriod = -1;    // index of the period within its day
};

// A weekly working-time calendar: for each weekday whether it is worked and in which periods. Answers questions of
// working time in the zone of its Gregorian calendar. Weekdays are numbered 1 = Sunday ... 7 = Saturday.
//
// Periods are walked in the order in which they were added, so they must be added in ascending order of time. A
// calendar is filled when it is made and not changed by any question; copies are independent. It remembers what it
// added up and what that cost, so it is not for several threads at once.
//
// Days are stepped by exactly 86,400 seconds from a midnight. Deliberate: after a change of the clocks the stepped
// "midnight" is 01:00, or 23:00 of the day before, whose weekday counts, and results shift by the change. In
// Europe/Berlin eight working hours from Friday 2012-03-23T12:00:00 on end on Monday 2012-03-26 at 13:00:00, not at
// noon.
//
// Operations that take a weekday and say nothing else raise `MSPCInternalInconsistency` "Incorrect value of weekdey
// (<weekday>). Should be from 1 to 7." for any other number.
class MSPEScheduleCalendar {
public:
    // The index of a period that does not exist.
    static constexpr std::int64_t NotFound = std::numeric_limits<std::int64_t>::max();
    // One per weekday, by its number; the first one is not used.
    using WorkingDays = std::array<MSPEWorkingDay, 8>;

    // No day is worked.
    explicit MSPEScheduleCalendar(MSPCGregorianCalendar gregorian);
    // The days as they are given.
    MSPEScheduleCalendar(MSPCGregorianCalendar gregorian, WorkingDays workingDays);
    // The days of a `schedule` element in the target format: of each child `schedule-day` the attribute `day-of-week`
    // ("sunday" to "saturday", case counts) and of its children `time-span` the attributes `start-time` and `end-time`,
    // numbers of seconds since midnight, truncated to whole ones. A missing attribute is midnight. A `schedule-day`
    // with another name and a `time-span` with an attribute that is no number are left out, and a day without any
    // `time-span` left stays non-working. An empty handle gives a calendar without working days.
    MSPEScheduleCalendar(MSPCGregorianCalendar gregorian, const MSPCXMLNode& kdzxSchedule);
    // Monday to Friday 08:00:00-12:00:00 and 13:00:00-17:00:00.
    [[nodiscard]] static MSPEScheduleCalendar standardCalendar(MSPCGregorianCalendar gregorian);

    // Appends a period to a weekday and makes it a working day.
    void addWorkingTimePeriodWeekday(const MSPETimePeriod& period, std::int64_t weekday);

    // "<MSPEScheduleCalendar: address>" and a line per slot 0 to 7: "  2: 'monday' isWorkingDay=YES timePeriods=1:
    // 8:00:00-12:00:00"; the slot without a weekday is named '(null)'.
    [[nodiscard]] std::string description() const;

    // The date that lies a duration of working time (in seconds) after or before a date. The walk begins where working
    // time begins seen from the date, so noon plus half a second is 13:00:00 in the standard calendar; durations below
    // one second end right there. A result on the very end (start, backward) of a period stays there when edge times
    // are allowed: Monday 08:00 plus eight hours is Monday 17:00; otherwise it moves to the next period: Tuesday 08:00.
    // Deliberate: the move looks at most 7 days ahead, counted from the beginning of the walk; later than that the
    // last stretch of the duration is worked off a second time, from the next day on.
    //
    // None when working time does not begin within 7 days, when the duration is not a number or above 2^53, when the
    // date lies farther than 2^53 seconds from 1970, and when the duration is never used up: where periods add up to
    // nothing or less, reversed ones being negative, and where every result falls on an edge that the search above
    // gives up. Given up after hundreds of years where such results do not repeat, or periods reach thousands of years
    // beyond their day.
    //
    // Deliberate: a day is compared with the period at which the working day before it was begun, and fails where it
    // has less. Raises `MSPCInternalInconsistency` then, "Working day has no or too few working time periods.", and
    // "Date to advance from not specified." without a date, "Duration can not be negative. To specify backward advance
    // use argument forward=NO.", and, where the walk comes backward to a working day without periods, "No time period
    // specified to start duration countdown from.".
    [[nodiscard]] std::optional<MSPCInstant> dateAdvanceByDurationForwardAllowEdgeTime(std::optional<MSPCInstant> date,
                                                                                       MSPCTimeInterval duration,
                                                                                       MSPEDirection direction,
                                                                                       MSPEEdgeTime edgeTime) const;
    // The same with edge times allowed.
    [[nodiscard]] std::optional<MSPCInstant> dateAdvanceByDurationForward(std::optional<MSPCInstant> date,
                                                                          MSPCTimeInterval duration,
                                                                          MSPEDirection direction) const;

    // The first working instant at or after a date, or the last one at or before it. The end of a period is no working
    // instant forward (12:00:00 gives 13:00:00), its start is none backward (13:00:00 gives 12:00:00). Fractions of a
    // second of the date are dropped. None when the date's day and the six days beyond hold none.
    [[nodiscard]] std::optional<MSPCInstant> startDateForDateForward(MSPCInstant date, MSPEDirection direction) const;
    // The same with the time of day and the period. In a working day without periods the time is -1 and the period is
    // 0 forward and -1 backward.
    [[nodiscard]] std::optional<MSPEScheduleStart> startDateStartDurationStartTimePeriodForDateForward(
        MSPCInstant date, MSPEDirection direction) const;

    // Working seconds between two dates; 0 when the first is not earlier. Fractions of a second of the dates are
    // dropped, and what a period holds outside 00:00 to 24:00 does not count.
    [[nodiscard]] MSPCTimeInterval workingTimeFromDateToDate(MSPCInstant from, MSPCInstant to) const;

    // What these answers cost so far, in days and periods walked and periods indexed: a measure that is the same on
    // every machine. It grows with the calendar's periods and, for one answer, not beyond all measure with the dates.
    [[nodiscard]] std::uint64_t stepsTaken() const { return _stepsTaken; }
    void addStepsTaken(std::uint64_t steps) const { _stepsTaken += steps; }
    // For the count of working time to remember what the days of 400 years make that are stepped at a time of day, in
    // seconds since midnight in Greenwich; none until it is set.
    [[nodiscard]] std::optional<MSPCTimeInterval>& workOfCycleSteppedAt(MSPCTimeInterval time) const {
        return _worksOfCycle[time];
    }

    // Whether the date's weekday is worked.
    [[nodiscard]] bool isWorkingDay(MSPCInstant date) const;
    [[nodiscard]] bool isWorkingDayWeekday(std::int64_t weekday) const;

    [[nodiscard]] const MSPCGregorianCalendar& gregorian() const { return _gregorian; }
    // The weekday's slot, valid as long as the calendar is not changed.
    [[nodiscard]] const MSPEWorkingDay& workingDay(std::int64_t weekday) const;
    // What the weekday's periods answer together, made when it is first asked for; valid as the slot is.
    [[nodiscard]] const MSPEWorkingDayIndex& workingDayIndex(std::int64_t weekday) const;
    // The number of the weekday's periods.
    [[nodiscard]] std::int64_t timePeriodsInWeekday(std::int64_t weekday) const;

    // Seconds of all periods of a weekday. Deliberate: the sum begins at -1, so a standard Monday has 28,799; -1 for a
    // day that is not worked or has no periods.
    [[nodiscard]] MSPCTimeInterval durationOfWeekday(std::int64_t weekday) const;
    // Seconds of one period; -1 for a period or weekday that does not exist.
    [[nodiscard]] MSPCTimeInterval durationOfTimePeriodWeekday(std::int64_t timePeriod, std::int64_t weekday) const;

    // The period in which the last second of a working duration falls when it is spent from the day's start (or
    // backward from its end): four hours of a standard Monday are spent in period 0, four hours and a second in 1.
    // `NotFound` when the day is shorter or the duration is not above 0.
    [[nodiscard]] std::int64_t timePeriodFromDurationForwardWeekday(MSPCTimeInterval duration, MSPEDirection direction,
                                                                    std::int64_t weekday) const;
    // The same. Deliberate: where the day was begun plays no part.
    [[nodiscard]] std::int64_t timePeriodEndDurationStartedAtForwardWeekday(MSPCTimeInterval duration,
                                                                            MSPCTimeInterval startedAt,
                                                                            MSPEDirection direction,
                                                                            std::int64_t weekday) const;
    // The start time of that period in seconds since midnight, -1 when there is none.
    [[nodiscard]] MSPCTimeInterval dayTimeFromDurationForwardWeekday(MSPCTimeInterval duration, MSPEDirection direction,
                                                                     std::int64_t weekday) const;
    [[nodiscard]] MSPCTimeInterval dayTimeEndDurationStartedAtForwardWeekday(MSPCTimeInterval duration,
                                                                             MSPCTimeInterval startedAt,
                                                                             MSPEDirection direction,
                                                                             std::int64_t weekday) const;
    // The start time of a period that a search gave, -1 for `NotFound`. Raises `MSPCInternalInconsistency` "Failed to
    // get starting hour of time period <period> at weekday <weekday>." when there is no such period.
    [[nodiscard]] MSPCTimeInterval dayTimeOfFoundTimePeriodWeekday(std::int64_t timePeriod, std::int64_t weekday) const;

    // A period, and its start and end as fields or in seconds since midnight. None, or -1, for a period or weekday
    // that does not exist.
    [[nodiscard]] std::optional<MSPETimePeriod> timePeriodWeekday(std::int64_t timePeriod, std::int64_t weekday) const;
    [[nodiscard]] std::optional<MSPEHourMinuteSecond> startHourMinuteSecondTimePeriodWeekday(
        std::int64_t timePeriod, std::int64_t weekday) const;
    [[nodiscard]] std::optional<MSPEHourMinuteSecond> endHourMinuteSecondTimePeriodWeekday(std::int64_t timePeriod,
                                                                                           std::int64_t weekday) const;
    [[nodiscard]] MSPCTimeInterval startTimeForTimePeriodWeekday(std::int64_t timePeriod, std::int64_t weekday) const;
    [[nodiscard]] MSPCTimeInterval endTimeForTimePeriodWeekday(std::int64_t timePeriod, std::int64_t weekday) const;

private:
    void addScheduleDay(const MSPCXMLNode& scheduleDay);
    [[nodiscard]] std::optional<MSPEScheduleStart> startInFirstDay(std::int64_t weekday, MSPCTimeInterval timeOfDay,
                                                                   MSPEDirection direction) const;
    [[nodiscard]] MSPEScheduleStart startOfLaterDay(std::int64_t weekday, MSPEDirection direction) const;
    [[nodiscard]] const MSPETimePeriod* findTimePeriod(std::int64_t timePeriod, std::int64_t weekday) const;

    MSPCGregorianCalendar _gregorian;
    WorkingDays _workingDays;
    mutable std::array<std::optional<MSPEWorkingDayIndex>, 8> _indexes;
    mutable std::map<MSPCTimeInterval, std::optional<MSPCTimeInterval>> _worksOfCycle;  // one for each offset
    mutable std::uint64_t _stepsTaken = 0;
};
