// Conditions that go by the line of the table alone.
#include "MSPDIConditions.h"

#include "MSPDIValues.h"

namespace {

MSPDIJudgement lostUnlessOneOf(const MSPDIElement& element, std::string_view text) {
    const bool isDefault =
        text.find_first_not_of(" \t\r\n") == std::string_view::npos || MSPDIIsOneOf(text, element.defaults);
    return isDefault ? MSPDIJudgement(MSPDIFate::Default) : MSPDIJudgement(MSPDIFate::Lost, element.kind);
}

}  // namespace

bool MSPDIGoesByTextAlone(const MSPDIElement& element) {
    return element.condition == saysNothing || element.condition == derivedFromOthers ||
           element.condition == lostUnlessDefault;
}

MSPDIJudgement MSPDIJudgementOfText(const MSPDIElement& element, std::string_view text) {
    return element.condition == saysNothing         ? MSPDIFate::Default
           : element.condition == derivedFromOthers ? MSPDIFate::Derived
                                                    : lostUnlessOneOf(element, text);
}

MSPDIJudgement MSPDIUnlessBaselineHasOne(const MSPDILeaf& leaf, MSPDIJudgement judgement) {
    if (!leaf.item.fields.singleObject(leaf.name())) {
        return judgement;
    }
    for (const auto& [number, baseline] : leaf.item.baselines()) {
        if (!leaf.item.lastText(baseline, leaf.name()).empty()) {
            return MSPDIFate::Shaping;
        }
    }
    return judgement;
}

MSPDIJudgement lostUnlessDefault(const MSPDILeaf& leaf) {
    return lostUnlessOneOf(leaf.element, leaf.text);
}

MSPDIJudgement lostAndCompared(const MSPDILeaf& leaf) {
    return lostUnlessDefault(leaf);
}

MSPDIJudgement saysNothing(const MSPDILeaf& /*leaf*/) {
    return MSPDIFate::Default;
}

MSPDIJudgement derivedFromOthers(const MSPDILeaf& /*leaf*/) {
    return MSPDIFate::Derived;
}

MSPDIJudgement derivedAndCompared(const MSPDILeaf& /*leaf*/) {
    return MSPDIFate::Derived;
}

MSPDIJudgement shapesOthers(const MSPDILeaf& /*leaf*/) {
    return MSPDIFate::Shaping;
}
