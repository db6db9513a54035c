#include "MSPDIMigrateCommand.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>

#include "MSPCFileSystem.h"
#include "MSPCGregorianCalendar.h"
#include "MSPCMessage.h"
#include "MSPCPath.h"
#include "MSPCStandardTimeClock.h"
#include "MSPDICommonOptions.h"
#include "MSPDIDocumentAround.h"
#include "MSPDIJSON.h"
#include "MSPDIMachines.h"
#include "MSPDIMigrateProgress.h"
#include "MSPDIMigrateReport.h"
#include "MSPDIMigration.h"
#include "MSPDIRun.h"

namespace {

struct Arguments {
    std::string source;
    std::string outputFolder;
    MSPDIMigrationOptions options;
    std::string mending;     // empty, "true" or "all"
    std::string logsFolder;  // empty where no logs are wanted
    std::string machines;    // with commas between them; empty for this one alone
    MSPDIMigrationBounds bounds{0, 600, 0};
    std::size_t megabytesPerPlan = 0;  // none for a share of the memory
    bool keepsTree = false;
    bool isDryRun = false;
    bool isWithoutLosses = false;
    bool isAsInWinter = false;
};

MSPDIMigrationBounds boundsOf(const Arguments& arguments) {
    constexpr std::size_t megabyte = 1'000'000;
    auto bounds = arguments.bounds;
    bounds.bytes = arguments.megabytesPerPlan * megabyte;
    return bounds;
}

// Machines have a template of their own, unless people have named one.
std::optional<MSPDIMachinesOptions> machinesOf(const Arguments& arguments, const MSPDIPlanImportOptions& each,
                                               MSPDIRun& run) {
    if (arguments.machines.empty()) {
        return std::nullopt;
    }
    auto& services = run.services;
    MSPDIMachinesOptions machines;
    machines.names = MSPDIMachines::namesIn(arguments.machines).value_or(std::vector<std::string>());
    machines.program = services.fileSystem.resolvedPath("/proc/self/exe");
    machines.chunk.version = MSPDIVersionText;
    machines.chunk.zone = MSPDIOffsetsOf(services.timeZone);
    machines.chunk.each = each;
    machines.chunk.each.templateFolder = arguments.options.each.templateFolder;
    if (auto& path = machines.chunk.each.templateFolder) {
        path = services.fileSystem.absolutePath(*path);
    }
    machines.chunk.isAsInWinter = arguments.isAsInWinter;
    machines.chunk.bounds = boundsOf(arguments);
    machines.tell = [&run](const std::string& name, const std::string& what) {
        if (run.showStatus) {
            run.showStatus({});
        }
        run.warn(name, what);
    };
    return machines;
}

MSPDIMigrationOptions optionsOf(const Arguments& arguments, const std::string& outputFolder, MSPDIRun& run) {
    auto options = arguments.options;
    options.outputFolder = outputFolder;
    options.processes = boundsOf(arguments).processesHere();
    options.bounds = boundsOf(arguments).boundsHere();
    options.each.tellsLosses = !arguments.isWithoutLosses;
    if (!arguments.mending.empty()) {
        options.each.mending = arguments.mending == "all" ? MSPDIMending::All : MSPDIMending::OfRefused;
    }
    if (!arguments.logsFolder.empty()) {
        options.logsFolder = run.services.fileSystem.absolutePath(arguments.logsFolder);
    }
    const auto& installed = run.installedTemplate;
    if (!options.each.templateFolder && !installed.empty() && run.services.fileSystem.isDirectory(installed)) {
        options.each.templateFolder = installed;
    }
    options.machines = machinesOf(arguments, options.each, run);
    return options;
}

void tellLeftOut(const MSPDIMigration::Plans& plans, MSPDIRun& run) {
    if (plans.leftOut > 0) {
        run.out << fmt::format("{} others are left out: they have not failed\n", plans.leftOut);
    }
}

void tellDryRun(const MSPDIMigration::Plans& plans, MSPDIRun& run) {
    if (run.isQuiet) {
        return;
    }
    if (run.isJSON) {
        MSPDIWriteJSON({{"new", plans.fresh},
                        {"changed", plans.changed},
                        {"withoutDocument", plans.withoutDocument},
                        {"failed", plans.failed},
                        {"imported", plans.done},
                        {"leftOut", plans.leftOut}},
                       run.out);
        return;
    }
    const auto wanted = plans.fresh + plans.changed + plans.withoutDocument + plans.failed;
    run.out << fmt::format(
        "{} {} would be imported: {} new, {} changed since, {} whose document is gone, {} that failed before; {} {} "
        "imported already\n",
        wanted, wanted == 1 ? "plan" : "plans", plans.fresh, plans.changed, plans.withoutDocument, plans.failed,
        plans.done, plans.done == 1 ? "is" : "are");
    tellLeftOut(plans, run);
}

void tellResult(std::size_t all, const MSPDIMigration::Plans& plans, const MSPDIPlansToMigrate::Unread& unread,
                const std::string& outputFolder, MSPDIRun& run) {
    const auto missing = all - plans.done;
    run.status = missing == 0 && unread.empty() ? MSPDIStatus::NothingToTell : MSPDIStatus::SomethingToTell;
    if (run.isQuiet) {
        return;
    }
    const auto report = pathByAppendingComponent(outputFolder, run.isJSON ? "report.json" : "report.html");
    if (run.isJSON) {
        nlohmann::ordered_json folders = nlohmann::ordered_json::array();
        for (const auto& [folder, reason] : unread) {
            folders.push_back(folder);
        }
        MSPDIWriteJSON({{"imported", all - missing},
                        {"missing", missing},
                        {"leftOut", plans.leftOut},
                        {"gone", plans.gone},
                        {"unreadFolders", folders},
                        {"report", report}},
                       run.out);
        return;
    }
    run.out << run.emphasized(fmt::format("{} of {} plans are imported", all - missing, all))
            << "; report: " << MSPCShownText(report).view() << '\n';
    if (plans.gone > 0) {
        run.out << fmt::format("{} of them {} gone since; the documents stand\n", plans.gone,
                               plans.gone == 1 ? "is" : "are");
    }
    if (missing > plans.leftOut) {
        run.out << fmt::format("{} are not: {}\n", missing - plans.leftOut,
                               MSPCShownText(pathByAppendingComponent(outputFolder, "failed.txt")).view());
    }
    tellLeftOut(plans, run);
}

// "2026-03-01 09:05, mspdi 1.0", the time as the clocks of the machine's zone show it.
std::string timeAndVersion(const MSPCServices& services) {
    const auto now = MSPCGregorianCalendar(services.timeZone).fieldsOf(services.clock.now());
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}, {}", now.year, now.month, now.day, now.hour, now.minute,
                       MSPDIVersionText);
}

