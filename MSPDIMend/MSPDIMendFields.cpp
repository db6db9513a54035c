#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <map>
#include <set>

#include "MSPCTextScanner.h"
#include "MSPDICustomFieldPlace.h"
#include "MSPDIItemValues.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"
#include "MSPISubject.h"

namespace {

constexpr std::string_view fieldKeys = "field-keys";
constexpr std::string_view deadlineToField = "deadline-to-field";
constexpr std::string_view lagToField = "lag-to-field";
constexpr std::string_view unitsToField = "units-to-field";

// The fields that have a name, by their numbers.
std::map<std::string, std::string> fieldNames(const MSPDIPatient& patient) {
    std::map<std::string, std::string> names;
    for (const auto& definition : patient.items("ExtendedAttributes", "ExtendedAttribute")) {
        const auto alias = MSPDITextIn(definition, "Alias");
        const auto name = alias ? alias : MSPDITextIn(definition, "FieldName");
        if (name) {
            names[MSPDITextIn(definition, "FieldID").value_or("")] = *name;
        }
    }
    return names;
}

// The table of contents has the keys of the last task, or resource, that has any.
void nameFieldsInLast(MSPDIPatient& patient, const std::vector<MSPCXMLNode>& owners, std::string_view kind) {
    const auto names = fieldNames(patient);
    std::vector<std::pair<std::string, std::string>> used;  // number and name, in order of appearance
    std::set<std::string> usedNames;
    for (const auto& owner : owners) {
        for (const auto& field : owner.childElements("ExtendedAttribute")) {
            const auto found = names.find(MSPDITextIn(field, "FieldID").value_or(""));
            if (found != names.end() && usedNames.insert(found->second).second) {
                used.emplace_back(found->first, found->second);
            }
        }
    }
    if (owners.empty()) {
        return;
    }
    std::set<std::string> ofLast;
    for (const auto& field : owners.back().childElements("ExtendedAttribute")) {
        const auto found = names.find(MSPDITextIn(field, "FieldID").value_or(""));
        ofLast.insert(found == names.end() ? "" : found->second);
    }
    for (const auto& [fieldID, name] : used) {
        if (!ofLast.contains(name)) {
            patient.note(fieldKeys, [&, &field = name] {
                return fmt::format("{}: {}", MSPISubjectOf(kind, owners.back()), field);
            });
            MSPDIAddFieldValue(patient, owners.back(), fieldID, std::nullopt);
        }
    }
}

// The values that a field of a task is to have, in words; "; " stands between several.
using Words = std::vector<std::pair<MSPCXMLNode, std::string>>;

void addWords(Words& words, const MSPCXMLNode& task, const std::string& text) {
    if (!words.empty() && words.back().first == task) {
        words.back().second += "; " + text;
    } else {
        words.emplace_back(task, text);
    }
}

// Gives the tasks a field with these words, and takes out what they tell of. Nothing is done where no field is free.
void moveIntoField(MSPDIPatient& patient, std::string_view step, std::string_view alias, const Words& words,
                   const std::vector<MSPCXMLNode>& moved) {
    std::vector<MSPCXMLNode> tasks;
    for (const auto& [task, text] : words) {
        tasks.push_back(task);
    }
    const auto fieldID = words.empty() ? std::nullopt : MSPDITaskFieldWithAlias(patient, alias, tasks);
    if (!fieldID) {
        return;
    }
    for (const auto& [task, text] : words) {
        patient.note(
            step, [&, &of = task, &words = text] { return fmt::format("{}: {}", MSPISubjectOf("Task", of), words); });
        MSPDIAddFieldValue(patient, task, *fieldID, text);
    }
    for (const auto& element : moved) {
        patient.remove(element);
    }
}

// Tasks that arrive with their custom fields.
std::vector<MSPCXMLNode> mappedTasks(const MSPDIPatient& patient) {
    auto tasks = MSPDITasksOf(patient);
    std::erase_if(tasks, [](const auto& task) { return MSPDIIntegerIn(task, "UID").value_or(0) == 0; });
    return tasks;
}

// Of elapsed time or not, an estimate or not.
bool isPercentage(std::int64_t lagFormat) {
    return lagFormat == 19 || lagFormat == 20 || lagFormat == 51 || lagFormat == 52;
}

// A text that is a number as a whole; none for one that only begins with a number, or is beyond what fits.
template <typename Number>
std::optional<Number> wholeNumber(const std::string& text) {
    const auto digits = trimmed(text);
    const auto* end = digits.data() + digits.size();
    Number number{};
    const auto [rest, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

std::optional<double> decimalNumber(const std::string& text) {
    const auto number = wholeNumber<double>(text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

// "2 d 4 h" would depend on what a day is; hours and minutes do not.
std::string lagInWords(std::int64_t tenthsOfMinutes) {
    const bool isLead = tenthsOfMinutes < 0;
    // The smallest number has no opposite of its own.
    const auto tenths =
        isLead ? 0 - static_cast<std::uint64_t>(tenthsOfMinutes) : static_cast<std::uint64_t>(tenthsOfMinutes);
    const auto hours = tenths / 600;
    const auto rest = tenths % 600;
    const auto inHours = hours == 0 && rest != 0 ? std::string() : fmt::format("{} h", hours);
    const auto part = rest % 10 == 0 ? std::string() : fmt::format(".{}", rest % 10);
    const auto inMinutes = rest == 0 ? std::string() : fmt::format("{}{} min", rest / 10, part);
    const auto* between = inHours.empty() || inMinutes.empty() ? "" : " ";
    return (isLead ? "-" : "") + inHours + between + inMinutes;
}

}  // namespace

void MSPDIMendDeadlines(MSPDIPatient& patient) {
    if (!patient.isAskedFor(deadlineToField)) {
        return;
    }
    Words words;
    std::vector<MSPCXMLNode> moved;
    for (const auto& task : mappedTasks(patient)) {
        const auto deadline = task.lastChildElement("Deadline").element;
        if (deadline && !deadline.stringValue().empty()) {
            addWords(words, task, deadline.stringValue());
            moved.push_back(deadline);
        }
    }
    moveIntoField(patient, deadlineToField, "Deadline", words, moved);
}

void MSPDIMendLags(MSPDIPatient& patient) {
    if (!patient.isAskedFor(lagToField)) {
        return;
    }
    Words words;
    std::vector<MSPCXMLNode> moved;
    for (const auto& task : mappedTasks(patient)) {
        for (const auto& link : task.childElements("PredecessorLink")) {
            const auto lag = wholeNumber<std::int64_t>(MSPDITextIn(link, "LinkLag").value_or("")).value_or(0);
            const auto format = MSPDIIntegerIn(link, "LagFormat").value_or(0);
            if (lag != 0 && !isPercentage(format)) {
                addWords(
                    words, task,
                    fmt::format("{} after task {}", lagInWords(lag), MSPDITextIn(link, "PredecessorUID").value_or("")));
                moved.push_back(link.lastChildElement("LinkLag").element);
            }
        }
    }
    moveIntoField(patient, lagToField, "Lag", words, moved);
}

// Units of material stay: they add up to the amount that is there.
void MSPDIMendUnits(MSPDIPatient& patient) {
    if (!patient.isAskedFor(unitsToField)) {
        return;
    }
    std::map<std::string, std::string> namesOfWork;
    for (const auto& resource : patient.items("Resources", "Resource")) {
        const bool isWork =
            MSPDIIntegerIn(resource, "Type").value_or(1) == 1 && !MSPDIIsTrueIn(resource, "IsCostResource");
        if (isWork && MSPDIIntegerIn(resource, "UID").value_or(0) > 0) {
            namesOfWork[*MSPDITextIn(resource, "UID")] = MSPDITextIn(resource, "Name").value_or("");
        }
    }
    std::map<std::string, std::vector<MSPCXMLNode>> unitsOfTask;
    for (const auto& assignment : patient.items("Assignments", "Assignment")) {
        const auto units = assignment.lastChildElement("Units").element;
        const bool isWork = namesOfWork.contains(MSPDITextIn(assignment, "ResourceUID").value_or(""));
        const auto share = units && isWork ? decimalNumber(units.stringValue()) : std::nullopt;
        if (share && *share != 1.0) {
            unitsOfTask[MSPDITextIn(assignment, "TaskUID").value_or("")].push_back(units);
        }
    }
    Words words;
    std::vector<MSPCXMLNode> moved;
    for (const auto& task : mappedTasks(patient)) {
        for (const auto& units : unitsOfTask[MSPDITextIn(task, "UID").value_or("")]) {
            const auto& name = namesOfWork[MSPDITextIn(units.parent(), "ResourceUID").value_or("")];
            const auto share = decimalNumber(units.stringValue()).value_or(1);
            addWords(words, task, fmt::format("{} {:.10g}%", name, 100 * share));
            moved.push_back(units);
        }
    }
    moveIntoField(patient, unitsToField, "Units", words, moved);
}

void MSPDIMendFieldKeys(MSPDIPatient& patient) {
    if (!patient.isAskedFor(fieldKeys)) {
        return;
    }
    nameFieldsInLast(patient, MSPDITasksOf(patient), "Task");
    auto resources = patient.items("Resources", "Resource");
    std::erase_if(resources, [](const auto& resource) { return MSPDIIntegerIn(resource, "UID").value_or(0) == 0; });
    nameFieldsInLast(patient, resources, "Resource");
}
