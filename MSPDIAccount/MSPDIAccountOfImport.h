#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "MSPCServices.h"
#include "MSPDIAccount.h"
#include "MSPIXMLImporter.h"

class MSPDIPlanFacts;

// The account of a plan while it is imported by somebody else, which saves an import of its own. Made for one import.
class MSPDIAccountOfImport {
public:
    // The services of the import; they outlive this object.
    explicit MSPDIAccountOfImport(const MSPCServices& services);
    ~MSPDIAccountOfImport();
    MSPDIAccountOfImport(const MSPDIAccountOfImport&) = delete;
    MSPDIAccountOfImport& operator=(const MSPDIAccountOfImport&) = delete;

    // The mapping to import with, watched by this object, which outlives the import.
    [[nodiscard]] MSPIScenarioMapping watchedMapping();
    // Whether a plan was there to look at: the root element of one.
    [[nodiscard]] bool sawPlan() const;
    // Once, after the import: reads the plan again, piece by piece, and looks what became of each leaf. `refusal` is
    // none of a plan that was imported; `warnings` are those of the import, without "WARNING: ". Raises nothing that
    // the plan is to blame for.
    [[nodiscard]] MSPDIAccount account(const std::string& planPath, const std::optional<MSPDIRefusal>& refusal,
                                       const std::vector<std::string>& warnings,
                                       const MSPDIAccountOptions& options = {});

private:
    const MSPCServices& _services;
    std::unique_ptr<MSPDIPlanFacts> _facts;
};
