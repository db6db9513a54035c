#include "MSPDISubcommands.h"

#include <array>

#include "MSPDICheckCommand.h"
#include "MSPDIDiffCommand.h"
#include "MSPDILossesCommand.h"
#include "MSPDIMendCommand.h"
#include "MSPDIViewCommand.h"

std::span<const MSPDISubcommand> MSPDISubcommands() {
    static constexpr std::array<MSPDISubcommand, 5> all = {
        MSPDIAddLossesCommand, MSPDIAddMendCommand, MSPDIAddCheckCommand, MSPDIAddDiffCommand, MSPDIAddViewCommand};
    return all;
}
