#include "MSPDIMigrateChunkCommand.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "MSPDICommonOptions.h"
#include "MSPDIMachineWorker.h"
#include "MSPDIRun.h"
#include "MSPDIShellWord.h"

namespace {

struct Arguments {
    std::string folder;  // as a shell word
    std::string chunk;
};

void work(const Arguments& arguments, MSPDIRun& run) {
    const auto folder = MSPDITextOfShellWord(arguments.folder);
    if (!folder) {
        run.couldNotRun("migrate-chunk is for mspdi migrate --machines only");
        return;
    }
    MSPDIMachineWorker worker(run.services, {run.installedTemplate, MSPDIVersionText}, run.out);
    run.status = worker.work(*folder, arguments.chunk) ? MSPDIStatus::NothingToTell : MSPDIStatus::SomethingToTell;
}

}  // namespace

void MSPDIAddMigrateChunkCommand(CLI::App& program, MSPDIRun& run) {
    const auto arguments = std::make_shared<Arguments>();
    auto& command = *program.add_subcommand("migrate-chunk", "Do a machine's part of mspdi migrate --machines");
    command.group("");
    command.add_option("FOLDER", arguments->folder)->required();
    command.add_option("CHUNK", arguments->chunk)->required();
    command.callback([arguments, &run] { work(*arguments, run); });
}
