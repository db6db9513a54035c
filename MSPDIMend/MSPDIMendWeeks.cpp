#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <set>

#include "MSPCExtensions.h"
#include "MSPDIItemValues.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"
#include "MSPISubject.h"

namespace {

constexpr std::string_view exceptions2003 = "exceptions-2003";
constexpr std::string_view resourceWeeks = "resource-weeks";
constexpr std::string_view beforeWeekDays[] = {
    "UID", "GUID", "Name", "IsBaseCalendar", "IsBaselineCalendar", "BaseCalendarUID"};
constexpr std::string_view beforeExceptions[] = {
    "UID", "GUID", "Name", "IsBaseCalendar", "IsBaselineCalendar", "BaseCalendarUID", "WeekDays"};

std::string firstDayOf(const MSPCXMLNode& exception) {
    return MSPDITextIn(exception.firstChildElement("TimePeriod"), "FromDate").value_or("");
}

// The first days of the exceptions that a calendar has over one range of days.
std::set<std::string> firstDaysOf(const MSPCXMLNode& calendar) {
    std::set<std::string> days;
    for (const auto& exception : nodesForXQuery(calendar, "Exceptions/Exception[Type=1]")) {
        days.insert(firstDayOf(exception));
    }
    return days;
}

// A list of the calendar, put in empty where it has none.
MSPCXMLNode listIn(MSPDIPatient& patient, const MSPCXMLNode& calendar, std::string_view name,
                   std::span<const std::string_view> namesBefore) {
    if (auto list = calendar.firstChildElement(name)) {
        return list;
    }
    MSPCXMLNode before;
    for (const auto& [childName, child] : calendar.childElements()) {
        if (std::find(namesBefore.begin(), namesBefore.end(), childName) != namesBefore.end()) {
            before = child;
        }
    }
    return patient.insertAfter(calendar, before, name, fmt::format("<{0}></{0}>", name));
}

void addException(MSPDIPatient& patient, const MSPCXMLNode& calendar, const std::string& content) {
    const auto list = listIn(patient, calendar, "Exceptions", beforeExceptions);
    patient.append(list, "Exception", "<Exception>" + content + "</Exception>");
}

// What arrives of an exception, in either form.
std::string shortFormOf(const MSPDIPatient& patient, const MSPCXMLNode& exception) {
    auto content = patient.markupOf(exception.firstChildElement("TimePeriod")) + "<Type>1</Type>";
    for (const auto* name : {"DayWorking", "WorkingTimes"}) {
        if (const auto child = exception.firstChildElement(name)) {
            content += patient.markupOf(child);
        }
    }
    return content;
}

// A day of the usual week, for a base calendar that says nothing of it.
std::string usualDay(int day) {
    const bool isWorking = day >= 2 && day <= 6;
    std::string times;
    if (isWorking) {
        times =
            "<WorkingTimes><WorkingTime><FromTime>08:00:00</FromTime><ToTime>12:00:00</ToTime></WorkingTime>"
            "<WorkingTime><FromTime>13:00:00</FromTime><ToTime>17:00:00</ToTime></WorkingTime></WorkingTimes>";
    }
    return fmt::format("<WeekDay><DayType>{}</DayType><DayWorking>{}</DayWorking>{}</WeekDay>", day, isWorking ? 1 : 0,
                       times);
}

void copyDays(MSPDIPatient& patient, const MSPCXMLNode& from, const MSPCXMLNode& to) {
    const bool isUsualWeek = nodesForXQuery(from, "WeekDays/WeekDay[DayType>=1 and DayType<=7]").empty();
    for (int day = 1; day <= 7; ++day) {
        const auto query = fmt::format("WeekDays/WeekDay[DayType={}]", day);
        const auto own = singleObjectForXQuery(from, query);
        if (!singleObjectForXQuery(to, query) && (own || isUsualWeek)) {
            const auto list = listIn(patient, to, "WeekDays", beforeWeekDays);
            patient.append(list, "WeekDay", own ? patient.markupOf(own) : usualDay(day));
        }
    }
}

void copyExceptions(MSPDIPatient& patient, const MSPCXMLNode& from, const MSPCXMLNode& to) {
    auto known = firstDaysOf(to);
    for (const auto* query : {"Exceptions/Exception[Type=1][TimePeriod]", "WeekDays/WeekDay[DayType=0][TimePeriod]"}) {
        for (const auto& exception : nodesForXQuery(from, query)) {
            if (known.insert(firstDayOf(exception)).second) {
                addException(patient, to, shortFormOf(patient, exception));
            }
        }
    }
}

// Working time until midnight arrives as one that ends at 0 o'clock: better none than that.
bool hasTimeUntilMidnight(const MSPCXMLNode& calendar) {
    for (const auto& end : nodesForXQuery(calendar, ".//WorkingTime/ToTime")) {
        if (end.stringValue().starts_with("00:00")) {
            return true;
        }
    }
    return false;
}

MSPCXMLNode calendarWithUID(const MSPDIPatient& patient, std::int64_t uid) {
    return singleObjectForXQuery(patient.project(), fmt::format("Calendars/Calendar[UID={}]", uid));
}

}  // namespace

// Planning programs of later years write an exception in both forms.
void MSPDIMendExceptionsOf2003(MSPDIPatient& patient) {
    if (!patient.isAskedFor(exceptions2003)) {
        return;
    }
    for (const auto& calendar : patient.items("Calendars", "Calendar")) {
        const auto known = firstDaysOf(calendar);
        for (const auto& weekDay : nodesForXQuery(calendar, "WeekDays/WeekDay[DayType=0][TimePeriod]")) {
            if (!known.contains(firstDayOf(weekDay))) {
                patient.note(exceptions2003,
                             fmt::format("{}: {}", MSPISubjectOf("Calendar", calendar), firstDayOf(weekDay)));
                addException(patient, calendar, shortFormOf(patient, weekDay));
                patient.remove(weekDay);
            }
        }
    }
}

// Days off arrive from base calendars only, so that it becomes one.
void MSPDIMendResourceWeeks(MSPDIPatient& patient) {
    if (!patient.isAskedFor(resourceWeeks)) {
        return;
    }
    std::set<std::int64_t> done;
    const auto taken = MSPDITakenCalendar(patient);
    for (const auto& resource : patient.items("Resources", "Resource")) {
        const auto uid = MSPDIIntegerIn(resource, "CalendarUID").value_or(-1);
        const auto calendar = uid < 0 ? MSPCXMLNode() : calendarWithUID(patient, uid);
        const auto baseUID = calendar ? MSPDIIntegerIn(calendar, "BaseCalendarUID").value_or(-1) : -1;
        const auto base = baseUID < 0 ? MSPCXMLNode() : calendarWithUID(patient, baseUID);
        const bool isBase = calendar && MSPDIIsTrueIn(calendar, "IsBaseCalendar");
        if (!base || isBase || base == calendar || calendar == taken || !done.insert(uid).second ||
            hasTimeUntilMidnight(base)) {
            continue;
        }
        patient.note(resourceWeeks,
                     fmt::format("{} from {}", MSPISubjectOf("Calendar", calendar), MSPISubjectOf("Calendar", base)));
        copyDays(patient, base, calendar);
        copyExceptions(patient, base, calendar);
        patient.setChild(calendar, "IsBaseCalendar", "1", beforeWeekDays);
    }
}
