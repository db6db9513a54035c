#pragma once

#include <span>
#include <string>
#include <string_view>

#include "MSPCException.h"
#include "MSPCXMLNode.h"

// What a failure of the mapping is about. Its reason often quotes nothing but a bad value; its user information tells
// in whose element that stands, from the inside outwards: "Calendar UID='3' name='Night', Resource UID='7'
// name='Anna'".

// "<kind> UID='<UID>' name='<Name>'" of an MSPDI task, resource or calendar, absent texts being empty; an empty text
// for an empty handle.
[[nodiscard]] std::string MSPISubjectOf(std::string_view kind, const MSPCXMLNode& element);

// "Assignment of Task UID='<UID>' name='<Name>' to Resource UID='<UID>' name='<Name>'" of an MSPDI assignment in its
// project. Looks through the project's tasks and resources, then through `hidden`, those that a baseline has taken out;
// the name is empty where none of them has that very text as `UID`.
[[nodiscard]] std::string MSPISubjectOfAssignment(const MSPCXMLNode& assignment,
                                                  std::span<const MSPCXMLNode> hidden = {});

// Gives what `map` gives. The user information of a failure that leaves it gets `subject()` added.
template <typename Subject, typename Map>
decltype(auto) MSPITellingSubject(const Subject& subject, const Map& map) {
    try {
        return map();
    } catch (MSPCException& failure) {
        failure.addToUserInfo(subject());
        throw;
    }
}

// The same for an element that `MSPISubjectOf` names.
template <typename Map>
decltype(auto) MSPITellingSubject(std::string_view kind, const MSPCXMLNode& element, const Map& map) {
    return MSPITellingSubject([&] { return MSPISubjectOf(kind, element); }, map);
}
