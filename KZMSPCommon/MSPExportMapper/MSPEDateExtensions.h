#pragma once

#include "MSPCInstant.h"
#include "MSPCLog.h"
#include "MSPEDirection.h"
#include "MSPEScheduleCalendar.h"

// Working-time questions about a date, answered by the standard calendar. Deliberate: a calendar of one's own is
// refused with a line on the log and then ignored.

// The date that lies a working duration (in seconds) after or before `date`; `date` itself when the standard calendar
// gives none. A calendar is refused with "Custom Calendars not supported to advance date by duration yet. Standard
// propject Calendar will be used instead.". Raises as `MSPEScheduleCalendar` does.
[[nodiscard]] MSPCInstant dateAdvancedByDurationForwardAllowEdgeTimeCalendar(
    MSPCInstant date, MSPCTimeInterval duration, MSPEDirection direction, MSPEEdgeTime edgeTime,
    const MSPEScheduleCalendar* calendar, const MSPEScheduleCalendar& standardCalendar, MSPCLog& log);
// The same with edge times allowed.
[[nodiscard]] MSPCInstant dateAdvancedByDurationForwardCalendar(MSPCInstant date, MSPCTimeInterval duration,
                                                                MSPEDirection direction,
                                                                const MSPEScheduleCalendar* calendar,
                                                                const MSPEScheduleCalendar& standardCalendar,
                                                                MSPCLog& log);
// Whether the weekday of `date` is worked. A calendar is refused with "Custom Calendars not supported to determine
// working days yet. Standard propject Calendar will be used instead.".
[[nodiscard]] bool isWorkingDayInCalendar(MSPCInstant date, const MSPEScheduleCalendar* calendar,
                                          const MSPEScheduleCalendar& standardCalendar, MSPCLog& log);
