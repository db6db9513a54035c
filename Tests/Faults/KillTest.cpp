// Runs that are ended from outside at any moment.
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <random>
#include <regex>
#include <set>
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
    ProgramEnd importEndedBy(int signal, bool replacesOldBundle = false) {
        resetOutput();
        if (replacesOldBundle) {
            addOldBundle();
        }
        SpawnedProgram program(importOf("Plan.xml", slowDisk));
        waitSomeTime();
        program.send(signal);
        auto end = program.wait();
        removeTemporaryItems();
        EXPECT_EQ(changeOutsideTheBundle(), "") << end.log;
        return end;
    }

    // What is left at once after a kill has names of its own, which no program takes for a document.
    void removeTemporaryItems() {
        static const std::regex name(R"(\.MSPDIImport-(\d+-\d+|Plan\.kdzx(\.\d+)?)\.tmp)");
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

    // Signals at random moments; judges what is left.
    void askToEnd(bool replacesOldBundle);
    void waitSomeTime() { std::this_thread::sleep_for(Microseconds(_delay(_random))); }
    void overwrite() const {
        folder.addFile("home/.config/org.kadenza.Kadenza2.MSPImportMSPDI.toml", "OverwriteFilterTarget = true\n");
    }
    void addOldBundle() const {
        folder.addFile("out/Plan.kdzx/Actual.xml", "old");
        folder.addFile("out/Plan.kdzx/__TOC.xml", "old");
        folder.addFile("out/Plan.kdzx/sub/old.txt", "old");
    }
    bool isOldBundle() const {
        const FolderContent old{{"Actual.xml", "file of old"},
                                {"__TOC.xml", "file of old"},
                                {"sub", "folder"},
                                {"sub/old.txt", "file of old"}};
        return differenceOf(old, contentOf(bundle)).empty();
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

// Whether any item below a folder, hidden ones included, has a name that begins so.
bool holdsItem(const fs::path& folder, const std::string& nameBegin) {
    std::error_code error;
    for (auto entry = fs::recursive_directory_iterator(folder, error);
         !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (entry->path().filename().native().starts_with(nameBegin)) {
            return true;
        }
    }
    return false;
}

// Whether a document is being written in a bundle that is out of sight.
bool isDocumentWritten(const fs::path& folder) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        if (entry.path().filename().native().starts_with(".MSPDIImport-") && entry.is_directory(error) &&
            holdsItem(entry.path(), ".MSPDIImport-")) {
            return true;
        }
    }
    return false;
}

bool isWholeLines(const std::string& log) {
    return !log.empty() && log.find("MSPDIImporter Runner\n") != std::string::npos && log.ends_with('\n');
}

}  // namespace

TEST_F(KillTest, leavesNoBundleOrACompleteOneWhenKilled) {
    const int kills = countOf("KILLS", 200);
    int killed = 0;
    int withBundle = 0;
    int number = 0;
    for (; killed < kills && number < 3 * kills; ++number) {
        const auto end = importEndedBy(SIGKILL);
        killed += end.signal == SIGKILL ? 1 : 0;
        if (fs::exists(bundle)) {
            EXPECT_EQ(check->complaintAboutComplete(bundle), "") << end.log;
            withBundle += end.signal == SIGKILL ? 1 : 0;
        }
        ASSERT_FALSE(HasFailure()) << "kill " << number;
    }
    EXPECT_EQ(killed, kills) << "of " << number;
    RecordProperty("killed", killed);
    RecordProperty("killed_with_bundle", withBundle);
    RecordProperty("temporary_items", temporaryItems);
}

TEST_F(KillTest, leavesTheOldBundleOrTheNewOneWhenKilledWhileOverwriting) {
    overwrite();
    judgeByPresentState();
    const int kills = countOf("KILLS", 200);
    int killed = 0;
    int old = 0;
    for (int number = 0; killed < kills && number < 3 * kills; ++number) {
        const auto end = importEndedBy(SIGKILL, true);
        killed += end.signal == SIGKILL ? 1 : 0;
        const bool isOld = isOldBundle();
        old += isOld ? 1 : 0;
        if (!isOld) {
            EXPECT_EQ(check->complaintAboutComplete(bundle), "") << end.log;
        }
        ASSERT_FALSE(HasFailure()) << "kill " << number;
    }
    EXPECT_EQ(killed, kills);
    EXPECT_GT(old, kills / 2);
    RecordProperty("killed", killed);
    RecordProperty("old_bundles", old);
}

TEST_F(KillTest, theNextImportTakesTheNameAndClearsUpWhatAKilledOneLeft) {
    const int kills = countOf("KILLS", 200) / 10;
    int leftovers = 0;
    for (int number = 0; number < kills; ++number) {
        resetOutput();
        SpawnedProgram program(importOf("Plan.xml", slowDisk));
        waitSomeTime();
        program.send(SIGKILL);
        static_cast<void>(program.wait());
        leftovers += static_cast<int>(newItems().size());
        const bool isDone = fs::exists(bundle);
        const auto end = runImport();
        EXPECT_EQ(end.status, 0) << end.log;
        EXPECT_EQ(check->complaintAboutComplete(isDone ? out / "Plan-1.kdzx" : bundle), "");
        EXPECT_EQ(newItems().size(), isDone ? 2U : 1U);
        ASSERT_FALSE(HasFailure()) << "kill " << number;
    }
    EXPECT_GT(leftovers, kills / 2);
}

