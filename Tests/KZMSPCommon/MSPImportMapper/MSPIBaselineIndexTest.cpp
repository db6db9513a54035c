#include "MSPIBaselineIndex.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "MappingFixture.h"

namespace {

// The counts of baselines 0 to 10.
std::vector<MSPIBaselineCounts> countsOf(const MSPCXMLNode& project) {
    const MSPIBaselineIndex index(project);
    std::vector<MSPIBaselineCounts> counts;
    for (std::int32_t number = 0; number <= 10; ++number) {
        counts.push_back(index.counts(number));
    }
    return counts;
}

std::vector<MSPIBaselineCounts> countsOf(const std::string& projectContent) {
    const auto document = documentFromXML("<Project>" + projectContent + "</Project>");
    return countsOf(document.root());
}

std::string baseline(const std::string& number) {
    return "<Baseline><Number>" + number + "</Number></Baseline>";
}

TEST(MSPIBaselineIndex, AreZeroWithoutBaselines) {
    const auto counts = countsOf("<Tasks><Task/></Tasks>");
    for (const auto& count : counts) {
        EXPECT_TRUE(count.areZero());
    }
}

TEST(MSPIBaselineIndex, TellTasksResourcesAndAssignmentsApart) {
    const auto counts =
        countsOf("<Tasks><Task>" + baseline("0") + "</Task><Task>" + baseline("0") + baseline("10") +
                 "</Task><Task/></Tasks><Resources><Resource>" + baseline("0") +
                 "</Resource></Resources><Assignments><Assignment>" + baseline("3") + "</Assignment></Assignments>");
    EXPECT_EQ(counts[0].tasks, 2U);
    EXPECT_EQ(counts[0].resources, 1U);
    EXPECT_EQ(counts[0].assignments, 0U);
    EXPECT_EQ(counts[3].tasks, 0U);
    EXPECT_EQ(counts[3].assignments, 1U);
    EXPECT_FALSE(counts[3].areZero());
    EXPECT_EQ(counts[10].tasks, 1U);
    EXPECT_TRUE(counts[1].areZero());
}

TEST(MSPIBaselineIndex, CountAnElementOnceHoweverOftenItHasTheBaseline) {
    const auto counts = countsOf("<Tasks><Task>" + baseline("2") + baseline("2") +
                                 "<Baseline><Number>2</Number><Number>5</Number></Baseline></Task></Tasks>");
    EXPECT_EQ(counts[2].tasks, 1U);
    EXPECT_EQ(counts[5].tasks, 1U);
}

TEST(MSPIBaselineIndex, PassOverNumbersThatNoBaselineHas) {
    const auto counts = countsOf("<Tasks><Task>" + baseline("11") + baseline("-1") + baseline("1.5") + baseline("one") +
                                 baseline("") + "<Baseline/></Task></Tasks>");
    for (const auto& count : counts) {
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

TEST(MSPIBaselineIndex, GivesEachElementTheLastBaselineOfTheNumber) {
    const auto document = documentFromXML(
        "<Project><Tasks><Task id='1'><Baseline id='a'><Number>4</Number></Baseline><Baseline id='b'><Number>4</Number>"
        "</Baseline></Task><Task id='2'/></Tasks><Assignments><Assignment id='3'><Baseline id='c'><Number>4</Number>"
        "</Baseline></Assignment></Assignments></Project>");
    const auto idOf = [](const MSPCXMLNode& node) { return node.attribute("id").stringValue(); };
    std::string found;
    const MSPIBaselineIndex index(document.root());
    for (const auto& [element, baseline, values] : index.targets(4)) {
        EXPECT_TRUE(values.empty());  // a Number is none
        found += idOf(element) + "=" + idOf(baseline) + " ";
    }
    EXPECT_EQ(found, "3=c 1=b 2= ");
}

// A walk over the baseline for each of its numbers would take minutes here.
TEST(MSPIBaselineIndex, ReadsABaselineOnceThatRepeatsItsNumbers) {
    std::string numbers;
    for (int i = 0; i < 50'000; ++i) {
        numbers += "<Number>4</Number><Number>5</Number>";
    }
    const auto document = documentFromXML("<Project><Tasks><Task><Start>a</Start><Baseline>" + numbers +
                                          "<Start>b</Start></Baseline></Task></Tasks></Project>");
    const MSPIBaselineIndex index(document.root());
    for (const int number : {4, 5}) {
        EXPECT_EQ(index.counts(number).tasks, 1U);
        const auto targets = index.targets(number);
        ASSERT_EQ(targets.size(), 1U);
        ASSERT_EQ(targets.front().values.size(), 1U);
        EXPECT_EQ(targets.front().values.front().value.stringValue(), "b");
    }
}

TEST(MSPIBaselineIndex, EqualTheQueriesOnGeneratedProjects) {
    std::mt19937 random(20120110);
    std::size_t found = 0;
    for (int run = 0; run < 300; ++run) {
        const auto markup = "<Project>" + randomProject(random) + "</Project>";
        const auto document = documentFromXML(markup, MSPCXMLContent::Everything);
        const auto counts = countsOf(document.root());
        for (std::size_t n = 0; n < counts.size(); ++n) {
            const auto matches = [&](const std::string& path) {
                return document.root().nodesForXPath(path + "[Baseline[Number=" + std::to_string(n) + "]]")->size();
            };
            ASSERT_EQ(counts[n].tasks, matches("Tasks/Task")) << n << " " << markup;
            ASSERT_EQ(counts[n].resources, matches("Resources/Resource")) << n << " " << markup;
            ASSERT_EQ(counts[n].assignments, matches("Assignments/Assignment")) << n << " " << markup;
            found += counts[n].tasks;
        }
    }
    EXPECT_GT(found, 1000U);
}

}  // namespace
