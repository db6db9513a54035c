#pragma once

#include <optional>

#include "MSPCXMLDeferredElements.h"
#include "MSPCXMLDocument.h"
#include "MSPCXMLLoader.h"
#include "MSPCXMLNode.h"
#include "MSPIBaselineIndex.h"
#include "MSPIGrowthBounds.h"
#include "MSPIProjectIndex.h"

// One MSPDI plan and what its scenarios, mapped one after the other, find out about it together. While a baseline is
// mapped the document shows that baseline; before and after, it is as it was loaded.
class MSPIPlan {
public:
    // Of a document as it was loaded, and the baselines that loading deferred.
    explicit MSPIPlan(MSPCXMLLoaded loaded);
    MSPIPlan(const MSPIPlan&) = delete;
    MSPIPlan& operator=(const MSPIPlan&) = delete;

    [[nodiscard]] const MSPCXMLDocument& document() const { return _document; }
    // The document's root element, `Project` in a plan; empty for a document without one.
    [[nodiscard]] MSPCXMLNode root() const { return _document.root(); }

    // Look-ups in the document as it was loaded. A list that the baseline being mapped changes must not be looked up
    // here.
    [[nodiscard]] MSPIProjectIndex& index() { return _index; }
    // What the plan holds for each baseline; found when it is asked for first, which must be while none shows. Raises
    // `MSPCInternalInconsistency` "Failed to read elements that were set aside." for a baseline that is not sound.
    [[nodiscard]] const MSPIBaselineIndex& baselines();
    // What all scenarios together may still grow by.
    [[nodiscard]] MSPIGrowthBounds& growthBounds() { return _growthBounds; }

private:
    // The others hold handles into the document, so they are declared behind it and go before it.
    MSPCXMLDocument _document;
    MSPCXMLDeferredElements _deferred;  // until the baselines are found
    MSPIProjectIndex _index;
    std::optional<MSPIBaselineIndex> _baselines;
    MSPIGrowthBounds _growthBounds;
};
