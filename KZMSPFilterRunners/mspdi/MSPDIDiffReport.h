#pragma once

#include <iosfwd>
#include <string>

#include "KZDXDifference.h"
#include "MSPDIRun.h"

// What was compared, as it was named.
struct MSPDIDiffSubject {
    std::string old;
    std::string now;
    std::string scenario;
};

// Writes a line for each difference, "Paint (t12): starts 3 days later, ...", and their number; nothing where there are
// none.
void MSPDIWriteDifferences(const MSPDIDiffSubject& subject, const KZDXDifferences& differences, MSPDIRun& run);
// The same as a JSON document, in the form of share/mspdi/diff.schema.json.
void MSPDIWriteDifferencesAsJSON(const MSPDIDiffSubject& subject, const KZDXDifferences& differences,
                                 std::ostream& out);
