#include "MSPDIProgram.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <new>

#include "MSPCMessage.h"
#include "MSPDICommonOptions.h"
#include "MSPDIRun.h"
#include "MSPDISubcommands.h"

namespace {

void describe(CLI::App& program) {
    program.name("mspdi");
    program.description("Tells what becomes of a Microsoft Project plan (MSPDI) in a Kadenza 2 document.");
    program.footer(
        "Exit status: 0 nothing to tell, 1 something to tell, 2 could not look.\n"
        "See also: man mspdi, man mspdi-<subcommand>");
    program.set_version_flag("--version", MSPDIVersionText, "Print the version");
    program.set_help_flag("--help,-h", "Print this help");
    program.require_subcommand(1);
}

// "--scenario=": CLI11 would take the next argument for the value. Empty where there is none.
std::string optionWithoutValue(const std::vector<std::string>& arguments) {
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    const auto found = std::find_if(arguments.begin(), end, [](const std::string& argument) {
        return argument.starts_with("--") && argument.ends_with('=') && argument.find('=') == argument.size() - 1;
    });
    return found == end ? std::string() : *found;
}

// "--all=3". Only --mend may have a value, and tells itself which.
void refuseValuesOfFlags(CLI::App& program) {
    for (auto* const subcommand : program.get_subcommands([](const CLI::App* /*any*/) { return true; })) {
        for (auto* const option : subcommand->get_options([](const CLI::Option* /*any*/) { return true; })) {
            if (option->get_items_expected_max() == 0 && !option->check_lname("mend")) {
                option->disable_flag_override();
            }
        }
    }
}

int failed(std::string_view reason, const MSPDIOutput& output) {
    output.err << "mspdi: " << reason << '\n';
    return static_cast<int>(MSPDIStatus::CouldNotLook);
}

int unwritten(const MSPDIOutput& output) {
    return output.isReaderGone() ? static_cast<int>(MSPDIStatus::CouldNotLook)
                                 : failed("the result could not be written", output);
}

// Help and version are asked for and go to standard output; all else is wrong.
int statusOf(const CLI::App& program, const CLI::ParseError& error, const MSPDIOutput& output) {
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
        return program.exit(error, output.out, output.err);
    }
    const auto unexpected = program.remaining();
    const bool isOther = program.get_subcommands().empty() && !unexpected.empty() && !unexpected[0].starts_with('-');
    std::string reason = isOther ? "no such subcommand: " + unexpected[0] : error.what();
    constexpr std::string_view ofFlagWithValue = " was given a disallowed flag override";
    if (reason.ends_with(ofFlagWithValue)) {
        reason = "--" + reason.substr(0, reason.size() - ofFlagWithValue.size()) + " takes no value";
    }
    std::replace(reason.begin(), reason.end(), '\n', ' ');
    return failed(std::string(MSPCShownText(reason).view()) + " (mspdi --help tells more)", output);
}

}  // namespace

int MSPDIProgram(const std::vector<std::string>& arguments, const MSPCServices& services, const MSPDIOutput& output) {
    if (const auto option = optionWithoutValue(arguments); !option.empty()) {
        return failed(fmt::format("{} needs a value (mspdi --help tells more)", MSPCShownText(option)), output);
    }
    MSPDIRun run{services, output.out, output.err, output.isColored, output.installedTemplate};
    run.showStatus = output.showStatus;
    CLI::App program;
    describe(program);
    for (const auto addSubcommand : MSPDISubcommands()) {
        addSubcommand(program, run);
    }
    refuseValuesOfFlags(program);
    int status = 0;
    try {
        program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
        status = static_cast<int>(run.status);
    } catch (const CLI::ParseError& error) {
        status = statusOf(program, error, output);
    } catch (const std::bad_alloc&) {
        return failed("not enough memory", output);
    }
    output.out.flush();
    return output.out ? status : unwritten(output);
}
