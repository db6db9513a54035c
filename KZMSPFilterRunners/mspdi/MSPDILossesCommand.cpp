#include "MSPDILossesCommand.h"

#include <CLI/CLI.hpp>
#include <limits>
#include <memory>

#include "MSPCFileSystem.h"
#include "MSPDIAccountOfPlan.h"
#include "MSPDICommonOptions.h"
#include "MSPDICutOff.h"
#include "MSPDIInWords.h"
#include "MSPDILossesReport.h"

namespace {

struct Arguments {
    std::string plan;
    bool isAll = false;
};

void tellLosses(const Arguments& arguments, MSPDIRun& run) {
    MSPDIFatesByPath fates;
    MSPDIAccountOptions options;
    if (arguments.isAll) {
        options.mostPlaces = std::numeric_limits<std::size_t>::max();
    }
    const bool wantsFates = arguments.isAll && run.isJSON && !run.isQuiet;
    if (wantsFates) {
        options.fates = &fates;
    }
    const auto path = run.services.fileSystem.absolutePath(arguments.plan);
    const auto account = MSPDIAccountOfPlan(path, run.services, options);
    if (account.isCutOff) {
        run.couldNotLook(arguments.plan, MSPDICutOffReason);  // nobody knows what else is lost
        return;
    }
    if (account.obstacle) {
        run.couldNotLook(arguments.plan, MSPDIReasonInWords({"", *account.obstacle, ""}));
        return;
    }
    const bool hasSomething = account.refusal || !account.losses.empty();
    run.status = hasSomething ? MSPDIStatus::SomethingToTell : MSPDIStatus::NothingToTell;
    if (run.isQuiet) {
        return;
    }
    if (run.isJSON) {
        MSPDIWriteLossesAsJSON(arguments.plan, account, wantsFates ? &fates : nullptr, run.out);
    } else {
        MSPDIWriteLosses(arguments.plan, account, run);
    }
}

}  // namespace

void MSPDIAddLossesCommand(CLI::App& program, MSPDIRun& run) {
    const auto arguments = std::make_shared<Arguments>();
    auto& losses = *program.add_subcommand("losses", "Tell what of a plan does not reach the document");
    losses.add_option("PLAN", arguments->plan, "The plan, saved by Microsoft Project as XML")->required();
    losses.add_flag("--all", arguments->isAll, "Tell every place, and with --json the fate of every leaf");
    MSPDIAddCommonOptions(losses, run);
    losses.callback([arguments, &run] { tellLosses(*arguments, run); });
}
