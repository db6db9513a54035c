#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "MSPCXMLNode.h"

class MSPDIPatient;

// The number that a reference is to have instead of its text; none where it stays.
using MSPDINewUID = std::function<std::optional<std::string>(const std::string& old)>;

// Gives a reference, the last child of a name, its new number.
void MSPDIRenumberReference(MSPDIPatient& patient, const MSPCXMLNode& owner, std::string_view name,
                            const MSPDINewUID& newUID);
// The same for all items of a list.
void MSPDIRenumberReferences(MSPDIPatient& patient, std::string_view list, std::string_view item, std::string_view name,
                             const MSPDINewUID& newUID);
// The references to tasks: those of assignments and links.
void MSPDIRenumberUsesOfTasks(MSPDIPatient& patient, const MSPDINewUID& newUID);
// The references to calendars but those of resources, whose calendars are persons' ones: those of the project, of tasks
// and of other calendars.
void MSPDIRenumberUsesOfBaseCalendars(MSPDIPatient& patient, const MSPDINewUID& newUID);
