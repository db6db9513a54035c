#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MSPIObjectMapperBase.h"

// Turns one MSPDI `Calendar` into a target `schedule`: the week as `schedule-day` elements, exceptions over a single range
// of dates as `event` elements of a time-off and an overtime `calendar`. A base calendar is not resolved, and recurring
// exceptions are left out. New elements are owned by the caller.
//
// Raises `MSPCInternalInconsistency` "Expected NSXMLNodeProxy as a WeekDay object.", "Unexpected DayType value <n>. Must
// be from 1 to 7.", "Expected NSXMLNodeProxy as a WorkingTime object.", and what the value getters and conversions raise for texts that are there but unreadable.
class MSPICalendarMapper : public MSPIObjectMapperBase {
public:
    using MSPIObjectMapperBase::MSPIObjectMapperBase;

    // Never empty.
    [[nodiscard]] MSPCXMLNewElement newScheduleFromMSPCalendar(const MSPCXMLNode& mspCalendar) const;

    // One element per day that the calendar describes; a base calendar without days gives the default week.
    [[nodiscard]] std::vector<MSPCXMLNewElement> newScheduleDaysFromMSPCalendar(const MSPCXMLNode& mspCalendar) const;
    // Events of whole days, 00:00:00 to 23:59:59.
    [[nodiscard]] std::vector<MSPCXMLNewElement> newTimeOffCalenarEventsFromMSPCalendar(
        const MSPCXMLNode& mspCalendar) const;
    // Events of each working time of each working exception.
    [[nodiscard]] std::vector<MSPCXMLNewElement> newOvertimeCalenarEventsFromMSPCalendar(
        const MSPCXMLNode& mspCalendar) const;

    // Appends the events of a range of days: one per calendar week (Sunday to Saturday), running from its first day at
    // `fromTime` to its last day at `toTime` on the wall clock. Dates and times are MSPDI texts; times that are missing
    // mean the whole day. Nothing happens when either date is missing. Thursday 2010-01-07 to Tuesday 2010-01-12 gives
    // Thursday to Saturday and Sunday to Tuesday.
    void addEventsFromDateToDateFromTimeToTimeToCollection(const std::optional<std::string>& fromDate,
                                                           const std::optional<std::string>& toDate,
                                                           const std::optional<std::string>& fromTime,
                                                           const std::optional<std::string>& toTime,
                                                           std::vector<MSPCXMLNewElement>& events) const;

    // The earliest `FromDate`, or latest `ToDate`, of the whole document of a calendar, as target date-time; none when
    // there is none. Raises "Failed to find minimal FromDate in Calendar." or "Failed to find maximal ToDate in
    // Calendar." when the first one has no text. Not used by the import.
    [[nodiscard]] std::optional<std::string> makeScheduleStartFromMSPCalendar(const MSPCXMLNode& mspCalendar) const;
    [[nodiscard]] std::optional<std::string> makeScheduleEndFromMSPCalendar(const MSPCXMLNode& mspCalendar) const;

private:
    std::vector<MSPCXMLNewElement> newDefaultWeek() const;
    MSPCXMLNewElement newScheduleDay(std::int64_t dayType, const std::vector<MSPCXMLNode>& workingTimes) const;
    void addTimeSpan(const MSPCXMLNode& scheduleDay, const std::optional<std::string>& fromTime,
                     const std::optional<std::string>& toTime) const;
    MSPCDateFields timeOfDay(const std::optional<std::string>& mspdiTime, std::string_view defaultTime) const;
    std::optional<std::string> extremeDate(const MSPCXMLNode& mspCalendar, std::string_view query, int wantedOrder,
                                           std::string_view failure) const;
};
