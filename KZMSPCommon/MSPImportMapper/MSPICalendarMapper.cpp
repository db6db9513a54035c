#include "MSPICalendarMapper.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPCLog.h"
#include "MSPCXPathNumber.h"
#include "MSPEWeekday.h"
#include "MSPEWorkingWeek.h"

namespace {

// An empty element says as little as a missing one.
bool isAbsent(const std::optional<std::string>& text) {
    return !text || text->empty();
}

bool isFirstEmpty(std::span<const MSPCXMLNode> nodes) {
    return !nodes.empty() && nodes.front().stringValue().empty();
}

// The instant of a time of day on the wall clocks, a number of calendar days after a date.
MSPCInstant instantOnDay(const MSPCGregorianCalendar& gregorian, MSPCDateFields date, std::int64_t daysLater,
                         const MSPCDateFields& timeOfDay) {
    date.day += daysLater;
    date.hour = timeOfDay.hour;
    date.minute = timeOfDay.minute;
    date.second = timeOfDay.second;
    return gregorian.instantFrom(date).value_or(MSPCInstant{});
}

// The Saturdays among so many days from a weekday on.
std::uint64_t saturdaysWithin(MSPCWeekday weekday, std::int64_t days) {
    return (static_cast<std::uint64_t>(days) + static_cast<std::uint64_t>(weekday) - 1) / MSPCDaysOfWeek;
}

// The days, working times and events of a schedule.
std::uint64_t countOfElements(const MSPCXMLNode& schedule) {
    std::uint64_t count = 0;
    for (auto child = schedule.firstChild(); child; child = child.nextSibling()) {
        if (child.name() == "schedule-day") {
            ++count;
        }
        for (auto element = child.firstChild(); element; element = element.nextSibling()) {
            ++count;
        }
    }
    return count;
}

// Seconds since midnight, as the document has them.
std::string textOf(MSPCTimeOfDay time) {
    return fmt::to_string(static_cast<std::int64_t>(time.sinceMidnight));
}

void addTimeSpan(MSPCXMLNode scheduleDay, const std::optional<std::string>& startTime,
                 const std::optional<std::string>& endTime) {
    const auto timeSpan = addChildElementWithName(scheduleDay, "time-span");
    setAttributeWithNameStringValue(timeSpan, "start-time", startTime);
    setAttributeWithNameStringValue(timeSpan, "end-time", endTime);
}

std::vector<MSPCXMLNode> onlyOverOneRange(std::vector<MSPCXMLNode> exceptions) {
    std::erase_if(exceptions, [](const auto& exception) { return !MSPICalendarMapper::isOverOneRange(exception); });
    return exceptions;
}

void addNestedCalendar(MSPCXMLNode schedule, std::string_view name, std::string_view overtime,
                       std::vector<MSPCXMLNewElement>&& events) {
    if (events.empty()) {
        return;
    }
    auto calendar = addChildElementWithName(schedule, "calendar");
    setAttributeWithNameStringValue(calendar, "name", name);
    setAttributeWithNameStringValue(calendar, "editable", "yes");
    setAttributeWithNameStringValue(calendar, "overtime", overtime);
    for (auto& event : events) {
        calendar.appendChild(std::move(event));
    }
}

}  // namespace

MSPCXMLNewElement MSPICalendarMapper::newScheduleFromMSPCalendar(const MSPCXMLNode& mspCalendar) const {
    auto& schedules = _mapper.calendarSchedules();
    if (auto* const known = schedules.find(mspCalendar)) {
        return newCopyOfSchedule(mspCalendar, *known);
    }
    _mapper.log().log("{}", logLineOf(mspCalendar, textForXQuery(mspCalendar, "Name").textOrEmpty()));
    auto schedule = newSchedule(mspCalendar);
    schedules.keep(mspCalendar, schedule.node());
    return schedule;
}

MSPCMessage MSPICalendarMapper::logLineOf(const MSPCXMLNode& mspCalendar, std::string_view name) const {
    return MSPCMessage("  Mapping Calendar UID='{}' name='{}' ...", textForXQuery(mspCalendar, "UID").textOrEmpty(),
                       name);
}

