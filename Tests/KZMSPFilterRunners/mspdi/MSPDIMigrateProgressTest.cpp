#include "MSPDIMigrateProgress.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "MSPDIRun.h"
#include "ServicesInMemory.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

class MigrateProgressTest : public testing::Test {
protected:
    // After so long, how far it is by then.
    void tell(MSPDIMigrateProgress& progress, milliseconds time, std::size_t done, std::size_t failed = 0) {
        now = std::chrono::steady_clock::time_point(time);
        progress.tell({1'000, done, failed});
    }
    [[nodiscard]] MSPDIMigrateProgress::Clock clock() const {
        return [this] { return now; };
    }
    void showOnTerminal() {
        run.showStatus = [this](std::string_view text) { shown.emplace_back(text); };
    }

    ServicesInMemory world;
    std::ostringstream out;
    std::ostringstream err;
    MSPDIRun run{world.services, out, err};
    std::vector<std::string> shown;
    std::chrono::steady_clock::time_point now;
};

}  // namespace

TEST_F(MigrateProgressTest, isInOneLineDoneFailedRateAndTimeLeft) {
    const auto line = [](std::size_t done, milliseconds time) {
        return MSPDIMigrateProgress::line({10'000, done, 3}, time);
    };
    EXPECT_EQ(line(1'200, seconds(5)), "1200 of 10000 plans done, 3 failed, 240 a second, 37 s left");
    EXPECT_EQ(line(50, seconds(50)), "50 of 10000 plans done, 3 failed, 60 a minute, 2 h 45 min left");
    EXPECT_EQ(line(500, seconds(50)), "500 of 10000 plans done, 3 failed, 10 a second, 15 min left");
    EXPECT_EQ(line(10'000, seconds(50)), "10000 of 10000 plans done, 3 failed, 200 a second");
    EXPECT_EQ(line(0, seconds(50)), "0 of 10000 plans done, 3 failed") << "nobody knows yet";
    EXPECT_EQ(line(9'999, milliseconds(0)), "9999 of 10000 plans done, 3 failed");
}

TEST_F(MigrateProgressTest, isALineAMinuteWithoutATerminal) {
    MSPDIMigrateProgress progress(run, clock());
    tell(progress, milliseconds(59'999), 100);
    EXPECT_EQ(err.str(), "");
    tell(progress, seconds(60), 120, 1);
    tell(progress, seconds(61), 121, 1);
    tell(progress, seconds(119), 230, 1);
    EXPECT_EQ(err.str(), "mspdi: 120 of 1000 plans done, 1 failed, 120 a minute, 7 min left\n");
    err.str("");
    tell(progress, seconds(120), 240, 1);
    EXPECT_EQ(err.str(), "mspdi: 240 of 1000 plans done, 1 failed, 120 a minute, 6 min left\n");
    progress.finish();
    EXPECT_EQ(out.str(), "") << "results only";
}

TEST_F(MigrateProgressTest, isWrittenAnewSeveralTimesASecondOnATerminal) {
    showOnTerminal();
    MSPDIMigrateProgress progress(run, clock());
    tell(progress, milliseconds(400), 4);
    EXPECT_TRUE(shown.empty()) << "a short migration needs none";
    tell(progress, milliseconds(500), 5);
    tell(progress, milliseconds(600), 6);
    tell(progress, milliseconds(700), 7);
    progress.finish();
    EXPECT_EQ(shown, (std::vector<std::string>{"5 of 1000 plans done, 0 failed, 10 a second, 100 s left",
                                               "7 of 1000 plans done, 0 failed, 10 a second, 99 s left", ""}));
    EXPECT_EQ(err.str(), "");
}

TEST_F(MigrateProgressTest, isNoneWhereItIsToBeQuiet) {
    run.isQuiet = true;
    showOnTerminal();
    MSPDIMigrateProgress progress(run, clock());
    tell(progress, seconds(600), 5);
    EXPECT_TRUE(shown.empty());
    EXPECT_EQ(err.str(), "");
}
