#include "MSPIBaselineCounts.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "MappingFixture.h"

namespace {

MSPIBaselineCounts countsOf(const std::string& projectContent) {
    const auto document = documentFromXML("<Project>" + projectContent + "</Project>");
    return MSPIBaselineCounts::ofProject(document.root());
}

std::string baseline(const std::string& number) {
    return "<Baseline><Number>" + number + "</Number></Baseline>";
}

TEST(MSPIBaselineCounts, AreZeroWithoutBaselines) {
    const auto counts = countsOf("<Tasks><Task/></Tasks>");
    EXPECT_EQ(counts.byNumber.size(), 11U);
    for (const auto& count : counts.byNumber) {
        EXPECT_TRUE(count.areZero());
    }
}

TEST(MSPIBaselineCounts, TellTasksResourcesAndAssignmentsApart) {
    const auto counts =
        countsOf("<Tasks><Task>" + baseline("0") + "</Task><Task>" + baseline("0") + baseline("10") +
                 "</Task><Task/></Tasks><Resources><Resource>" + baseline("0") +
                 "</Resource></Resources><Assignments><Assignment>" + baseline("3") + "</Assignment></Assignments>");
    EXPECT_EQ(counts.byNumber[0].tasks, 2U);
    EXPECT_EQ(counts.byNumber[0].resources, 1U);
    EXPECT_EQ(counts.byNumber[0].assignments, 0U);
    EXPECT_EQ(counts.byNumber[3].tasks, 0U);
    EXPECT_EQ(counts.byNumber[3].assignments, 1U);
    EXPECT_FALSE(counts.byNumber[3].areZero());
    EXPECT_EQ(counts.byNumber[10].tasks, 1U);
    EXPECT_TRUE(counts.byNumber[1].areZero());
}

TEST(MSPIBaselineCounts, CountAnElementOnceHoweverOftenItHasTheBaseline) {
    const auto counts = countsOf("<Tasks><Task>" + baseline("2") + baseline("2") +
                                 "<Baseline><Number>2</Number><Number>5</Number></Baseline></Task></Tasks>");
    EXPECT_EQ(counts.byNumber[2].tasks, 1U);
    EXPECT_EQ(counts.byNumber[5].tasks, 1U);
}

TEST(MSPIBaselineCounts, PassOverNumbersThatNoBaselineHas) {
    const auto counts = countsOf("<Tasks><Task>" + baseline("11") + baseline("-1") + baseline("1.5") + baseline("one") +
                                 baseline("") + "<Baseline/></Task></Tasks>");
    for (const auto& count : counts.byNumber) {
        EXPECT_TRUE(count.areZero());
    }
}

// Lists of elements with numbers in many forms, some lists given twice.
std::string randomProject(std::mt19937& random) {
    const auto some = [&](std::size_t count) { return random() % count; };
    constexpr const char* numbers[] = {"0",  "1",   "2",   "3",     "4",  "5",  "6",  "7", "8", "9",
                                       "10", " 1 ", "007", "10.00", ".0", "-0", "11", "x", "",  "1<!--c-->0"};
    const auto list = [&](const std::string& name) {
        std::string content;
        for (auto count = some(8); count > 0; --count) {
            content += "<" + name + ">";
            for (auto baselines = some(4); baselines > 0; --baselines) {
                content += "<Baseline>";
                for (auto count2 = some(3); count2 > 0; --count2) {
                    content += std::string("<Number>") + numbers[some(std::size(numbers))] + "</Number>";
                }
                content += "</Baseline>";
            }
            content += "</" + name + ">";
        }
        return "<" + name + "s>" + content + "</" + name + "s>";
    };
    std::string project;
    for (const std::string name : {"Task", "Resource", "Assignment", "Task"}) {
        project += some(4) == 0 ? "" : list(name);
    }
    return project;
}

TEST(MSPIBaselineCounts, EqualTheQueriesOnGeneratedProjects) {
    std::mt19937 random(20120110);
    std::size_t found = 0;
    for (int run = 0; run < 300; ++run) {
        const auto markup = "<Project>" + randomProject(random) + "</Project>";
        const auto document = documentFromXML(markup, MSPCXMLContent::Everything);
        const auto counts = MSPIBaselineCounts::ofProject(document.root());
        for (std::size_t n = 0; n < counts.byNumber.size(); ++n) {
            const auto matches = [&](const std::string& path) {
                return document.root().nodesForXPath(path + "[Baseline[Number=" + std::to_string(n) + "]]")->size();
            };
            ASSERT_EQ(counts.byNumber[n].tasks, matches("Tasks/Task")) << n << " " << markup;
            ASSERT_EQ(counts.byNumber[n].resources, matches("Resources/Resource")) << n << " " << markup;
            ASSERT_EQ(counts.byNumber[n].assignments, matches("Assignments/Assignment")) << n << " " << markup;
            found += counts.byNumber[n].tasks;
        }
    }
    EXPECT_GT(found, 1000U);
}

}  // namespace
