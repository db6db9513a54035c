#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "MSPCFields.h"
#include "MSPCXMLNode.h"

// A child of a task, resource or assignment, and the child of a baseline whose text it is to show.
struct MSPIBaselineValue {
    MSPCXMLNode child;
    MSPCXMLNode value;
};

// Appends what a baseline has for the children of the element it belongs to: for each child that is the last of its name,
// the last value of that name. "Number" is none.
void appendBaselineValues(const MSPCFields& element, const MSPCXMLNode& baseline, std::vector<MSPIBaselineValue>& values);

// Makes one MSPDI `Task`, `Resource` or `Assignment` show the values of one of its baselines for a while: its children
// take the texts of the baseline's children of the same names, or the whole element leaves the document when it has no
// such baseline. Patches of one document are reverted in the reverse order in which they were applied.
class MSPIBaselinePatch {
public:
    // Changes nothing yet. The document outlives the patch.
    MSPIBaselinePatch(MSPCXMLNode target, std::int32_t baselineNumber);
    // For a baseline that has been looked up already, with its values; empty where the target has none. The values outlive
    // the patch.
    MSPIBaselinePatch(MSPCXMLNode target, MSPCXMLNode baseline, std::span<const MSPIBaselineValue> values);

    // Raises `MSPCInternalInconsistency` "Can not apply patch to already patched target. Must revert first.".
    void apply();
    // Restores the element exactly. Raises "Can not revert patch at non-patched target. Must apply patch first.".
    void revert();

    [[nodiscard]] bool isPatched() const { return _isPatched; }
    [[nodiscard]] bool isTargetRemoved() const { return static_cast<bool>(_removedTarget); }

private:
    // A child of the target that shows the text of a baseline's child: either in the place of its own, which is kept at
    // the end of _originalTexts, or by a new element in its place, while the child itself is kept here.
    struct Replacement {
        MSPCXMLNode child;
        std::size_t originalTextSize;
        MSPCXMLNode standIn;
        MSPCXMLNewElement keptChild;
    };

    void show(MSPIBaselineValue shown);
    void removeTarget();

    MSPCXMLNode _target;
    MSPCXMLNode _baseline;
    std::vector<MSPIBaselineValue> _ownValues;  // where the patch has looked for them itself
    std::span<const MSPIBaselineValue> _values;
    bool _isPatched = false;
    MSPCXMLNewElement _removedTarget;
    MSPCXMLNode _parentOfRemoved;
    MSPCXMLNode _siblingAfterRemoved;
    std::vector<Replacement> _replacements;
    std::string _originalTexts;  // one after the other, in the order of the replacements
};
