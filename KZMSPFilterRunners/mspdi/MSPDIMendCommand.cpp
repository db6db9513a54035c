#include "MSPDIMendCommand.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <memory>

#include "MSPCFileSystem.h"
#include "MSPCNewFile.h"
#include "MSPCPath.h"
#include "MSPDICommonOptions.h"
#include "MSPDIMendReport.h"

namespace {

struct Arguments {
    std::string plan;
    std::string mended;  // empty for a name of our own
    std::vector<std::string> only;
    bool isDryRun = false;
    bool isAll = false;
};

// Names of steps may be followed by the plan: "--only root-task outline Plan.xml".
void separatePlan(Arguments& arguments) {
    if (arguments.plan.empty() && !arguments.only.empty() && MSPDIMendStepNamed(arguments.only.back()) == nullptr) {
        arguments.plan = arguments.only.back();
        arguments.only.pop_back();
        if (arguments.only.empty()) {
            throw CLI::ArgumentMismatch::TypedAtLeast("--only", 1, "STEP");
        }
    }
    if (arguments.plan.empty()) {
        throw CLI::RequiredError("PLAN");
    }
    for (const auto& step : arguments.only) {
        if (MSPDIMendStepNamed(step) == nullptr) {
            throw CLI::ValidationError("--only", step + " is no step (man mspdi-mend lists them)");
        }
    }
}

// What keeps a file of that name from being written, before anything is done; none when nothing does.
std::optional<std::string> obstacleToWriting(const std::string& path, const std::string& plan,
                                             const MSPCFileSystem& fileSystem) {
    if (path.ends_with('/')) {
        return "that names a folder, not a file";
    }
    if (fileSystem.isSameFile(path, plan)) {
        return "that is the plan itself, which is never written";
    }
    return fileSystem.exists(path) ? std::optional<std::string>("there is such a file already; none is overwritten")
                                   : std::nullopt;
}

// Whether a plan has no place where its copy could appear: a pipe, or what the system shows of open files. Nothing is
// opened in vain: only regular files can be.
bool isNoFile(const std::string& path, const MSPCFileSystem& fileSystem) {
    const bool isOfSystem = path.starts_with("/dev/") || path.starts_with("/proc/");
    return isOfSystem || fileSystem.openFile(path) == nullptr;
}

// Writes to the name that is asked for, or to the first free one beside the plan. The path of the file; none when that
// fails, which has been told then.
std::optional<std::string> written(const Arguments& arguments, const std::string& bytes, MSPDIRun& run) {
    const auto& fileSystem = run.services.fileSystem;
    constexpr int mostAttempts = 10'000;
    const bool isNameOurs = arguments.mended.empty();
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const auto path = isNameOurs ? MSPDIMendedName(arguments.plan, attempt) : arguments.mended;
        bool isTaken = false;
        const auto failure = MSPCWriteNewFile(fileSystem.absolutePath(path), bytes, isTaken);
        if (!failure) {
            return path;
        }
        if (!isTaken || !isNameOurs) {
            run.couldNotLook(path, *failure);
            return std::nullopt;
        }
    }
    run.couldNotLook(arguments.plan, "too many mended copies are beside it");
    return std::nullopt;
}

void tell(const Arguments& arguments, const MSPDIMended& mended, const std::optional<std::string>& path,
          MSPDIRun& run) {
    run.status =
        mended.verdict == MSPDIMendVerdict::NotMendable ? MSPDIStatus::SomethingToTell : MSPDIStatus::NothingToTell;
    if (run.isQuiet) {
        return;
    }
    if (run.isJSON) {
        MSPDIWriteMendAsJSON(arguments.plan, mended, path, run.out);
    } else {
        MSPDIWriteMend(arguments.plan, mended, path, run);
    }
}

void mend(Arguments& arguments, MSPDIRun& run) {
    separatePlan(arguments);
    auto& fileSystem = run.services.fileSystem;
    const auto planPath = fileSystem.absolutePath(arguments.plan);
    if (!arguments.mended.empty()) {
        const auto* const end = arguments.mended.ends_with('/') ? "/" : "";  // which an absolute path has not
        const auto path = fileSystem.absolutePath(arguments.mended) + end;
        if (const auto obstacle = obstacleToWriting(path, planPath, fileSystem)) {
            run.couldNotLook(arguments.mended, *obstacle);
            return;
        }
    }
    std::string failure;
    auto bytes = fileSystem.readFile(planPath, &failure);
    if (!bytes) {
        run.couldNotLook(arguments.plan, failure);
        return;
    }
    if (arguments.mended.empty() && !arguments.isDryRun && isNoFile(planPath, fileSystem)) {
        run.couldNotLook(arguments.plan, "it is no regular file, so that the copy needs a name: -o MENDED");
        return;
    }
    const auto mended = MSPDIMendPlan(lastPathComponent(planPath), std::move(*bytes), run.services,
                                      {.only = arguments.only, .isAll = arguments.isAll});
    std::optional<std::string> path;
    if (mended.verdict == MSPDIMendVerdict::Mended && !arguments.isDryRun) {
        path = written(arguments, mended.bytes, run);
        if (!path) {
            return;
        }
    }
    tell(arguments, mended, path, run);
}

}  // namespace

void MSPDIAddMendCommand(CLI::App& program, MSPDIRun& run) {
    const auto arguments = std::make_shared<Arguments>();
    auto& command = *program.add_subcommand("mend", "Mend a copy of a plan that the importer refuses");
    command.add_option("PLAN", arguments->plan, "The plan, which is only read");
    command.add_option("-o,--output", arguments->mended, "The mended copy; PLAN.mended.xml beside it without")
        ->type_name("MENDED")
        ->check([](const std::string& name) { return std::string(name.empty() ? "the name is empty" : ""); });
    command.add_flag("--dry-run", arguments->isDryRun, "Tell what would be done, and write nothing");
    auto* const only = command.add_option("--only", arguments->only, "Do these steps only; man mspdi-mend lists them")
                           ->type_name("STEP")
                           ->delimiter(',');
    command.add_flag("--all", arguments->isAll, "Do all steps, those that improve a plan that imports too")
        ->excludes(only);
    MSPDIAddCommonOptions(command, run);
    command.callback([arguments, &run] { mend(*arguments, run); });
}