MSPCXMLNewElement MSPICalendarMapper::newCopyOfSchedule(const MSPCXMLNode& mspCalendar,
                                                        MSPICalendarSchedules::Schedule& schedule) const {
    if (!schedule.logLine) {
        const auto name = textForXQuery(mspCalendar, "Name").textOrEmpty();
        schedule.logLine = logLineOf(mspCalendar, name);
        schedule.nameSize = name.size();
        schedule.elementCount = countOfElements(schedule.element);
    }
    _mapper.growthBounds().addRepeatedName(schedule.nameSize);
    _mapper.growthBounds().addScheduleElements(schedule.elementCount);
    _mapper.log().log("{}", *schedule.logLine);
    return schedule.element.newCopyOf(schedule.element);
}

MSPCXMLNewElement MSPICalendarMapper::newSchedule(const MSPCXMLNode& mspCalendar) const {
    auto schedule = _mapper.newElement("schedule");
    for (auto& day : newScheduleDaysFromMSPCalendar(mspCalendar)) {
        schedule.node().appendChild(std::move(day));
    }
    addNestedCalendar(schedule.node(), "Time Off", "no", newTimeOffCalenarEventsFromMSPCalendar(mspCalendar));
    addNestedCalendar(schedule.node(), "Overtime", "yes", newOvertimeCalenarEventsFromMSPCalendar(mspCalendar));
    return schedule;
}

std::vector<MSPCXMLNewElement> MSPICalendarMapper::newScheduleDaysFromMSPCalendar(
    const MSPCXMLNode& mspCalendar) const {
    const bool isBase = boolValueForXQuery(mspCalendar, "IsBaseCalendar");
    const auto weekDays = weekDaysOfMSPCalendar(mspCalendar);
    if (weekDays.empty() && isBase) {
        return newDefaultScheduleDays();
    }
    std::vector<MSPCXMLNewElement> scheduleDays;
    for (const auto& weekDay : weekDays) {
        checkNode(weekDay, "WeekDay");
        const MSPCWeekday dayType{intValueForXQuery(weekDay, "DayType")};
        if (!MSPCIsWeekday(dayType)) {
            throw MSPCInternalInconsistency(
                fmt::format("Unexpected DayType value {}. Must be from 1 to 7.", MSPCNumberOf(dayType)));
        }
        if (!isScheduleDay(weekDay, isBase)) {
            continue;
        }
        auto scheduleDay = newScheduleDay(dayType);
        if (isWorked(weekDay)) {
            addWorkingTimes(scheduleDay.node(), workingTimesOf(weekDay));
        }
        scheduleDays.push_back(std::move(scheduleDay));
    }
    return scheduleDays;
}

std::vector<MSPCXMLNewElement> MSPICalendarMapper::newDefaultScheduleDays() const {
    std::vector<MSPCXMLNewElement> scheduleDays;
    for (const auto weekday : MSPCWeekdays) {
        auto scheduleDay = newScheduleDay(weekday);
        for (const auto& period : MSPEWorkingWeek::standardWeek().workingDay(weekday).timePeriods) {
            addTimeSpan(scheduleDay.node(), textOf(period.startTime()), textOf(period.endTime()));
        }
        scheduleDays.push_back(std::move(scheduleDay));
    }
    return scheduleDays;
}

MSPCXMLNewElement MSPICalendarMapper::newScheduleDay(MSPCWeekday weekday) const {
    auto scheduleDay = _mapper.newElement("schedule-day");
    setAttributeWithNameStringValue(scheduleDay.node(), "day-of-week", MSPENameOf(weekday));
    return scheduleDay;
}

void MSPICalendarMapper::addWorkingTimes(MSPCXMLNode scheduleDay, const std::vector<MSPCXMLNode>& workingTimes) const {
    const auto& conversions = _mapper.conversions();
    for (const auto& workingTime : workingTimes) {
        checkNode(workingTime, "WorkingTime");
        const auto fromTime = textForXQuery(workingTime, "FromTime");
        const auto toTime = textForXQuery(workingTime, "ToTime");
        addTimeSpan(scheduleDay, conversions.mspdiToKdzxTimeOnly(fromTime.textOrEmpty()),
                    conversions.mspdiToKdzxTimeOnly(toTime.textOrEmpty()));
    }
}

