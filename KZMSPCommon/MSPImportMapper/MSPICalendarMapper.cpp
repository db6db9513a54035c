#include "MSPICalendarMapper.h"

#include <fmt/format.h>

#include <algorithm>

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPCLog.h"
#include "MSPEWeekday.h"

namespace {

constexpr std::int64_t sunday = 1;
constexpr std::int64_t monday = 2;
constexpr std::int64_t friday = 6;
constexpr std::int64_t saturday = 7;

void addCalendar(MSPCXMLNode schedule, std::string_view name, bool isOvertime,
                 std::vector<MSPCXMLNewElement>&& events) {
    if (events.empty()) {
        return;
    }
    auto calendar = addChildElementWithName(schedule, "calendar");
    setAttributeWithNameStringValue(calendar, "name", name);
    setAttributeWithNameStringValue(calendar, "editable", "yes");
    setAttributeWithNameStringValue(calendar, "overtime", isOvertime ? "yes" : "no");
    for (auto& event : events) {
        calendar.appendChild(std::move(event));
    }
}

}  // namespace

MSPCXMLNewElement MSPICalendarMapper::newScheduleFromMSPCalendar(const MSPCXMLNode& mspCalendar) const {
    _mapper.log().log(fmt::format("  Mapping Calendar UID='{}' name='{}' ...",
                                  stringValueForXQuery(mspCalendar, "UID").value_or(""),
                                  stringValueForXQuery(mspCalendar, "Name").value_or("")));
    auto newSchedule = _mapper.newElement("schedule");
    auto schedule = newSchedule.node();
    for (auto& day : newScheduleDaysFromMSPCalendar(mspCalendar)) {
        schedule.appendChild(std::move(day));
    }
    addCalendar(schedule, "Time Off", false, newTimeOffCalenarEventsFromMSPCalendar(mspCalendar));
    addCalendar(schedule, "Overtime", true, newOvertimeCalenarEventsFromMSPCalendar(mspCalendar));
    return newSchedule;
}

std::vector<MSPCXMLNewElement> MSPICalendarMapper::newScheduleDaysFromMSPCalendar(
    const MSPCXMLNode& mspCalendar) const {
    const bool isBase = boolValueForXQuery(mspCalendar, "IsBaseCalendar");
    const auto weekDays = nodesForXQuery(mspCalendar, "WeekDays/WeekDay[DayType>=1 and DayType<=7]");
    if (weekDays.empty()) {
        return isBase ? newDefaultWeek() : std::vector<MSPCXMLNewElement>();
    }
    std::vector<MSPCXMLNewElement> days;
    for (const auto& weekDay : weekDays) {
        checkNode(weekDay, "WeekDay");
        const auto dayType = intValueForXQuery(weekDay, "DayType");
        if (dayType < sunday || dayType > saturday) {
            throw MSPCInternalInconsistency(fmt::format("Unexpected DayType value {}. Must be from 1 to 7.", dayType));
        }
        const auto workingTimes = nodesForXQuery(weekDay, "WorkingTimes/WorkingTime");
        if (!isBase && workingTimes.empty()) {
            continue;  // left to the base calendar
        }
        Error error;
        const bool isWorking = boolValueForXQuery(weekDay, "DayWorking", &error);
        days.push_back(newScheduleDay(dayType, isWorking && !error ? workingTimes : std::vector<MSPCXMLNode>()));
    }
    return days;
}

// Monday to Friday, eight hours with an hour's break at noon.
std::vector<MSPCXMLNewElement> MSPICalendarMapper::newDefaultWeek() const {
    std::vector<MSPCXMLNewElement> days;
    for (auto dayType = sunday; dayType <= saturday; ++dayType) {
        days.push_back(newScheduleDay(dayType, {}));
        if (dayType >= monday && dayType <= friday) {
            addTimeSpan(days.back().node(), "08:00:00", "12:00:00");
            addTimeSpan(days.back().node(), "13:00:00", "17:00:00");
        }
    }
    return days;
}

MSPCXMLNewElement MSPICalendarMapper::newScheduleDay(std::int64_t dayType,
                                                     const std::vector<MSPCXMLNode>& workingTimes) const {
    auto day = _mapper.newElement("schedule-day");
    setAttributeWithNameStringValue(day.node(), "day-of-week", MSPEWeekdayNames.at(static_cast<std::size_t>(dayType)));
    for (const auto& workingTime : workingTimes) {
        checkNode(workingTime, "WorkingTime");
        addTimeSpan(day.node(), stringValueForXQuery(workingTime, "FromTime"),
                    stringValueForXQuery(workingTime, "ToTime"));
    }
    return day;
}

void MSPICalendarMapper::addTimeSpan(const MSPCXMLNode& scheduleDay, const std::optional<std::string>& fromTime,
                                     const std::optional<std::string>& toTime) const {
    const auto& conversions = _mapper.conversions();
    const auto span = addChildElementWithName(scheduleDay, "time-span");
    setAttributeWithNameStringValue(span, "start-time", conversions.mspdiToKdzxTimeOnly(fromTime.value_or("")));
    setAttributeWithNameStringValue(span, "end-time", conversions.mspdiToKdzxTimeOnly(toTime.value_or("")));
}

