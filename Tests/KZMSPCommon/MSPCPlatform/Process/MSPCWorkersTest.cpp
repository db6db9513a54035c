#include "MSPCWorkers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <map>
#include <set>
#include <stdexcept>

namespace {

using Kind = MSPCJobEnd::Kind;

class WorkersTest : public testing::Test {
protected:
    WorkersTest() { std::signal(SIGPIPE, SIG_IGN); }

    void run(std::vector<std::string> jobs, std::size_t count, const MSPCWorkers::Work& work,
             MSPCWorkerBounds bounds = {}) {
        MSPCWorkers workers(count, bounds, work);
        auto next = jobs.begin();
        const auto failure = workers.run(
            [&] { return next == jobs.end() ? std::nullopt : std::optional(*next++); },
            [this](const std::string& job, const MSPCJobEnd& end) { ends.emplace(job, end); }, [this] { ++pauses; });
        EXPECT_EQ(failure, std::nullopt);
    }

    std::multimap<std::string, MSPCJobEnd> ends;
    int pauses = 0;
};

}  // namespace

TEST_F(WorkersTest, doAllJobsEachOnce) {
    std::vector<std::string> jobs;
    for (int job = 0; job < 100; ++job) {
        jobs.push_back(std::to_string(job));
    }
    run(jobs, 3, [](const std::string& job, std::size_t) { return job + " by " + std::to_string(::getpid()); });
    EXPECT_EQ(ends.size(), 100U);
    std::set<std::string> processes;
    for (const auto& [job, end] : ends) {
        EXPECT_EQ(end.kind, Kind::Done);
        EXPECT_EQ(end.result.substr(0, job.size() + 4), job + " by ");
        processes.insert(end.result.substr(job.size() + 4));
    }
    EXPECT_EQ(processes.size(), 3U);
    EXPECT_FALSE(processes.contains(std::to_string(::getpid())));
    EXPECT_GT(pauses, 0);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "none is left";
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(WorkersTest, handOverTextsOfAllSizes) {
    const std::string large(3'000'000, 'x');
    run({"", "a\nb", large}, 2, [](const std::string& job, std::size_t) { return job + job; });
    EXPECT_EQ(ends.find("")->second.result, "");
    EXPECT_EQ(ends.find("a\nb")->second.result, "a\nba\nb");
    EXPECT_EQ(ends.find(large)->second.result, large + large);
}

TEST_F(WorkersTest, ofWhichOneDiesEndsOnlyItsOwnJob) {
    run({"1", "crash", "2", "leave", "3", "raise", "4"}, 2, [](const std::string& job, std::size_t) {
        if (job == "crash") {
            std::signal(SIGSEGV, SIG_DFL);
            ::kill(::getpid(), SIGSEGV);
        } else if (job == "leave") {
            ::_exit(3);
        } else if (job == "raise") {
            throw std::runtime_error("raised");
        }
        return job;
    });
    EXPECT_EQ(ends.size(), 7U);
    for (const auto* job : {"1", "2", "3", "4"}) {
        EXPECT_EQ(ends.find(job)->second.kind, Kind::Done);
        EXPECT_EQ(ends.find(job)->second.result, job);
    }
    for (const auto& [job, reason] :
         {std::pair("crash", "signal 11"), {"leave", "exit status 3"}, {"raise", "exit status 70"}}) {
        EXPECT_EQ(ends.find(job)->second.kind, Kind::Died);
        EXPECT_EQ(ends.find(job)->second.reason, reason);
    }
}

TEST_F(WorkersTest, thatTakeTooLongAreEnded) {
    run({"slow", "1", "2"}, 1,
        [](const std::string& job, std::size_t) {
            if (job == "slow") {
                ::sleep(60);
            }
            return job;
        },
        {std::chrono::milliseconds(300), 0});
    const auto& slow = ends.find("slow")->second;
    EXPECT_EQ(slow.kind, Kind::TookTooLong);
    EXPECT_GE(slow.time.count(), 300);
    EXPECT_LT(slow.time.count(), 30'000);
    EXPECT_EQ(ends.find("1")->second.kind, Kind::Done);
    EXPECT_EQ(ends.find("2")->second.kind, Kind::Done);
}

#if !defined(__SANITIZE_ADDRESS__)
TEST_F(WorkersTest, getNoMoreMemoryThanTheyMayHave) {
    run({"500000000", "1000"}, 1,
        [](const std::string& job, std::size_t) -> std::string {
            auto* memory = std::malloc(std::strtoul(job.c_str(), nullptr, 10));
            const std::string answer = memory != nullptr ? "there" : "none";
            std::free(memory);
            return answer;
        },
        {std::chrono::milliseconds(0), 200'000'000});
    EXPECT_EQ(ends.find("500000000")->second.result, "none");
    EXPECT_EQ(ends.find("1000")->second.result, "there");
}
#endif

TEST_F(WorkersTest, endWithTheirParentEvenWhenItIsKilled) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const auto parent = ::fork();
    if (parent == 0) {
        ::close(pipe[0]);
        MSPCWorkers workers(2, {}, [&](const std::string& job, std::size_t) {
            static_cast<void>(!::write(pipe[1], ".", 1));
            ::sleep(60);
            return job;
        });
        int given = 0;
        static_cast<void>(workers.run([&] { return given++ < 2 ? std::optional<std::string>("job") : std::nullopt; },
                                      [](const auto&, const auto&) {}, [] {}));
        ::_exit(0);
    }
    ::close(pipe[1]);
    char begun[2];
    ASSERT_EQ(::read(pipe[0], begun, 1), 1);
    ASSERT_EQ(::read(pipe[0], begun, 1), 1);
    ::kill(parent, SIGKILL);
    ::waitpid(parent, nullptr, 0);
    EXPECT_EQ(::read(pipe[0], begun, 1), 0) << "the pipe ends when the last of them has ended";
    ::close(pipe[0]);
}

// A worker that ends between two jobs, killed by the system for lack of memory say.
TEST_F(WorkersTest, thatDieWithoutAJobAreReplacedAndNoJobIsBlamed) {
    std::vector<std::string> jobs{"1", "2", "3", "4"};
    auto next = jobs.begin();
    int killed = 0;
    MSPCWorkers workers(1, {}, [](const std::string&, std::size_t) { return std::to_string(::getpid()); });
    const auto failure = workers.run([&] { return next == jobs.end() ? std::nullopt : std::optional(*next++); },
                                     [&](const std::string& job, const MSPCJobEnd& end) {
                                         ends.emplace(job, end);
                                         if (job != "4" && end.kind == Kind::Done) {
                                             const auto process = std::stoi(end.result);
                                             ::kill(process, SIGKILL);
                                             // Until it has ended; it is reaped by the workers.
                                             siginfo_t info;
                                             ::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOWAIT);
                                             ++killed;
                                         }
                                     },
                                     [] {});
    EXPECT_EQ(failure, std::nullopt);
    EXPECT_EQ(killed, 3);
    std::set<std::string> processes;
    for (const auto& job : jobs) {
        EXPECT_EQ(ends.find(job)->second.kind, Kind::Done) << job << ": " << ends.find(job)->second.reason;
        processes.insert(ends.find(job)->second.result);
    }
    EXPECT_EQ(processes.size(), 4U);
}

