#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "MSPCXMLNode.h"
#include "MSPIBaselineJournal.h"
#include "MSPIBaselineValues.h"

// Makes one MSPDI `Task`, `Resource` or `Assignment` show the values of one of its baselines for a while: its children
// take the texts of the baseline's children of the same names, or the whole element leaves the document when it has no
// such baseline. Patches of one document are reverted in the reverse order in which they were applied.
class MSPIBaselinePatch {
public:
    // Changes nothing yet. The document outlives the patch.
    MSPIBaselinePatch(MSPCXMLNode target, std::int32_t baselineNumber);
    // For a baseline that has been looked up already, with its values. They and the journal, which patches of one
    // document share, outlive the patch.
    MSPIBaselinePatch(MSPCXMLNode target, bool hasBaseline, std::span<const MSPIBaselineValue> values,
                      MSPIBaselineJournal& journal);

    // Raises `MSPCInternalInconsistency` "Can not apply patch to already patched target. Must revert first.".
    void apply();
    // Restores the element exactly. Raises "Can not revert patch at non-patched target. Must apply patch first.".
    void revert();

    // Has the processor fetch the children that change, or their texts, which makes changing them soon cheaper.
    void prefetch() const;
    void prefetchTexts() const;

    [[nodiscard]] bool isPatched() const { return _isPatched; }
    [[nodiscard]] bool isTargetRemoved() const { return static_cast<bool>(_removedTarget); }

private:
    // What a patch needs that has looked for the baseline itself.
    struct Own {
        MSPIBaselineValues values;
        MSPIBaselineJournal journal;
    };

    void removeTarget();

    MSPCXMLNode _target;
    std::unique_ptr<Own> _own;
    std::span<const MSPIBaselineValue> _values;
    MSPIBaselineJournal* _journal = nullptr;
    bool _hasBaseline = false;
    bool _isPatched = false;
    MSPCXMLNewElement _removedTarget;
    MSPCXMLNode _parentOfRemoved;
    MSPCXMLNode _siblingAfterRemoved;
};