std::vector<MSPCXMLNode> MSPICalendarMapper::weekDaysOfMSPCalendar(const MSPCXMLNode& mspCalendar) {
    return nodesForXQuery(mspCalendar, "WeekDays/WeekDay[DayType>=1 and DayType<=7]");
}

// One without working times follows the base calendar, which only the reader of the target knows to combine.
bool MSPICalendarMapper::isScheduleDay(const MSPCXMLNode& weekDay, bool isOfBaseCalendar) {
    return isOfBaseCalendar || !workingTimesOf(weekDay).empty();
}

bool MSPICalendarMapper::isWorked(const MSPCXMLNode& weekDay) {
    Error error;
    return boolValueForXQuery(weekDay, "DayWorking", &error) && !error;
}

bool MSPICalendarMapper::isOverOneRange(const MSPCXMLNode& exception) {
    return hasChildWithNumber(exception, "Type", 1);
}

std::vector<MSPCXMLNode> MSPICalendarMapper::timeOffOfMSPCalendar(const MSPCXMLNode& mspCalendar) {
    return onlyOverOneRange(nodesForXQuery(mspCalendar, "Exceptions/Exception[DayWorking=0]"));
}

std::vector<MSPCXMLNode> MSPICalendarMapper::overtimeOfMSPCalendar(const MSPCXMLNode& mspCalendar) {
    return onlyOverOneRange(nodesForXQuery(mspCalendar, "Exceptions/Exception[DayWorking=1]"));
}

std::vector<MSPCXMLNode> MSPICalendarMapper::workingTimesOf(const MSPCXMLNode& dayOrException) {
    return nodesForXQuery(dayOrException, "WorkingTimes/WorkingTime");
}

std::vector<MSPCXMLNewElement> MSPICalendarMapper::newTimeOffCalenarEventsFromMSPCalendar(
    const MSPCXMLNode& mspCalendar) const {
    std::vector<MSPCXMLNewElement> events;
    for (const auto& exception : timeOffOfMSPCalendar(mspCalendar)) {
        if (const auto timePeriod = singleObjectForXQuery(exception, "TimePeriod")) {
            checkNode(timePeriod, "TimePeriod");
            addEventsOfRange({.fromDate = stringValueForXQuery(timePeriod, "FromDate"),
                              .toDate = stringValueForXQuery(timePeriod, "ToDate"),
                              .fromTime = std::nullopt,
                              .toTime = std::nullopt},
                             mspCalendar, events);
        }
    }
    return events;
}

std::vector<MSPCXMLNewElement> MSPICalendarMapper::newOvertimeCalenarEventsFromMSPCalendar(
    const MSPCXMLNode& mspCalendar) const {
    std::vector<MSPCXMLNewElement> events;
    for (const auto& exception : overtimeOfMSPCalendar(mspCalendar)) {
        const auto timePeriod = singleObjectForXQuery(exception, "TimePeriod");
        if (!timePeriod) {
            continue;
        }
        checkNode(timePeriod, "TimePeriod");
        const auto fromDate = stringValueForXQuery(timePeriod, "FromDate");
        const auto toDate = stringValueForXQuery(timePeriod, "ToDate");
        for (const auto& workingTime : workingTimesOf(exception)) {
            addEventsOfRange({.fromDate = fromDate,
                              .toDate = toDate,
                              .fromTime = stringValueForXQuery(workingTime, "FromTime"),
                              .toTime = stringValueForXQuery(workingTime, "ToTime")},
                             mspCalendar, events);
        }
    }
    return events;
}

void MSPICalendarMapper::addEventsFromDateToDateFromTimeToTimeToCollection(
    const std::optional<std::string>& fromDate, const std::optional<std::string>& toDate,
    const std::optional<std::string>& fromTime, const std::optional<std::string>& toTime,
    std::vector<MSPCXMLNewElement>& collection) const {
    addEventsOfRange({fromDate, toDate, fromTime, toTime}, {}, collection);
}

