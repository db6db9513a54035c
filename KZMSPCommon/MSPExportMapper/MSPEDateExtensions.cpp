#include "MSPEDateExtensions.h"

MSPCInstant dateAdvancedByDurationForwardAllowEdgeTimeCalendar(MSPCInstant date, MSPCTimeInterval duration,
                                                               MSPEDirection direction, MSPEEdgeTime edgeTime,
                                                               const MSPEScheduleCalendar* calendar,
                                                               const MSPEScheduleCalendar& standardCalendar,
                                                               MSPCLog& log) {
    if (calendar != nullptr) {
        log.log(
            "Custom Calendars not supported to advance date by duration yet. Standard propject Calendar will be used "
            "instead.");
    }
    return standardCalendar.dateAdvanceByDurationForwardAllowEdgeTime(date, duration, direction, edgeTime)
        .value_or(date);
}

MSPCInstant dateAdvancedByDurationForwardCalendar(MSPCInstant date, MSPCTimeInterval duration, MSPEDirection direction,
                                                  const MSPEScheduleCalendar* calendar,
                                                  const MSPEScheduleCalendar& standardCalendar, MSPCLog& log) {
    return dateAdvancedByDurationForwardAllowEdgeTimeCalendar(date, duration, direction, MSPEEdgeTime::Allowed,
                                                              calendar, standardCalendar, log);
}

bool isWorkingDayInCalendar(MSPCInstant date, const MSPEScheduleCalendar* calendar,
                            const MSPEScheduleCalendar& standardCalendar, MSPCLog& log) {
    if (calendar != nullptr) {
        log.log(
            "Custom Calendars not supported to determine working days yet. Standard propject Calendar will be used "
            "instead.");
    }
    return standardCalendar.isWorkingDay(date);
}
