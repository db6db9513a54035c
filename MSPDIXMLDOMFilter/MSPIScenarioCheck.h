#pragma once

#include <string_view>

class MSPCXMLDocument;

// Whether a scenario document has the frame that Kadenza 2 expects: the root "scenario" with one namespace and an id,
// the group resource "r-1" and the group task "t-1" as the first of their kinds, and the two top elements that name
// them. `kdzxNamespace` is the URI of the target format.
//
// Deliberate: the one namespace must differ from the whole text `xmlns="<kdzxNamespace>"`, which no URI equals; so a
// document of any namespace passes, one with none or with two does not.
[[nodiscard]] bool MSPIScenarioCheck(const MSPCXMLDocument& scenario, std::string_view kdzxNamespace);
