#pragma once

namespace CLI {
class App;
}

struct MSPDIRun;

// `mspdi diff OLD NEW [--json] [--scenario NAME]`: what differs between two documents or plans.
void MSPDIAddDiffCommand(CLI::App& program, MSPDIRun& run);
