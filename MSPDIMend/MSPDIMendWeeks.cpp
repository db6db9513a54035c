#include <fmt/format.h>

#include <map>
#include <set>

#include "MSPCExtensions.h"
#include "MSPDICalendarEdits.h"
#include "MSPDIItemValues.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"
#include "MSPISubject.h"

namespace {

constexpr std::string_view resourceWeeks = "resource-weeks";
constexpr std::string_view beforeIsBase[] = {"UID", "GUID", "Name"};

// A base calendar of thousands of holidays, copied for thousands of people, grows beyond all measure.
constexpr std::size_t mostCopied = std::size_t{1} << 26U;

// A day of the usual week, for a base calendar that says nothing of it.
std::string usualDay(int day) {
    std::string times;
    for (const auto& [from, to] : MSPDIUsualTimesOn(MSPCWeekday{day})) {
        times += fmt::format("<WorkingTime><FromTime>{}</FromTime><ToTime>{}</ToTime></WorkingTime>", from, to);
    }
    const auto work = times.empty() ? "<DayWorking>0</DayWorking>"
                                    : fmt::format("<DayWorking>1</DayWorking><WorkingTimes>{}</WorkingTimes>", times);
    return fmt::format("<WeekDay><DayType>{}</DayType>{}</WeekDay>", day, work);
}

std::vector<MSPCXMLNode> exceptionsOf(const MSPCXMLNode& calendar) {
    auto exceptions = nodesForXQuery(calendar, "Exceptions/Exception[Type=1][TimePeriod]");
    const auto older = nodesForXQuery(calendar, "WeekDays/WeekDay[DayType=0][TimePeriod]");
    exceptions.insert(exceptions.end(), older.begin(), older.end());
    return exceptions;
}

void copyDays(MSPDIPatient& patient, const MSPCXMLNode& from, const MSPCXMLNode& to) {
    const bool isUsualWeek = nodesForXQuery(from, "WeekDays/WeekDay[DayType>=1 and DayType<=7]").empty();
    for (int day = 1; day <= 7; ++day) {
        const auto query = fmt::format("WeekDays/WeekDay[DayType={}]", day);
        const auto own = singleObjectForXQuery(from, query);
        if (!singleObjectForXQuery(to, query) && (own || isUsualWeek)) {
            MSPDIAddWeekDay(patient, to, own ? patient.markupOf(own) : usualDay(day));
        }
    }
}

void copyExceptions(MSPDIPatient& patient, const MSPCXMLNode& from, const MSPCXMLNode& to) {
    std::set<std::string> known;
    for (const auto& exception : nodesForXQuery(to, "Exceptions/Exception[Type=1]")) {
        known.insert(MSPDIFirstDayOf(exception));
    }
    for (const auto& exception : exceptionsOf(from)) {
        if (known.insert(MSPDIFirstDayOf(exception)).second) {
            MSPDIAddException(patient, to, patient.markupOf(exception.firstChildElement("TimePeriod")),
                              MSPDIWorkOf(patient, exception));
        }
    }
}

// The last calendar of each UID.
std::map<std::int64_t, MSPCXMLNode> calendarsByUID(const MSPDIPatient& patient) {
    std::map<std::int64_t, MSPCXMLNode> byUID;
    for (const auto& calendar : patient.items("Calendars", "Calendar")) {
        byUID[MSPDIIntegerIn(calendar, "UID").value_or(-1)] = calendar;
    }
    byUID.erase(-1);
    return byUID;
}

// The base calendars that calendars name.
class Bases {
public:
    explicit Bases(const MSPDIPatient& patient) : _patient(patient), _byUID(calendarsByUID(patient)) {}

    // The base of a calendar that has one other than itself and is none.
    [[nodiscard]] MSPCXMLNode baseOf(const MSPCXMLNode& calendar) const {
        const auto base = _byUID.find(MSPDIIntegerIn(calendar, "BaseCalendarUID").value_or(-1));
        const bool isOne = base != _byUID.end() && base->second != calendar;
        return isOne && !MSPDIIsTrueIn(calendar, "IsBaseCalendar") ? base->second : MSPCXMLNode();
    }
    // Whether what a base says arrives as it is.
    [[nodiscard]] bool arrives(const MSPCXMLNode& base) { return sizeOf(base) > 0; }
    // Whether there is room for one copy of it more.
    [[nodiscard]] bool takeRoomFor(const MSPCXMLNode& base) {
        _copied += sizeOf(base);
        return _copied <= mostCopied;
    }

private:
    std::size_t sizeOf(const MSPCXMLNode& base) {
        const auto [known, isNew] = _sizes.try_emplace(base, 0);
        if (isNew && MSPDIArrivesAsItIs(base)) {
            known->second = _patient.markupOf(base).size();
        }
        return known->second;
    }

    const MSPDIPatient& _patient;
    std::map<std::int64_t, MSPCXMLNode> _byUID;
    std::map<MSPCXMLNode, std::size_t> _sizes;  // 0 for those that do not arrive as they are
    std::size_t _copied = 0;
};

}  // namespace

// Days off arrive from base calendars only, so that it becomes one.
void MSPDIMendResourceWeeks(MSPDIPatient& patient) {
    if (!patient.isAskedFor(resourceWeeks)) {
        return;
    }
    Bases bases(patient);
    const auto taken = MSPDITakenCalendar(patient);
    for (const auto& calendar : MSPDIMappedCalendars(patient)) {
        const auto base = calendar == taken ? MSPCXMLNode() : bases.baseOf(calendar);
        if (!base || !bases.arrives(base)) {
            continue;
        }
        if (!bases.takeRoomFor(base)) {
            patient.leave(resourceWeeks, "at most 64 MiB are copied into the calendars of resources");
            continue;
        }
        patient.note(resourceWeeks, [&] {
            return fmt::format("{} from {}", MSPISubjectOf("Calendar", calendar), MSPISubjectOf("Calendar", base));
        });
        copyDays(patient, base, calendar);
        copyExceptions(patient, base, calendar);
        patient.setChild(calendar, "IsBaseCalendar", "1", beforeIsBase);
    }
}
