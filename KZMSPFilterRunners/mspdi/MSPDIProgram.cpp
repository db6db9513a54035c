#include "MSPDIProgram.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "MSPDIRun.h"
#include "MSPDISubcommands.h"

namespace {

constexpr const char* versionText = "mspdi " KZMSP_VERSION;

void describe(CLI::App& program) {
    program.name("mspdi");
    program.description("Tells what becomes of a Microsoft Project plan (MSPDI) in a Kadenza 2 document.");
    program.footer(
        "Exit status: 0 nothing to tell, 1 something to tell, 2 could not look.\n"
        "See also: man mspdi, man mspdi-<subcommand>");
    program.set_version_flag("--version", versionText, "Print the version");
    program.set_help_flag("--help,-h", "Print this help");
    program.require_subcommand(1);
}

// Help and version are asked for and go to standard output; all else is wrong.
int statusOf(const CLI::App& program, const CLI::ParseError& error, const MSPDIOutput& output) {
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
        return program.exit(error, output.out, output.err);
    }
    std::string reason = error.what();
    std::replace(reason.begin(), reason.end(), '\n', ' ');
    output.err << "mspdi: " << reason << " (mspdi --help tells more)\n";
    return static_cast<int>(MSPDIStatus::CouldNotLook);
}

}  // namespace

void MSPDIAddCommonOptions(CLI::App& subcommand, MSPDIRun& run) {
    subcommand.add_flag("--json", run.isJSON, "Tell it as one JSON document");
    subcommand.add_flag("--quiet,-q", run.isQuiet, "Tell nothing; the exit status says enough");
    subcommand.set_version_flag("--version", versionText, "Print the version");
}

int MSPDIProgram(const std::vector<std::string>& arguments, const MSPCServices& services, const MSPDIOutput& output) {
    MSPDIRun run{services, output.out, output.err, output.isColored};
    CLI::App program;
    describe(program);
    for (const auto addSubcommand : MSPDISubcommands()) {
        addSubcommand(program, run);
    }
    try {
        program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        return statusOf(program, error, output);
    }
    output.out.flush();
    if (!output.out) {
        output.err << "mspdi: the result could not be written\n";
        return static_cast<int>(MSPDIStatus::CouldNotLook);
    }
    return static_cast<int>(run.status);
}
