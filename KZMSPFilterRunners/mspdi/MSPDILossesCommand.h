#pragma once

namespace CLI {
class App;
}

struct MSPDIRun;

// `mspdi losses PLAN [--json] [--all]`: what of a plan does not reach the document.
void MSPDIAddLossesCommand(CLI::App& program, MSPDIRun& run);
