#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>

#include "MSPCExtensions.h"
#include "MSPCTextScanner.h"
#include "MSPDICalendarEdits.h"
#include "MSPDIItemValues.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"
#include "MSPDIReferences.h"
#include "MSPISubject.h"

namespace {

constexpr std::string_view standardCalendar = "standard-calendar";
constexpr std::string_view calendarOrder = "calendar-order";
constexpr std::string_view projectCalendar = "project-calendar";
constexpr std::string_view beforeName[] = {"UID", "GUID"};
constexpr std::string_view beforeIsBase[] = {"UID", "GUID", "Name"};

bool isBase(const MSPCXMLNode& calendar) {
    return MSPDIIsTrueIn(calendar, "IsBaseCalendar");
}

// The calendar with a UID: of several the last base calendar, else the last one.
MSPCXMLNode calendarOf(const MSPDIPatient& patient, std::int64_t uid) {
    MSPCXMLNode found;
    for (const auto& calendar : nodesForXQuery(patient.project(), fmt::format("Calendars/Calendar[UID={}]", uid))) {
        found = !found || isBase(calendar) || !isBase(found) ? calendar : found;
    }
    return found;
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

// The numbers that references get instead of others.
using NewUIDs = std::map<std::int64_t, std::int64_t>;

MSPDINewUID newUIDsOf(const NewUIDs& newUIDs) {
    return [&newUIDs](const std::string& old) {
        const auto number = scanInteger64(old);
        const auto found = number ? newUIDs.find(*number) : newUIDs.end();
        return found == newUIDs.end() ? std::nullopt : std::optional(std::to_string(found->second));
    };
}

// Exchanges the numbers of two calendars, wherever they stand.
void exchangeUIDs(MSPDIPatient& patient, std::int64_t one, std::int64_t other) {
    const NewUIDs newUIDs = {{one, other}, {other, one}};
    const auto newUID = newUIDsOf(newUIDs);
    MSPDIRenumberUsesOfBaseCalendars(patient, newUID);
    MSPDIRenumberReferences(patient, "Resources", "Resource", "CalendarUID", newUID);
    MSPDIRenumberReferences(patient, "Calendars", "Calendar", "UID", newUID);
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
constexpr std::int64_t takenUID = 1;

void giveProjectsCalendarItsPlace(MSPDIPatient& patient, std::string_view step) {
    const auto first = calendarOf(patient, takenUID);
    const auto own = projectsCalendar(patient);
    const auto taken = MSPDITakenCalendar(patient);
    // Two calendars of one number have nothing to exchange.
    if (!taken || !own || own == first || own == taken || MSPDIIntegerIn(own, "UID") == takenUID) {
        return;
    }
    patient.note(step, [&] {
        const auto subject = MSPISubjectOf("Calendar", own);
        return first ? fmt::format("{} exchanges its UID with {}", subject, MSPISubjectOf("Calendar", first))
                     : fmt::format("{} gets UID {}", subject, takenUID);
    });
    const auto ownUID = MSPDIIntegerIn(own, "UID");
    exchangeUIDs(patient, takenUID,
                 ownUID ? *ownUID : MSPDIFreeUIDs(patient.items("Calendars", "Calendar")).nextNumber());
    if (!ownUID) {
        patient.setChild(own, "UID", std::to_string(takenUID), {});
    }
    makeBase(patient, own);
}

// How many values arrive with the calendar that is taken, and with no other: those of its days, and the marks of others
// that are based on it.
std::size_t valuesWith(const MSPDIPatient& patient, const MSPCXMLNode& calendar) {
    const auto uid = MSPDIIntegerIn(calendar, "UID");
    const auto based = fmt::format("Calendars/Calendar/BaseCalendarUID[.={}]", uid.value_or(0));
    return nodesForXQuery(calendar, "(WeekDays|Exceptions)//*[not(*)]").size() +
           (uid ? nodesForXQuery(patient.project(), based).size() : 0);
}

// The other one's values do not arrive any more, and a person's calendar would not any more, either. What is won
// besides is the mark of the project, which names its calendar.
bool bringsMoreThanItTakes(const MSPDIPatient& patient, const MSPCXMLNode& own) {
    const auto taken = MSPDITakenCalendar(patient);
    return isBase(own) && (!taken || valuesWith(patient, own) + 1 >= valuesWith(patient, taken));
}

bool hasTakenUID(const MSPCXMLNode& calendar) {
    return MSPDIIntegerIn(calendar, "UID") == takenUID;
}

// Whether the importer takes a person's calendar while the project's is another one of that number, or none.
bool isPersonsTaken(const MSPDIPatient& patient, const MSPCXMLNode& taken) {
    const auto own = projectsCalendar(patient);
    return taken && !isBase(taken) && hasTakenUID(taken) && own != taken && (!own || hasTakenUID(own));
}

// Gives persons' calendars other numbers than the one that is taken. Where the project's has the same number, only
// resources mean a person's by it.
void putPersonsAside(MSPDIPatient& patient, std::string_view step) {
    for (auto taken = MSPDITakenCalendar(patient); isPersonsTaken(patient, taken);
         taken = MSPDITakenCalendar(patient)) {
        const auto uid = MSPDIFreeUIDs(patient.items("Calendars", "Calendar")).nextNumber();
        patient.note(step, [&] { return fmt::format("{} gets UID {}", MSPISubjectOf("Calendar", taken), uid); });
        const NewUIDs newUIDs = {{takenUID, uid}};
        MSPDIRenumberReferences(patient, "Resources", "Resource", "CalendarUID", newUIDsOf(newUIDs));
        if (!projectsCalendar(patient)) {
            MSPDIRenumberUsesOfBaseCalendars(patient, newUIDsOf(newUIDs));
        }
        patient.setChild(taken, "UID", std::to_string(uid), {});
    }
}

}  // namespace

// A calendar that is no base calendar is a person's.
void MSPDIMendCalendarOrder(MSPDIPatient& patient) {
    if (!patient.allows(calendarOrder)) {
        return;
    }
    putPersonsAside(patient, calendarOrder);
    const auto taken = MSPDITakenCalendar(patient);
    if (taken && !isBase(taken)) {
        giveProjectsCalendarItsPlace(patient, calendarOrder);
    }
}

void MSPDIMendProjectCalendar(MSPDIPatient& patient) {
    const auto own = patient.isAskedFor(projectCalendar) ? projectsCalendar(patient) : MSPCXMLNode();
    // Some working times would not arrive as they are.
    if (own && MSPDIArrivesAsItIs(own) && bringsMoreThanItTakes(patient, own)) {
        giveProjectsCalendarItsPlace(patient, projectCalendar);
    }
}

void MSPDIMendStandardCalendar(MSPDIPatient& patient) {
    if (!patient.allows(standardCalendar)) {
        return;
    }
    putPersonsAside(patient, standardCalendar);
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
    patient.note(standardCalendar, [&] {
        const auto* name = taken ? "" : ", named Standard";
        return fmt::format("{}: a base calendar{}", MSPISubjectOf("Calendar", calendar), name);
    });
    if (!taken) {
        patient.setChild(calendar, "Name", "Standard", beforeName);
    }
    makeBase(patient, calendar);
}