std::vector<MSPCXMLNewElement> MSPICalendarMapper::newTimeOffCalenarEventsFromMSPCalendar(
    const MSPCXMLNode& mspCalendar) const {
    std::vector<MSPCXMLNewElement> events;
    for (const auto& exception : nodesForXQuery(mspCalendar, "Exceptions/Exception[DayWorking=0 and Type=1]")) {
        if (const auto period = singleObjectForXQuery(exception, "TimePeriod")) {
            addEventsFromDateToDateFromTimeToTimeToCollection(stringValueForXQuery(period, "FromDate"),
                                                              stringValueForXQuery(period, "ToDate"), std::nullopt,
                                                              std::nullopt, events);
        }
    }
    return events;
}

std::vector<MSPCXMLNewElement> MSPICalendarMapper::newOvertimeCalenarEventsFromMSPCalendar(
    const MSPCXMLNode& mspCalendar) const {
    std::vector<MSPCXMLNewElement> events;
    for (const auto& exception : nodesForXQuery(mspCalendar, "Exceptions/Exception[DayWorking=1 and Type=1]")) {
        const auto period = singleObjectForXQuery(exception, "TimePeriod");
        if (!period) {
            continue;
        }
        const auto fromDate = stringValueForXQuery(period, "FromDate");
        const auto toDate = stringValueForXQuery(period, "ToDate");
        for (const auto& workingTime : nodesForXQuery(exception, "WorkingTimes/WorkingTime")) {
            checkNode(workingTime, "WorkingTime");
            addEventsFromDateToDateFromTimeToTimeToCollection(
                fromDate, toDate, stringValueForXQuery(workingTime, "FromTime"),
                stringValueForXQuery(workingTime, "ToTime"), events);
        }
    }
    return events;
}

MSPCDateFields MSPICalendarMapper::timeOfDay(const std::optional<std::string>& mspdiTime,
                                             std::string_view defaultTime) const {
    const bool isGiven = mspdiTime && !mspdiTime->empty();
    return _mapper.conversions().mspdiToTimeOfDay(isGiven ? std::string_view(*mspdiTime) : defaultTime);
}

void MSPICalendarMapper::addEventsFromDateToDateFromTimeToTimeToCollection(
    const std::optional<std::string>& fromDate, const std::optional<std::string>& toDate,
    const std::optional<std::string>& fromTime, const std::optional<std::string>& toTime,
    std::vector<MSPCXMLNewElement>& events) const {
    const auto& conversions = _mapper.conversions();
    const auto& gregorian = conversions.gregorian();
    const auto firstDate = conversions.mspdiToMppDateTime(fromDate.value_or(""));
    const auto lastDate = conversions.mspdiToMppDateTime(toDate.value_or(""));
    if (!firstDate || !lastDate) {
        return;
    }
    const auto from = timeOfDay(fromTime, "00:00:00");
    const auto to = timeOfDay(toTime, "23:59:59");
    const auto dayCount = gregorian.wholeDaysBetween(*firstDate, *lastDate) + 1;

    auto first = gregorian.fieldsOf(*firstDate);
    first.hour = from.hour;
    first.minute = from.minute;
    first.second = from.second;
    const auto start = gregorian.instantFrom(first);
    for (std::int64_t day = 0; start && day < dayCount;) {
        const auto weekStart = gregorian.instantByAddingDays(*start, day);
        const auto daysToSaturday = saturday - gregorian.weekdayOf(weekStart);
        const auto lastDayOfEvent = day + std::min(daysToSaturday, dayCount - day - 1);
        const auto end = gregorian.instantByAddingWallClock(gregorian.instantByAddingDays(*start, lastDayOfEvent),
                                                            to.hour - from.hour, to.minute - from.minute,
                                                            to.second - from.second);
        auto event = _mapper.newElement("event");
        setAttributeWithNameStringValue(event.node(), "start", conversions.mppToKdzxDateTime(weekStart));
        setAttributeWithNameStringValue(event.node(), "end", conversions.mppToKdzxDateTime(end));
        events.push_back(std::move(event));
        day = lastDayOfEvent + 1;
    }
}

std::optional<std::string> MSPICalendarMapper::makeScheduleStartFromMSPCalendar(const MSPCXMLNode& mspCalendar) const {
    return extremeDate(mspCalendar, "//FromDate", -1, "Failed to find minimal FromDate in Calendar.");
}

std::optional<std::string> MSPICalendarMapper::makeScheduleEndFromMSPCalendar(const MSPCXMLNode& mspCalendar) const {
    return extremeDate(mspCalendar, "//ToDate", 1, "Failed to find maximal ToDate in Calendar.");
}

// The date that compares as wanted (-1 earlier, 1 later) with all others; the first of equal ones.
std::optional<std::string> MSPICalendarMapper::extremeDate(const MSPCXMLNode& mspCalendar, std::string_view query,
                                                           int wantedOrder, std::string_view failure) const {
    const auto nodes = nodesForXQuery(mspCalendar, query);
    if (nodes.empty()) {
        return std::nullopt;
    }
    auto extreme = nodes.front().stringValue();
    if (extreme.empty()) {
        throw MSPCInternalInconsistency(std::string(failure));
    }
    for (const auto& node : nodes) {
        auto date = node.stringValue();
        if (_mapper.conversions().compareMspdiDateTimeToMspdiDateTime(date, extreme) == wantedOrder) {
            extreme = std::move(date);
        }
    }
    return _mapper.conversions().mspdiToKdzxDateTime(extreme);
}
