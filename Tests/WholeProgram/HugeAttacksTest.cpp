#include "AttackBounds.h"

// A text of a gigabyte; the plan and the bundle take 2 GB of disk.

namespace {

constexpr int Megabytes = 1024;

void writeMegabytes(std::ostream& file) {
    const std::string megabyte(std::size_t{1} << 20U, 'x');
    repeat(file, megabyte, Megabytes);
}

}  // namespace

TEST(HugeAttacks, aTextOfAGigabyteThatIsReadOver) {
    const PlanImport import("huge-comment", planEndingWith([](std::ostream& file) {
                                file << "<Other>";
                                writeMegabytes(file);
                                file << "</Other>";
                            }));
    EXPECT_EQ(import.status(), 0);
    expectWithin(import, 60, 1500);
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
