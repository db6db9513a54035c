#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCWeekday.h"
#include "MSPCXMLNode.h"
#include "MSPICalendarSchedules.h"
#include "MSPIGrowthBounds.h"
#include "MSPIObjectMapperBase.h"

// Turns one MSPDI `Calendar` into a `schedule` of the target format: the weekly working times become `schedule-day`
// elements, the exceptions over one range of dates become events of up to two nested calendars, "Time Off" and
// "Overtime". Recurring exceptions, days of the older kind (DayType 0) and the base calendar are not carried over.
//
// All new elements belong to the scenario document and are owned by the caller. A query that fails counts as one that
// matches nothing; texts of numbers, dates and times that cannot be read raise as the node queries and conversions do.
// What is made beyond what the plan holds counts in `MSPIGrowthBounds`, which raise where schedules grow beyond all
// measure.
class MSPICalendarMapper : public MSPIObjectMapperBase {
public:
    using MSPIObjectMapperBase::MSPIObjectMapperBase;

    // The `schedule` of a calendar, with the log line "  Mapping Calendar UID='<UID>' name='<Name>' ...". Nested
    // calendars are left out where they would hold no event. A calendar that was mapped in the scenario before is not
    // mapped again but copied: its first schedule must stay in the scenario's document, as it is, until the scenario is
    // mapped.
    [[nodiscard]] MSPCXMLNewElement newScheduleFromMSPCalendar(const MSPCXMLNode& mspCalendar) const;

    // A `schedule-day` per MSPDI `WeekDay` of DayType 1 (Sunday) to 7, in document order; days of one type are not
    // merged. A day with DayWorking gets its working times as seconds since midnight; where a time is missing, the
    // attribute is empty. A base calendar without any such `WeekDay` gets the standard week of
    // `MSPEWorkingWeek`, Saturday and Sunday free. Other calendars leave out every `WeekDay`
    // without a `WorkingTime`. Raises `MSPCInternalInconsistency` "Unexpected DayType value <value>. Must be from 1
    // to 7." when the day's last DayType is another one.
    [[nodiscard]] std::vector<MSPCXMLNewElement> newScheduleDaysFromMSPCalendar(const MSPCXMLNode& mspCalendar) const;

    // These decide what of a calendar is mapped; whoever tells of it asks them, too.
    // The days of the week of a calendar, in document order: each `WeekDay` of DayType 1 to 7.
    [[nodiscard]] static std::vector<MSPCXMLNode> weekDaysOfMSPCalendar(const MSPCXMLNode& mspCalendar);
    // Whether one of them becomes a `schedule-day`, and whether that gets its working times. The latter raises as a
    // query of a boolean does.
    [[nodiscard]] static bool isScheduleDay(const MSPCXMLNode& weekDay, bool isOfBaseCalendar);
    [[nodiscard]] static bool isWorked(const MSPCXMLNode& weekDay);
    // Whether an exception is one over a range of dates; any other one recurs, or has no type.
    [[nodiscard]] static bool isOverOneRange(const MSPCXMLNode& exception);
    // The exceptions over one range of dates that are not worked, and those that are worked, in document order. Those
    // that are worked give events for each of their working times.
    [[nodiscard]] static std::vector<MSPCXMLNode> timeOffOfMSPCalendar(const MSPCXMLNode& mspCalendar);
    [[nodiscard]] static std::vector<MSPCXMLNode> overtimeOfMSPCalendar(const MSPCXMLNode& mspCalendar);
    // Of a `WeekDay` or an exception.
    [[nodiscard]] static std::vector<MSPCXMLNode> workingTimesOf(const MSPCXMLNode& dayOrException);

    // The events of all exceptions that are not worked, over whole days.
    [[nodiscard]] std::vector<MSPCXMLNewElement> newTimeOffCalenarEventsFromMSPCalendar(
        const MSPCXMLNode& mspCalendar) const;
    // The events of all exceptions that are worked, for each of their working times.
    [[nodiscard]] std::vector<MSPCXMLNewElement> newOvertimeCalenarEventsFromMSPCalendar(
        const MSPCXMLNode& mspCalendar) const;

    // Appends one `event` per calendar week (Sunday to Saturday) that a range of days touches, from the week's first
    // day in the range at `fromTime` to its last day at `toTime`, wall clock. Dates are MSPDI date-times whose time of
    // day plays no part in the events; times are MSPDI times, 00:00:00 and 23:59:59 where absent or empty. Nothing
    // happens when a date is absent or empty, whatever the other one is, or when the range ends a day or more before it
    // begins. Thursday 2010-01-07 to Tuesday 2010-01-12 gives Thursday 00:00:00 to Saturday 23:59:59 and Sunday
    // 00:00:00 to Tuesday 23:59:59. Raises `MSPCInternalInconsistency` "Too many calendar events from '<fromDate>' to
    // '<toDate>'." when the ranges of one calendar come to more than 1,000,000 weeks in all scenarios, as many as
    // 19,000 years have. Days are counted and stepped as they are written; a start or end that a change of the clocks
    // skips or repeats is that of `MSPCTimeZone::instantFromWallClock`.
    void addEventsFromDateToDateFromTimeToTimeToCollection(const std::optional<std::string>& fromDate,
                                                           const std::optional<std::string>& toDate,
                                                           const std::optional<std::string>& fromTime,
                                                           const std::optional<std::string>& toTime,
                                                           std::vector<MSPCXMLNewElement>& collection) const;

    // The earliest `FromDate` and the latest `ToDate` of the whole document as target date-times; none when there is
    // no such element. Of equal ones the first counts. Raise `MSPCInternalInconsistency` "Failed to find minimal
    // FromDate in Calendar." and "Failed to find maximal ToDate in Calendar." when the first one has no text.
    [[nodiscard]] std::optional<std::string> makeScheduleStartFromMSPCalendar(const MSPCXMLNode& mspCalendar) const;
    [[nodiscard]] std::optional<std::string> makeScheduleEndFromMSPCalendar(const MSPCXMLNode& mspCalendar) const;

private:
    // A range of days, and the times at which it begins and ends, as the plan has them.
    struct Range {
        std::optional<std::string> fromDate, toDate, fromTime, toTime;
    };

    [[nodiscard]] MSPCXMLNewElement newCopyOfSchedule(const MSPCXMLNode& mspCalendar,
                                                      MSPICalendarSchedules::Schedule& schedule) const;
    [[nodiscard]] MSPCMessage logLineOf(const MSPCXMLNode& mspCalendar, std::string_view name) const;
    [[nodiscard]] MSPCXMLNewElement newSchedule(const MSPCXMLNode& mspCalendar) const;
    void addEventsOfRange(const Range& range, const MSPCXMLNode& mspCalendar,
                          std::vector<MSPCXMLNewElement>& collection) const;
    [[nodiscard]] std::vector<MSPCXMLNewElement> newDefaultScheduleDays() const;
    [[nodiscard]] MSPCXMLNewElement newScheduleDay(MSPCWeekday weekday) const;
    void addWorkingTimes(MSPCXMLNode scheduleDay, const std::vector<MSPCXMLNode>& workingTimes) const;
    [[nodiscard]] MSPCXMLNewElement newEvent(MSPCInstant start, MSPCInstant end) const;
    [[nodiscard]] std::optional<std::string> extremeDate(std::span<const MSPCXMLNode> dates, int wantedOrder) const;
};
