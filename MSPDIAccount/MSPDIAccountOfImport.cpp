#include "MSPDIAccountOfImport.h"

#include <new>

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPCFileSystem.h"
#include "MSPCLog.h"
#include "MSPDIExternalTexts.h"
#include "MSPDIKinds.h"
#include "MSPDILeafWalk.h"
#include "MSPDIPlanFacts.h"
#include "MSPDIReadOnlyFileSystem.h"
#include "MSPDIRepairWarning.h"

namespace {

// Whether the file was mended on reading.
bool tellOfRepair(const std::vector<std::string>& warnings, const MSPDIAccountOptions& options, MSPDIAccount& account) {
    for (const auto& warning : warnings) {
        if (MSPDIIsRepairWarning(warning)) {
            const auto& kind = MSPDIKinds()[MSPDIKindIndex("overwritten-by-repair")];
            auto& loss = account.losses.emplace_back(MSPDILoss{kind.name, kind.what, "", 1, {}});
            if (options.mostPlaces > 0) {
                loss.where.push_back({"/Project", "", "", warning, "", "", ""});
            }
            return true;
        }
    }
    return false;
}

// Goes over a plan piece by piece, which keeps a large one out of the memory; false for one that must be read as a
// whole, with nothing left in the account.
bool walkInPieces(const std::string& planPath, const MSPCServices& services, const MSPDIAccountOptions& options,
                  const MSPDIPlanFacts& facts, MSPDIAccount& account) {
    const auto source = services.fileSystem.openFile(planPath);
    if (!source) {
        return false;
    }
    MSPDILeafWalk walk(facts, options, account);
    if (visitXMLPieces(*source, walk)) {
        walk.finish();
        return true;
    }
    account.leaves = {};
    if (options.fates != nullptr) {
        options.fates->clear();
    }
    return false;
}

void walkAsAWhole(const std::string& planPath, const MSPCServices& services, const MSPDIAccountOptions& options,
                  const MSPDIPlanFacts& facts, MSPDIAccount& account) {
    MSPCNoLog log;
    auto marked = MSPDIWithMarkedExternalTexts(planPath, services.fileSystem);
    const bool isMarked = marked.has_value();
    const MSPDIFileSystemWithContent withMarks(services.fileSystem, isMarked ? planPath : "",
                                               std::move(marked).value_or(""));
    const auto plan = newXmlDocFromUrl(MSPCURL::fileURL(planPath, false), MSPCXMLContent::DataOnly, withMarks, log);
    MSPDILeafWalk walk(facts, options, account);
    walk.expectExternalTexts(isMarked);
    walk.walk(plan.root());
    walk.finish();
}

// What is no plan at all; a plan that is refused for what it holds can still be looked at. A lack of memory says
// nothing about the plan.
bool isObstacle(const std::optional<MSPDIRefusal>& refusal) {
    return refusal && (refusal->name == "MSPIMapperException" || refusal->name == "std::bad_alloc");
}

}  // namespace

MSPDIAccountOfImport::MSPDIAccountOfImport(const MSPCServices& services)
    : _services(services), _facts(std::make_unique<MSPDIPlanFacts>(services)) {
}

MSPDIAccountOfImport::~MSPDIAccountOfImport() = default;

MSPIScenarioMapping MSPDIAccountOfImport::watchedMapping() {
    return [this](auto& mspdi, const auto& kdzxTemplate, auto& kdzxTOC, const auto& info, const auto& services) {
        if (!info.mspdiBaselineNumber && mspdi.root().name() == "Project") {
            _facts->readPlan(mspdi.root());
        }
        auto scenario = MSPIMapScenario(mspdi, kdzxTemplate, kdzxTOC, info, services);
        if (scenario) {
            _facts->readScenario(mspdi, info, *scenario, kdzxTOC);
        }
        return scenario;
    };
}

bool MSPDIAccountOfImport::sawPlan() const {
    return _facts->hasPlan;
}

MSPDIAccount MSPDIAccountOfImport::account(const std::string& planPath, const std::optional<MSPDIRefusal>& refusal,
                                           const std::vector<std::string>& warnings,
                                           const MSPDIAccountOptions& options) {
    MSPDIAccount account;
    try {
        if (isObstacle(refusal) || !sawPlan()) {
            account.obstacle = refusal ? refusal->sentence() : "no plan";
            return account;
        }
        account.refusal = refusal;
        _facts->conclude();
        const bool isMended = tellOfRepair(warnings, options, account);
        if (isMended || !walkInPieces(planPath, _services, options, *_facts, account)) {
            walkAsAWhole(planPath, _services, options, *_facts, account);
        }
    } catch (const MSPCException& exception) {
        account = {};
        account.obstacle = exception.reason();
    } catch (const std::bad_alloc&) {
        account = {};
        account.obstacle = "not enough memory";
    }
    return account;
}
