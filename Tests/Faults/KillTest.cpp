// Runs that are ended from outside at any moment.
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <random>
#include <regex>
#include <thread>
#include <utility>

#include "FaultFixture.h"
#include "PlanGenerator.h"
#include "ProgramRun.h"

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::microseconds;

class KillTest : public FaultFixture {
protected:
    KillTest() {
        resetOutput();
        const auto start = Clock::now();
        EXPECT_EQ(runImport(slowDisk).status, 0);
        // Some signals should come late enough to meet the program's last steps.
        const auto duration = std::chrono::duration_cast<Microseconds>(Clock::now() - start).count() * 11 / 10;
        _delay = std::uniform_int_distribution<std::int64_t>(0, duration);
    }

    // Starts an import, ends it with a signal after a random time and judges what it leaves on the disk.
    ProgramEnd importEndedBy(int signal) {
        resetOutput();
        SpawnedProgram program(importOf("Plan.xml", slowDisk));
        std::this_thread::sleep_for(Microseconds(_delay(_random)));
        program.send(signal);
        auto end = program.wait();
        removeTemporaryItems();
        EXPECT_EQ(changeOutsideTheBundle(), "") << end.log;
        if (fs::exists(bundle)) {
            EXPECT_EQ(check->complaintAboutRemains(bundle), "") << end.log;
        }
        return end;
    }

    // What nobody can clean up after a kill: it has a name of its own, which no program takes for a document.
    void removeTemporaryItems() {
        static const std::regex name(R"(\.MSPDIImport-\d+-\d+\.tmp)");
        std::vector<fs::path> found;
        for (const auto& entry : fs::recursive_directory_iterator(out)) {
            if (std::regex_match(entry.path().filename().string(), name)) {
                found.push_back(entry.path());
            }
        }
        for (const auto& path : found) {
            fs::remove_all(path);
        }
        temporaryItems += static_cast<int>(found.size());
    }

    const std::map<std::string, std::string> slowDisk{{"LD_PRELOAD", KZMSP_FAULT_SHIM}, {"KZMSP_FAULT", "slow 0 0"}};
    int temporaryItems = 0;

private:
    std::mt19937_64 _random{20'121'104};  // the same moments in every run, as far as the machine keeps time
    std::uniform_int_distribution<std::int64_t> _delay;
};

std::uintmax_t sizeOf(const fs::path& file) {
    std::error_code error;
    const auto size = fs::file_size(file, error);
    return error ? 0 : size;
}

bool holdsTemporaryFile(const fs::path& folder) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        if (entry.path().filename().native().starts_with(".MSPDIImport-")) {
            return true;
        }
    }
    return false;
}

bool isWholeLines(const std::string& log) {
    return !log.empty() && log.find("MSPDIImporter Runner\n") != std::string::npos && log.ends_with('\n');
}

}  // namespace

TEST_F(KillTest, leavesTheTemplatesDocumentsOrCompleteOnesWhenKilled) {
    const int kills = countOf("KILLS", 200);
    int killed = 0;
    int withBundle = 0;
    int number = 0;
    for (; killed < kills && number < 3 * kills; ++number) {
        const auto end = importEndedBy(SIGKILL);
        killed += end.signal == SIGKILL ? 1 : 0;
        withBundle += end.signal == SIGKILL && fs::exists(bundle) ? 1 : 0;
        ASSERT_FALSE(HasFailure()) << "kill " << number;
    }
    EXPECT_EQ(killed, kills) << "of " << number;
    EXPECT_GT(withBundle, kills / 10);
    RecordProperty("killed", killed);
    RecordProperty("killed_with_bundle", withBundle);
    RecordProperty("temporary_items", temporaryItems);
}

TEST_F(KillTest, endsWithTheLogWrittenAndNothingTemporaryLeftWhenAskedTo) {
    int asked = 0;
    const int signals = countOf("SIGNALS", 60);
    for (int number = 0; number < signals; ++number) {
        const int signal = std::array{SIGTERM, SIGINT, SIGHUP}.at(static_cast<std::size_t>(number) % 3);
        const auto end = importEndedBy(signal);
        if (end.signal != 0) {
            EXPECT_EQ(end.log, "") << "only before its first line may the program end like any other";
        } else if (end.status != 0) {
            EXPECT_EQ(end.status, 128 + signal);
            // Empty where the signal came before the first line.
            EXPECT_TRUE(end.log.empty() || isWholeLines(end.log)) << end.log;
            asked += end.log.empty() ? 0 : 1;
        } else {
            EXPECT_EQ(check->complaintAboutComplete(bundle), "");
        }
        EXPECT_EQ(temporaryItems, 0) << end.log;
        ASSERT_FALSE(HasFailure()) << "signal " << number;
    }
    EXPECT_GT(asked, signals / 10);
    RecordProperty("asked", asked);
}

TEST_F(KillTest, endsWithinASecondInTheMiddleOfALargePlan) {
    const auto plan = folder / "Large.xml";
    {
        std::ofstream file(plan, std::ios::binary);
        generatePlan({.tasks = countOf("LARGE_PLAN", 50'000)},
                     [&file](std::string_view piece) { file.write(piece.data(), std::ssize(piece)); });
    }
    const fs::path log = folder / "log";
    const auto largeBundle = out / "Large.kdzx";
    const std::pair<const char*, std::function<bool()>> moments[] = {
        {"the plan is read", [&] { return fs::exists(largeBundle / "__TOC.xml"); }},
        {"tasks are mapped", [&] { return sizeOf(log) > 500'000; }},
        {"a document is written", [&] { return holdsTemporaryFile(largeBundle); }},
    };
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        for (const auto& [name, isReached] : moments) {
            SCOPED_TRACE(name);
            resetOutput();
            fs::remove(log);
            auto options = importOf("Large.xml");
            options.logFile = log;
            SpawnedProgram program(options);
            while (!isReached() && !program.hasEnded()) {
                std::this_thread::sleep_for(Microseconds(200));
            }
            const auto sent = Clock::now();
            program.send(signal);
            const auto end = program.wait();
            EXPECT_LT(Clock::now() - sent, std::chrono::seconds(1));
            EXPECT_EQ(end.status, 128 + signal) << "0 when the signal came too late";
            EXPECT_TRUE(isWholeLines(bytesOf(log)));
            EXPECT_FALSE(holdsTemporaryFile(largeBundle));
        }
    }
}

TEST_F(KillTest, importsWithStandardErrorClosed) {
    resetOutput();
    auto options = importOf("Plan.xml");
    options.prepare = [] { close(STDERR_FILENO); };
    EXPECT_EQ(SpawnedProgram(options).wait().status, 0);
    EXPECT_EQ(check->complaintAboutComplete(bundle), "");
    EXPECT_EQ(changeOutsideTheBundle(), "");
}
