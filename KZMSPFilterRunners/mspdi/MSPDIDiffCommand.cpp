#include "MSPDIDiffCommand.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <memory>
#include <new>

#include "KZDXDiff.h"
#include "KZDXOtherScenarios.h"
#include "MSPCException.h"
#include "MSPCFileSystem.h"
#include "MSPCPath.h"
#include "MSPDICommonOptions.h"
#include "MSPDICutOff.h"
#include "MSPDIDiffReport.h"
#include "MSPDIDocumentFiles.h"
#include "MSPDIReadOnce.h"

namespace {

struct Arguments {
    std::string old;
    std::string now;
    std::string scenario;
};

// The files of a document, and the one of its scenarios that is compared.
struct Opened {
    std::unique_ptr<KZDXFiles> files;
    std::optional<KZDXOpenDocument> document;
    std::vector<std::string> repairs;  // of the plan's markup
};

// A folder is a document, anything else a plan. There is no document where it could not be opened.
Opened openDocument(const std::string& name, const std::string& scenario, const MSPCServices& services,
                    std::string& failure) {
    const auto path = services.fileSystem.absolutePath(name);
    return MSPDIWithPlanReadOnce(path, services, [&](const MSPCServices& readable) {
        Opened opened;
        opened.files = MSPDIFilesOfDocumentOrPlan(name, readable, failure, opened.repairs);
        if (!opened.repairs.empty() && MSPDIIsPlanCutOff(path, readable.fileSystem)) {
            failure = MSPDICutOffReason;  // what is not there would be told as gone
        } else if (opened.files) {
            opened.document = KZDXOpenDocument::open(*opened.files, scenario, failure);
        }
        return opened;
    });
}

// What is wrong with the document is told, and nothing is given then.
Opened openOrTell(const std::string& name, const std::string& scenario, MSPDIRun& run) {
    std::string failure;
    try {
        auto opened = openDocument(name, scenario, run.services, failure);
        if (opened.document) {
            for (const auto& repair : opened.repairs) {
                run.warn(name, repair);
            }
            return opened;
        }
    } catch (const MSPCException& exception) {
        failure = exception.reason();
    } catch (const std::bad_alloc&) {
        failure = "not enough memory";
    }
    run.couldNotLook(name, failure);
    return {};
}

// A plan without a name has that of its file, which says nothing about the plan.
bool isNamedAfterItsFile(const KZDXOpenDocument& document, const std::string& name) {
    const auto title = KZDXChildText(document.contents().project(), "title");
    return title == pathByDeletingExtension(lastPathComponent(name));
}

// What differs in the scenario that was opened, and with `arguments.scenario` empty, which other ones differ.
KZDXDifferences differencesBetween(const Opened& old, const Opened& now, const Arguments& arguments, MSPDIRun& run) {
    KZDXDiffOptions options;
    options.comparesTitles =
        !(isNamedAfterItsFile(*old.document, arguments.old) && isNamedAfterItsFile(*now.document, arguments.now));
    options.comparesScenarios = arguments.scenario.empty();
    auto differences = KZDXDiff(*old.document, *now.document, options);
    if (options.comparesScenarios) {
        auto others = KZDXDiffOtherScenarios(*old.document, *old.files, *now.document, *now.files);
        std::move(others.differences.begin(), others.differences.end(), std::back_inserter(differences));
        if (others.obstacle) {
            run.couldNotLook(others.obstacle->isOfNew ? arguments.now : arguments.old, others.obstacle->reason);
        }
    }
    return differences;
}

void tellDifferences(const Arguments& arguments, MSPDIRun& run) {
    const auto old = openOrTell(arguments.old, arguments.scenario, run);
    const auto now = old.document ? openOrTell(arguments.now, arguments.scenario, run) : Opened();
    if (!now.document) {
        return;
    }
    const auto differences = differencesBetween(old, now, arguments, run);
    if (run.status != MSPDIStatus::CouldNotLook && !differences.empty()) {
        run.status = MSPDIStatus::SomethingToTell;
    }
    if (run.isQuiet) {
        return;
    }
    const MSPDIDiffSubject subject{arguments.old, arguments.now, now.document->scenarioName()};
    if (run.isJSON) {
        MSPDIWriteDifferencesAsJSON(subject, differences, run.out);
    } else {
        MSPDIWriteDifferences(subject, differences, run);
    }
}

}  // namespace

void MSPDIAddDiffCommand(CLI::App& program, MSPDIRun& run) {
    const auto arguments = std::make_shared<Arguments>();
    auto& diff = *program.add_subcommand("diff", "Tell what differs between two documents or plans");
    diff.add_option("OLD", arguments->old, "A document, or a plan, which is imported in memory")->required();
    diff.add_option("NEW", arguments->now, "The same of later")->required();
    diff.add_option("--scenario", arguments->scenario, "Compare this scenario (Baseline, Baseline1, ...), not the plan")
        ->check([](const std::string& name) { return name.empty() ? "a name is missing" : ""; }, "");
    MSPDIAddCommonOptions(diff, run);
    diff.callback([arguments, &run] { tellDifferences(*arguments, run); });
}
