#include "MSPCChildProgram.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "ScopedTempFolder.h"

namespace {

using Pipe = MSPCChildProgram::Pipe;
using testing::ElementsAre;

constexpr std::chrono::milliseconds shortly{20};

// What a shell script tells until its end.
struct Told {
    std::vector<std::string> output;
    std::vector<std::string> errors;
    std::vector<std::string> notes;
    int status = -1;

    void take(MSPCChildProgram& program) {
        const auto takeLine = [this](Pipe pipe, const std::string& line) {
            (pipe == Pipe::Output ? output : pipe == Pipe::Errors ? errors : notes).push_back(line);
        };
        while (program.takeLines(shortly, takeLine)) {
        }
        status = program.status();
    }
};

MSPCChildCommand shell(const std::string& script) {
    return {{"sh", "-c", script, "sh"}, {}, {}};
}

Told run(const MSPCChildCommand& command) {
    std::string failure;
    const auto program = MSPCChildProgram::start(command, failure);
    EXPECT_TRUE(program) << failure;
    Told told;
    told.take(*program);
    return told;
}

bool isLocked(const std::string& path) {
    const MSPCFileDescriptor file(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    return ::flock(file.number(), LOCK_EX | LOCK_NB) != 0;
}

}  // namespace

TEST(MSPCChildProgram, givesTheLinesOfItsThreePipes) {
    const auto told = run(shell("echo one; echo two >&2; echo three >/dev/fd/3; echo; printf four"));
    EXPECT_THAT(told.output, ElementsAre("one", "", "four"));
    EXPECT_THAT(told.errors, ElementsAre("two"));
    EXPECT_THAT(told.notes, ElementsAre("three"));
    EXPECT_EQ(told.status, 0);
}

TEST(MSPCChildProgram, getsItsInputHoweverLargeAndWheneverItReads) {
    auto command = shell("sleep 0.1; wc -c");
    command.input = std::string(3'000'000, 'x') + "y";
    EXPECT_THAT(run(command).output, ElementsAre("3000001"));
    command.arguments[2] = "tail -c 1";
    EXPECT_THAT(run(command).output, ElementsAre("y"));
}

TEST(MSPCChildProgram, getsItsArgumentsAsTheyAre) {
    auto command = shell("printf '%s|' \"$@\"");
    command.arguments.insert(command.arguments.end(), {"", "a b", "$(id)", "'\"", "-n"});
    EXPECT_THAT(run(command).output, ElementsAre("|a b|$(id)|'\"|-n|"));
}

TEST(MSPCChildProgram, hasTheVariablesOfThisProcessAndMore) {
    ::setenv("CHILD_OLD", "old", 1);
    ::setenv("CHILD_NEW", "not this", 1);
    auto command = shell("echo $CHILD_OLD $CHILD_NEW $CHILD_MORE");
    command.environment = {{"CHILD_NEW", "new"}, {"CHILD_MORE", "more"}};
    EXPECT_THAT(run(command).output, ElementsAre("old new more"));
}

TEST(MSPCChildProgram, tellsHowItEnded) {
    EXPECT_EQ(run(shell("exit 3")).status, 3);
    EXPECT_EQ(run(shell("kill -KILL $$")).status, 128 + SIGKILL);
    EXPECT_EQ(run({{"/no/such/program"}, {}, {}}).status, 127);
    EXPECT_EQ(run({{"no-such-program-in-the-path"}, {}, {}}).status, 127);
}

TEST(MSPCChildProgram, takesUpSignalsThatThisProcessIgnores) {
    std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(run(shell("kill -PIPE $$")).status, 128 + SIGPIPE);
}

TEST(MSPCChildProgram, isHungUp) {
    std::string failure;
    const auto program = MSPCChildProgram::start(
        shell("trap 'echo hung up; exit 4' HUP; echo ready; while :; do sleep 0.02; done"), failure);
    ASSERT_TRUE(program) << failure;
    std::vector<std::string> lines;
    while (program->takeLines(shortly, [&](Pipe, const std::string& line) {
        lines.push_back(line);
        if (lines.size() == 1) {
            program->hangUp();
        }
    })) {
    }
    EXPECT_THAT(lines, ElementsAre("ready", "hung up"));
    EXPECT_EQ(program->status(), 4);
}

// Its end counts, not that of what it has started and that holds its pipes.
TEST(MSPCChildProgram, isAtItsEndThoughWhatItStartedLivesOn) {
    const auto since = std::chrono::steady_clock::now();
    EXPECT_THAT(run(shell("sleep 20 & echo $!")).output, testing::SizeIs(1));
    EXPECT_LT(std::chrono::steady_clock::now() - since, std::chrono::seconds(10));
}

TEST(MSPCChildProgram, isKilledWithItsOwner) {
    std::string failure;
    auto program = MSPCChildProgram::start(shell("echo $$; sleep 20"), failure);
    ASSERT_TRUE(program) << failure;
    int process = 0;
    while (process == 0 &&
           program->takeLines(shortly, [&](Pipe, const std::string& line) { process = std::stoi(line); })) {
    }
    EXPECT_TRUE(MSPCChildProgram::isAlive(process));
    program.reset();
    EXPECT_FALSE(MSPCChildProgram::isAlive(process));
}

TEST(MSPCChildProgram, keepsALockWithAllThatItStarts) {
    const ScopedTempFolder folder;
    folder.addFile("lock", "");
    const std::string path = folder / "lock";
    MSPCFileDescriptor lock(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(::flock(lock.number(), LOCK_EX), 0);
    auto command = shell("sleep 20 & echo $!");
    command.kept = lock.number();
    const auto told = run(command);
    lock.close();
    EXPECT_TRUE(isLocked(path)) << "what it has started lives";
    ::kill(std::stoi(told.output.at(0)), SIGKILL);
    for (int tries = 0; tries < 250 && isLocked(path); ++tries) {
        ::usleep(20'000);
    }
    EXPECT_FALSE(isLocked(path));
}
