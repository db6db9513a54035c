#pragma once

namespace CLI {
class App;
}

struct MSPDIRun;

// `mspdi check DOCUMENT... [--json]`: whether documents are sound.
void MSPDIAddCheckCommand(CLI::App& program, MSPDIRun& run);
