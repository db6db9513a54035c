#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "MSPCGregorianCalendar.h"
#include "MSPCXMLNode.h"
#include "MSPEDirection.h"
#include "MSPETimePeriod.h"

// A weekly working-time calendar. (Sketch of the operations; the unit's author completes it.)
class MSPEScheduleCalendar {
public:
    explicit MSPEScheduleCalendar(MSPCGregorianCalendar gregorian);
    // Monday to Friday 08:00:00-12:00:00 and 13:00:00-17:00:00.
    [[nodiscard]] static MSPEScheduleCalendar standardCalendar(MSPCGregorianCalendar gregorian);
    MSPEScheduleCalendar(MSPCGregorianCalendar gregorian, const MSPCXMLNode& kdzxSchedule);

    void addWorkingTimePeriodWeekday(const MSPETimePeriod& period, std::int64_t weekday);

    [[nodiscard]] std::optional<MSPCInstant> dateAdvanceByDurationForward(std::optional<MSPCInstant> date,
                                                                          MSPCTimeInterval duration,
                                                                          MSPEDirection direction) const;
    [[nodiscard]] std::optional<MSPCInstant> dateAdvanceByDurationForwardAllowEdgeTime(std::optional<MSPCInstant> date,
                                                                                       MSPCTimeInterval duration,
                                                                                       MSPEDirection direction,
                                                                                       MSPEEdgeTime edgeTime) const;
    [[nodiscard]] std::optional<MSPCInstant> startDateForDateForward(MSPCInstant date, MSPEDirection direction) const;
    [[nodiscard]] MSPCTimeInterval workingTimeFromDateToDate(MSPCInstant from, MSPCInstant to) const;
    [[nodiscard]] bool isWorkingDay(MSPCInstant date) const;
};
