#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "MSPDIMend.h"
#include "MSPDIRun.h"

// Writes what was done to a copy of a plan for a person: why the plan is refused, a paragraph for each step, and where
// the copy is; `path` is none where none was written.
void MSPDIWriteMend(const std::string& plan, const MSPDIMended& mended, const std::optional<std::string>& path,
                    MSPDIRun& run);
// The same as a JSON document, in the form of share/mspdi/mend.schema.json.
void MSPDIWriteMendAsJSON(const std::string& plan, const MSPDIMended& mended, const std::optional<std::string>& path,
                          std::ostream& out);
// The name of the copy beside the plan where none is asked for; each attempt, from 0 on, has another one.
[[nodiscard]] std::string MSPDIMendedName(const std::string& plan, int attempt);
