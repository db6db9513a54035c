#include "MSPITOCUserData.h"

#include <fmt/format.h>

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPIGanttSettings.h"

namespace {

MSPCXMLNewElement taken(MSPIUserDataTOCElements& elements, const std::optional<std::string>& tag) {
    const auto found = elements.find(tag);
    return found == elements.end() ? MSPCXMLNewElement() : std::move(found->second);
}

// The list of that tag; created after `precedingList`, or after the settings where nothing precedes it yet.
MSPCXMLNode keyListOf(std::string_view tag, MSPCXMLNode project, const MSPCXMLNode& precedingList) {
    if (const auto list = singleObjectForXQuery(project, tag)) {
        return list;
    }
    const auto anchor = precedingList
                            ? precedingList
                            : getPrevGanttSettingsElementForNameIndexProjectTOC(ganttSettingsCount(), project);
    const auto list = project.insertChildAfter(project.newElement(tag), anchor);
    if (!list) {
        throw MSPCInternalInconsistency(
            fmt::format("Failed to locate/make '{}' child of 'project' in TOC XML DOM.", tag));
    }
    return list;
}

}  // namespace

void updateTOCUserData(const MSPCXMLNode& tocRoot, MSPIUserDataTOCElements& userDataTOCElements) {
    auto project = singleObjectForXQuery(tocRoot, "project");
    if (!project) {
        throw MSPCInternalInconsistency("Failed to find 'project' element in TOC XML DOM.");
    }
    // What must follow comes after the element nearest before it, whether the template had that or it is made here.
    auto anchor = singleObjectForXQuery(project, "user-data");
    if (auto projectUserData = taken(userDataTOCElements, std::nullopt); projectUserData && !anchor) {
        anchor = project.insertChildAfter(std::move(projectUserData), getPrevGanttSettingsElementForNameIndexProjectTOC(
                                                                          ganttSettingsCount(), project));
    }
    for (const auto tag : {MSPITaskUserDataKeysTag, MSPIResourceUserDataKeysTag}) {
        if (auto keys = taken(userDataTOCElements, std::string(tag))) {
            keyListOf(tag, project, anchor).appendChild(std::move(keys));
        }
        if (const auto list = singleObjectForXQuery(project, tag)) {
            anchor = list;
        }
    }
}
