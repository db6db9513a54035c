#pragma once

namespace CLI {
class App;
}

struct MSPDIRun;

// `mspdi import PLAN... [-o FOLDER] [--template DOCUMENT] [--mend[=all]] [--name NAME] [--overwrite] [--log FILE]
// [--as-in-winter] [--json]`: makes documents of plans.
void MSPDIAddImportCommand(CLI::App& program, MSPDIRun& run);
