#pragma once

#include <string>
#include <string_view>

#include "MSPCFileSystem.h"

// What is told of a plan whose file is cut off.
inline constexpr std::string_view MSPDICutOffReason = "the file is cut off";

// Whether the bytes of a plan that had to be mended end before its root element does: within a tag, a comment or a
// section, or with elements open and no end tag of the root. Markup that is damaged, but comes to its end, is not cut
// off, and neither is a plan inside another file that ends early behind it.
[[nodiscard]] bool MSPDIIsCutOff(std::string_view bytes);
// The same of the plan in a file; false for one that cannot be read.
[[nodiscard]] bool MSPDIIsPlanCutOff(const std::string& planPath, const MSPCFileSystem& fileSystem);
