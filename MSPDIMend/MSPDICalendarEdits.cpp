#include "MSPDICalendarEdits.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <span>

#include "MSPCExtensions.h"
#include "MSPDIItemValues.h"
#include "MSPDIPatient.h"
#include "MSPEWorkingWeek.h"

namespace {

constexpr std::string_view beforeWeekDays[] = {
    "UID", "GUID", "Name", "IsBaseCalendar", "IsBaselineCalendar", "BaseCalendarUID"};
constexpr std::string_view beforeExceptions[] = {
    "UID", "GUID", "Name", "IsBaseCalendar", "IsBaselineCalendar", "BaseCalendarUID", "WeekDays"};

// A list of the calendar, put in empty where it has none.
MSPCXMLNode listIn(MSPDIPatient& patient, const MSPCXMLNode& calendar, std::string_view name,
                   std::span<const std::string_view> namesBefore) {
    const auto list = calendar.firstChildElement(name);
    return list ? list : patient.insertBehind(calendar, namesBefore, fmt::format("<{0}></{0}>", name));
}

std::string timeText(std::int64_t hour, std::int64_t minute, std::int64_t second) {
    return fmt::format("{:02}:{:02}:{:02}", hour, minute, second);
}

// Whether a text is made like another one, digit for digit.
bool isLike(std::string_view text, std::string_view pattern) {
    const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
    return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                      [&](char own, char other) { return isDigit(other) ? isDigit(own) : own == other; });
}

// The texts of two children, where each is there once and nothing else is.
std::optional<std::pair<std::string, std::string>> onlyTexts(const MSPCXMLNode& element, std::string_view first,
                                                             std::string_view second) {
    const auto from = element.lastChildElement(first);
    const auto to = element.lastChildElement(second);
    const bool areAll = from.count == 1 && to.count == 1 && element.childElements().size() == 2;
    return areAll ? std::optional(std::pair(from.element.stringValue(), to.element.stringValue())) : std::nullopt;
}

// Until midnight and beyond it is another time to the importer.
bool isPlainTime(const MSPCXMLNode& time) {
    const auto texts = onlyTexts(time, "FromTime", "ToTime");
    const auto isTime = [](const std::string& text) {
        return isLike(text, "00:00:00") && text < "24" && text[3] < '6' && text[6] < '6';
    };
    return texts && isTime(texts->first) && isTime(texts->second) && texts->first < texts->second;
}

bool isPlainPeriod(const MSPCXMLNode& period) {
    const auto texts = onlyTexts(period, "FromDate", "ToDate");
    constexpr std::string_view date = "0000-00-00T00:00:00";
    return texts && isLike(texts->first, date) && isLike(texts->second, date);
}

}  // namespace

std::vector<MSPCXMLNode> MSPDIMappedCalendars(const MSPDIPatient& patient) {
    std::set<std::int64_t> uids;
    for (const auto& resource : patient.items("Resources", "Resource")) {
        // One that has several numbers does not arrive, and of several calendars not every reader takes the same.
        const bool isPlain =
            resource.lastChildElement("UID").count == 1 && resource.lastChildElement("CalendarUID").count == 1;
        if (isPlain && MSPDIIntegerIn(resource, "UID").value_or(0) != 0) {
            uids.insert(MSPDIIntegerIn(resource, "CalendarUID").value_or(-1));
        }
    }
    const auto all = patient.items("Calendars", "Calendar");
    std::map<std::int64_t, MSPCXMLNode> last;  // of those with one number the last one counts
    for (const auto& calendar : all) {
        last[MSPDIIntegerIn(calendar, "UID").value_or(-1)] = calendar;
    }
    std::vector<MSPCXMLNode> mapped;
    const auto taken = MSPDITakenCalendar(patient);
    for (const auto& calendar : all) {
        const auto uid = MSPDIIntegerIn(calendar, "UID").value_or(-1);
        if (calendar == taken || (uid >= 0 && uids.contains(uid) && calendar == last[uid])) {
            mapped.push_back(calendar);
        }
    }
    return mapped;
}

std::string MSPDIFirstDayOf(const MSPCXMLNode& exception) {
    return MSPDITextIn(exception.firstChildElement("TimePeriod"), "FromDate").value_or("");
}

std::string MSPDIWorkOf(const MSPDIPatient& patient, const MSPCXMLNode& dayOrException) {
    std::string content;
    for (const auto* name : {"DayWorking", "WorkingTimes"}) {
        if (const auto child = dayOrException.firstChildElement(name)) {
            content += patient.markupOf(child);
        }
    }
    return content;
}

bool MSPDIArrivesAsItIs(const MSPCXMLNode& element) {
    const auto times = nodesForXQuery(element, ".//WorkingTime");
    const auto periods = nodesForXQuery(element, ".//TimePeriod");
    return std::all_of(times.begin(), times.end(), isPlainTime) &&
           std::all_of(periods.begin(), periods.end(), isPlainPeriod);
}

std::vector<std::pair<std::string, std::string>> MSPDIUsualTimesOn(MSPCWeekday weekday) {
    std::vector<std::pair<std::string, std::string>> times;
    for (const auto& period : MSPEWorkingWeek::standardWeek().workingDay(weekday).timePeriods) {
        times.emplace_back(timeText(period.fromHour, period.fromMinute, period.fromSecond),
                           timeText(period.toHour, period.toMinute, period.toSecond));
    }
    return times;
}

void MSPDIAddWeekDay(MSPDIPatient& patient, const MSPCXMLNode& calendar, std::string_view markup) {
    patient.append(listIn(patient, calendar, "WeekDays", beforeWeekDays), markup);
}

void MSPDIAddException(MSPDIPatient& patient, const MSPCXMLNode& calendar, std::string_view timePeriod,
                       std::string_view work) {
    patient.append(listIn(patient, calendar, "Exceptions", beforeExceptions),
                   fmt::format("<Exception>{}<Type>1</Type>{}</Exception>", timePeriod, work));
}
