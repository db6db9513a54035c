#include "MSPDIDocumentCounts.h"

#include <string_view>

#include "MSPCXMLDocument.h"

namespace {

std::size_t childrenNamed(const MSPCXMLNode& element, std::string_view name) {
    std::size_t count = 0;
    for (auto child = element.firstChildElement(name); child; child = child.nextSiblingElement(name)) {
        ++count;
    }
    return count;
}

bool hasId(const MSPCXMLNode& element, std::string_view id) {
    return element.attribute("id").stringValue() == id;
}

std::size_t keysOf(const MSPCXMLNode& list) {
    std::size_t count = 0;
    for (auto data = list.firstChildElement("user-data"); data; data = data.nextSiblingElement("user-data")) {
        count += childrenNamed(data, "key");
    }
    return count;
}

}  // namespace

std::size_t MSPDITasksIn(const MSPCXMLDocument& scenario) {
    std::size_t count = 0;
    std::size_t pieces = 0;
    const auto root = scenario.root();
    for (auto task = root.firstChildElement("task"); task; task = task.nextSiblingElement("task")) {
        count += hasId(task, "t-1") ? 0U : 1U;
        pieces += task.firstChildElement("split") ? childrenNamed(task, "child-task") : 0U;
    }
    return count - pieces;
}

std::size_t MSPDIResourcesIn(const MSPCXMLDocument& scenario) {
    std::size_t count = 0;
    const auto root = scenario.root();
    for (auto each = root.firstChildElement("resource"); each; each = each.nextSiblingElement("resource")) {
        count += hasId(each, "r-1") ? 0U : 1U;
    }
    return count;
}

std::size_t MSPDICustomFieldsIn(const MSPCXMLDocument& kdzxTOC) {
    const auto project = kdzxTOC.root().firstChildElement("project");
    return keysOf(project.firstChildElement("task-user-data-keys")) +
           keysOf(project.firstChildElement("resource-user-data-keys"));
}
