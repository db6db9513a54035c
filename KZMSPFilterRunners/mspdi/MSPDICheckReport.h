#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "KZDXCheck.h"
#include "MSPDIRun.h"

// A document as it was named, and what was found in it.
struct MSPDICheckedDocument {
    std::string document;
    KZDXCheck check;
};

// Writes a line for each finding, "<document>/<file>:<line>: <fault or note>: <element> ("<name>"): <what> [<rule>]",
// and one for each document; nothing of those that could not be looked at.
void MSPDIWriteChecks(const std::vector<MSPDICheckedDocument>& documents, MSPDIRun& run);
// The same as a JSON document, with those that could not be looked at, in the form of share/mspdi/check.schema.json.
void MSPDIWriteChecksAsJSON(const std::vector<MSPDICheckedDocument>& documents, std::ostream& out);
