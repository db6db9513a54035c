#include "MSPDIFatesByPath.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "MSPDIElementTable.h"

namespace {

using Pairs = std::vector<std::pair<std::string, MSPDIFate>>;

Pairs pairsOf(const MSPDIFatesByPath& fates) {
    Pairs pairs;
    fates.forEach([&pairs](const std::string& path, MSPDIFate fate) { pairs.emplace_back(path, fate); });
    return pairs;
}

MSPDIPathStep known(std::string_view path, std::size_t number = 1) {
    return {MSPDIProjectElements().at(path), {}, number};
}

MSPDIPathStep unknown(std::string_view name, std::size_t number = 1) {
    return {nullptr, name, number};
}

}  // namespace

TEST(MSPDIFatesByPathTest, givesWhatWasToldInItsOrder) {
    MSPDIFatesByPath fates;
    EXPECT_EQ(pairsOf(fates), Pairs{});
    fates.enter(known(""));
    fates.enter(known("Tasks"));
    fates.enter(known("Tasks/Task", 9));
    fates.add(known("Tasks/Task/UID"), MSPDIFate::Shaping);
    fates.add(known("Tasks/Task/Name", 2), MSPDIFate::Carried);
    fates.leave();
    fates.add(known("Tasks/Task", 10), MSPDIFate::Changed);
    fates.enter(known("Tasks/Task", 300));
    fates.enter(unknown("Zebra"));
    fates.enter(unknown("Lion", 127));
    fates.add(unknown("Tail", 128), MSPDIFate::Lost);
    fates.leave();
    fates.add(known("Tasks/Task/Name"), MSPDIFate::Derived);
    fates.leave();
    fates.leave();
    fates.leave();
    fates.add(known("Title"), MSPDIFate::Default);
    EXPECT_EQ(pairsOf(fates), (Pairs{{"/Project/Tasks[1]/Task[9]/UID[1]", MSPDIFate::Shaping},
                                     {"/Project/Tasks[1]/Task[9]/Name[2]", MSPDIFate::Carried},
                                     {"/Project/Tasks[1]/Task[10]", MSPDIFate::Changed},
                                     {"/Project/Tasks[1]/Task[300]/Zebra[1]/Lion[127]/Tail[128]", MSPDIFate::Lost},
                                     {"/Project/Tasks[1]/Task[300]/Zebra[1]/Name[1]", MSPDIFate::Derived},
                                     {"/Project/Title[1]", MSPDIFate::Default}}));
}

TEST(MSPDIFatesByPathTest, givesAProjectThatIsALeaf) {
    MSPDIFatesByPath fates;
    fates.add(known(""), MSPDIFate::Default);
    EXPECT_EQ(pairsOf(fates), (Pairs{{"/Project", MSPDIFate::Default}}));
}

// Numbers take a byte for each seven bits, and long names more than a piece of what is kept.
TEST(MSPDIFatesByPathTest, keepsNamesOfAnyLength) {
    MSPDIFatesByPath fates;
    Pairs expected;
    fates.enter(known(""));
    for (const std::size_t length : {1U, 126U, 127U, 128U, 129U, 16383U, 16384U, 300000U, 300001U, 5U}) {
        const std::string name(length, 'a');
        fates.add(unknown(name, length), MSPDIFate::Lost);
        expected.emplace_back("/Project/" + name + "[" + std::to_string(length) + "]", MSPDIFate::Lost);
    }
    EXPECT_EQ(pairsOf(fates), expected);
}

// What is kept of them is in several pieces; an element may be entered in one and left in another.
TEST(MSPDIFatesByPathTest, keepsAnyNumber) {
    MSPDIFatesByPath fates;
    Pairs expected;
    fates.enter(known(""));
    fates.enter(known("Tasks"));
    for (std::size_t number = 1; number <= 100'000; ++number) {
        fates.enter(known("Tasks/Task", number));
        fates.add(known("Tasks/Task/Name"), MSPDIFate::Carried);
        fates.leave();
        expected.emplace_back("/Project/Tasks[1]/Task[" + std::to_string(number) + "]/Name[1]", MSPDIFate::Carried);
    }
    EXPECT_EQ(pairsOf(fates), expected);
}

// Two names that are no UTF-8 do not become one.
TEST(MSPDIFatesByPathTest, escapesBytesThatAreNoUTF8) {
    MSPDIFatesByPath fates;
    fates.add(unknown("a\xFF"), MSPDIFate::Lost);
    fates.add(unknown("a\xFE"), MSPDIFate::Lost);
    fates.add(unknown("\xC3\xA4"), MSPDIFate::Lost);
    EXPECT_EQ(
        pairsOf(fates),
        (Pairs{{"/a\\xff[1]", MSPDIFate::Lost}, {"/a\\xfe[1]", MSPDIFate::Lost}, {"/\xC3\xA4[1]", MSPDIFate::Lost}}));
}

TEST(MSPDIFatesByPathTest, forgetsAll) {
    MSPDIFatesByPath fates;
    fates.add(known("Title"), MSPDIFate::Carried);
    fates.clear();
    EXPECT_EQ(pairsOf(fates), Pairs{});
    fates.add(known("Title", 2), MSPDIFate::Lost);
    EXPECT_EQ(pairsOf(fates), (Pairs{{"/Title[2]", MSPDIFate::Lost}}));
}