// The same where its job lies in the pipe already.
TEST_F(WorkersTest, thatDieBeforeTheyTakeUpTheirJobAreReplacedAndItIsNotBlamed) {
    std::vector<std::string> jobs{"1", "2"};
    auto next = jobs.begin();
    int process = 0;
    bool isStopped = false;
    MSPCWorkers workers(1, {}, [](const std::string&, std::size_t) { return std::to_string(::getpid()); });
    const auto failure = workers.run([&] { return next == jobs.end() ? std::nullopt : std::optional(*next++); },
                                     [&](const std::string& job, const MSPCJobEnd& end) {
                                         ends.emplace(job, end);
                                         if (job == "1") {
                                             process = std::stoi(end.result);
                                             isStopped = ::kill(process, SIGSTOP) == 0;
                                             siginfo_t info;
                                             ::waitid(P_PID, static_cast<id_t>(process), &info, WSTOPPED | WNOWAIT);
                                         }
                                     },
                                     [&] {
                                         if (isStopped && next == jobs.end() && ++pauses == 2) {
                                             ::kill(process, SIGKILL);
                                         }
                                     });
    EXPECT_EQ(failure, std::nullopt);
    EXPECT_EQ(ends.find("2")->second.kind, Kind::Done) << ends.find("2")->second.reason;
    EXPECT_NE(ends.find("2")->second.result, std::to_string(process));
}

TEST_F(WorkersTest, tellWhichOfThemHasDoneAJob) {
    run({"1", "2", "3", "4"}, 2, [](const std::string&, std::size_t worker) { return std::to_string(worker); });
    for (const auto& [job, end] : ends) {
        EXPECT_EQ(end.result, std::to_string(end.worker));
        EXPECT_LT(end.worker, 2U);
    }
}

TEST_F(WorkersTest, haveNothingToDoWithoutJobs) {
    run({}, 4, [](const std::string& job, std::size_t) { return job; });
    EXPECT_TRUE(ends.empty());
}

TEST_F(WorkersTest, knowTheMachine) {
    EXPECT_GE(MSPCWorkers::processors(), 1U);
    EXPECT_GT(MSPCWorkers::memoryOfMachine(), 64'000'000U);
}

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)
// Each page that is given back to the system comes back by a fault, which takes longer than what most jobs do with it.
TEST_F(WorkersTest, keepTheMemoryThatTheNextJobTakes) {
    const auto work = [](const std::string& /*job*/, std::size_t /*worker*/) {
        rusage before{};
        ::getrusage(RUSAGE_SELF, &before);
        std::vector<std::string> pieces;
        for (const std::size_t size : {1'000'000U, 300'000U, 60'000U, 60'000U, 1'000'000U}) {
            pieces.emplace_back(size, 'x');
        }
        rusage after{};
        ::getrusage(RUSAGE_SELF, &after);
        return std::to_string(after.ru_minflt - before.ru_minflt);
    };
    run({"first", "second", "third"}, 1, work);
    EXPECT_GT(std::stol(ends.find("first")->second.result), 400) << "2.4 MB in pages of 4 KiB";
    EXPECT_LT(std::stol(ends.find("third")->second.result), 40);
}
#endif
