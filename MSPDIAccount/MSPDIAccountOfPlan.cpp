#include "MSPDIAccountOfPlan.h"

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

class NoLog final : public MSPCLog {
protected:
    void write(std::string_view /*message*/) override {}
};

std::optional<std::string> obstacleAt(const std::string& path, const MSPCFileSystem& fileSystem) {
    if (!fileSystem.exists(path)) {
        return "no such file";
    }
    return fileSystem.isDirectory(path) ? std::optional<std::string>("a folder, not a plan") : std::nullopt;
}

// The mapping of an import, watched.
MSPIScenarioMapping watchedBy(MSPDIPlanFacts& facts) {
    return [&facts](auto& mspdi, const auto& kdzxTemplate, auto& kdzxTOC, const auto& info, const auto& services) {
        if (!info.mspdiBaselineNumber && mspdi.root().name() == "Project") {
            facts.readPlan(mspdi.root());
        }
        auto scenario = MSPIMapScenario(mspdi, kdzxTemplate, kdzxTOC, info, services);
        if (scenario) {
            facts.readScenario(mspdi, info, *scenario, kdzxTOC);
        }
        return scenario;
    };
}

// What is no plan at all; a plan that is refused for what it holds can still be looked at.
bool isNoPlan(const MSPDIMemoryImport& import, const MSPDIPlanFacts& facts) {
    return !facts.hasPlan || (import.refusal && import.refusal->name == "MSPIMapperException");
}

// A lack of memory says nothing about the plan.
bool lackedMemory(const MSPDIMemoryImport& import) {
    return import.refusal && import.refusal->name == "std::bad_alloc";
}

// Whether the file was mended on reading.
bool tellOfRepair(const MSPDIMemoryImport& import, const MSPDIAccountOptions& options, MSPDIAccount& account) {
    for (const auto& warning : import.warnings) {
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
    if (options.restart) {
        options.restart();
    }
    return false;
}

void walkAsAWhole(const std::string& planPath, const MSPCServices& services, const MSPDIAccountOptions& options,
                  const MSPDIPlanFacts& facts, MSPDIAccount& account) {
    NoLog log;
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

void lookAt(const std::string& planPath, const MSPCServices& services, const MSPDIAccountOptions& options,
            MSPDIAccount& account) {
    MSPDIPlanFacts facts(services);
    const auto import = MSPDIImportInMemory(planPath, services, MSPDIMemoryKeeping::Names, watchedBy(facts));
    if (lackedMemory(import) || isNoPlan(import, facts)) {
        account.obstacle = import.refusal ? import.refusal->sentence() : "no plan";
        return;
    }
    account.refusal = import.refusal;
    facts.conclude();
    const bool isMended = tellOfRepair(import, options, account);
    if (isMended || !walkInPieces(planPath, services, options, facts, account)) {
        walkAsAWhole(planPath, services, options, facts, account);
    }
}

// The plan is read more than once. What gives its content only once, such as a pipe, is read into the memory.
void lookAtOnce(const std::string& planPath, const MSPCServices& services, const MSPDIAccountOptions& options,
                MSPDIAccount& account) {
    auto content = services.fileSystem.openFile(planPath) ? std::nullopt : services.fileSystem.readFile(planPath);
    if (!content) {
        lookAt(planPath, services, options, account);
        return;
    }
    MSPDIFileSystemWithContent fileSystem(services.fileSystem, planPath, std::move(*content));
    lookAt(planPath,
           {services.clock, services.timeZone, services.log, services.userDefaults, fileSystem, services.randomSource,
            services.progress},
           options, account);
}

}  // namespace

MSPDIAccount MSPDIAccountOfPlan(const std::string& planPath, const MSPCServices& services,
                                const MSPDIAccountOptions& options) {
    MSPDIAccount account;
    account.obstacle = obstacleAt(planPath, services.fileSystem);
    if (account.obstacle) {
        return account;
    }
    try {
        lookAtOnce(planPath, services, options, account);
    } catch (const MSPCException& exception) {
        account = {};
        account.obstacle = exception.reason();
    } catch (const std::bad_alloc&) {
        account = {};
        account.obstacle = "not enough memory";
    }
    return account;
}
