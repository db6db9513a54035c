#include "MSPIBaselineIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "MSPCXMLLoader.h"
#include "MSPCXMLSelection.h"
#include "MappingFixture.h"

namespace {

// The counts of baselines 0 to 10.
std::vector<MSPIBaselineCounts> countsOf(const MSPCXMLDocument& document) {
    const MSPIBaselineIndex index(document);
    std::vector<MSPIBaselineCounts> counts;
    for (std::int32_t number = 0; number <= 10; ++number) {
        counts.push_back(index.counts(number));
    }
    return counts;
}

std::vector<MSPIBaselineCounts> countsOf(const std::string& projectContent) {
    return countsOf(documentFromXML("<Project>" + projectContent + "</Project>"));
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
            for (auto values = some(3); values > 0; --values) {
                content += some(2) == 0 ? "<Start>now</Start>" : "<Work>long</Work>";
            }
            for (auto baselines = some(4); baselines > 0; --baselines) {
                content += "<Baseline>";
                for (auto count2 = some(3); count2 > 0; --count2) {
                    content += std::string("<Number>") + numbers[some(std::size(numbers))] + "</Number>";
                }
                content += some(2) == 0 ? "<Start>then " + std::to_string(some(100)) + "</Start>" : "";
                content += some(2) == 0 ? "<Work><![CDATA[ & ]]>" + std::to_string(some(100)) + "</Work>" : "<Work/>";
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

// For each element its id and what its baseline of a number has for it, "1:Start=b Work= 2-".
std::string targetsOf(const MSPIBaselineIndex& index, std::int32_t number) {
    std::string text;
    for (const auto& [element, hasBaseline, values] : index.targets(number)) {
        text += element.attribute("id").stringValue() + (hasBaseline ? ":" : "-");
        for (const auto& [child, shown] : values) {
            EXPECT_EQ(child.parent(), element);
            text.append(child.name()).append("=").append(shown).append(" ");
        }
    }
    return text;
}

TEST(MSPIBaselineIndex, GivesEachElementTheLastBaselineOfTheNumber) {
    const auto document = documentFromXML(
        "<Project><Tasks><Task id='1'><Start>x</Start><Baseline><Number>4</Number><Start>a</Start></Baseline><Baseline>"
        "<Number>4</Number><Start>b</Start></Baseline></Task><Task id='2'><Start>y</Start></Task></Tasks><Assignments>"
        "<Assignment id='3'><Baseline><Number>4</Number></Baseline></Assignment></Assignments></Project>");
    EXPECT_EQ(targetsOf(MSPIBaselineIndex(document), 4), "3:1:Start=b 2-");
    EXPECT_EQ(targetsOf(MSPIBaselineIndex(document), 5), "3-1-2-");
}

TEST(MSPIBaselineIndex, TakesTheLastValueOfANameForTheLastChildOfThatName) {
    const auto document = documentFromXML(
        "<Project><Tasks><Task id='1'><Start>w</Start><Start>x</Start><Work/><Baseline><Number>4</Number>"
        "<Start>a</Start><Work>b</Work><Start>c<!--x-->d</Start><Finish>e</Finish></Baseline></Task></Tasks></"
        "Project>");
    const MSPIBaselineIndex index(document);
    EXPECT_EQ(targetsOf(index, 4), "1:Start=cd Work=b ");
    const auto start = document.root().firstChildElement("Tasks").firstChildElement("Task").childElements("Start");
    EXPECT_EQ(index.targets(4).front().values.front().child, start.back());
}

TEST(MSPIBaselineIndex, KeepsAValueOnceHoweverManyNumbersItsBaselineHas) {
    std::string numbers;
    for (int number = 0; number <= 10; ++number) {
        numbers += "<Number>" + std::to_string(number) + "</Number>";
    }
    const auto document = documentFromXML("<Project><Tasks><Task><UID>1</UID><Notes>n</Notes><Baseline>" + numbers +
                                          "<Notes>long</Notes><UID>2</UID></Baseline></Task></Tasks></Project>");
    const MSPIBaselineIndex index(document);
    const auto* const text = index.targets(0).front().values.front().text.data();
    for (int number = 0; number <= 10; ++number) {
        EXPECT_EQ(targetsOf(index, number), ":Notes=long UID=2 ");
        EXPECT_EQ(index.targets(number).front().values.front().text.data(), text);
        EXPECT_FALSE(index.unchangedLists(number).tasks);
    }
}

TEST(MSPIBaselineIndex, KeepsTheValuesOfManyElementsApart) {
    constexpr int tasks = 3'000;
    std::string content;
    for (int task = 0; task < tasks; ++task) {
        const auto text = std::to_string(task);
        content += "<Task><Name>n</Name><Start>s</Start><Work>w</Work><Baseline><Number>1</Number><Name>Task " + text +
                   "</Name><Start>at " + text + "</Start><Work>of " + text + "</Work></Baseline></Task>";
    }
    const auto document = documentFromXML("<Project><Tasks>" + content + "</Tasks></Project>");
    const MSPIBaselineIndex index(document);
    const auto targets = index.targets(1);
    ASSERT_EQ(targets.size(), static_cast<std::size_t>(tasks));
    for (int task = 0; task < tasks; ++task) {
        const auto& values = targets[static_cast<std::size_t>(task)].values;
        ASSERT_EQ(values.size(), 3U);
        ASSERT_EQ(values[0].text, "Task " + std::to_string(task));
        ASSERT_EQ(values[1].text, "at " + std::to_string(task));
        ASSERT_EQ(values[2].text, "of " + std::to_string(task));
    }
}

TEST(MSPIBaselineIndex, TellsWhichListsABaselineLeavesAsTheyWereLoaded) {
    const auto document = documentFromXML(
        "<Project><Tasks><Task><UID>1</UID><Start>x</Start>" + baseline("0") + baseline("1") +
        "<Baseline><Number>2</Number><UID>7</UID></Baseline><Baseline><Number>3</Number><Start>a</Start></Baseline>"
        "</Task><Task><UID>2</UID>" +
        baseline("0") + baseline("2") + baseline("3") +
        "</Task></Tasks>"
        "<Resources><Resource/></Resources><Assignments><Assignment><TaskUID>1</TaskUID>" +
        baseline("0") + baseline("1") + baseline("2") + "</Assignment></Assignments></Project>");
    const MSPIBaselineIndex index(document);
    const struct {
        const char* behaviour;
        std::int32_t number;
        bool tasks;
        bool assignments;
    } table[] = {
        {"all elements have the baseline", 0, true, true},
        {"a task leaves the plan", 1, false, true},
        {"a task has another UID", 2, false, false},
        {"an assignment leaves the plan, a task has other dates", 3, true, false},
        {"nothing has the baseline", 4, false, false},
    };
    for (const auto& [behaviour, number, tasks, assignments] : table) {
        EXPECT_EQ(index.unchangedLists(number).tasks, tasks) << behaviour;
        EXPECT_EQ(index.unchangedLists(number).assignments, assignments) << behaviour;
    }
}

// A walk over the baseline for each of its numbers would take minutes here.
TEST(MSPIBaselineIndex, ReadsABaselineOnceThatRepeatsItsNumbers) {
    std::string numbers;
    for (int i = 0; i < 50'000; ++i) {
        numbers += "<Number>4</Number><Number>5</Number>";
    }
    const auto document = documentFromXML("<Project><Tasks><Task><Start>a</Start><Baseline>" + numbers +
                                          "<Start>b</Start></Baseline></Task></Tasks></Project>");
    const MSPIBaselineIndex index(document);
    for (const int number : {4, 5}) {
        EXPECT_EQ(index.counts(number).tasks, 1U);
        const auto targets = index.targets(number);
        ASSERT_EQ(targets.size(), 1U);
        ASSERT_EQ(targets.front().values.size(), 1U);
        EXPECT_EQ(targets.front().values.front().text, "b");
    }
}

// The same as the loader reads it, with the baselines deferred.
MSPCXMLLoaded loadedWithDeferred(const std::string& markup) {
    static const auto selection = MSPCXMLSelection::fromText(
        "Project(Tasks(Task(Start Work ~*Baseline(Number))) Resources(Resource(Start Work ~*Baseline(Number)))"
        " Assignments(Assignment(Start Work ~*Baseline(Number))))");
    InMemoryFileSystem files;
    files.addFile("/Plan.xml", markup);
    auto loaded = MSPCXMLLoader(MSPCXMLContent::DataOnly).loadSelection(files, "/Plan.xml", selection);
    EXPECT_TRUE(loaded) << markup;
    EXPECT_EQ(loaded->document.serialized().find("<Baseline"), std::string::npos) << markup;
    return std::move(*loaded);
}

TEST(MSPIBaselineIndex, FindsDeferredBaselinesLikeThoseInTheTree) {
    std::mt19937 random(20120111);
    std::string all;
    for (int run = 0; run < 300; ++run) {
        const auto markup = "<Project>" + randomProject(random) + "</Project>";
        const auto tree = documentFromXML(markup);
        const auto part = loadedWithDeferred(markup);
        const MSPIBaselineIndex ofTree(tree);
        const MSPIBaselineIndex ofDeferred(part.document, part.deferred);
        for (std::int32_t number = 0; number <= 10; ++number) {
            ASSERT_EQ(ofDeferred.counts(number), ofTree.counts(number)) << number << " " << markup;
            ASSERT_EQ(targetsOf(ofDeferred, number), targetsOf(ofTree, number)) << number << " " << markup;
            all += targetsOf(ofTree, number);
        }
    }
    EXPECT_GT(std::count(all.begin(), all.end(), '='), 1000);
}

TEST(MSPIBaselineIndex, EqualTheQueriesOnGeneratedProjects) {
    std::mt19937 random(20120110);
    std::size_t found = 0;
    for (int run = 0; run < 300; ++run) {
        const auto markup = "<Project>" + randomProject(random) + "</Project>";
        const auto document = documentFromXML(markup, MSPCXMLContent::Everything);
        const auto counts = countsOf(document);
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
