#pragma once

namespace CLI {
class App;
}

struct MSPDIRun;

// `mspdi migrate LIST-OR-FOLDER -o FOLDER [--mend[=all]] [--jobs N] [--keep-tree] [--only-failed] [--dry-run]
// [--logs FOLDER] [--json]`: makes documents of many plans, in several processes, and goes on where it was ended.
void MSPDIAddMigrateCommand(CLI::App& program, MSPDIRun& run);
