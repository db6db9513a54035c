#include "MSPIBaselineCounts.h"

#include <bitset>
#include <string>

#include "MSPCExtensions.h"
#include "MSPIXPathNumber.h"

namespace {

// The numbers of an element's baselines, each once however often it is there.
std::bitset<MSPIBaselineCounts::BaselineCount> baselineNumbersOf(const MSPCXMLNode& element, std::string& buffer) {
    std::bitset<MSPIBaselineCounts::BaselineCount> numbers;
    for (auto baseline = element.firstChildElement("Baseline"); baseline;
         baseline = baseline.nextSiblingElement("Baseline")) {
        for (auto child = baseline.firstChildElement("Number"); child; child = child.nextSiblingElement("Number")) {
            const auto number = xpathNumber(child.stringValue(buffer));
            for (std::size_t n = 0; n < numbers.size(); ++n) {
                if (number == static_cast<double>(n)) {
                    numbers.set(n);
                }
            }
        }
    }
    return numbers;
}

}  // namespace

MSPIBaselineCounts MSPIBaselineCounts::ofProject(const MSPCXMLNode& mspProject) {
    MSPIBaselineCounts counts;
    std::string buffer;
    const auto countList = [&](std::string_view path, std::size_t Counts::*member) {
        for (const auto& element : nodesForXQuery(mspProject, path)) {
            const auto numbers = baselineNumbersOf(element, buffer);
            for (std::size_t n = 0; n < numbers.size(); ++n) {
                counts.byNumber[n].*member += static_cast<std::size_t>(numbers[n]);
            }
        }
    };
    countList("Tasks/Task", &Counts::tasks);
    countList("Resources/Resource", &Counts::resources);
    countList("Assignments/Assignment", &Counts::assignments);
    return counts;
}
