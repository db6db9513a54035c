#include "KZDXRules.h"

KZDXImportComments::KZDXImportComments(const MSPCXMLNode& root) {
    bool isAtBeginning = true;
    for (auto node = root.firstChild(); node; node = node.nextSibling()) {
        isAtBeginning = isAtBeginning && !node.isElement();
        if (node.kind() != MSPCXMLNodeKind::Comment) {
            continue;
        }
        const auto text = node.stringValue();
        tellImporter = tellImporter || (isAtBeginning && text.ends_with(" MSPDI Importer.  "));
        tellPlan = tellPlan || (isAtBeginning && text.starts_with("  Imported MS Project "));
        nameSections = nameSections || text == "  Resources  " || text == "  Tasks  " || text == "  Critical Path  ";
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
