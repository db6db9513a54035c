#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <map>

#include "MSPCTextScanner.h"
#include "MSPDIItemValues.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"
#include "MSPDIReferences.h"
#include "MSPISubject.h"

namespace {

constexpr std::string_view missingUID = "missing-uid";

using NewUIDs = std::map<std::string, std::string>;  // by the old text

struct Kind {
    std::string_view list;
    std::string_view item;
};

constexpr Kind kinds[] = {
    {"Tasks", "Task"},
    {"Resources", "Resource"},
    {"Calendars", "Calendar"},
};

// Numbers beyond all others are read as the largest there is, which leaves none for the pieces of split tasks.
bool hasUsableUID(const MSPCXMLNode& item) {
    const auto text = MSPDITextIn(item, "UID");
    const auto uid = text ? scanInteger64(*text).value_or(-1) : -1;
    return uid >= 0 && uid < std::numeric_limits<std::int64_t>::max() && !text->starts_with('-');
}

// A resource without any UID is passed over by the importer.
bool isInTheWay(const Kind& kind, const MSPCXMLNode& item) {
    if (hasUsableUID(item)) {
        return false;
    }
    const bool isPassedOver = kind.item == "Resource" && !MSPDITextIn(item, "UID");
    return !isPassedOver && !MSPDIIsTrueIn(item, "IsNull");
}

// Of calendars only the number of the project's is read, and one that it lacks is not missed.
bool isCalendarInTheWay(const MSPDIPatient& patient) {
    const auto taken = MSPDITakenCalendar(patient);
    return taken && MSPDITextIn(taken, "UID") && !MSPDIIntegerIn(taken, "UID");
}

bool isNeeded(const MSPDIPatient& patient) {
    for (const auto& kind : {kinds[0], kinds[1]}) {
        const auto items = patient.items(kind.list, kind.item);
        if (std::any_of(items.begin(), items.end(), [&](const auto& item) { return isInTheWay(kind, item); })) {
            return true;
        }
    }
    return isCalendarInTheWay(patient) || patient.isAskedFor(missingUID);
}

// The first task, on the level of the project's summary task, where no other task has its number.
bool isRootWithoutUID(const Kind& kind, const std::vector<MSPCXMLNode>& items, const MSPCXMLNode& item) {
    constexpr std::int64_t levelOfOthers = 1;
    return kind.item == "Task" && item == items.front() &&
           MSPDIIntegerIn(item, "OutlineLevel").value_or(levelOfOthers) < levelOfOthers &&
           std::none_of(items.begin(), items.end(),
                        [](const auto& task) { return MSPDIIntegerIn(task, "UID") == 0 && hasUsableUID(task); });
}

NewUIDs giveNewUIDs(MSPDIPatient& patient, const Kind& kind, const std::vector<MSPCXMLNode>& items,
                    MSPDIFreeUIDs free) {
    NewUIDs newUIDs;
    for (const auto& item : items) {
        if (hasUsableUID(item) || MSPDIIsTrueIn(item, "IsNull")) {
            continue;
        }
        const auto uid = isRootWithoutUID(kind, items, item) ? "0" : free.next();
        patient.note(missingUID, [&] { return fmt::format("{}: UID {}", MSPISubjectOf(kind.item, item), uid); });
        if (const auto old = MSPDITextIn(item, "UID"); old && !old->empty()) {
            newUIDs.try_emplace(*old, uid);
        }
        patient.setChild(item, "UID", uid, {});
    }
    return newUIDs;
}

NewUIDs giveNewUIDs(MSPDIPatient& patient, const Kind& kind) {
    const auto items = patient.items(kind.list, kind.item);
    return giveNewUIDs(patient, kind, items, MSPDIFreeUIDs(items));
}

// The calendar with UID 1 is taken for the project's, so that no other one may get this number; and where the step is
// not asked for, only the one that is in the way gets any.
NewUIDs giveCalendarsNewUIDs(MSPDIPatient& patient) {
    const auto& kind = kinds[2];
    const auto all = patient.items(kind.list, kind.item);
    MSPDIFreeUIDs free(all);
    free.keep(1);
    if (patient.isAskedFor(missingUID)) {
        return giveNewUIDs(patient, kind, all, free);
    }
    return isCalendarInTheWay(patient) ? giveNewUIDs(patient, kind, {MSPDITakenCalendar(patient)}, free) : NewUIDs();
}

MSPDINewUID newUIDsOf(const NewUIDs& newUIDs) {
    return [&newUIDs](const std::string& old) {
        const auto found = newUIDs.find(old);
        return found == newUIDs.end() ? std::nullopt : std::optional(found->second);
    };
}

}  // namespace

// References go with the first one that had a text as its number.
void MSPDIMendMissingUIDs(MSPDIPatient& patient) {
    if (!patient.allows(missingUID) || !isNeeded(patient)) {
        return;
    }
    if (const auto ofTasks = giveNewUIDs(patient, kinds[0]); !ofTasks.empty()) {
        MSPDIRenumberUsesOfTasks(patient, newUIDsOf(ofTasks));
    }
    auto ofResources = giveNewUIDs(patient, kinds[1]);
    ofResources.erase("-65535");  // says that work is assigned to nobody
    if (!ofResources.empty()) {
        MSPDIRenumberReferences(patient, "Assignments", "Assignment", "ResourceUID", newUIDsOf(ofResources));
    }
    auto ofCalendars = giveCalendarsNewUIDs(patient);
    ofCalendars.erase("-1");  // says that there is none
    if (!ofCalendars.empty()) {
        MSPDIRenumberUsesOfBaseCalendars(patient, newUIDsOf(ofCalendars));
        MSPDIRenumberReferences(patient, "Resources", "Resource", "CalendarUID", newUIDsOf(ofCalendars));
    }
}
