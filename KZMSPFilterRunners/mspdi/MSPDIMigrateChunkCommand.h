#pragma once

namespace CLI {
class App;
}

struct MSPDIRun;

// `mspdi migrate-chunk FOLDER CHUNK`: does one machine's part of `mspdi migrate --machines`. Nobody types it, and no
// help shows it.
void MSPDIAddMigrateChunkCommand(CLI::App& program, MSPDIRun& run);
