#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <sstream>

#include "AccountOfPlan.h"
#include "AccountsOfPlan.h"
#include "ChangedPlan.h"
#include "CorpusPlans.h"
#include "KindPlans.h"
#include "MangledPlan.h"
#include "OtherValue.h"

// What is said of each leaf is true: what is called lost, default or derived can be taken out of the plan and the
// document stays the same; what is called carried gives another document with another value. Plans of many programs are
// kept beside the checkout; without them these tests are skipped.

namespace fs = std::filesystem;

namespace {

// KZMSP_FATES is another seed, and how many leaves of each plan: "7 500".
struct Draw {
    unsigned seed = 20261121;
    std::size_t leavesOfEachPlan = 60;
};

Draw drawWanted() {
    Draw draw;
    if (const char* wanted = std::getenv("KZMSP_FATES")) {
        std::istringstream(wanted) >> draw.seed >> draw.leavesOfEachPlan;
    }
    return draw;
}

bool isRemovable(MSPDIFate fate) {
    return fate == MSPDIFate::Default || fate == MSPDIFate::Derived || fate == MSPDIFate::Lost;
}

// Which of these leaves change the document when they are taken out, found by halves; at most a few.
void findCulprits(const ChangedPlan& plan, const std::vector<std::string>& paths, std::vector<std::string>& culprits) {
    if (culprits.size() >= 5 || paths.empty() || plan.isSameWithout(paths)) {
        return;
    }
    if (paths.size() == 1) {
        culprits.push_back(paths.front() + " = " + plan.textAt(paths.front()));
        return;
    }
    const auto middle = paths.begin() + static_cast<std::ptrdiff_t>(paths.size() / 2);
    findCulprits(plan, {paths.begin(), middle}, culprits);
    findCulprits(plan, {middle, paths.end()}, culprits);
}

// Every leaf that may be removed at once, and some of them and of those that are carried one by one.
void expectTrueFates(const ChangedPlan& plan, std::size_t count, unsigned seed) {
    const auto& leaves = plan.leaves();
    ASSERT_EQ(plan.fates().size(), leaves.size());
    std::vector<std::string> removable;
    std::vector<std::string> carried;
    for (const auto& [path, fate] : plan.fates()) {
        EXPECT_TRUE(leaves.contains(path)) << path;
        if (isRemovable(fate)) {
            removable.push_back(path);
        } else if (fate == MSPDIFate::Carried) {
            carried.push_back(path);
        }
    }
    if (!plan.isImported()) {
        return;
    }
    std::vector<std::string> culprits;
    findCulprits(plan, removable, culprits);
    for (const auto& culprit : culprits) {
        ADD_FAILURE() << "another document without " << culprit;
    }
    std::mt19937 random(seed);
    std::shuffle(removable.begin(), removable.end(), random);
    std::shuffle(carried.begin(), carried.end(), random);
    carried.resize(std::min(carried.size(), count - count / 4));
    removable.resize(std::min(removable.size(), count - carried.size()));
    for (const auto& path : removable) {
        EXPECT_TRUE(plan.isSameWithout({path})) << path << " = " << plan.textAt(path);
    }
    for (const auto& path : carried) {
        const auto value = plan.textAt(path);
        for (const auto& other : otherValues(plan, path, value)) {
            EXPECT_FALSE(plan.isSameWith(path, other)) << path << ": " << value << " -> " << other;
        }
    }
}

class Fates : public testing::TestWithParam<fs::path> {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Fates);

std::string nameOfTest(std::string name) {
    std::replace_if(
        name.begin(), name.end(), [](unsigned char character) { return std::isalnum(character) == 0; }, '_');
    return name;
}

}  // namespace

TEST(FatesFolder, isThere) {
    if (corpusPlans(KZMSP_SOURCE).empty()) {
        GTEST_SKIP() << "no plans in " << corpusFolder(KZMSP_SOURCE) << "; KZMSP_CORPUS names another folder";
    }
}