// Takes the lock, imports, and reports. Whatever ends it early is told.
std::optional<std::string> migrated(MSPDIMigration& migration, const std::string& outputFolder, MSPDIRun& run) {
    auto failure = migration.takeLock([&run](const std::string& holder) {
        run.warn("waiting for another migration into this folder", holder.empty() ? "unknown" : holder);
    });
    if (!failure) {
        failure = migration.readRecords();
    }
    if (failure) {
        return failure;
    }
    MSPDIMigrateProgress progress(run);
    failure = migration.run([&progress](const auto& state) { progress.tell(state); });
    progress.finish();
    if (!migration.isInPlace()) {
        return failure ? failure : outputFolder + ": it was moved or removed while this ran";
    }
    const auto unwritten = MSPDIWriteMigrationReports(
        outputFolder, timeAndVersion(run.services), [&migration](const auto& take) { migration.forEachRecord(take); },
        run.services.fileSystem);
    return failure ? failure : unwritten;
}

// The plans, with a line for each sub-folder that could not be looked through; none where there are none at all.
std::optional<MSPDIPlansToMigrate> findPlans(const Arguments& arguments, MSPDIRun& run) {
    auto found = MSPDIFindPlans(arguments.source, arguments.keepsTree, run.services.fileSystem);
    for (const auto& [folder, reason] : found.unread) {
        run.couldNotLook(folder, reason);
    }
    if (!found.obstacle && found.plans.empty()) {
        found.obstacle = arguments.source + ": no plan in it";
    }
    if (found.obstacle) {
        run.couldNotRun(*found.obstacle);
        return std::nullopt;
    }
    return found;
}

