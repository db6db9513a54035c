#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "MSPCXMLNode.h"

// Elements prepared for the table of contents, by tag; no tag is the project's own user data.
using MSPIUserDataTOCElements = std::map<std::optional<std::string>, MSPCXMLNewElement>;

inline constexpr std::string_view MSPITaskUserDataKeysTag = "task-user-data-keys";
inline constexpr std::string_view MSPIResourceUserDataKeysTag = "resource-user-data-keys";

// Moves the recorded user data into the table of contents, each element created at its place where it is missing: the
// project's `user-data` after the settings (an existing one stays as it is and the recorded one is dropped), then the
// key lists of tasks and of resources, which get one more `user-data` each. Raises `MSPCInternalInconsistency` "Failed
// to find 'project' element in TOC XML DOM." and "Failed to locate/make '<tag>' child of 'project' in TOC XML DOM.".
void updateTOCUserData(const MSPCXMLNode& tocRoot, MSPIUserDataTOCElements& userDataTOCElements);
