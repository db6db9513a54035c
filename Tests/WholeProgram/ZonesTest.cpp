#include <gtest/gtest.h>
#include <sys/stat.h>

#include "PlanImport.h"
#include "ScopedTempFolder.h"

// The zone that TZ names, as the program understands it: the plan starts on 2012-01-09 at 08:00:00.

namespace {

struct Start {
    std::string date;
    bool isWarned = false;

    friend bool operator==(const Start&, const Start&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Start& start) {
        return out << start.date << (start.isWarned ? " with a warning" : "");
    }
};

Start startIn(const PlanImport::Environment& environment) {
    const PlanImport import("zone", planOf({}), environment);
    EXPECT_EQ(import.status(), 0) << import.log();
    const auto dates = import.texts("start-date");
    return {dates.empty() ? "none" : dates.front(), import.logHolds("UTC is used instead.")};
}

Start startIn(const std::string& tz) {
    return startIn(PlanImport::Environment{{"TZ", tz}});
}

}  // namespace

TEST(Zones, areTakenFromTheMachinesDatabase) {
    // None of them changes its clocks any more, so it does not matter when the test runs.
    EXPECT_EQ(startIn("Asia/Almaty"), Start{"2012-01-09T08:00:00+05:00"});
    EXPECT_EQ(startIn("Mexico/General"), Start{"2012-01-09T08:00:00-06:00"});
    EXPECT_EQ(startIn("America/Coyhaique"), Start{"2012-01-09T08:00:00-02:00"});  // now -03:00, and summer there then
}

TEST(Zones, areUnderstoodInAllTheFormsThatTheCLibraryKnows) {
    for (const char* tz : {"Asia/Kolkata", ":Asia/Kolkata", "posix/Asia/Kolkata", "right/Asia/Kolkata",
                           "/usr/share/zoneinfo/Asia/Kolkata", ":/usr/share/zoneinfo/Asia/Kolkata",
                           "Europe/../Asia/Kolkata", "IST-5:30", "<+0530>-5:30"}) {
        EXPECT_EQ(startIn(tz), Start{"2012-01-09T08:00:00+05:30"}) << tz;
    }
}

TEST(Zones, withoutNameAreUTC) {
    EXPECT_EQ(startIn(""), Start{"2012-01-09T08:00:00Z"});
    EXPECT_EQ(startIn(":"), Start{"2012-01-09T08:00:00Z"});
    EXPECT_EQ(startIn("UTC"), Start{"2012-01-09T08:00:00Z"});
}

TEST(Zones, areReadFromTheDatabaseThatTZDIRNames) {
    const ScopedTempFolder folder;
    std::filesystem::copy_file("/usr/share/zoneinfo/Asia/Kolkata", folder / "Moon");
    EXPECT_EQ(startIn({{"TZ", "Moon"}, {"TZDIR", folder.path()}}), Start{"2012-01-09T08:00:00+05:30"});
    EXPECT_EQ(startIn({{"TZ", "Asia/Kolkata"}, {"TZDIR", folder.path()}}), (Start{"2012-01-09T08:00:00Z", true}));
    EXPECT_EQ(startIn({{"TZ", "UTC"}, {"TZDIR", folder.path()}}), Start{"2012-01-09T08:00:00Z"});
}

// A program that left these to the C library would wait for the pipe for ever: the log's time stamps ask for the zone.
TEST(Zones, thatCannotBeHadAreUTCWithAWarning) {
    const ScopedTempFolder folder;
    const auto pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const auto damaged = folder.addFile("damaged", "TZif2" + std::string(15, '\0') + std::string(24, '\x7F'));
    for (const auto& tz : {pipe, damaged, folder.path(), std::string("../../../dev/zero"), std::string("Mars/Olympus"),
                           std::string("CET-1CEST,garbage"), std::string(100'000, 'A')}) {
        EXPECT_EQ(startIn(tz), (Start{"2012-01-09T08:00:00Z", true})) << tz.substr(0, 100);
    }
}
