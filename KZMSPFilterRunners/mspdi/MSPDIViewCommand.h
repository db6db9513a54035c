#pragma once

namespace CLI {
class App;
}

struct MSPDIRun;

// `mspdi view DOCUMENT-OR-PLAN [-o PAGE] [--open]`: a page that shows a document.
void MSPDIAddViewCommand(CLI::App& program, MSPDIRun& run);
