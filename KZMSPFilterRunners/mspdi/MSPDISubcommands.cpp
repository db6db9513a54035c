#include "MSPDISubcommands.h"

#include <array>

#include "MSPDICheckCommand.h"
#include "MSPDIDiffCommand.h"
#include "MSPDIImportCommand.h"
#include "MSPDILossesCommand.h"
#include "MSPDIMendCommand.h"
#include "MSPDIMigrateChunkCommand.h"
#include "MSPDIMigrateCommand.h"
#include "MSPDIViewCommand.h"

std::span<const MSPDISubcommand> MSPDISubcommands() {
    static constexpr std::array<MSPDISubcommand, 8> all = {
        MSPDIAddImportCommand, MSPDIAddMigrateCommand, MSPDIAddLossesCommand, MSPDIAddMendCommand,
        MSPDIAddCheckCommand,  MSPDIAddDiffCommand,    MSPDIAddViewCommand,   MSPDIAddMigrateChunkCommand};
    return all;
}
