#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <thread>

#include "ProgramRun.h"
#include "ScopedTerminal.h"

namespace fs = std::filesystem;

namespace {

// Long enough for its log to fill a terminal's buffers many times over.
std::string planOf5000Tasks() {
    std::string plan =
        "<Project xmlns=\"http://schemas.microsoft.com/project\"><SaveVersion>14</SaveVersion>"
        "<StartDate>2024-05-13T08:00:00</StartDate><ScheduleFromStart>1</ScheduleFromStart>"
        "<Calendars><Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></"
        "Calendars>"
        "<Tasks>";
    for (int uid = 1; uid <= 5'000; ++uid) {
        plan += "<Task><UID>" + std::to_string(uid) + "</UID><Name>a task</Name><OutlineLevel>1</OutlineLevel>" +
                "<Duration>PT8H0M0S</Duration></Task>";
    }
    return plan + "</Tasks></Project>";
}

// What remains of the bytes when each "back and wipe the line" is obeyed.
std::string onScreen(const std::string& bytes) {
    const std::string wipe = "\r\033[K";
    std::string screen;
    for (std::size_t at = 0; at < bytes.size();) {
        if (bytes.compare(at, wipe.size(), wipe) == 0) {
            screen.erase(screen.rfind('\n') + 1);
            at += wipe.size();
        } else {
            screen += bytes[at++];
        }
    }
    return screen;
}

std::string withoutTimes(const std::string& log) {
    return std::regex_replace(log, std::regex("\\d{4}-\\d\\d-\\d\\d [0-9:.]+ MSPDIImport\\[\\d+\\] "), "");
}

// Runs the program with its standard error on a terminal that nobody reads for a while.
ProgramResult runOnTerminal(const fs::path& folder, const char* terminalType) {
    const ScopedTerminal terminal(80);
    const auto output = folder.string() + ".stdout";
    const auto type = std::string("TERM=") + terminalType;
    const pid_t child = ::fork();
    if (child == 0) {
        const int standardOutput = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (::chdir(folder.c_str()) == 0 && ::dup2(standardOutput, STDOUT_FILENO) >= 0 &&
            ::dup2(terminal.device, STDERR_FILENO) >= 0) {
            std::array<const char*, 6> words{KZMSP_PROGRAM, "--template-path", KZMSP_TEMPLATE, "Plan.xml", "out",
                                             nullptr};
            std::array<const char*, 3> environment{"TZ=UTC", type.c_str(), nullptr};
            ::execve(KZMSP_PROGRAM, const_cast<char**>(words.data()), const_cast<char**>(environment.data()));
        }
        ::_exit(127);
    }
    // It waits with the first tasks, as long as an import must take before the progress appears.
    std::this_thread::sleep_for(std::chrono::milliseconds(900));
    ProgramResult result;
    int state = 0;
    while (::waitpid(child, &state, WNOHANG) == 0) {
        result.standardError += terminal.shown();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    result.standardError += terminal.shown();
    result.status = WIFEXITED(state) ? WEXITSTATUS(state) : -1;
    result.standardOutput = bytesOf(output);
    return result;
}

class Terminal : public testing::Test {
protected:
    Terminal() {
        fs::remove_all(folder);
        fs::create_directories(folder / "out");
        std::ofstream(folder / "Plan.xml") << planOf5000Tasks();
    }

    // The log of the same import into a file. The bundle of another run must not take its name.
    std::string redirectedLog() const {
        fs::remove_all(folder / "out" / "Plan.kdzx");
        const auto result = runProgram({"--template-path", KZMSP_TEMPLATE, "Plan.xml", "out"}, folder,
                                       {{"TZ", "UTC"}, {"TERM", "xterm"}});
        EXPECT_EQ(result.standardOutput, "");
        EXPECT_EQ(result.standardError.find('\033'), std::string::npos);
        return withoutTimes(result.standardError);
    }

    // One for each test: they may run at the same time.
    fs::path folder =
        fs::path(KZMSP_SCRATCH) / "terminal" / testing::UnitTest::GetInstance()->current_test_info()->name();
};

}  // namespace

TEST_F(Terminal, showsTheProgressOfALongImportBelowTheLogAndLeavesTheLogAlone) {
    const auto result = runOnTerminal(folder, "xterm");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.standardOutput, "");
    EXPECT_TRUE(
        std::regex_search(result.standardError, std::regex("\r\033\\[KActual: \\d+ of 5000 tasks \\(\\d+%\\)")));
    EXPECT_NE(result.standardError.find("Actual: 5000 of 5000 tasks (100%)"), std::string::npos);
    EXPECT_EQ(withoutTimes(onScreen(result.standardError)), redirectedLog());
}

TEST_F(Terminal, showsTheLogAloneWhereALineCannotBeRewritten) {
    const auto result = runOnTerminal(folder, "dumb");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(withoutTimes(result.standardError), redirectedLog());
}
