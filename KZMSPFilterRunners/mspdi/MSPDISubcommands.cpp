#include "MSPDISubcommands.h"

#include <array>

#include "MSPDICheckCommand.h"
#include "MSPDIDiffCommand.h"
#include "MSPDILossesCommand.h"
#include "MSPDIViewCommand.h"

std::span<const MSPDISubcommand> MSPDISubcommands() {
    static constexpr std::array<MSPDISubcommand, 4> all = {MSPDIAddLossesCommand, MSPDIAddCheckCommand,
                                                           MSPDIAddDiffCommand, MSPDIAddViewCommand};
    return all;
}
