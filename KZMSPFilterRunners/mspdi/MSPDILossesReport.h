#pragma once

#include <iosfwd>
#include <string>

#include "MSPDIAccount.h"
#include "MSPDIFatesByPath.h"
#include "MSPDIRun.h"

// Writes what became of a plan for a person: the reason of a refusal, a paragraph for each kind of loss with its
// places, and how many leaves have which fate.
void MSPDIWriteLosses(const std::string& plan, const MSPDIAccount& account, MSPDIRun& run);
// The same as a JSON document, in the form of share/mspdi/losses.schema.json; `fates` only where they are asked for.
void MSPDIWriteLossesAsJSON(const std::string& plan, const MSPDIAccount& account, const MSPDIFatesByPath* fates,
                            std::ostream& out);