// How many plans no run has tried; none where the records cannot be read, which is told in `failure`.
std::optional<std::size_t> untried(const MSPDIPlansToMigrate& found, MSPDIMigrationOptions options,
                                   const MSPCServices& services, std::optional<std::string>& failure) {
    options.isOnlyFailed = false;
    MSPDIMigration migration(services, std::move(options), found);
    failure = migration.readRecords();
    return failure ? std::nullopt : std::optional(migration.plans().fresh);
}

bool namesAFile(const MSPDIPlansToMigrate& list, const MSPCFileSystem& fileSystem) {
    MSPDIPlanPaths::Walk walk(list.plans);
    while (const auto* const plan = walk.next()) {
        if (fileSystem.leadsToAnything(*plan)) {
            return true;
        }
    }
    return false;
}

// Why a list cannot be taken. Where lines name no files, any text looks like one; and those of plans that were tried
// before have files that may be gone since.
std::optional<std::string> obstacleToList(const Arguments& arguments, const MSPDIPlansToMigrate& list,
                                          const MSPDIMigrationOptions& options, const MSPCServices& services) {
    const bool isDoubtful = !namesAFile(list, services.fileSystem);
    if (!isDoubtful && !arguments.keepsTree) {
        return std::nullopt;
    }
    std::optional<std::string> failure;
    const auto fresh = untried(list, options, services, failure);
    if (!fresh) {
        return failure;
    }
    if (isDoubtful && *fresh == list.plans.size()) {
        return arguments.source + ": no line in it names a file";
    }
    // Plans that were tried before keep their places; there is no folder to count those of others from.
    return arguments.keepsTree && *fresh > 0
               ? std::optional(arguments.source +
                               ": --keep-tree takes a folder, or a list of plans that were tried before")
               : std::nullopt;
}

// Why the run cannot be as it is asked for, before anything is written.
std::optional<std::string> obstacleTo(const Arguments& arguments, const MSPDIPlansToMigrate& found,
                                      const MSPDIMigrationOptions& options, const MSPCServices& services) {
    const auto& fileSystem = services.fileSystem;
    if (options.logsFolder && fileSystem.exists(*options.logsFolder) && !fileSystem.isDirectory(*options.logsFolder)) {
        return arguments.logsFolder + ": no folder";
    }
    if (const auto document =
            options.logsFolder ? MSPDIDocumentAround(*options.logsFolder, fileSystem) : std::nullopt) {
        return fmt::format("{}: the logs would become a part of the document {}", arguments.logsFolder, *document);
    }
    if (options.machines && !arguments.isDryRun) {
        if (auto obstacle = MSPDIMachines::obstacle()) {
            return obstacle;
        }
    }
    // Reports replace those of earlier runs, and nothing that somebody else has made.
    if (!MSPDIMigration::hasRunInto(options.outputFolder, fileSystem)) {
        if (const auto report = MSPDIMigrationReportIn(options.outputFolder, fileSystem)) {
            return *report + ": it is there already, and no migration has made it";
        }
    }
    return found.isList ? obstacleToList(arguments, found, options, services) : std::nullopt;
}

