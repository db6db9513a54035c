#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "MSPCTextScanner.h"
#include "MSPDICustomFieldPlace.h"
#include "MSPDIItemValues.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"
#include "MSPDITaskWords.h"
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

std::int64_t lagIn(const MSPCXMLNode& element) {
    return wholeNumber<std::int64_t>(element.stringValue()).value_or(0);
}

// Of several the last one counts. Where it is a lag, the others go with it, so that none of them takes its place.
std::vector<std::pair<std::int64_t, MSPCXMLNode>> lagsOf(const MSPCXMLNode& link) {
    std::vector<std::pair<std::int64_t, MSPCXMLNode>> lags;
    const auto elements = link.childElements("LinkLag");
    if (elements.empty() || lagIn(elements.back()) == 0 ||
        isPercentage(MSPDIIntegerIn(link, "LagFormat").value_or(0))) {
        return lags;
    }
    for (const auto& element : elements) {
        if (const auto lag = lagIn(element); lag != 0) {
            lags.emplace_back(lag, element);
        }
    }
    return lags;
}

// What a link leads from and to, by its type; from the end of the one task to the start of the other is what people
// mean without a word.
std::string linkInWords(std::int64_t type, const std::string& lag, const std::string& predecessor) {
    switch (type) {
        case 0:
            return fmt::format("finish {} after the finish of task {}", lag, predecessor);
        case 2:
            return fmt::format("finish {} after the start of task {}", lag, predecessor);
        case 3:
            return fmt::format("{} after the start of task {}", lag, predecessor);
        default:
            return fmt::format("{} after task {}", lag, predecessor);
    }
}

bool isOddShare(const MSPCXMLNode& units) {
    return decimalNumber(units.stringValue()).value_or(1.0) != 1.0;
}

// Units other than 100%. Of several the last ones count; where they are other than 100%, all such go with them, so that
// none of them take their place.
std::vector<MSPCXMLNode> oddUnitsOf(const MSPCXMLNode& assignment) {
    auto units = assignment.childElements("Units");
    if (units.empty() || !isOddShare(units.back())) {
        return {};
    }
    std::erase_if(units, [](const auto& element) { return !isOddShare(element); });
    return units;
}

}  // namespace

void MSPDIMendDeadlines(MSPDIPatient& patient) {
    if (!patient.isAskedFor(deadlineToField)) {
        return;
    }
    MSPDITaskWords words;
    for (const auto& task : MSPDITasksWithFields(patient)) {
        for (const auto& deadline : task.childElements("Deadline")) {
            if (!deadline.stringValue().empty()) {
                words.add(task, deadline.stringValue(), {deadline});
            }
        }
    }
    words.moveIntoField(patient, deadlineToField, "Deadline");
}

void MSPDIMendLags(MSPDIPatient& patient) {
    if (!patient.isAskedFor(lagToField)) {
        return;
    }
    MSPDITaskWords words;
    for (const auto& task : MSPDITasksWithFields(patient)) {
        for (const auto& link : task.childElements("PredecessorLink")) {
            for (const auto& [lag, element] : lagsOf(link)) {
                const bool isElapsed = MSPDIIsElapsedFormat(MSPDIIntegerIn(link, "LagFormat").value_or(0));
                words.add(task,
                          linkInWords(MSPDIIntegerIn(link, "Type").value_or(1),
                                      MSPDITenthsOfMinutesInWords(lag) + (isElapsed ? " elapsed" : ""),
                                      MSPDITextIn(link, "PredecessorUID").value_or("")),
                          {element});
            }
        }
    }
    words.moveIntoField(patient, lagToField, "Lag");
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
        if (namesOfWork.contains(MSPDITextIn(assignment, "ResourceUID").value_or(""))) {
            const auto units = oddUnitsOf(assignment);
            auto& ofTask = unitsOfTask[MSPDITextIn(assignment, "TaskUID").value_or("")];
            ofTask.insert(ofTask.end(), units.begin(), units.end());
        }
    }
    MSPDITaskWords words;
    for (const auto& task : MSPDITasksWithFields(patient)) {
        for (const auto& units : unitsOfTask[MSPDITextIn(task, "UID").value_or("")]) {
            const auto& name = namesOfWork[MSPDITextIn(units.parent(), "ResourceUID").value_or("")];
            const auto share = decimalNumber(units.stringValue()).value_or(1);
            words.add(task, fmt::format("{} {:.10g}%", name, 100 * share), {units});
        }
    }
    words.moveIntoField(patient, unitsToField, "Units");
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
