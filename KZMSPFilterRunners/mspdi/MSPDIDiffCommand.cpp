#include "MSPDIDiffCommand.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <new>

#include "KZDXDiff.h"
#include "MSPCException.h"
#include "MSPCPath.h"
#include "MSPDICommonOptions.h"
#include "MSPDIDiffReport.h"
#include "MSPDIDocumentFiles.h"

namespace {

struct Arguments {
    std::string old;
    std::string now;
    std::string scenario;
};

// A folder is a document, anything else a plan.
std::optional<KZDXOpenDocument> openDocument(const std::string& name, const std::string& scenario,
                                             const MSPCServices& services, std::string& failure) {
    const auto files = MSPDIFilesOfDocumentOrPlan(name, services, failure);
    return files ? KZDXOpenDocument::open(*files, scenario, failure) : std::nullopt;
}

// What is wrong with the document is told, and nothing is given then.
std::optional<KZDXOpenDocument> openOrTell(const std::string& name, const std::string& scenario, MSPDIRun& run) {
    std::string failure;
    try {
        if (auto document = openDocument(name, scenario, run.services, failure)) {
            return document;
        }
    } catch (const MSPCException& exception) {
        failure = exception.reason();
    } catch (const std::bad_alloc&) {
        failure = "not enough memory";
    }
    run.couldNotLook(name, failure);
    return std::nullopt;
}

// A plan without a name has that of its file, which says nothing about the plan.
bool isNamedAfterItsFile(const KZDXOpenDocument& document, const std::string& name) {
    const auto title = KZDXChildText(document.contents().project(), "title");
    return title == pathByDeletingExtension(lastPathComponent(name));
}

void tellDifferences(const Arguments& arguments, MSPDIRun& run) {
    const auto old = openOrTell(arguments.old, arguments.scenario, run);
    const auto now = old ? openOrTell(arguments.now, arguments.scenario, run) : std::nullopt;
    if (!now) {
        return;
    }
    KZDXDiffOptions options;
    options.comparesTitles = !(isNamedAfterItsFile(*old, arguments.old) && isNamedAfterItsFile(*now, arguments.now));
    options.comparesScenarios = arguments.scenario.empty();
    const auto differences = KZDXDiff(*old, *now, options);
    run.status = differences.empty() ? MSPDIStatus::NothingToTell : MSPDIStatus::SomethingToTell;
    if (run.isQuiet) {
        return;
    }
    const MSPDIDiffSubject subject{arguments.old, arguments.now, now->scenarioName()};
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
    diff.add_option("--scenario", arguments->scenario,
                    "Compare this scenario (Baseline, Baseline1, ...), not the plan");
    MSPDIAddCommonOptions(diff, run);
    diff.callback([arguments, &run] { tellDifferences(*arguments, run); });
}
