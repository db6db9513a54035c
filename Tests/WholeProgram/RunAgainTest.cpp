#include "RunAgain.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "ProgramRun.h"

namespace fs = std::filesystem;

TEST(RunAgain, quotesWhatAShellWouldTakeApart) {
    EXPECT_EQ(commandOfRun({"--version", "it's $HOME"}, "/tmp/a b", {{"LC_ALL", "C"}, {"TZ", "UTC"}}),
              "cd '/tmp/a b' && env -i 'LC_ALL=C' 'TZ=UTC' '" KZMSP_PROGRAM "' '--version' 'it'\\''s $HOME'");
}

TEST(RunAgain, givesTheResultOfTheRun) {
    const auto folder = fs::path(KZMSP_SCRATCH) / "run it's again";
    fs::create_directories(folder);
    const auto run = runProgram({"--template-path", "$HOME"}, folder, {{"TZ", "UTC"}});
    const auto again = folder.string() + ".again";
    const auto command =
        "{ " + commandOfRun({"--template-path", "$HOME"}, folder, {{"TZ", "UTC"}}) + "; } 2>\"" + again + "\"";
    const int state = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(state));
    EXPECT_EQ(WEXITSTATUS(state), run.status);
    EXPECT_NE(run.status, 0);
    // The lines begin with the time and the process.
    const auto last = [](const std::string& log) { return log.substr(log.rfind("] ")); };
    EXPECT_EQ(last(bytesOf(again)), last(run.standardError));
}
