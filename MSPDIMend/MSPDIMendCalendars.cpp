#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>

#include "MSPCExtensions.h"
#include "MSPDICalendarEdits.h"
#include "MSPDIItemValues.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"
#include "MSPISubject.h"

namespace {

constexpr std::string_view standardCalendar = "standard-calendar";
constexpr std::string_view calendarOrder = "calendar-order";
constexpr std::string_view projectCalendar = "project-calendar";
constexpr std::string_view beforeName[] = {"UID", "GUID"};
constexpr std::string_view beforeIsBase[] = {"UID", "GUID", "Name"};

// The calendar with a UID, the last one of several.
MSPCXMLNode calendarOf(const MSPDIPatient& patient, std::int64_t uid) {
    return singleObjectForXQuery(patient.project(), fmt::format("Calendars/Calendar[UID={}]", uid));
}

bool isBase(const MSPCXMLNode& calendar) {
    return MSPDIIsTrueIn(calendar, "IsBaseCalendar");
}

// The one that the project names; else the first base calendar, one named Standard before all others.
MSPCXMLNode projectsCalendar(const MSPDIPatient& patient) {
    if (const auto uid = MSPDIIntegerIn(patient.project(), "CalendarUID")) {
        if (auto named = calendarOf(patient, *uid)) {
            return named;
        }
    }
    MSPCXMLNode first;
    for (const auto& calendar : patient.items("Calendars", "Calendar")) {
        if (isBase(calendar) && MSPDITextIn(calendar, "Name") == "Standard") {
            return calendar;
        }
        first = !first && isBase(calendar) ? calendar : first;
    }
    return first;
}

void exchange(MSPDIPatient& patient, const MSPCXMLNode& owner, std::string_view name, const std::string& one,
              const std::string& other) {
    const auto reference = owner.lastChildElement(name).element;
    const auto text = reference ? reference.stringValue() : std::string();
    if (reference && (text == one || text == other)) {
        patient.setText(reference, text == one ? other : one);
    }
}

// Exchanges the numbers of two calendars, wherever they stand.
void exchangeUIDs(MSPDIPatient& patient, const std::string& one, const std::string& other) {
    exchange(patient, patient.project(), "CalendarUID", one, other);
    for (const auto& [list, item] : {std::pair{"Tasks", "Task"}, std::pair{"Resources", "Resource"}}) {
        for (const auto& owner : patient.items(list, item)) {
            exchange(patient, owner, "CalendarUID", one, other);
        }
    }
    for (const auto& calendar : patient.items("Calendars", "Calendar")) {
        exchange(patient, calendar, "UID", one, other);
        exchange(patient, calendar, "BaseCalendarUID", one, other);
    }
}

void makeBase(MSPDIPatient& patient, const MSPCXMLNode& calendar) {
    if (!isBase(calendar)) {
        patient.setChild(calendar, "IsBaseCalendar", "1", beforeIsBase);
    }
}

// The lines of the usual week's calendar, each with its depth.
std::vector<std::pair<int, std::string>> linesOfStandardCalendar() {
    std::vector<std::pair<int, std::string>> lines = {{0, "<Calendar>"},
                                                      {1, "<UID>1</UID>"},
                                                      {1, "<Name>Standard</Name>"},
                                                      {1, "<IsBaseCalendar>1</IsBaseCalendar>"},
                                                      {1, "<BaseCalendarUID>-1</BaseCalendarUID>"},
                                                      {1, "<WeekDays>"}};
    for (const auto day : MSPCWeekdays) {
        const auto times = MSPDIUsualTimesOn(day);
        lines.emplace_back(2, "<WeekDay>");
        lines.emplace_back(3, fmt::format("<DayType>{}</DayType>", MSPCNumberOf(day)));
        lines.emplace_back(3, fmt::format("<DayWorking>{}</DayWorking>", times.empty() ? 0 : 1));
        if (!times.empty()) {
            lines.emplace_back(3, "<WorkingTimes>");
            for (const auto& [from, to] : times) {
                lines.emplace_back(4, "<WorkingTime>");
                lines.emplace_back(5, fmt::format("<FromTime>{}</FromTime>", from));
                lines.emplace_back(5, fmt::format("<ToTime>{}</ToTime>", to));
                lines.emplace_back(4, "</WorkingTime>");
            }
            lines.emplace_back(3, "</WorkingTimes>");
        }
        lines.emplace_back(2, "</WeekDay>");
    }
    lines.emplace_back(1, "</WeekDays>");
    lines.emplace_back(0, "</Calendar>");
    return lines;
}

// As the plan's own lines begin and are indented; on one line where the plan has no lines.
std::string joined(const std::vector<std::pair<int, std::string>>& lines, const std::string& lead) {
    std::string markup;
    const bool hasLines = !lead.empty();
    for (const auto& [depth, line] : lines) {
        markup += hasLines && !markup.empty() ? lead : "";
        markup += hasLines ? std::string(2 * static_cast<std::size_t>(depth), ' ') : std::string();
        markup += line;
    }
    return markup;
}

void putInStandardCalendar(MSPDIPatient& patient) {
    constexpr std::string_view listsBehind[] = {"Tasks", "Resources", "Assignments"};
    const auto project = patient.project();
    auto lines = linesOfStandardCalendar();
    if (const auto calendars = project.firstChildElement("Calendars")) {
        patient.append(calendars, joined(lines, patient.indentationWithin(calendars)));
        return;
    }
    for (auto& [depth, line] : lines) {
        ++depth;
    }
    lines.insert(lines.begin(), {0, "<Calendars>"});
    lines.emplace_back(0, "</Calendars>");
    patient.insertBefore(project, listsBehind, joined(lines, patient.indentationWithin(project)));
}

// The importer takes the calendar with UID 1, whosever it is.
void giveProjectsCalendarItsPlace(MSPDIPatient& patient, std::string_view step) {
    const auto first = MSPDITakenCalendar(patient);
    const auto own = projectsCalendar(patient);
    if (!first || !own || first == own) {
        return;
    }
    patient.note(step, [&] {
        return fmt::format("{} exchanges its UID with {}", MSPISubjectOf("Calendar", own),
                           MSPISubjectOf("Calendar", first));
    });
    const auto taken = calendarOf(patient, 1) ? MSPDITextIn(first, "UID").value_or("1") : std::string("1");
    const auto ownUID = MSPDITextIn(own, "UID");
    exchangeUIDs(patient, taken, ownUID.value_or(MSPDIFreeUIDs(patient.items("Calendars", "Calendar")).next()));
    if (!ownUID) {
        patient.setChild(own, "UID", taken, {});
    }
    makeBase(patient, own);
}

}  // namespace

