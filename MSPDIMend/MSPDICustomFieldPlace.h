#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCXMLNode.h"

class MSPDIPatient;

// Puts the value of a custom field into a task or resource: behind those that it has. Without a value the field is only
// named.
void MSPDIAddFieldValue(MSPDIPatient& patient, MSPCXMLNode owner, std::string_view fieldID,
                        const std::optional<std::string>& value);

// The FieldID of the text field with that alias in which none of these tasks, which are to get a value, has one yet.
// Where the project defines none, the first free text field of tasks is defined with it, or with "<alias> 2" and so on
// where another field has that name; then one whose definition names it nothing and that no task uses gets the alias.
// None where all are taken.
[[nodiscard]] std::optional<std::string> MSPDITaskFieldWithAlias(MSPDIPatient& patient, std::string_view alias,
                                                                 const std::vector<MSPCXMLNode>& owners);
