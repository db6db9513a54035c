#include "MSPDIImportCommand.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>

#include "MSPCFileLog.h"
#include "MSPCFileSystem.h"
#include "MSPCStandardTimeClock.h"
#include "MSPDICommonOptions.h"
#include "MSPDIImportLog.h"
#include "MSPDIImportReport.h"
#include "MSPDIPlanImporter.h"

namespace {

struct Arguments {
    std::vector<std::string> plans;
    MSPDIPlanImportOptions options;
    std::string mending;  // empty, "true" or "all"
    std::string log;
    bool isAsInWinter = false;
};

// The importer's own log; what is wrong with it is told, and nothing is given then.
std::unique_ptr<MSPCFileLog> openLog(const Arguments& arguments, MSPDIRun& run) {
    const auto& fileSystem = run.services.fileSystem;
    const auto path = fileSystem.absolutePath(arguments.log);
    std::vector<std::string> plans;
    for (const auto& plan : arguments.plans) {
        plans.push_back(fileSystem.absolutePath(plan));
    }
    if (const auto obstacle = MSPDIObstacleToLog(path, plans, fileSystem)) {
        run.couldNotLook(arguments.log, *obstacle);
        return nullptr;
    }
    std::string failure;
    auto log = MSPCFileLog::open(path, "mspdi", failure);
    if (!log) {
        run.couldNotLook(arguments.log, failure);
    }
    return log;
}

MSPDIStatus statusOf(MSPDIVerdict verdict) {
    switch (verdict) {
        case MSPDIVerdict::Imported:
            return MSPDIStatus::NothingToTell;
        case MSPDIVerdict::Refused:
            return MSPDIStatus::SomethingToTell;
        case MSPDIVerdict::Unreadable:
        case MSPDIVerdict::Failed:
            break;
    }
    return MSPDIStatus::CouldNotLook;
}

// Tells each plan when it is done; a document of JSON waits for all.
void importPlans(const Arguments& arguments, MSPDIPlanImporter& importer, MSPDIRun& run) {
    MSPDIImportReport report(arguments.options.outputFolder, run);
    for (const auto& plan : arguments.plans) {
        const auto imported = importer.import(plan);
        const auto status = statusOf(imported.verdict);
        if (status == MSPDIStatus::CouldNotLook) {
            const bool isMendable = !imported.mending.empty();
            run.couldNotLook(plan, imported.reason + (isMendable ? "; mspdi import --mend imports it" : ""));
        }
        run.status = std::max(run.status, status);
        report.tell(plan, imported);
    }
    report.finish();
}

void import(const Arguments& arguments, MSPCLog& log, MSPDIRun& run) {
    const auto& services = run.services;
    const MSPCStandardTimeClock winter(services.clock, services.timeZone);
    const MSPCServices ofImport{services.clock,
                                services.timeZone,
                                log,
                                services.userDefaults,
                                services.fileSystem,
                                services.randomSource,
                                run.isQuiet ? MSPCNoProgress() : services.progress,
                                arguments.isAsInWinter ? winter : services.seasonClock};
    MSPDIPlanImporter importer(ofImport, arguments.options);
    importPlans(arguments, importer, run);
    if (const auto failure = importer.finish()) {
        run.couldNotRun("failed to bring the documents to the disk: " + *failure);
    }
}

// What is wrong with the options and with the log is told before anything is written.
void importWithLog(const Arguments& arguments, MSPDIRun& run) {
    if (const auto obstacle = MSPDIPlanImporter(run.services, arguments.options).obstacle()) {
        run.couldNotRun(*obstacle);
        return;
    }
    if (arguments.log.empty()) {
        MSPCNoLog noLog;
        import(arguments, noLog, run);
    } else if (const auto log = openLog(arguments, run)) {
        import(arguments, *log, run);
        if (!log->flush()) {
            run.couldNotLook(arguments.log, log->failure() + "; the log is not complete, what was imported stands");
        }
    }
}

void importOrTell(Arguments arguments, MSPDIRun& run) {
    auto& options = arguments.options;
    if (options.documentName && arguments.plans.size() > 1) {
        run.couldNotRun("--name is for one plan, not for several");
        return;
    }
    constexpr std::string_view extension = ".kdzx";
    if (options.documentName && options.documentName->ends_with(extension)) {
        options.documentName->resize(options.documentName->size() - extension.size());
    }
    options.tellsLosses = !run.isQuiet;
    options.tellsMending = !run.isQuiet;
    if (!arguments.mending.empty()) {
        options.mending = arguments.mending == "all" ? MSPDIMending::All : MSPDIMending::OfRefused;
    }
    const auto& installed = run.installedTemplate;
    if (!options.templateFolder && !installed.empty() && run.services.fileSystem.isDirectory(installed)) {
        options.templateFolder = installed;
    }
    importWithLog(arguments, run);
}

}  // namespace

void MSPDIAddImportCommand(CLI::App& program, MSPDIRun& run) {
    const auto arguments = std::make_shared<Arguments>();
    auto& options = arguments->options;
    auto& command = *program.add_subcommand("import", "Make Kadenza 2 documents of plans");
    command.add_option("PLAN", arguments->plans, "The plans, saved by Microsoft Project as XML")->required();
    // An empty text is a mistake, such as a variable that is not set, and not the absence of the option.
    const CLI::Validator something([](const std::string& text) { return text.empty() ? "it is empty" : ""; }, "");
    command.add_option("-o,--output", options.outputFolder, "The folder for the documents (else beside each plan)")
        ->option_text("FOLDER")
        ->check(something);
    command.add_option("--template", options.templateFolder, "The document to begin with (else an empty one)")
        ->option_text("DOCUMENT")
        ->check(something);
    command.add_option("--name", options.documentName, "The name of the document (else that of the plan)")
        ->option_text("NAME")
        ->check(something);
    command.add_flag("--overwrite", options.overwrites, "Replace a document of that name, instead of taking NAME-1");
    const CLI::Validator allOrNothing(
        [](const std::string& text) { return text == "true" || text == "all" ? "" : "it is --mend or --mend=all"; },
        "");
    command
        .add_flag("--mend", arguments->mending, "Mend plans that are refused, in memory; --mend=all improves all plans")
        ->check(allOrNothing);
    command.add_option("--log", arguments->log, "Add the importer's own log to this file")
        ->option_text("FILE")
        ->check(something);
    command.add_flag("--as-in-winter", arguments->isAsInWinter, "Give dates the offset of an import in winter");
    command.footer(
        "Exit status: 0 all plans are imported, 1 a plan was refused, 2 a plan could not be read, or wrong arguments.\n"
        "See also: man mspdi-import");
    MSPDIAddCommonOptions(command, run);
    command.callback([arguments, &run] { importOrTell(*arguments, run); });
}
