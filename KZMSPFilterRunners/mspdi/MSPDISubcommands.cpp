#include "MSPDISubcommands.h"

#include <array>

#include "MSPDICheckCommand.h"
#include "MSPDILossesCommand.h"

std::span<const MSPDISubcommand> MSPDISubcommands() {
    static constexpr std::array<MSPDISubcommand, 2> all = {MSPDIAddLossesCommand, MSPDIAddCheckCommand};
    return all;
}
