#include "KZDXRules.h"

KZDXImportComments::KZDXImportComments(const MSPCXMLNode& root) {
    for (auto node = root.firstChild(); node && !node.isElement(); node = node.nextSibling()) {
        const auto text = node.kind() == MSPCXMLNodeKind::Comment ? node.stringValue() : std::string();
        tellImporter = tellImporter || text.ends_with(" MSPDI Importer.  ");
        tellPlan = tellPlan || text.starts_with("  Imported MS Project ");
    }
}

std::vector<KZDXRule> KZDXRules() {
    std::vector<KZDXRule> rules = {KZDXXMLRule, KZDXMissingFileRule, KZDXUnnamedFileRule, KZDXUnreadableFileRule};
    for (const auto& entry : KZDXContentsRules()) {
        rules.push_back(entry.rule);
    }
    for (const auto group : {KZDXReferenceRules(), KZDXOutlineRules(), KZDXValueRules(), KZDXScheduleRules()}) {
        for (const auto& entry : group) {
            rules.push_back(entry.rule);
        }
    }
    return rules;
}
