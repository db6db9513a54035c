#include "AttackBounds.h"

// A text of a gigabyte; the plan and the bundle take 2 GB of disk. What is left out must still be seen whole in a window
// that doubles; what is kept is there once as read, once as mapped and once for each copy in between.

namespace {

constexpr int Megabytes = 1024;

void writeMegabytes(std::ostream& file) {
    const std::string megabyte(std::size_t{1} << 20U, 'x');
    repeat(file, megabyte, Megabytes);
}

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
