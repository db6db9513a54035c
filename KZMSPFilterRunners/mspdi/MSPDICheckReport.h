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

// Writes a line for each finding, "<document>/<file>:<line>: <fault or note>: <element>: <what> [<rule>]", and one for
// each document.
void MSPDIWriteChecks(const std::vector<MSPDICheckedDocument>& documents, MSPDIRun& run);
// The same as a JSON document, in the form of share/mspdi/check.schema.json.
void MSPDIWriteChecksAsJSON(const std::vector<MSPDICheckedDocument>& documents, std::ostream& out);
