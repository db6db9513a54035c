#pragma once

#include <span>

namespace CLI {
class App;
}

struct MSPDIRun;

// Adds one subcommand to the program: its name, its arguments, and as its callback what it does with `run`, which
// outlives the program. Each stands in a unit of its own.
using MSPDISubcommand = void (*)(CLI::App& program, MSPDIRun& run);

// All subcommands, in the order of the help text.
[[nodiscard]] std::span<const MSPDISubcommand> MSPDISubcommands();
