#include "MSPCZoneChanges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "ScopedTempFolder.h"
#include "UTCInstant.h"

// When the clocks of a zone may change.

namespace {

namespace fs = std::filesystem;
using Seconds = std::vector<std::int64_t>;

const std::string database = "/usr/share/zoneinfo";

std::int64_t second(int year, unsigned month, unsigned day, int hour = 0, int minute = 0) {
    return secondsOf(utcInstant(year, month, day, hour, minute));
}

Seconds changesOf(const std::string& setting, int firstYear, int yearBehind) {
    const auto changes = MSPCZoneChangesBetween(setting, second(firstYear, 1, 1), second(yearBehind, 1, 1));
    EXPECT_TRUE(changes) << setting;
    return changes.value_or(Seconds());
}

// The setting for a zone in a file.
std::string inFile(const std::string& path) {
    return std::string(":").append(path);
}

bool areUnderstood(const std::string& setting) {
    return MSPCZoneChangesBetween(setting, 0, second(2030, 1, 1)).has_value();
}

std::string bytesOfZone(const std::string& name) {
    std::ifstream file(database + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

TEST(MSPCZoneChanges, ofARule_areTheBeginningAndBothChangesOfEachYear) {
    // The last Sundays of March 2100 and 2101 are 28 and 27 March, those of October 31 and 30 October.
    EXPECT_EQ(changesOf("CET-1CEST,M3.5.0,M10.5.0/3", 2100, 2102),
              (Seconds{second(2100, 1, 1), second(2100, 3, 28, 1), second(2100, 10, 31, 1), second(2101, 1, 1),
                       second(2101, 3, 27, 1), second(2101, 10, 30, 1)}));
    // February 29 counts for day 60, and not for J60; west of Greenwich clocks change later.
    EXPECT_EQ(changesOf("AAA3BBB1,59/0,J60/5:30", 2104, 2105),
              (Seconds{second(2104, 1, 1), second(2104, 2, 29, 3), second(2104, 3, 1, 6, 30)}));
    // Beyond its year a change counts at the year's end.
    EXPECT_EQ(changesOf("AAA9BBB,J1/0,J365/25", 2026, 2027), (Seconds{second(2026, 1, 1), second(2026, 1, 1, 9)}));
    EXPECT_EQ(changesOf("IST-5:30", 2026, 2027), Seconds());
}

TEST(MSPCZoneChanges, ofAFile_areThoseThatItListsAndThoseOfItsRule) {
    const auto changes = changesOf(inFile(database + "/Europe/Berlin"), 2026, 2027);
    EXPECT_EQ(changes, (Seconds{second(2026, 1, 1), second(2026, 3, 29, 1), second(2026, 10, 25, 1)}));
    EXPECT_EQ(changesOf(inFile(database + "/Europe/Berlin"), 2400, 2401),
              (Seconds{second(2400, 1, 1), second(2400, 3, 26, 1), second(2400, 10, 29, 1)}));
    const auto ofTheWar = changesOf(inFile(database + "/Europe/Berlin"), 1945, 1946);
    EXPECT_TRUE(std::ranges::count(ofTheWar, second(1945, 5, 24)) == 1) << "double summer time began at 02:00";
}

// Otherwise the C library would be asked for every third day.
TEST(MSPCZoneChanges, ofEveryZoneOfTheDatabase_areUnderstoodAndFew) {
    int count = 0;
    for (const auto& entry :
         fs::recursive_directory_iterator(database, fs::directory_options::follow_directory_symlink)) {
        const auto name = entry.path().lexically_relative(database).string();
        if (entry.is_regular_file() && bytesOfZone(name).starts_with("TZif")) {
            ++count;
            EXPECT_LE(changesOf(inFile(entry.path().string()), 2100, 2130).size(), 90U) << name;
        }
    }
    EXPECT_GT(count, 400);
}

TEST(MSPCZoneChanges, ofAFileOfTheFirstVersion_areThoseThatItLists) {
    const ScopedTempFolder folder;
    // One change at second 1000 to the second of two types; seconds have four bytes.
    std::string bytes = "TZif" + std::string(16, '\0');
    for (const char number : std::string({0, 0, 0, 1, 2, 4})) {
        bytes += std::string(3, '\0') + number;
    }
    bytes += std::string({0, 0, 3, static_cast<char>(0xE8), 1});
    bytes += std::string(12, '\0') + std::string("AAA", 4);
    const auto file = folder.addFile("zone", bytes);
    EXPECT_EQ(MSPCZoneChangesBetween(inFile(file), 0, 2000), Seconds{1000});
    EXPECT_EQ(MSPCZoneChangesBetween(inFile(file), 1001, 2000), Seconds());
}

TEST(MSPCZoneChanges, ofWhatIsNoZone_areNone) {
    const ScopedTempFolder folder;
    const auto whole = bytesOfZone("Europe/Berlin");
    EXPECT_TRUE(areUnderstood(inFile(folder.addFile("whole", whole))));
    EXPECT_FALSE(areUnderstood(inFile(folder.addFile("rule", whole + "CET-1CEST,M3.5.0\n"))));
    EXPECT_FALSE(
        areUnderstood(inFile(folder.addFile("numbers", "TZif2" + std::string(15, '\0') + std::string(24, '\x7F')))));
    EXPECT_FALSE(areUnderstood(inFile(folder.addFile("empty"))));
    EXPECT_FALSE(areUnderstood(inFile(folder.addFile("other", std::string(1000, 'T')))));
    EXPECT_FALSE(areUnderstood(inFile(folder / "none")));
    for (std::size_t size = 0; size < whole.size(); size += 7) {
        EXPECT_FALSE(areUnderstood(inFile(folder.addFile("cut", whole.substr(0, size))))) << size;
    }
}

TEST(MSPCZoneChanges, ofWhatIsNoRule_areNone) {
    for (const std::string rule : {"",
                                   "5",
                                   "CET",
                                   "CET-1CEST",
                                   "CET-1CEST,M3.5.0",
                                   "CET-1CEST,M3.5.0,M10.5.0/3x",
                                   "CET-1CEST,M13.5.0,M10.5.0",
                                   "CET-1CEST,M0.5.0,M10.5.0",
                                   "CET-1CEST,M3.6.0,M10.5.0",
                                   "CET-1CEST,M3.0.0,M10.5.0",
                                   "CET-1CEST,M3.5.7,M10.5.0",
                                   "CET-25CEST,M3.5.0,M10.5.0",
                                   "CET-1CEST,J0,J300",
                                   "CET-1CEST,J1,366",
                                   "CET-1:60CEST,M3.5.0,M10.5.0",
                                   "<CET-1",
                                   "<>-1",
                                   "CET-1CEST,M3.5,M10.5.0",
                                   "CET-1CEST,,",
                                   "CET-1CEST,M3.5.0/,M10.5.0",
                                   "CET--1"}) {
        EXPECT_EQ(rule.empty() || !areUnderstood(rule), true) << rule;
    }
}