// The one that comes second while the first is at work, or both.
TEST_F(KillTest, theNextImportClearsUpWhatKilledOnesOfSeveralThatOverwriteLeft) {
    overwrite();
    judgeByPresentState();
    const int kills = countOf("KILLS", 200) / 10;
    int leftovers = 0;
    for (int number = 0; number < kills; ++number) {
        resetOutput();
        addOldBundle();
        SpawnedProgram first(importOf("Plan.xml", slowDisk));
        SpawnedProgram second(importOf("Plan.xml", slowDisk));
        waitSomeTime();
        second.send(SIGKILL);
        static_cast<void>(second.wait());
        if (number % 2 == 1) {
            first.send(SIGKILL);
        }
        const auto firstEnd = first.wait();
        EXPECT_TRUE(number % 2 == 1 || firstEnd.status == 0) << firstEnd.log;
        leftovers += newItems().size() > 1 ? 1 : 0;
        const auto end = runImport();
        EXPECT_EQ(end.status, 0) << end.log;
        EXPECT_EQ(check->complaintAboutComplete(bundle), "");
        EXPECT_EQ(newItems(), std::vector<fs::path>{bundle}) << "kill " << number;
        ASSERT_FALSE(HasFailure()) << "kill " << number;
    }
    EXPECT_GT(leftovers, kills / 4);
    RecordProperty("with_leftovers", leftovers);
}

// Where two folders cannot be exchanged in one step, each has a hidden name for a moment.
TEST_F(KillTest, noRunTakesTheOnlyCopyOfADocumentForALeftover) {
    overwrite();
    resetOutput();
    addOldBundle();
    const auto killed = runImport({{"LD_PRELOAD", KZMSP_FAULT_SHIM}, {"KZMSP_FAULT", "kill-at-plain-rename 2 22"}});
    EXPECT_EQ(killed.signal, SIGKILL) << killed.log;
    const auto hiddenDocuments = [this] {
        std::set<std::string> documents;
        for (const auto& item : newItems()) {
            if (item.filename() != "Plan.kdzx" && fs::exists(item / "Actual.xml")) {
                documents.insert(bytesOf(item / "Actual.xml"));
            }
        }
        return documents;
    };
    const auto both = hiddenDocuments();
    EXPECT_EQ(both.size(), 2U);
    EXPECT_TRUE(both.contains("old"));
    EXPECT_EQ(runImport().status, 0);
    EXPECT_EQ(hiddenDocuments(), both);
}

void KillTest::askToEnd(bool replacesOldBundle) {
    int asked = 0;
    const int signals = countOf("SIGNALS", 60);
    for (int number = 0; number < signals; ++number) {
        const int signal = std::array{SIGTERM, SIGINT, SIGHUP}.at(static_cast<std::size_t>(number) % 3);
        const auto end = importEndedBy(signal, replacesOldBundle);
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
        if (end.status != 0 && fs::exists(bundle) && !(replacesOldBundle && isOldBundle())) {
            EXPECT_EQ(check->complaintAboutComplete(bundle), "") << end.log;
        }
        EXPECT_EQ(fs::exists(bundle) || !replacesOldBundle, true);
        EXPECT_EQ(temporaryItems, 0) << end.log;
        ASSERT_FALSE(HasFailure()) << "signal " << number;
    }
    EXPECT_GT(asked, signals / 10);
    RecordProperty("asked", asked);
}

TEST_F(KillTest, endsWithTheLogWrittenAndNothingTemporaryLeftWhenAskedTo) {
    askToEnd(false);
}

TEST_F(KillTest, endsWithTheOldBundleOrTheNewOneWhenAskedToWhileOverwriting) {
    overwrite();
    judgeByPresentState();
    askToEnd(true);
}

TEST_F(KillTest, endsWithinASecondInTheMiddleOfALargePlan) {
    const auto plan = folder / "Large.xml";
    {
        std::ofstream file(plan, std::ios::binary);
        generatePlan({.tasks = countOf("LARGE_PLAN", 50'000)},
                     [&file](std::string_view piece) { file.write(piece.data(), std::ssize(piece)); });
    }
    const fs::path log = folder / "log";
    const std::pair<const char*, std::function<bool()>> moments[] = {
        {"the plan is read", [&] { return holdsItem(out, "__TOC.xml"); }},
        {"tasks are mapped", [&] { return sizeOf(log) > 500'000; }},
        {"a document is written", [&] { return isDocumentWritten(out); }},
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
            EXPECT_TRUE(newItems().empty()) << "nothing stands under the name yet, and nothing hidden is left";
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
