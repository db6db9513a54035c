#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "MSPCServices.h"

class MSPDIPatient;

// What is done to a plan, each in a unit of its own. Each looks for what its steps are for, does nothing where they are
// not allowed or nothing is found, and tells the patient of each thing that it has done.

// The document that lies inside other bytes, with its XML declaration; none where there is no plan in them, otherwise
// they are used up. One in UTF-16 among other bytes is converted, of one that stands as text its markup is taken.
struct MSPDITakenOutPlan {
    std::string bytes;
    std::string around;  // what is refused as the whole of it is: the bytes without the plan, or all of them
    bool isConverted = false;
};
[[nodiscard]] std::optional<MSPDITakenOutPlan> MSPDIEmbeddedPlan(std::string& bytes);
// Has the root of a plan declare the namespace of plans, and no other, and takes the prefix from its names; false where
// there is nothing to change, or the root is none of a plan's.
[[nodiscard]] bool MSPDIGiveOneNamespace(std::string& utf8);
// Whether the tag that begins the root element is well-formed; prefixes need not be declared.
[[nodiscard]] bool MSPDIIsRootTagSound(std::string_view utf8);

void MSPDIMendMissingUIDs(MSPDIPatient& patient);
void MSPDIMendDuplicateRoots(MSPDIPatient& patient);
void MSPDIMendRootTask(MSPDIPatient& patient);
void MSPDIMendOutline(MSPDIPatient& patient);
void MSPDIMendCalendarOrder(MSPDIPatient& patient);
void MSPDIMendStandardCalendar(MSPDIPatient& patient);
void MSPDIMendResourceTypes(MSPDIPatient& patient);
// The improvements; each only where it is asked for.
void MSPDIMendProjectCalendar(MSPDIPatient& patient);
void MSPDIMendResourceWeeks(MSPDIPatient& patient);
void MSPDIMendExceptionsOf2003(MSPDIPatient& patient);
void MSPDIMendRecurringExceptions(MSPDIPatient& patient);
void MSPDIMendWorkWeeks(MSPDIPatient& patient);
void MSPDIMendDeadlines(MSPDIPatient& patient);
void MSPDIMendLags(MSPDIPatient& patient);
void MSPDIMendUnits(MSPDIPatient& patient);
// Hyperlinks, WBS codes, contacts and the like.
void MSPDIMendTaskDetails(MSPDIPatient& patient);
void MSPDIMendFieldKeys(MSPDIPatient& patient);
// Maps everything to see what the mappers stumble over.
void MSPDIMendWhatCannotBeMapped(MSPDIPatient& patient, const MSPCServices& services);
