#include "MSPDISubcommands.h"

#include <array>

#include "MSPDILossesCommand.h"

std::span<const MSPDISubcommand> MSPDISubcommands() {
    static constexpr std::array<MSPDISubcommand, 1> all = {MSPDIAddLossesCommand};
    return all;
}
