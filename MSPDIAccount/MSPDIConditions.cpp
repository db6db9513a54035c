// Conditions that go by the line of the table alone.
#include "MSPDIConditions.h"

#include "MSPDIValues.h"

MSPDIJudgement lostUnlessDefault(const MSPDILeaf& leaf) {
    const bool saysNothing = leaf.text.find_first_not_of(" \t\r\n") == std::string_view::npos ||
                             MSPDIIsOneOf(leaf.text, leaf.element.defaults);
    return saysNothing ? MSPDIJudgement(MSPDIFate::Default) : MSPDIJudgement(MSPDIFate::Lost, leaf.element.kind);
}

MSPDIJudgement saysNothing(const MSPDILeaf& /*leaf*/) {
    return MSPDIFate::Default;
}

MSPDIJudgement derivedFromOthers(const MSPDILeaf& /*leaf*/) {
    return MSPDIFate::Derived;
}

MSPDIJudgement shapesOthers(const MSPDILeaf& /*leaf*/) {
    return MSPDIFate::Shaping;
}
