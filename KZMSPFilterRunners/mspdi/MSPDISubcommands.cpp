#include "MSPDISubcommands.h"

#include <array>

#include "MSPDICheckCommand.h"
#include "MSPDIDiffCommand.h"
#include "MSPDIImportCommand.h"
#include "MSPDILossesCommand.h"

std::span<const MSPDISubcommand> MSPDISubcommands() {
    static constexpr std::array<MSPDISubcommand, 4> all = {MSPDIAddImportCommand, MSPDIAddLossesCommand,
                                                           MSPDIAddCheckCommand, MSPDIAddDiffCommand};
    return all;
}
