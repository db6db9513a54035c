#include "MSPDISubcommands.h"

#include <array>

#include "MSPDICheckCommand.h"
#include "MSPDIDiffCommand.h"
#include "MSPDILossesCommand.h"

std::span<const MSPDISubcommand> MSPDISubcommands() {
    static constexpr std::array<MSPDISubcommand, 3> all = {MSPDIAddLossesCommand, MSPDIAddCheckCommand,
                                                           MSPDIAddDiffCommand};
    return all;
}
