// What mending does to the plans that are kept beside the checkout. Skipped without them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "CorpusPlans.h"
#include "MSPDIAccountOfPlan.h"
#include "MSPDIMend.h"
#include "ServicesInMemory.h"

namespace {

class MendPlansTest : public testing::Test, protected ServicesInMemory {
protected:
    void SetUp() override {
        plans = corpusPlans(KZMSP_SOURCE);
        if (plans.empty()) {
            GTEST_SKIP() << "the plans are not beside the checkout";
        }
    }
    MSPDIMended mend(const std::string& bytes) const { return MSPDIMendPlan("Plan.xml", bytes, services); }
    MSPDIMended mendAll(const std::string& bytes) const {
        return MSPDIMendPlan("Plan.xml", bytes, services, {.only = {}, .isAll = true});
    }
    // What is lost or changed of a plan. Of one that is refused the ends of split tasks do not count: which tasks are
    // split cannot be told of it.
    std::size_t lossesOf(const std::string& bytes, bool hasSplitEnds = true) {
        machine.addFile("/Plan.xml", bytes);
        const auto account = MSPDIAccountOfPlan("/Plan.xml", services);
        EXPECT_FALSE(account.obstacle.has_value());
        auto count =
            account.leaves[MSPDIFateIndex(MSPDIFate::Lost)] + account.leaves[MSPDIFateIndex(MSPDIFate::Changed)];
        for (const auto& loss : account.losses) {
            count -= !hasSplitEnds && loss.kind == "split-end" ? loss.count : 0;
        }
        return count;
    }
    static std::set<std::string> linesOf(const std::string& text) {
        std::set<std::string> lines;
        for (std::size_t begin = 0; begin < text.size();) {
            const auto end = std::min(text.find('\n', begin), text.size());
            lines.insert(text.substr(begin, end - begin));
            begin = end + 1;
        }
        return lines;
    }

    std::vector<std::filesystem::path> plans;
};

// Steps that leave nothing out but what stands on lines of its own.
const std::map<std::string, std::size_t> touchedLines = {
    {"root-task 1", 1}, {"root-task 1, standard-calendar 1", 2}, {"duplicate-root 2", 4}};

}  // namespace

TEST_F(MendPlansTest, everyPlanImportsThen) {
    std::map<std::string, int> verdicts;
    for (const auto& plan : plans) {
        const auto bytes = corpusBytes(plan);
        const auto mended = mend(bytes);
        ASSERT_NE(mended.verdict, MSPDIMendVerdict::NotMendable) << plan << mended.obstacle;
        std::string steps;
        for (const auto& done : mended.steps) {
            steps += (steps.empty() ? "" : ", ") + std::string(done.step) + " " + std::to_string(done.count);
        }
        ++verdicts[steps];
        if (mended.verdict != MSPDIMendVerdict::Mended) {
            continue;
        }
        EXPECT_EQ(mend(mended.bytes).verdict, MSPDIMendVerdict::ImportsAsIs) << plan;
        EXPECT_LE(lossesOf(mended.bytes, false), lossesOf(bytes, false)) << plan;
        if (const auto touched = touchedLines.find(steps); touched != touchedLines.end()) {
            const auto kept = linesOf(mended.bytes);
            std::size_t gone = 0;
            for (const auto& line : linesOf(bytes)) {
                gone += kept.contains(line) ? 0U : 1U;
            }
            EXPECT_LE(gone, touched->second) << plan;
        }
    }
    verdicts.erase("");
    const std::map<std::string, int> wanted = {{"root-task 1", 46},     {"standard-calendar 1", 6},
                                               {"duplicate-root 2", 1}, {"root-task 1, standard-calendar 1", 4},
                                               {"split-roll-up 4", 1},  {"split-pieces 78", 1}};
    EXPECT_EQ(verdicts, wanted);
}

// All kinds of losses are compared: of a plan that is refused those of its mended copy, which is imported.
TEST_F(MendPlansTest, noImprovementAddsToWhatIsLost) {
    std::size_t improved = 0;
    for (const auto& plan : plans) {
        auto bytes = corpusBytes(plan);
        if (auto mended = mend(bytes); mended.verdict == MSPDIMendVerdict::Mended) {
            bytes = std::move(mended.bytes);
        }
        const auto mended = mendAll(bytes);
        ASSERT_NE(mended.verdict, MSPDIMendVerdict::NotMendable) << plan << mended.obstacle;
        if (mended.verdict == MSPDIMendVerdict::Mended) {
            ++improved;
            EXPECT_LE(lossesOf(mended.bytes), lossesOf(bytes)) << plan;
            EXPECT_EQ(mendAll(mended.bytes).verdict, MSPDIMendVerdict::ImportsAsIs) << plan;
        }
    }
    EXPECT_GT(improved, plans.size() / 2);
}

TEST_F(MendPlansTest, plansInsideOtherFilesComeOutAndOthersAreRefusedForAReason) {
    std::map<std::string, std::string> verdicts;
    for (const auto& entry : std::filesystem::directory_iterator(corpusFolder(KZMSP_SOURCE) / "bad")) {
        if (entry.path().extension() == ".xml") {
            const auto mended = mend(corpusBytes(entry.path()));
            verdicts[entry.path().filename().string()] = mended.obstacle;
            EXPECT_EQ(mended.verdict == MSPDIMendVerdict::Mended, mended.obstacle.empty());
        }
    }
    const std::string noXML = "It is no XML document, and none that is a plan lies inside it.";
    const std::string noPlan = "It is an XML document, but no plan that Microsoft Project saved (MSPDI).";
    const std::map<std::string, std::string> wanted = {{"agenzia-gant.pod.xml", ""},
                                                       {"mpxj-SuccessorCalendar.xml", noPlan},
                                                       {"mpxj-headertest8.mpp.xml", noXML},
                                                       {"mpxj-percent-complete-8.4.pmxml.xml", noPlan},
                                                       {"mpxj-planner-sample.planner.xml", noPlan},
                                                       {"mpxj-sample.mpx.xml", noXML},
                                                       {"phpproject-Sample-02.gan.xml", noPlan}};
    EXPECT_EQ(verdicts, wanted);
}
