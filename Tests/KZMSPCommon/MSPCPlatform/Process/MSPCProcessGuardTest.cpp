#include "MSPCProcessGuard.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <functional>
#include <limits>
#include <stdexcept>

#include "MSPCFileSystem.h"
#include "MSPCLog.h"
#include "ScopedTempFolder.h"

namespace {

// Runs something in a process of its own whose standard error is the file "log".
class MSPCProcessGuardTest : public ::testing::Test {
protected:
    // The status that wait gives. The process ends with 77 when `action` returns.
    int statusOf(
        const std::function<void(MSPCStandardErrorLog&)>& action, const std::function<void()>& prepare = [] {}) {
        const auto child = ::fork();
        if (child == 0) {
            const rlimit noCoreFile{};
            ::setrlimit(RLIMIT_CORE, &noCoreFile);
            ::dup2(::open((folder / "log").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600), STDERR_FILENO);
            prepare();
            runGuarded(action);
            ::_exit(77);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        return status;
    }
    std::string written() const { return folder.contents("log"); }

    ScopedTempFolder folder;

private:
    static void runGuarded(const std::function<void(MSPCStandardErrorLog&)>& action) noexcept {
        MSPCStandardErrorLog log("MSPDIImport");
        const MSPCProcessGuard guard(log);
        log.log("collected");
        action(log);
    }
};

// Takes a page of stack a level; the result depends on every level, so none can be left out.
int descend(int levels, const volatile char* above) {
    volatile char block[4'096];
    block[0] = static_cast<char>(*above + 1);
    return levels == 0 ? 0 : descend(levels - 1, block) + block[0];
}

}  // namespace

TEST_F(MSPCProcessGuardTest, endsWithTheLogWrittenOnSignalsThatAskForIt) {
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
        const int status = statusOf([signal](MSPCStandardErrorLog&) { ::raise(signal); });
        ASSERT_TRUE(WIFEXITED(status)) << signal;
        EXPECT_EQ(WEXITSTATUS(status), 128 + signal);
    }
    const auto text = written();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3) << "one line a run";
    EXPECT_NE(text.find("] collected\n"), std::string::npos);
}

TEST_F(MSPCProcessGuardTest, endsSoonWhenNobodyReadsTheLog) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const auto before = std::chrono::steady_clock::now();
    const int status = statusOf(
        [](MSPCStandardErrorLog& log) {
            for (int line = 0; line < 100; ++line) {
                log.log("{}", std::string(100, 'x'));
            }
            ::raise(SIGTERM);
        },
        [&ends] {
            ::fcntl(ends[1], F_SETPIPE_SZ, 4'096);
            ::dup2(ends[1], STDERR_FILENO);
        });
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(10));
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 128 + SIGTERM);
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST_F(MSPCProcessGuardTest, leavesAnIgnoredSignalIgnored) {
    const int status = statusOf([](MSPCStandardErrorLog&) { ::raise(SIGHUP); }, [] { std::signal(SIGHUP, SIG_IGN); });
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 77);
}

TEST_F(MSPCProcessGuardTest, losesNoLineWhenTheProcessCrashes) {
    for (const int signal : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGQUIT}) {
        const int status = statusOf([signal](MSPCStandardErrorLog&) { ::raise(signal); });
        ASSERT_TRUE(WIFSIGNALED(status)) << signal;
        EXPECT_EQ(WTERMSIG(status), signal);
    }
    const auto text = written();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 6);
}

TEST_F(MSPCProcessGuardTest, losesNoLineWhenAForeignExceptionEndsTheProcess) {
    const int status = statusOf([](MSPCStandardErrorLog&) { throw std::runtime_error("foreign"); });
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGABRT);
    EXPECT_NE(written().find("] collected\n"), std::string::npos) << written();
}

TEST_F(MSPCProcessGuardTest, losesNoLineWhenTheStackOverflows) {
    const int status = statusOf([](MSPCStandardErrorLog&) {
        volatile char start = 0;
        start = static_cast<char>(descend(std::numeric_limits<int>::max(), &start));
    });
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGSEGV);
    EXPECT_NE(written().find("] collected\n"), std::string::npos);
}

TEST_F(MSPCProcessGuardTest, takesAClosedPipeForAWriteFailure) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    ::close(ends[0]);
    const int status =
        statusOf([](MSPCStandardErrorLog& log) { log.flush(); }, [&ends] { ::dup2(ends[1], STDERR_FILENO); });
    ::close(ends[1]);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 77);
}

TEST_F(MSPCProcessGuardTest, takesAFileSizeLimitForAWriteFailure) {
    const int status = statusOf([this](MSPCStandardErrorLog&) {
        const rlimit small{1'000, 1'000};
        ::setrlimit(RLIMIT_FSIZE, &small);
        MSPCDiskFileSystem files;
        const auto failure =
            files.writeAtomically(folder / "a", [](MSPCByteWriter& writer) { writer.write(std::string(2'000, 'x')); });
        ::_exit(failure == "File too large" ? 0 : 1);
    });
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(MSPCProcessGuardTest, letsNoFileGetTheNumberOfAClosedStandardError) {
    const int status = statusOf(
        [this](MSPCStandardErrorLog& log) {
            const int plan = ::open((folder / "plan").c_str(), O_WRONLY | O_CREAT, 0600);
            log.log("for nobody");
            log.flush();
            ::_exit(plan > STDERR_FILENO ? 0 : 1);
        },
        [] {
            ::close(STDIN_FILENO);
            ::close(STDERR_FILENO);
        });
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(folder.contents("plan"), "");
}
