#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCXMLNode.h"
#include "MSPIBaselineIndex.h"

// What patches must know to take back the values they show: values are taken back in the reverse of the order in which
// they were shown. One journal serves all patches of a scenario, instead of a little memory for each.
class MSPIBaselineJournal {
public:
    // Makes the child of a value, which is one of the target's, show the value's text.
    void show(MSPCXMLNode target, const MSPIBaselineValue& value);
    // Restores the child of the value that was shown last.
    void takeBack(MSPCXMLNode target, const MSPIBaselineValue& value);

private:
    // A child whose text cannot be replaced in its place leaves the document while another element shows the text.
    struct StandIn {
        MSPCXMLNode element;
        MSPCXMLNewElement keptChild;
    };
    static constexpr auto ByStandIn = std::string::npos;

    std::vector<std::size_t> _starts;  // for each value, of the text that was replaced, or ByStandIn
    std::string _originalTexts;        // one after the other
    std::vector<StandIn> _standIns;
};

// Makes one MSPDI `Task`, `Resource` or `Assignment` show the values of one of its baselines for a while: its children
// take the texts of the baseline's children of the same names, or the whole element leaves the document when it has no
// such baseline. Patches of one document are reverted in the reverse order in which they were applied.
class MSPIBaselinePatch {
public:
    // Changes nothing yet. The document, the target's values and the journal, which patches of one document share,
    // outlive the patch.
    MSPIBaselinePatch(const MSPIBaselineIndex::Target& target, MSPIBaselineJournal& journal);

    // Raises `MSPCInternalInconsistency` "Can not apply patch to already patched target. Must revert first.".
    void apply();
    // Restores the element exactly. Raises "Can not revert patch at non-patched target. Must apply patch first.".
    void revert();

    [[nodiscard]] bool isPatched() const { return _isPatched; }
    [[nodiscard]] bool isTargetRemoved() const { return static_cast<bool>(_removedTarget); }

private:
    void removeTarget();

    MSPIBaselineIndex::Target _target;
    MSPIBaselineJournal& _journal;
    bool _isPatched = false;
    MSPCXMLNewElement _removedTarget;
    MSPCXMLNode _parentOfRemoved;
    MSPCXMLNode _siblingAfterRemoved;
};
