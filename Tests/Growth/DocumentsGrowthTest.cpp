#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "CountedWork.h"
#include "DocumentShapes.h"
#include "KZDXCheck.h"
#include "KZDXDiff.h"
#include "KZDXPage.h"
#include "ProcessTiming.h"

// Twice the document, twice the work of looking at it, whatever it is like; and the same of comparing two.

namespace {

const std::string contents =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<table-of-contents xmlns=\"urn:kadenza:document:2\" "
    "version=\"2\"><window>"
    "<editing-scenario>aEmptyPlan0</editing-scenario></window><project><title>Plan</title><next-task-id>9000000"
    "</next-task-id><next-resource-id>9000000</next-resource-id><scenario id=\"aEmptyPlan0\" name=\"Actual\" "
    "filename=\"Actual.xml\"/></project></table-of-contents>\n";

std::unique_ptr<KZDXFiles> filesWith(std::string scenario) {
    std::map<std::string, std::string> files;
    files["__TOC.xml"] = contents;
    files["Actual.xml"] = std::move(scenario);
    return KZDXFilesInMemory(std::move(files));
}

std::uint64_t stepsOfChecking(std::string scenario) {
    const auto files = filesWith(std::move(scenario));
    const auto before = countedWork();
    const auto check = KZDXCheckBundle(*files);
    EXPECT_FALSE(check.obstacle) << *check.obstacle;
    return countedWork().steps - before.steps;
}

std::uint64_t stepsOfComparing(std::string old, std::string now) {
    const auto oldFiles = filesWith(std::move(old));
    const auto newFiles = filesWith(std::move(now));
    std::string failure;
    const auto before = countedWork();
    const auto first = KZDXOpenDocument::open(*oldFiles, "", failure);
    const auto second = KZDXOpenDocument::open(*newFiles, "", failure);
    if (!first || !second) {
        ADD_FAILURE() << failure;
        return 0;
    }
    EXPECT_FALSE(KZDXDiff(*first, *second).empty());
    return countedWork().steps - before.steps;
}

std::uint64_t stepsOfShowing(KZDXFiles& files) {
    std::string failure;
    const auto before = countedWork();
    const auto page = KZDXPageOf(files, {"Plan.kdzx", "test", nullptr, nullptr}, failure);
    EXPECT_TRUE(page) << failure;
    return countedWork().steps - before.steps;
}

// 1 is linear. A walk over all others for each of them gives nearly 2 at these sizes, unless each step of it is far
// cheaper than what else is done; a sorted look-up hardly more than 1.
void expectLinear(const std::vector<double>& bytes, const std::vector<double>& steps) {
    constexpr double largestExponent = 1.1;
    EXPECT_LE(growthExponent(bytes, steps), largestExponent)
        << steps.front() << " steps for " << bytes.front() << " bytes, " << steps.back() << " for " << bytes.back();
}

constexpr int sizes[] = {500, 1000, 2000, 4000};

class DocumentsGrowth : public testing::TestWithParam<DocumentShape> {};

TEST_P(DocumentsGrowth, isLinearInChecks) {
    static_cast<void>(stepsOfChecking(GetParam().later(10)));
    std::vector<double> bytes;
    std::vector<double> steps;
    for (const auto n : sizes) {
        const auto scenario = GetParam().later(n);
        bytes.push_back(static_cast<double>(scenario.size()));
        steps.push_back(static_cast<double>(stepsOfChecking(scenario)));
    }
    expectLinear(bytes, steps);
}

TEST_P(DocumentsGrowth, isLinearInComparisons) {
    static_cast<void>(stepsOfComparing(GetParam().scenario(10), GetParam().later(10)));
    std::vector<double> bytes;
    std::vector<double> steps;
    for (const auto n : sizes) {
        auto old = GetParam().scenario(n);
        auto now = GetParam().later(n);
        bytes.push_back(static_cast<double>(old.size() + now.size()));
        steps.push_back(static_cast<double>(stepsOfComparing(std::move(old), std::move(now))));
    }
    expectLinear(bytes, steps);
}

TEST_P(DocumentsGrowth, isLinearInPages) {
    static_cast<void>(stepsOfShowing(*filesWith(GetParam().later(10))));
    std::vector<double> bytes;
    std::vector<double> steps;
    for (const auto n : sizes) {
        const auto scenario = GetParam().later(n);
        bytes.push_back(static_cast<double>(scenario.size()));
        steps.push_back(static_cast<double>(stepsOfShowing(*filesWith(scenario))));
    }
    expectLinear(bytes, steps);
}

INSTANTIATE_TEST_SUITE_P(Of, DocumentsGrowth, testing::ValuesIn(documentShapes().begin(), documentShapes().end()),
                         [](const auto& shape) { return shape.param.name; });

// A scenario is read once, however often the table of contents names its file.
TEST(DocumentsGrowth, isLinearInPagesOfManyEntriesForOneFile) {
    std::vector<double> bytes;
    std::vector<double> steps;
    for (const auto n : sizes) {
        std::string scenarios;
        for (int number = 1; number <= n; ++number) {
            const auto name = std::to_string(number);
            scenarios += "<scenario id=\"b" + name + "\" name=\"B" + name + "\" filename=\"Actual.xml\"/>";
        }
        std::map<std::string, std::string> files;
        files["__TOC.xml"] = std::string(contents).insert(contents.find("</project>"), scenarios);
        files["Actual.xml"] = documentShapes().front().scenario(n);
        bytes.push_back(static_cast<double>(files["__TOC.xml"].size() + files["Actual.xml"].size()));
        steps.push_back(static_cast<double>(stepsOfShowing(*KZDXFilesInMemory(std::move(files)))));
    }
    expectLinear(bytes, steps);
}

}  // namespace
