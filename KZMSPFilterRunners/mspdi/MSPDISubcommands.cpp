#include "MSPDISubcommands.h"

#include <array>

#include "MSPDICheckCommand.h"
#include "MSPDIDiffCommand.h"
#include "MSPDIImportCommand.h"
#include "MSPDILossesCommand.h"
#include "MSPDIMendCommand.h"
#include "MSPDIMigrateCommand.h"

std::span<const MSPDISubcommand> MSPDISubcommands() {
    static constexpr std::array<MSPDISubcommand, 6> all = {MSPDIAddImportCommand, MSPDIAddMigrateCommand,
                                                           MSPDIAddLossesCommand, MSPDIAddMendCommand,
                                                           MSPDIAddCheckCommand,  MSPDIAddDiffCommand};
    return all;
}