// Wherever a plan holds an element that nobody knows, it is told.
TEST_P(Fates, areToldOfAnUnknownElementAnywhere) {
    constexpr unsigned timesInEachPlan = 8;
    const ChangedPlan plan(corpusBytes(GetParam()));
    const auto seed = drawWanted().seed;
    for (unsigned number = 0; number < timesInEachPlan; ++number) {
        const auto [bytes, path] = plan.withUnknownElement(seed + number);
        ServicesInMemory world;
        world.machine.addFile("/plans/Plan.xml", bytes);
        MSPDIAccountOptions options;
        options.mostPlaces = std::numeric_limits<std::size_t>::max();
        const auto account = MSPDIAccountOfPlan("/plans/Plan.xml", world.services, options);
        world.log.ignoreLines();
        const auto loss = std::find_if(account.losses.begin(), account.losses.end(),
                                       [](const auto& one) { return one.kind == "unknown-element"; });
        ASSERT_NE(loss, account.losses.end()) << path;
        EXPECT_TRUE(std::any_of(loss->where.begin(), loss->where.end(), [&at = path](const auto& place) {
            return place.path == at;
        })) << path;
    }
}

TEST_P(Fates, areTheSameInPieces) {
    expectOneAccount(corpusBytes(GetParam()));
}

TEST_P(Fates, areTrue) {
    const auto draw = drawWanted();
    expectTrueFates(ChangedPlan(corpusBytes(GetParam())), draw.leavesOfEachPlan, draw.seed);
}

INSTANTIATE_TEST_SUITE_P(Plans, Fates, testing::ValuesIn(corpusPlans(KZMSP_SOURCE)),
                         [](const auto& plan) { return nameOfTest(plan.param.filename().string()); });

// Small plans that hold what those of programs do not, with all their leaves.
class KindFates : public testing::TestWithParam<KindCase> {};

TEST_P(KindFates, areTrue) {
    constexpr auto all = std::numeric_limits<std::size_t>::max();
    for (const auto& content : {GetParam().lossy, GetParam().other}) {
        const auto plan = planWith(content, GetParam().settings);
        expectTrueFates(ChangedPlan(plan), all, drawWanted().seed);
        expectOneAccount(plan);
    }
}

INSTANTIATE_TEST_SUITE_P(Plans, KindFates, testing::ValuesIn(kindCases()),
                         [](const auto& plan) { return nameOfTest(plan.param.kind); });

// Plans that nobody has saved like that: leaves repeated, emptied, taken out, exchanged, and put where they are not
// expected. KZMSP_MANGLED says how many of each plan; those kept beside the checkout come in only then.
class MangledFates : public testing::TestWithParam<fs::path> {};

namespace {

std::vector<fs::path> plansToMangle() {
    std::vector<fs::path> plans;
    for (const auto& entry : fs::directory_iterator(fs::path(KZMSP_SOURCE) / "examples")) {
        plans.push_back(entry.path());
    }
    if (std::getenv("KZMSP_MANGLED") != nullptr) {
        for (const auto& plan : corpusPlans(KZMSP_SOURCE)) {
            plans.push_back(plan);
        }
    }
    std::sort(plans.begin(), plans.end());
    return plans;
}

}  // namespace

TEST_P(MangledFates, areTrue) {
    const auto* wanted = std::getenv("KZMSP_MANGLED");
    const unsigned count = wanted != nullptr ? static_cast<unsigned>(std::stoul(wanted)) : 5;
    const auto bytes = corpusBytes(GetParam());
    for (unsigned number = 1; number <= count; ++number) {
        SCOPED_TRACE("mangled with " + std::to_string(number));
        const auto mangled = mangledPlan(bytes, number);
        expectTrueFates(ChangedPlan(mangled), 16, number);
        expectOneAccount(mangled);
        if (HasFailure()) {
            std::ofstream(testing::TempDir() + "mangled.xml") << mangled;
            break;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Plans, MangledFates, testing::ValuesIn(plansToMangle()),
                         [](const auto& plan) { return nameOfTest(plan.param.filename().string()); });
