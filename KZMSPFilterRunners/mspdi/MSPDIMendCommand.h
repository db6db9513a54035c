#pragma once

namespace CLI {
class App;
}

struct MSPDIRun;

// `mspdi mend PLAN [-o MENDED] [--dry-run] [--json] [--only STEP...] [--all]`: a copy of a plan that is imported.
void MSPDIAddMendCommand(CLI::App& program, MSPDIRun& run);