void MSPICalendarMapper::addEventsOfRange(const Range& range, const MSPCXMLNode& mspCalendar,
                                          std::vector<MSPCXMLNewElement>& collection) const {
    const auto& [fromDate, toDate, fromTime, toTime] = range;
    const auto& conversions = _mapper.conversions();
    if (isAbsent(fromDate) || isAbsent(toDate)) {
        return;  // the other date is not looked at, however odd it is
    }
    const auto fromDay = conversions.mspdiToDateFields(*fromDate);
    const auto toDay = conversions.mspdiToDateFields(*toDate);
    if (!fromDay || !toDay) {
        return;
    }
    // Days are counted as they are written: on the clocks of a zone a midnight, or a whole day, can be missing.
    const auto& written = MSPCGregorianCalendar::utc();
    const auto firstDay = written.instantFrom(*fromDay).value_or(MSPCInstant{});
    const auto lastDay = written.instantFrom(*toDay).value_or(MSPCInstant{});
    const auto days = written.wholeDaysBetween(firstDay, lastDay) + 1;
    if (days > 0 &&
        !_mapper.growthBounds().addEventsOfRange(mspCalendar, saturdaysWithin(written.weekdayOf(firstDay), days - 1))) {
        throw MSPCInternalInconsistency(fmt::format("Too many calendar events from '{}' to '{}'.", *fromDate, *toDate));
    }
    const auto startTime = conversions.mspdiToTimeOfDay(isAbsent(fromTime) ? "00:00:00" : *fromTime);
    const auto endTime = conversions.mspdiToTimeOfDay(isAbsent(toTime) ? "23:59:59" : *toTime);

    for (std::int64_t day = 0; day < days;) {
        const auto weekday = written.weekdayOf(written.instantByAddingDays(firstDay, day));
        const auto daysToSaturday = MSPCNumberOf(MSPCWeekday::Saturday) - MSPCNumberOf(weekday);
        const auto lastOfWeek = day + std::min(daysToSaturday, days - day - 1);
        collection.push_back(newEvent(instantOnDay(conversions.gregorian(), *fromDay, day, startTime),
                                      instantOnDay(conversions.gregorian(), *fromDay, lastOfWeek, endTime)));
        day = lastOfWeek + 1;
    }
}

MSPCXMLNewElement MSPICalendarMapper::newEvent(MSPCInstant start, MSPCInstant end) const {
    const auto& conversions = _mapper.conversions();
    auto event = _mapper.newElement("event");
    setAttributeWithNameStringValue(event.node(), "start", conversions.mppToKdzxDateTime(start));
    setAttributeWithNameStringValue(event.node(), "end", conversions.mppToKdzxDateTime(end));
    return event;
}

std::optional<std::string> MSPICalendarMapper::makeScheduleStartFromMSPCalendar(const MSPCXMLNode& mspCalendar) const {
    const auto dates = nodesForXQuery(mspCalendar, "//FromDate");
    if (isFirstEmpty(dates)) {
        throw MSPCInternalInconsistency("Failed to find minimal FromDate in Calendar.");
    }
    return extremeDate(dates, -1);
}

std::optional<std::string> MSPICalendarMapper::makeScheduleEndFromMSPCalendar(const MSPCXMLNode& mspCalendar) const {
    const auto dates = nodesForXQuery(mspCalendar, "//ToDate");
    if (isFirstEmpty(dates)) {
        throw MSPCInternalInconsistency("Failed to find maximal ToDate in Calendar.");
    }
    return extremeDate(dates, 1);
}

// The date that stands in the wanted order (-1 earlier, 1 later) to all others.
std::optional<std::string> MSPICalendarMapper::extremeDate(std::span<const MSPCXMLNode> dates, int wantedOrder) const {
    if (dates.empty()) {
        return std::nullopt;
    }
    const auto& conversions = _mapper.conversions();
    auto extreme = dates.front().stringValue();
    for (const auto& date : dates) {
        auto candidate = date.stringValue();
        if (conversions.compareMspdiDateTimeToMspdiDateTime(candidate, extreme) == wantedOrder) {
            extreme = std::move(candidate);
        }
    }
    return conversions.mspdiToKdzxDateTime(extreme);
}
