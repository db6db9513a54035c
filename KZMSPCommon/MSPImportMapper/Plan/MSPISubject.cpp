#include "MSPISubject.h"

#include <fmt/format.h>

#include <algorithm>

#include "MSPCExtensions.h"

namespace {

std::string textOf(const MSPCXMLNode& element, std::string_view name) {
    return textForXQuery(element, name).textOrEmpty();
}

std::string subjectText(std::string_view kind, std::string_view uid, std::string_view name) {
    return fmt::format("{} UID='{}' name='{}'", kind, uid, name);
}

// What an assignment names by a UID, an element of that kind.
std::string subjectWithUID(std::string_view kind, std::string_view uid, std::span<const MSPCXMLNode> shown,
                           std::span<const MSPCXMLNode> hidden) {
    for (const auto& elements : {shown, hidden}) {
        const auto found = std::ranges::find_if(elements, [&](const MSPCXMLNode& element) {
            return element.name() == kind && textOf(element, "UID") == uid;
        });
        if (found != elements.end()) {
            return MSPISubjectOf(kind, *found);
        }
    }
    return subjectText(kind, uid, "");
}

}  // namespace

std::string MSPISubjectOf(std::string_view kind, const MSPCXMLNode& element) {
    return element ? subjectText(kind, textOf(element, "UID"), textOf(element, "Name")) : std::string();
}

std::string MSPISubjectOfAssignment(const MSPCXMLNode& assignment, std::span<const MSPCXMLNode> hidden) {
    if (!assignment) {
        return {};
    }
    const auto project = assignment.rootElement();
    return fmt::format(
        "Assignment of {} to {}",
        subjectWithUID("Task", textOf(assignment, "TaskUID"), nodesForXQuery(project, "Tasks/Task"), hidden),
        subjectWithUID("Resource", textOf(assignment, "ResourceUID"), nodesForXQuery(project, "Resources/Resource"),
                       hidden));
}
