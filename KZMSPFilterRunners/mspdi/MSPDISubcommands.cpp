#include "MSPDISubcommands.h"

std::span<const MSPDISubcommand> MSPDISubcommands() {
    return {};
}
