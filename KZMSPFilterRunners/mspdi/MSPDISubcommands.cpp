#include "MSPDISubcommands.h"

#include <array>

#include "MSPDICheckCommand.h"
#include "MSPDIDiffCommand.h"
#include "MSPDILossesCommand.h"
#include "MSPDIMendCommand.h"

std::span<const MSPDISubcommand> MSPDISubcommands() {
    static constexpr std::array<MSPDISubcommand, 4> all = {MSPDIAddLossesCommand, MSPDIAddMendCommand,
                                                           MSPDIAddCheckCommand, MSPDIAddDiffCommand};
    return all;
}
