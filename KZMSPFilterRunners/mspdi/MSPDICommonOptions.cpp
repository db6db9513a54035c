#include "MSPDICommonOptions.h"

#include <CLI/CLI.hpp>

#include "MSPDIRun.h"

const char* const MSPDIVersionText = "mspdi " KZMSP_VERSION;

void MSPDIAddCommonOptions(CLI::App& subcommand, MSPDIRun& run) {
    subcommand.add_flag("--json", run.isJSON, "Tell it as one JSON document");
    subcommand.add_flag("--quiet,-q", run.isQuiet, "Tell nothing; the exit status says enough");
    subcommand.set_version_flag("--version", MSPDIVersionText, "Print the version");
}
