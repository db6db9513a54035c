#pragma once

#include <string_view>

// Whether a warning of an import (`MSPDIMemoryImport::warnings`) says that the plan's markup was damaged and mended on
// reading, so that values may be missing.
[[nodiscard]] inline bool MSPDIIsRepairWarning(std::string_view warning) {
    return warning.starts_with("Repaired malformed XML");
}
