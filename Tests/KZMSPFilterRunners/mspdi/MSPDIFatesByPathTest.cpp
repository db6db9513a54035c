#include "MSPDIFatesByPath.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

using Pairs = std::vector<std::pair<std::string, MSPDIFate>>;

Pairs pairsOf(const MSPDIFatesByPath& fates) {
    Pairs pairs;
    fates.forEach([&pairs](std::string_view path, MSPDIFate fate) { pairs.emplace_back(path, fate); });
    return pairs;
}

void expectKept(const Pairs& pairs) {
    MSPDIFatesByPath fates;
    for (const auto& [path, fate] : pairs) {
        fates.add(path, fate);
    }
    EXPECT_EQ(pairsOf(fates), pairs);
}

}  // namespace

TEST(MSPDIFatesByPathTest, givesWhatWasToldInItsOrder) {
    expectKept({});
    expectKept({{"/Project", MSPDIFate::Default}});
    expectKept({{"/Project/Tasks[1]/Task[9]/UID[1]", MSPDIFate::Shaping},
                {"/Project/Tasks[1]/Task[9]/Name[1]", MSPDIFate::Carried},
                {"/Project/Tasks[1]/Task[10]/Name[1]", MSPDIFate::Lost},
                {"/Project/Tasks[1]/Task[10]", MSPDIFate::Changed},
                {"/Project/Tasks[1]/Task[10]", MSPDIFate::Derived},
                {"", MSPDIFate::Default},
                {"/Project/Title[1]", MSPDIFate::Carried}});
}

// Numbers take a byte for each seven bits, and long paths more than a piece of what is kept.
TEST(MSPDIFatesByPathTest, keepsPathsOfAnyLength) {
    Pairs pairs;
    for (const std::size_t length : {126U, 127U, 128U, 129U, 16383U, 16384U, 300000U, 300001U, 5U}) {
        pairs.emplace_back(std::string(length, 'a') + "b", MSPDIFate::Lost);
        pairs.emplace_back(std::string(length, 'a') + std::string(length, 'c'), MSPDIFate::Carried);
    }
    expectKept(pairs);
}

TEST(MSPDIFatesByPathTest, forgetsAll) {
    MSPDIFatesByPath fates;
    fates.add("/Project/Title[1]", MSPDIFate::Carried);
    fates.clear();
    EXPECT_EQ(pairsOf(fates), Pairs{});
    fates.add("/Project/Title[2]", MSPDIFate::Lost);
    EXPECT_EQ(pairsOf(fates), (Pairs{{"/Project/Title[2]", MSPDIFate::Lost}}));
}
