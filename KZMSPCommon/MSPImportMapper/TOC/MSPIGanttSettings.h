#pragma once

#include <cstddef>
#include <string_view>

#include "MSPCXMLNode.h"

// The settings elements of a table of contents' `project` and the order in which they must stand, after the scenario
// entries. Where `project` holds several elements of one name the last one counts.

// The number of settings; an index past the last one.
[[nodiscard]] std::size_t ganttSettingsCount();

// The settings element of a name; created at its place when missing. Empty, with nothing created, for a name that is no
// setting. Raises `MSPCInternalInconsistency` "Failed to find preceeding element to insert element into TOC Project
// Gantt Settings section." and what the look-up of the preceding element raises.
[[nodiscard]] MSPCXMLNode getGanttSettingsElementProjectTOC(std::string_view name, MSPCXMLNode project);

// The nearest setting present before that index, or what stands before the settings as a whole.
[[nodiscard]] MSPCXMLNode getPrevGanttSettingsElementForNameIndexProjectTOC(std::size_t index,
                                                                            const MSPCXMLNode& project);

// The last scenario entry, or `next-resource-id` where there is none. Raises `MSPCInternalInconsistency` "Failed to
// find element preceeding TOC Project Gantt Settings section." when that is missing too.
[[nodiscard]] MSPCXMLNode getLastElementBeforeGanttSettingsInProjectTOC(const MSPCXMLNode& project);
