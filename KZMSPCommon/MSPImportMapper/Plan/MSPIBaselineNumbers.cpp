#include "MSPIBaselineNumbers.h"

#include <string>

#include "MSPCXPathNumber.h"

namespace {

template <typename Visit>
void visitNumbers(const MSPCXMLNode& baseline, std::string& buffer, const Visit& visit) {
    for (auto child = baseline.firstChildElement("Number"); child; child = child.nextSiblingElement("Number")) {
        const auto number = xpathNumber(child.stringValue(buffer));
        const bool isInRange = number && *number >= 0 && *number < MSPIBaselineCount;
        const auto whole = isInRange ? static_cast<std::size_t>(*number) : 0;
        if (number == static_cast<double>(whole)) {
            visit(whole);
        }
    }
}

}  // namespace

std::optional<std::size_t> MSPIBaselineNumber(const MSPCXMLNode& baseline) {
    std::string buffer;
    std::optional<std::size_t> last;
    visitNumbers(baseline, buffer, [&last](std::size_t number) { last = number; });
    return last;
}

std::array<MSPCXMLNode, MSPIBaselineCount> MSPILastBaselines(MSPCXMLNode baseline) {
    std::array<MSPCXMLNode, MSPIBaselineCount> last;
    std::string buffer;
    for (; baseline; baseline = baseline.nextSiblingElement("Baseline")) {
        visitNumbers(baseline, buffer, [&](std::size_t number) { last[number] = baseline; });
    }
    return last;
}
