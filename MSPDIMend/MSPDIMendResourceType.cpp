#include <fmt/format.h>

#include <algorithm>

#include "MSPDIItemValues.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"
#include "MSPISubject.h"

namespace {

constexpr std::string_view resourceType = "resource-type";
constexpr std::int64_t costType = 2;

// What planning programs write behind it.
constexpr std::string_view fieldsBehind[] = {"AssnOwner",           "AssnOwnerGuid", "IsBudget",
                                             "AvailabilityPeriods", "Rates",         "TimephasedData"};

void makeMaterial(MSPDIPatient& patient, const MSPCXMLNode& resource) {
    patient.setChild(resource, "Type", "0", {});
    std::vector<std::string_view> before;
    for (const auto& [name, child] : resource.childElements()) {
        if (std::find(std::begin(fieldsBehind), std::end(fieldsBehind), name) == std::end(fieldsBehind)) {
            before.push_back(name);
        }
    }
    patient.setChild(resource, "IsCostResource", "1", before);
}

}  // namespace

void MSPDIMendResourceTypes(MSPDIPatient& patient) {
    if (!patient.allows(resourceType)) {
        return;
    }
    for (const auto& resource : patient.items("Resources", "Resource")) {
        const auto type = MSPDIIntegerIn(resource, "Type");
        const bool isMapped = MSPDIIntegerIn(resource, "UID").value_or(0) != 0;
        if (!isMapped || !type || *type == 0 || *type == 1) {
            continue;
        }
        patient.note(resourceType,
                     [&] { return fmt::format("{}: Type {}", MSPISubjectOf("Resource", resource), *type); });
        if (*type == costType) {
            makeMaterial(patient, resource);
        } else {
            patient.setChild(resource, "Type", "1", {});
        }
    }
}
