#include "MSPDICustomFieldPlace.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <set>

#include "MSPDIItemValues.h"
#include "MSPDIMarkup.h"
#include "MSPDIPatient.h"

namespace {

// The numbers that planning programs give the fields Text1 to Text30 of tasks.
constexpr std::array<int, 30> textFields = {
    188743731, 188743734, 188743737, 188743740, 188743743, 188743746, 188743747, 188743748, 188743749, 188743750,
    188743997, 188743998, 188743999, 188744000, 188744001, 188744002, 188744003, 188744004, 188744005, 188744006,
    188744007, 188744008, 188744009, 188744010, 188744011, 188744012, 188744013, 188744014, 188744015, 188744016};

// What planning programs write behind the custom fields of a task or resource.
constexpr std::string_view fieldsBehind[] = {
    "Baseline",       "OutlineCode",    "IsPublished", "StatusManager", "CommitmentStart", "CommitmentFinish",
    "CommitmentType", "Active",         "Manual",      "ManualStart",   "ManualFinish",    "ManualDuration",
    "TimephasedData", "IsCostResource", "AssnOwner",   "AssnOwnerGuid", "IsBudget",        "AvailabilityPeriods",
    "Rates"};

// What planning programs write before the list of definitions.
constexpr std::string_view listsBehind[] = {"Calendars", "Tasks", "Resources", "Assignments"};

void define(MSPDIPatient& patient, const std::string& fieldID, std::string_view fieldName, std::string_view alias) {
    const auto content = MSPDIElementMarkup("FieldID", fieldID) + MSPDIElementMarkup("FieldName", fieldName) +
                         MSPDIElementMarkup("Alias", alias) + MSPDIElementMarkup("CFType", "7");
    const auto markup = "<ExtendedAttribute>" + content + "</ExtendedAttribute>";
    const auto project = patient.project();
    const auto definitions = project.firstChildElement("ExtendedAttributes");
    patient.append(definitions
                       ? definitions
                       : patient.insertBefore(project, listsBehind, "<ExtendedAttributes></ExtendedAttributes>"),
                   markup);
}

std::set<std::string> fieldsOf(const std::vector<MSPCXMLNode>& tasks) {
    std::set<std::string> fieldIDs;
    for (const auto& task : tasks) {
        for (const auto& field : task.childElements("ExtendedAttribute")) {
            fieldIDs.insert(MSPDITextIn(field, "FieldID").value_or(""));
        }
    }
    return fieldIDs;
}

const std::set<std::string>& fieldsOfAllTasks(MSPDIPatient& patient) {
    if (!patient.fieldsOfTasks) {
        patient.fieldsOfTasks = fieldsOf(patient.items("Tasks", "Task"));
    }
    return *patient.fieldsOfTasks;
}

// Some programs define all fields that there are, without a name of the owner's.
bool isUnnamed(const MSPCXMLNode& definition) {
    const auto type = MSPDIIntegerIn(definition, "CFType");
    constexpr std::int64_t textType = 7;
    return MSPDITextIn(definition, "Alias").value_or("").empty() && definition.childElements("ValueList").empty() &&
           definition.childElements("Formula").empty() && type.value_or(textType) == textType;
}

bool isTextField(const std::string& fieldID) {
    return std::any_of(textFields.begin(), textFields.end(),
                       [&](int field) { return std::to_string(field) == fieldID; });
}

// "Deadline", "Deadline 2" and so on.
std::string numbered(std::string_view alias, int number) {
    return number == 1 ? std::string(alias) : fmt::format("{} {}", alias, number);
}

}  // namespace

void MSPDIAddFieldValue(MSPDIPatient& patient, MSPCXMLNode owner, std::string_view fieldID,
                        const std::optional<std::string>& value) {
    const auto content =
        MSPDIElementMarkup("FieldID", fieldID) + (value ? MSPDIElementMarkup("Value", *value) : std::string());
    const auto markup = "<ExtendedAttribute>" + content + "</ExtendedAttribute>";
    if (patient.fieldsOfTasks) {
        patient.fieldsOfTasks->emplace(fieldID);
    }
    // Few things stand behind the last one, many fields before it.
    auto last = owner.lastChild();
    while (last && last.name() != "ExtendedAttribute") {
        last = last.previousSibling();
    }
    if (last) {
        patient.insertBehind(last, markup);
    } else {
        patient.insertBefore(owner, fieldsBehind, markup);
    }
}

std::optional<std::string> MSPDITaskFieldWithAlias(MSPDIPatient& patient, std::string_view alias,
                                                   const std::vector<MSPCXMLNode>& owners) {
    std::multimap<std::string, std::string> fieldIDs;  // by the names of the fields
    std::set<std::string> taken;
    std::map<std::string, MSPCXMLNode> unnamed;  // definitions that only say that there is such a field
    for (const auto& definition : patient.items("ExtendedAttributes", "ExtendedAttribute")) {
        const auto fieldID = MSPDITextIn(definition, "FieldID").value_or("");
        const auto fieldName = MSPDITextIn(definition, "FieldName").value_or("");
        fieldIDs.emplace(MSPDITextIn(definition, "Alias").value_or(fieldName), fieldID);
        if (!isUnnamed(definition) || !unnamed.emplace(fieldID, definition).second) {
            taken.insert(fieldID);
        }
    }
    int number = 1;
    const auto ofOwners = fieldIDs.contains(std::string(alias)) ? fieldsOf(owners) : std::set<std::string>();
    for (; fieldIDs.contains(numbered(alias, number)); ++number) {
        const auto [first, last] = fieldIDs.equal_range(numbered(alias, number));
        // Fields of one name arrive as one.
        const bool isOnly = std::next(first) == last;
        if (isOnly && isTextField(first->second) && !ofOwners.contains(first->second)) {
            return first->second;
        }
    }
    taken.insert(fieldsOfAllTasks(patient).begin(), fieldsOfAllTasks(patient).end());
    for (std::size_t index = 0; index < textFields.size(); ++index) {
        auto fieldID = std::to_string(textFields[index]);
        if (!taken.contains(fieldID) && !unnamed.contains(fieldID)) {
            define(patient, fieldID, fmt::format("Text{}", index + 1), numbered(alias, number));
            return fieldID;
        }
    }
    for (const int field : textFields) {
        const auto known = unnamed.find(std::to_string(field));
        if (known != unnamed.end() && !taken.contains(known->first)) {
            constexpr std::string_view before[] = {"FieldID", "FieldName"};
            patient.setChild(known->second, "Alias", numbered(alias, number), before);
            return known->first;
        }
    }
    return std::nullopt;
}
