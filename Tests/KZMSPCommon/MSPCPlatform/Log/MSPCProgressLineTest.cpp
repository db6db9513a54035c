#include "MSPCProgressLine.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <string>

#include "MSPCLog.h"
#include "MSPCProcessGuard.h"
#include "ScopedDescriptor.h"
#include "ScopedTempFolder.h"
#include "ScopedTerminal.h"

namespace {

using namespace std::chrono_literals;

const std::string wipe = "\r\033[K";

// A log and its progress line on a pseudo-terminal, with a clock that is moved by hand.
class MSPCProgressLineTest : public testing::Test {
protected:
    // Lets a scenario of 1,000 tasks be under way for so long that the line is due with the next look at the clock.
    void beginLongImport() {
        progress.beginScenario("Actual");
        now += 500ms;
    }
    [[nodiscard]] std::string shown() const { return terminal.shown(); }

    ScopedTerminal terminal{80};
    ScopedDescriptor standardError{STDERR_FILENO, terminal.device};
    MSPCStandardErrorLog log{"MSPDIImport"};
    std::chrono::steady_clock::time_point now{};
    MSPCProgressLine progress{log, "xterm", [this] { return now; }};
};

}  // namespace

TEST_F(MSPCProgressLineTest, namesTheScenarioTheTasksDoneAndTheirShare) {
    beginLongImport();
    progress.tasksDone(128, 1'000);
    EXPECT_EQ(shown(), wipe + "Actual: 128 of 1000 tasks (12%)");
}

TEST_F(MSPCProgressLineTest, appearsAfterHalfASecond) {
    progress.beginScenario("Actual");
    now += 499ms;
    progress.tasksDone(64, 1'000);
    EXPECT_EQ(shown(), "");
    now += 1ms;
    progress.tasksDone(128, 1'000);
    EXPECT_EQ(shown(), wipe + "Actual: 128 of 1000 tasks (12%)");
}

TEST_F(MSPCProgressLineTest, aShortImportShowsNothingAtAll) {
    progress.beginScenario("Actual");
    progress.tasksDone(71, 71);
    progress.endImport();
    EXPECT_EQ(shown(), "");
}

TEST_F(MSPCProgressLineTest, isWrittenAnewAtMostTenTimesASecond) {
    beginLongImport();
    progress.tasksDone(64, 1'000);
    EXPECT_NE(shown(), "");
    now += 99ms;
    progress.tasksDone(128, 1'000);
    EXPECT_EQ(shown(), "");
    now += 1ms;
    progress.tasksDone(192, 1'000);
    EXPECT_EQ(shown(), wipe + "Actual: 192 of 1000 tasks (19%)");
}

TEST_F(MSPCProgressLineTest, looksAtTheClockOnlyOnceInSixtyFourTasks) {
    int looks = 0;
    MSPCProgressLine counting(log, "xterm", [&] { return ++looks, now; });
    counting.beginScenario("Actual");
    looks = 0;
    for (std::size_t done = 1; done < 640; ++done) {
        counting.tasksDone(done, 640);
    }
    EXPECT_EQ(looks, 9);
}

TEST_F(MSPCProgressLineTest, theLastTaskIsShownAtOnce) {
    beginLongImport();
    progress.tasksDone(960, 1'000);
    static_cast<void>(shown());
    progress.tasksDone(1'000, 1'000);
    EXPECT_EQ(shown(), wipe + "Actual: 1000 of 1000 tasks (100%)");
}

TEST_F(MSPCProgressLineTest, theNextScenarioOfTheImportIsShownWithoutANewDelay) {
    beginLongImport();
    progress.tasksDone(64, 1'000);
    static_cast<void>(shown());
    progress.beginScenario("Baseline3");
    now += 100ms;
    progress.tasksDone(64, 1'000);
    EXPECT_EQ(shown(), wipe + "Baseline3: 64 of 1000 tasks (6%)");
}

TEST_F(MSPCProgressLineTest, goesAwayAtTheEndAndTheNextImportHasADelayAgain) {
    beginLongImport();
    progress.tasksDone(64, 1'000);
    static_cast<void>(shown());
    progress.endImport();
    EXPECT_EQ(shown(), wipe);
    progress.beginScenario("Actual");
    progress.tasksDone(64, 1'000);
    EXPECT_EQ(shown(), "");
}

TEST_F(MSPCProgressLineTest, tellsHowFarAFileIsRead) {
    progress.bytesRead("Reading", 1'000'000, 96'500'000);
    now += 499ms;
    progress.bytesRead("Reading", 11'000'000, 96'500'000);
    EXPECT_EQ(shown(), "");
    now += 1ms;
    progress.bytesRead("Reading", 12'000'000, 96'500'000);
    EXPECT_EQ(shown(), wipe + "Reading: 12 of 96 MB (12%)");
    now += 99ms;
    progress.bytesRead("Reading", 50'000'000, 96'500'000);
    EXPECT_EQ(shown(), "");
    // The file has grown meanwhile.
    now += 1ms;
    progress.bytesRead("Reading", 97'000'000, 96'500'000);
    EXPECT_EQ(shown(), wipe + "Reading: 97 of 96 MB (100%)");
}

TEST_F(MSPCProgressLineTest, goesOnWithTasksWhereAFileWasRead) {
    progress.bytesRead("Reading", 0, 96'500'000);
    now += 500ms;
    progress.beginScenario("Actual");
    progress.tasksDone(64, 1'000);
    EXPECT_EQ(shown(), wipe + "Actual: 64 of 1000 tasks (6%)");
    progress.endImport();
    EXPECT_EQ(shown(), wipe);
}

TEST_F(MSPCProgressLineTest, whatCouldDriveTheTerminalIsEscaped) {
    progress.beginScenario("a\n\x1b[2J\u202e");
    now += 500ms;
    progress.tasksDone(64, 1'000);
    EXPECT_EQ(shown(), wipe + "a\\n\\x1b[2J\\u202e: 64 of 1000 tasks (6%)");
}

TEST_F(MSPCProgressLineTest, logLinesPassAboveIt) {
    log.log("before");
    static_cast<void>(shown());
    beginLongImport();
    progress.tasksDone(64, 1'000);
    log.log("meanwhile");
    progress.endImport();
    log.log("after");
    const auto text = shown();
    const std::string status = "Actual: 64 of 1000 tasks (6%)";
    EXPECT_EQ(text.find(wipe + status + wipe), 0U) << text;
    EXPECT_NE(text.find("] meanwhile\n" + status + wipe), std::string::npos) << text;
    EXPECT_TRUE(text.ends_with("] after\n")) << text;
}

TEST_F(MSPCProgressLineTest, aTerminalThatCannotRewriteALineShowsNothing) {
    for (const char* type : {static_cast<const char*>(nullptr), "", "dumb"}) {
        MSPCProgressLine elsewhere(log, type, [this] { return now; });
        elsewhere.beginScenario("Actual");
        now += 1s;
        elsewhere.tasksDone(64, 1'000);
        elsewhere.endImport();
        EXPECT_EQ(shown(), "");
    }
}

TEST_F(MSPCProgressLineTest, theEndOfTheLogTakesTheLineAway) {
    {
        MSPCStandardErrorLog shortLog("MSPDIImport");
        shortLog.showStatus("working");
    }
    EXPECT_EQ(shown(), wipe + "working" + wipe);
}

TEST_F(MSPCProgressLineTest, aSignalTakesTheLineAway) {
    const pid_t child = ::fork();
    if (child == 0) {
        MSPCStandardErrorLog childLog("MSPDIImport");
        const MSPCProcessGuard guard(childLog);
        childLog.showStatus("working");
        ::raise(SIGTERM);
        ::_exit(0);
    }
    int state = 0;
    ASSERT_EQ(::waitpid(child, &state, 0), child);
    EXPECT_TRUE(WIFEXITED(state) && WEXITSTATUS(state) == 128 + SIGTERM);
    EXPECT_EQ(shown(), wipe + "working" + wipe);
}

TEST(MSPCProgressLineOnANarrowTerminal, isCutToOneLine) {
    const ScopedTerminal terminal(20);
    const ScopedDescriptor standardError(STDERR_FILENO, terminal.device);
    MSPCStandardErrorLog log("MSPDIImport");
    log.showStatus("Actual: 64 of 100000 tasks (0%)");
    EXPECT_EQ(terminal.shown(), wipe + "Actual: 64 of 10000");
}

TEST(MSPCProgressLineInAFile, leavesNoTrace) {
    const ScopedTempFolder folder;
    const int file = ::open((folder / "log").c_str(), O_WRONLY | O_CREAT, 0600);
    {
        const ScopedDescriptor standardError(STDERR_FILENO, file);
        MSPCStandardErrorLog log("MSPDIImport");
        auto now = std::chrono::steady_clock::time_point();
        MSPCProgressLine progress(log, "xterm", [&now] { return now; });
        progress.beginScenario("Actual");
        now += 1s;
        progress.tasksDone(64, 1'000);
        log.showStatus("working");
        progress.endImport();
    }
    ::close(file);
    EXPECT_EQ(folder.contents("log"), "");
}
