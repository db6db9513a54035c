#include <gtest/gtest.h>

#include <future>
#include <set>

#include "ProgramRun.h"
#include "StrictXML.h"

namespace fs = std::filesystem;

// Several imports of one plan into one folder, started together: each takes a name of its own and completes its bundle.
TEST(RunsAtOnce, eachGetsABundleOfItsOwn) {
    constexpr int runCount = 20;
    const auto scratch = fs::path(KZMSP_SCRATCH) / "runs-at-once";
    fs::remove_all(scratch);
    fs::create_directories(scratch / "out");
    const auto plan = fs::path(KZMSP_SOURCE) / "examples" / "OfficeMove2003.xml";

    std::vector<std::future<ProgramResult>> runs;
    for (int number = 0; number < runCount; ++number) {
        const auto folder = scratch / std::to_string(number);
        fs::create_directories(folder);
        runs.push_back(std::async(std::launch::async, [plan, folder] {
            return runProgram({"--template-path", KZMSP_TEMPLATE, plan.string(), "../out"}, folder, {{"TZ", "UTC"}});
        }));
    }
    for (auto& run : runs) {
        const auto result = run.get();
        EXPECT_EQ(result.status, 0) << result.standardError;
    }

    std::set<std::string> expected{"OfficeMove2003.kdzx"};
    for (int number = 1; number < runCount; ++number) {
        expected.insert("OfficeMove2003-" + std::to_string(number) + ".kdzx");
    }
    std::set<std::string> actual;
    std::set<std::string> scenarios;
    for (const auto& bundle : fs::directory_iterator(scratch / "out")) {
        actual.insert(bundle.path().filename().string());
        const auto scenario = bytesOf(bundle.path() / "Actual.xml");
        EXPECT_EQ(strictXMLComplaint(bundle.path() / "Actual.xml"), "");
        // Both documents are of one run: the table of contents names the scenario beside it.
        const auto id = scenario.find("id=\"") + 4;
        const auto scenarioId = scenario.substr(id, scenario.find('"', id) - id);
        EXPECT_NE(bytesOf(bundle.path() / "__TOC.xml").find(scenarioId), std::string::npos);
        scenarios.insert(scenarioId);
    }
    EXPECT_EQ(actual, expected);
    EXPECT_EQ(scenarios.size(), static_cast<std::size_t>(runCount));
}
