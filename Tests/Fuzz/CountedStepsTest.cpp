#include "CountedSteps.h"

#include <gtest/gtest.h>

#include <list>
#include <numeric>
#include <string>

#include "BundleImport.h"
#include "MSPCXMLDocument.h"

// The counter of the fuzz targets counts, and what it is there for would not get past it. Only built for the fuzzer.

namespace {

// As many of the smallest tasks as a fuzz target's largest input holds.
std::string smallTasks(std::size_t mostBytes) {
    std::string plan =
        "<Project xmlns=\"http://schemas.microsoft.com/project\"><Calendars><Calendar><UID>1</UID>"
        "<Name>Standard</Name></Calendar></Calendars><Tasks>";
    const std::string end = "</Tasks></Project>";
    for (int uid = 1;; ++uid) {
        const auto task = "<Task><UID>" + std::to_string(uid) + "</UID></Task>";
        if (plan.size() + task.size() + end.size() > mostBytes) {
            return plan + end;
        }
        plan += task;
    }
}

// Looks for each task through all of them, as the mapping of links once did, and then maps them.
std::optional<MSPCXMLDocument> mapWithASearchForEachTask(MSPIPlan& mspdi, const MSPCXMLDocument& kdzxTemplate,
                                                         MSPCXMLDocument& toc, const MSPIImportInfo& info,
                                                         const MSPCServices& services) {
    const auto tasks = mspdi.root().firstChildElement("Tasks");
    std::size_t found = 0;
    for (auto task = tasks.firstChild(); task; task = task.nextSibling()) {
        const auto uid = task.firstChildElement("UID").stringValue();
        for (auto other = tasks.firstChild(); other; other = other.nextSibling()) {
            found += other.firstChildElement("UID").stringValue() == uid ? 1U : 0U;
        }
    }
    EXPECT_GT(found, 0U);
    return MSPIMapScenario(mspdi, kdzxTemplate, toc, info, services);
}

BundleImportInput importOf(std::string plan) {
    auto input = emptyTemplate();
    input.plan = std::move(plan);
    return input;
}

TEST(CountedSteps, countAWalkThatComparesNothingButPointers) {
    const std::list<int> items(10'000, 1);
    const CountedSteps steps;
    EXPECT_EQ(std::accumulate(items.begin(), items.end(), 0), 10'000);
    EXPECT_GE(steps.count(), 10'000U);
}

TEST(CountedSteps, countWhatTheCLibraryCopies) {
    const std::string text(1'600'000, 'x');
    const CountedSteps steps;
    const std::string copy(text);
    EXPECT_EQ(copy.size(), text.size());
    EXPECT_GE(steps.count(), 100'000U);
}

TEST(CountedSteps, anImportStaysWithinItsBound) {
    importIntoBundle(importOf(smallTasks(8'192)));  // ends the process otherwise
}

TEST(CountedStepsDeathTest, aSearchThroughAllTasksForEachOfThemGoesBeyond) {
    const auto import = importOf(smallTasks(8'192));
    EXPECT_DEATH(importIntoBundle(import, mapWithASearchForEachTask), "PROPERTY BROKEN: the steps grow with the bytes");
}

TEST(CountedStepsDeathTest, theSearchIsNothingAmongAFewTasks) {
    importIntoBundle(importOf(smallTasks(500)), mapWithASearchForEachTask);
}

}  // namespace