void migrate(const Arguments& arguments, MSPDIRun& run) {
    auto& services = run.services;
    const auto outputFolder = services.fileSystem.absolutePath(arguments.outputFolder);
    const auto options = optionsOf(arguments, outputFolder, run);
    auto imports = options.each;
    imports.outputFolder = outputFolder;
    const MSPCStandardTimeClock winter(services.clock, services.timeZone);
    MSPCNoLog noLog;
    const MSPCServices ofImports{services.clock,
                                 services.timeZone,
                                 noLog,
                                 services.userDefaults,
                                 services.fileSystem,
                                 services.randomSource,
                                 MSPCNoProgress(),
                                 arguments.isAsInWinter ? winter : services.seasonClock};
    if (const auto obstacle = MSPDIPlanImporter(ofImports, imports).obstacle()) {
        run.couldNotRun(*obstacle);
        return;
    }
    auto found = findPlans(arguments, run);
    if (!found) {
        return;
    }
    const auto all = found->plans.size();
    const auto unread = found->unread;
    if (const auto obstacle = obstacleTo(arguments, *found, options, ofImports)) {
        run.couldNotRun(*obstacle);
        return;
    }
    MSPDIMigration migration(ofImports, options, std::move(*found));
    const auto failure = arguments.isDryRun ? migration.readRecords() : migrated(migration, outputFolder, run);
    if (failure) {
        run.couldNotRun(*failure);
    } else if (arguments.isDryRun) {
        run.status = unread.empty() ? run.status : MSPDIStatus::SomethingToTell;
        tellDryRun(migration.plans(), run);
    } else {
        tellResult(all, migration.plans(), unread, arguments.outputFolder, run);
    }
}

void addOptions(CLI::App& command, Arguments& arguments) {
    const CLI::Validator something([](const std::string& text) { return text.empty() ? "it is empty" : ""; }, "");
    command.add_option("LIST-OR-FOLDER", arguments.source, "A file that lists plans, or a folder that holds them")
        ->required()
        ->check(something);
    command.add_option("-o,--output", arguments.outputFolder, "The folder for documents and reports")
        ->option_text("FOLDER")
        ->required()
        ->check(something);
    const CLI::Validator allOrNothing(
        [](const std::string& text) { return text == "true" || text == "all" ? "" : "it is --mend or --mend=all"; },
        "");
    command
        .add_flag("--mend", arguments.mending, "Mend plans that are refused, in memory; --mend=all improves all plans")
        ->check(allOrNothing);
    command.add_option("--jobs", arguments.bounds.processes, "Processes at a time (else one per processor)")
        ->option_text("N")
        ->check(CLI::Range(1, 1024));
    const CLI::Validator names(
        [](const std::string& list) {
            return MSPDIMachines::namesIn(list) ? "" : "it is a list as in --machines a,b,:";
        },
        "");
    command
        .add_option("--machines", arguments.machines,
                    "Import on these machines, by way of ssh and GNU parallel; \":\" is this one")
        ->option_text("A,B,:")
        ->check(names);
    command.add_flag("--keep-tree", arguments.keepsTree, "Keep the sub-folders of plans for their documents");
    command.add_flag("--only-failed", arguments.options.isOnlyFailed, "Only plans that were tried before, and failed");
    command.add_option("--logs", arguments.logsFolder, "Write the importer's own log of each plan into this folder")
        ->option_text("FOLDER")
        ->check(something);
    command.add_flag("--dry-run", arguments.isDryRun, "Tell what would be imported, and write nothing");
    command
        .add_option("--template", arguments.options.each.templateFolder,
                    "The document to begin with (else an empty one)")
        ->option_text("DOCUMENT")
        ->check(something);
    command.add_flag("--no-losses", arguments.isWithoutLosses, "Do not look for losses: faster, and none are told");
    command.add_option("--plan-seconds", arguments.bounds.seconds, "End a plan that takes longer (600)")
        ->option_text("N")
        ->check(CLI::Range(1, 1'000'000));
    command.add_option("--plan-megabytes", arguments.megabytesPerPlan, "End a plan that takes more memory")
        ->option_text("N")
        ->check(CLI::Range(64, 100'000'000));
    command.add_flag("--as-in-winter", arguments.isAsInWinter, "Give dates the offset of an import in winter");
}

}  // namespace

void MSPDIAddMigrateCommand(CLI::App& program, MSPDIRun& run) {
    const auto arguments = std::make_shared<Arguments>();
    auto& command = *program.add_subcommand("migrate", "Make documents of many plans, and a report");
    addOptions(command, *arguments);
    command.footer(
        "The same command again goes on where it was ended, and takes up plans that are new, changed or failed.\n"
        "Exit status: 0 all plans are imported, 1 some are not, 2 it could not run, or wrong arguments.\n"
        "See also: man mspdi-migrate");
    MSPDIAddCommonOptions(command, run);
    command.callback([arguments, &run] { migrate(*arguments, run); });
}
