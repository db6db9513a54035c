#include "AttackBounds.h"

// A text of a gigabyte; the plan and the bundle take 2 GB of disk. What is left out must still be seen whole in a
// window that doubles; what is kept is there once as read, once as mapped and once for each copy in between.

namespace {

constexpr int Megabytes = 1024;

void writeMegabytes(std::ostream& file, int count = Megabytes, char character = 'x') {
    const std::string megabyte(std::size_t{1} << 20U, character);
    for (int number = 0; number < count; ++number) {
        file << megabyte;
    }
}

constexpr const char* unreadable = "MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data.";

}  // namespace

TEST(HugeAttacks, aTextOfAGigabyteThatIsReadOver) {
    const PlanImport import("huge-other", planEndingWith([](std::ostream& file) {
                                file << "<Other>";
                                writeMegabytes(file);
                                file << "</Other>";
                            }));
    EXPECT_EQ(import.status(), 0);
    expectWithin(import, 60, 2500);
}

TEST(HugeAttacks, aNameOfAGigabyte) {
    const PlanImport import("huge-name", planEndingWith([](std::ostream& file) {
                                file << "<Tasks><Task><UID>1</UID><OutlineLevel>1</OutlineLevel><Name>";
                                writeMegabytes(file);
                                file << "</Name></Task></Tasks>";
                            }));
    EXPECT_EQ(import.status(), 0);
    expectWithin(import, 120, 8000);
}

// The library that mends takes no more than 2 GB.
TEST(HugeAttacks, aBrokenPlanBeyondTwoGigabytesIsAReason) {
    const PlanImport import("huge-broken", planEndingWith([](std::ostream& file) {
                                file << "<Author>a & b</Author><Other>";
                                writeMegabytes(file, 2 * Megabytes + 50);
                                file << "</Other>";
                            }));
    EXPECT_EQ(import.status(), 1);
    EXPECT_TRUE(import.logHolds(unreadable)) << import.log();
    expectWithin(import, 60, 7000);
}

// Each of these characters is four when it is written anew.
TEST(HugeAttacks, aBrokenPlanThatIsBeyondTwoGigabytesWhenMendedIsAReason) {
    const PlanImport import("huge-mended", planEndingWith([](std::ostream& file) {
                                file << "<Author>a & b</Author><Other>";
                                writeMegabytes(file, 600, '>');
                                file << "</Other>";
                            }));
    EXPECT_EQ(import.status(), 1);
    EXPECT_TRUE(import.logHolds(unreadable)) << import.log();
    expectWithin(import, 60, 9000);
}

TEST(HugeAttacks, aBrokenPlanOfAGigabyteIsMended) {
    const PlanImport import("huge-mendable", planEndingWith([](std::ostream& file) {
                                file << "<Title>a & b</Title><Other>";
                                writeMegabytes(file);
                                file << "</Other>";
                            }));
    EXPECT_TRUE(import.logHolds("WARNING: Repaired malformed XML")) << import.log();
    EXPECT_EQ(import.status(), 0) << import.log();
    expectWithin(import, 60, 9000);
}