// A calendar that is no base calendar is a person's.
void MSPDIMendCalendarOrder(MSPDIPatient& patient) {
    const auto first = MSPDITakenCalendar(patient);
    if (first && !isBase(first) && patient.allows(calendarOrder)) {
        giveProjectsCalendarItsPlace(patient, calendarOrder);
    }
}

void MSPDIMendProjectCalendar(MSPDIPatient& patient) {
    // Of its working times those until midnight would not arrive.
    if (patient.isAskedFor(projectCalendar) && !MSPDIHasTimeUntilMidnight(projectsCalendar(patient))) {
        giveProjectsCalendarItsPlace(patient, projectCalendar);
    }
}

void MSPDIMendStandardCalendar(MSPDIPatient& patient) {
    if (!patient.allows(standardCalendar)) {
        return;
    }
    const auto taken = MSPDITakenCalendar(patient);
    if (taken && isBase(taken)) {
        return;
    }
    const auto calendar = taken ? taken : projectsCalendar(patient);
    if (!calendar) {
        patient.note(standardCalendar, [] { return "a new calendar, Monday to Friday, 8 to 12 and 13 to 17"; });
        putInStandardCalendar(patient);
        return;
    }
    patient.note(standardCalendar, [&] { return MSPISubjectOf("Calendar", calendar); });
    if (!taken) {
        patient.setChild(calendar, "Name", "Standard", beforeName);
    }
    makeBase(patient, calendar);
}
