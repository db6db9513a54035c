#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "MSPCXMLNode.h"

// Makes one MSPDI `Task`, `Resource` or `Assignment` show the values of one of its baselines for a while: its children
// take the texts of the baseline's children of the same names, or the whole element leaves the document when it has no
// such baseline. Patches of one document are reverted in the reverse order in which they were applied.
class MSPIBaselinePatch {
public:
    // Changes nothing yet. The document outlives the patch.
    MSPIBaselinePatch(MSPCXMLNode target, std::int32_t baselineNumber);

    // Raises `MSPCInternalInconsistency` "Can not apply patch to already patched target. Must revert first.".
    void apply();
    // Restores the element exactly. Raises "Can not revert patch at non-patched target. Must apply patch first.".
    void revert();

    [[nodiscard]] bool isPatched() const { return _isPatched; }
    [[nodiscard]] bool isTargetRemoved() const { return static_cast<bool>(_removedTarget); }

private:
    // A child of the target, kept as it was, and the one that shows the baseline's text in its place.
    struct Replacement {
        MSPCXMLNewElement original;
        MSPCXMLNode standIn;
    };

    // A baseline's text and the target's child that is to show it; an empty handle where it has none.
    struct Value {
        std::string text;
        MSPCXMLNode child;
    };
    using Values = std::map<std::string, Value, std::less<>>;

    MSPCXMLNode baselineOfTarget() const;
    static Values valuesOf(const MSPCXMLNode& baseline);
    void removeTarget();
    void showTextInChild(std::string_view name, const Value& value);

    MSPCXMLNode _target;
    std::int32_t _baselineNumber;
    bool _isPatched = false;
    MSPCXMLNewElement _removedTarget;
    MSPCXMLNode _parentOfRemoved;
    MSPCXMLNode _siblingAfterRemoved;
    std::vector<Replacement> _replacements;
};
