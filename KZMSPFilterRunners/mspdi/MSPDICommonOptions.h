#pragma once

namespace CLI {
class App;
}

struct MSPDIRun;

// What --version prints.
extern const char* const MSPDIVersionText;

// What every subcommand takes: --json, --quiet, --version.
void MSPDIAddCommonOptions(CLI::App& subcommand, MSPDIRun& run);
