#include "MSPDIItemValues.h"

#include <algorithm>
#include <iterator>

#include "MSPCExtensions.h"
#include "MSPCTextScanner.h"
#include "MSPDIPatient.h"
#include "MSPDIValues.h"
#include "MSPIProjectSettings.h"

namespace {

constexpr std::string_view taskFields[] = {
    "UID",
    "GUID",
    "ID",
    "Name",
    "Active",
    "Manual",
    "Type",
    "IsNull",
    "CreateDate",
    "Contact",
    "WBS",
    "WBSLevel",
    "OutlineNumber",
    "OutlineLevel",
    "Priority",
    "Start",
    "Finish",
    "Duration",
    "ManualStart",
    "ManualFinish",
    "ManualDuration",
    "DurationFormat",
    "Work",
    "Stop",
    "Resume",
    "ResumeValid",
    "EffortDriven",
    "Recurring",
    "OverAllocated",
    "Estimated",
    "Milestone",
    "Summary",
};

// Programs take numbers of 31 bits.
constexpr std::int64_t highestUsualUID = 2'000'000'000;

}  // namespace

std::optional<std::int64_t> MSPDIIntegerIn(const MSPCXMLNode& item, std::string_view name) {
    const auto text = MSPDITextIn(item, name);
    return text ? scanInteger64(*text) : std::nullopt;
}

std::optional<std::string> MSPDITextIn(const MSPCXMLNode& item, std::string_view name) {
    const auto child = item.lastChildElement(name).element;
    return child ? std::optional(child.stringValue()) : std::nullopt;
}

bool MSPDIIsTrueIn(const MSPCXMLNode& item, std::string_view name) {
    return MSPDIIsTrue(MSPDITextIn(item, name).value_or(""));
}

std::vector<MSPCXMLNode> MSPDITasksOf(const MSPDIPatient& patient) {
    auto tasks = patient.items("Tasks", "Task");
    std::erase_if(tasks, [](const auto& task) { return MSPDIIsTrueIn(task, "IsNull"); });
    return tasks;
}

bool MSPDIHasSummaryParentsOnly(const MSPDIPatient& patient) {
    constexpr std::int64_t since2007 = 12;
    return MSPIProjectSettings::ofProject(patient.project()).saveVersion >= since2007;
}

MSPCXMLNode MSPDITakenCalendar(const MSPDIPatient& patient) {
    const auto first = singleObjectForXQuery(patient.project(), "Calendars/Calendar[UID=1]");
    return first ? first : singleObjectForXQuery(patient.project(), "Calendars/Calendar[Name='Standard']");
}

MSPDIFreeUIDs::MSPDIFreeUIDs(const std::vector<MSPCXMLNode>& items) {
    for (const auto& item : items) {
        keep(MSPDIIntegerIn(item, "UID").value_or(0));
    }
}

void MSPDIFreeUIDs::keep(std::int64_t uid) {
    if (uid < highestUsualUID) {
        _latest = std::max(_latest, uid);
    } else {
        _unusual.insert(uid);
    }
}

std::int64_t MSPDIFreeUIDs::nextNumber() {
    do {
        ++_latest;
    } while (_unusual.contains(_latest));
    return _latest;
}

std::vector<std::string_view> MSPDITaskFieldsBefore(std::string_view name) {
    return {std::begin(taskFields), std::find(std::begin(taskFields), std::end(taskFields), name)};
}
