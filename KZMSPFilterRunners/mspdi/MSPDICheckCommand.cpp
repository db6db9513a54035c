#include "MSPDICheckCommand.h"

#include <CLI/CLI.hpp>
#include <memory>

#include "MSPCFileSystem.h"
#include "MSPDICheckReport.h"
#include "MSPDICommonOptions.h"

namespace {

using Documents = std::vector<std::string>;

KZDXCheck checkOf(const std::string& document, const MSPCFileSystem& fileSystem) {
    const auto path = fileSystem.absolutePath(document);
    if (!fileSystem.leadsToAnything(path)) {
        return {"no such file", {}};
    }
    if (!fileSystem.isDirectory(path)) {
        return {"no document: a file instead of a folder", {}};
    }
    return KZDXCheckBundle(*KZDXFilesInFolder(fileSystem, path));
}

// Documents that cannot be looked at are told, and the others all the same.
void checkDocuments(const Documents& documents, MSPDIRun& run) {
    std::vector<MSPDICheckedDocument> checked;
    bool isSound = true;
    bool isAnythingTold = run.isJSON;
    for (const auto& document : documents) {
        auto check = checkOf(document, run.services.fileSystem);
        if (check.obstacle) {
            run.couldNotLook(document, *check.obstacle);
        } else {
            isSound = isSound && check.isSound();
            isAnythingTold = true;
        }
        checked.push_back({document, std::move(check)});
    }
    if (run.status != MSPDIStatus::CouldNotLook && !isSound) {
        run.status = MSPDIStatus::SomethingToTell;
    }
    if (run.isQuiet || !isAnythingTold) {
        return;
    }
    if (run.isJSON) {
        MSPDIWriteChecksAsJSON(checked, run.out);
    } else {
        MSPDIWriteChecks(checked, run);
    }
}

}  // namespace

void MSPDIAddCheckCommand(CLI::App& program, MSPDIRun& run) {
    const auto documents = std::make_shared<Documents>();
    auto& check = *program.add_subcommand("check", "Tell whether documents are sound");
    check.add_option("DOCUMENT", *documents, "Documents of Kadenza 2: folders named *.kdzx")->required();
    MSPDIAddCommonOptions(check, run);
    check.callback([documents, &run] { checkDocuments(*documents, run); });
}
