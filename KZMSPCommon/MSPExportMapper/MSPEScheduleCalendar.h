#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "MSPCGregorianCalendar.h"
#include "MSPCXMLNode.h"
#include "MSPEDirection.h"
#include "MSPEScheduleAdvance.h"
#include "MSPEWorkingWeek.h"
#include "MSPEWorksOfCycle.h"

// A clock time as three fields.
struct MSPEHourMinuteSecond {
    std::int64_t hour = 0;
    std::int64_t minute = 0;
    std::int64_t second = 0;

    friend bool operator==(const MSPEHourMinuteSecond&, const MSPEHourMinuteSecond&) = default;
};

// A weekly working-time calendar: a working week, and the questions of working time that it answers in the zone of its
// Gregorian calendar. What the week says of filling, asking and copying it holds here too.
//
// Days are stepped by exactly 86,400 seconds from a midnight. Deliberate: after a change of the clocks the stepped
// "midnight" is 01:00, or 23:00 of the day before, whose weekday counts, and results shift by the change. In
// Europe/Berlin eight working hours from Friday 2012-03-23T12:00:00 on end on Monday 2012-03-26 at 13:00:00, not at
// noon. The other rules of daylight saving stand in `MSPCTimeZone::daylightSavingOffset`, what it is, and in
// `MSPCDateComponents::forceSystemTimezoneforDate`, which offset is written.
class MSPEScheduleCalendar : public MSPEWorkingWeek {
public:
    // The index of a period that does not exist.
    static constexpr std::int64_t NotFound = std::numeric_limits<std::int64_t>::max();

    // No day is worked when no week is given.
    explicit MSPEScheduleCalendar(MSPCGregorianCalendar gregorian, MSPEWorkingWeek week = {});
    // The days of a `schedule` element in the target format: of each child `schedule-day` the attribute `day-of-week`
    // ("sunday" to "saturday", case counts) and of its children `time-span` the attributes `start-time` and `end-time`,
    // numbers of seconds since midnight, truncated to whole ones. A missing attribute is midnight. A `schedule-day`
    // with another name and a `time-span` with an attribute that is no number are left out, and a day without any
    // `time-span` left stays non-working. An empty handle gives a calendar without working days.
    MSPEScheduleCalendar(MSPCGregorianCalendar gregorian, const MSPCXMLNode& kdzxSchedule);
    // That of the standard week.
    [[nodiscard]] static MSPEScheduleCalendar standardCalendar(MSPCGregorianCalendar gregorian);

    // "<MSPEScheduleCalendar: address>" and the lines of the week's days.
    [[nodiscard]] std::string description() const;

    // Appends a period to a weekday and makes it a working day.
    void addWorkingTimePeriodWeekday(const MSPETimePeriod& period, MSPCWeekday weekday);

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

    // Whether the date's weekday is worked.
    [[nodiscard]] bool isWorkingDay(MSPCInstant date) const;

    [[nodiscard]] const MSPCGregorianCalendar& gregorian() const { return _gregorian; }
    // Seconds of all periods of a weekday. Deliberate: the sum begins at -1, so a standard Monday has 28,799; -1 for a
    // day that is not worked or has no periods.
    [[nodiscard]] MSPCTimeInterval durationOfWeekday(MSPCWeekday weekday) const;

    // The period in which the last second of a working duration falls when it is spent from the day's start (or
    // backward from its end): four hours of a standard Monday are spent in period 0, four hours and a second in 1.
    // `NotFound` when the day is shorter or the duration is not above 0.
    [[nodiscard]] std::int64_t timePeriodFromDurationForwardWeekday(MSPCTimeInterval duration, MSPEDirection direction,
                                                                    MSPCWeekday weekday) const;
    // The same. Deliberate: where the day was begun plays no part.
    [[nodiscard]] std::int64_t timePeriodEndDurationStartedAtForwardWeekday(MSPCTimeInterval duration,
                                                                            MSPCTimeOfDay startedAt,
                                                                            MSPEDirection direction,
                                                                            MSPCWeekday weekday) const;
    // The start time of that period, -1 when there is none.
    [[nodiscard]] MSPCTimeOfDay dayTimeFromDurationForwardWeekday(MSPCTimeInterval duration, MSPEDirection direction,
                                                                  MSPCWeekday weekday) const;
    [[nodiscard]] MSPCTimeOfDay dayTimeEndDurationStartedAtForwardWeekday(MSPCTimeInterval duration,
                                                                          MSPCTimeOfDay startedAt,
                                                                          MSPEDirection direction,
                                                                          MSPCWeekday weekday) const;
    // The start time of a period that a search gave, -1 for `NotFound`. Raises `MSPCInternalInconsistency` "Failed to
    // get starting hour of time period <period> at weekday <weekday>." when there is no such period.
    [[nodiscard]] MSPCTimeOfDay dayTimeOfFoundTimePeriodWeekday(std::int64_t timePeriod, MSPCWeekday weekday) const;

    // The start and the end of a period as fields; none for a period or weekday that does not exist.
    [[nodiscard]] std::optional<MSPEHourMinuteSecond> startHourMinuteSecondTimePeriodWeekday(std::int64_t timePeriod,
                                                                                             MSPCWeekday weekday) const;
    [[nodiscard]] std::optional<MSPEHourMinuteSecond> endHourMinuteSecondTimePeriodWeekday(std::int64_t timePeriod,
                                                                                           MSPCWeekday weekday) const;

private:
    void addScheduleDay(const MSPCXMLNode& scheduleDay);
    [[nodiscard]] std::optional<MSPEScheduleStart> startInFirstDay(MSPCWeekday weekday, MSPCTimeOfDay timeOfDay,
                                                                   MSPEDirection direction) const;
    [[nodiscard]] MSPEScheduleStart startOfLaterDay(MSPCWeekday weekday, MSPEDirection direction) const;

    MSPCGregorianCalendar _gregorian;
    mutable MSPEWorksOfCycle _worksOfCycle;
};
