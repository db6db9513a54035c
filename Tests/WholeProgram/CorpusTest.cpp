#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "ProgramRun.h"
#include "StrictXML.h"

// Plans of many programs, kept beside the checkout: none may crash the importer, and whatever it writes is XML.

namespace fs = std::filesystem;

namespace {

fs::path corpusFolder() {
    const char* named = std::getenv("KZMSP_CORPUS");
    return named != nullptr ? fs::path(named) : fs::path(KZMSP_SOURCE).parent_path() / "shared" / "corpus";
}

// The names of the plans in a folder.
std::vector<std::string> plansIn(const fs::path& folder) {
    std::vector<std::string> plans;
    if (fs::is_directory(folder)) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            if (entry.path().extension() == ".xml") {
                plans.push_back(entry.path().filename().string());
            }
        }
    }
    std::sort(plans.begin(), plans.end());
    return plans;
}

std::size_t countOf(const std::string& piece, const std::string& text) {
    std::size_t count = 0;
    for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) {
        ++count;
    }
    return count;
}

std::vector<std::string> corpusPlans() {
    return plansIn(corpusFolder());
}

ProgramResult importOf(const fs::path& plan, const fs::path& scratch) {
    fs::remove_all(scratch);
    fs::create_directories(scratch);
    return runProgram({"--template-path", KZMSP_TEMPLATE, plan.string(), "."}, scratch,
                      {{"TZ", "Europe/Berlin"}, {"LC_ALL", "C"}, {"HOME", scratch.string()}});
}

// The line below "Exception: <name>", or "(imported)".
std::string outcomeOf(const ProgramResult& result) {
    const auto& log = result.standardError;
    const auto name = log.find("Exception: ");
    if (name == std::string::npos) {
        return result.status == 0 ? "(imported)" : "(no reason)";
    }
    const auto start = log.find('\n', name) + 1;
    return log.substr(start, log.find('\n', start) - start);
}

// How many plans of a folder end with which outcome.
using Outcomes = std::map<std::string, int>;

Outcomes outcomesIn(const fs::path& folder) {
    const auto scratch = fs::path(KZMSP_SCRATCH) / "corpus-outcomes";
    Outcomes outcomes;
    for (const auto& plan : plansIn(folder)) {
        ++outcomes[outcomeOf(importOf(folder / plan, scratch))];
    }
    fs::remove_all(scratch);
    return outcomes;
}

class Corpus : public testing::TestWithParam<std::string> {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Corpus);

}  // namespace

TEST(CorpusFolder, isThere) {
    if (corpusPlans().empty()) {
        GTEST_SKIP() << "no plans in " << corpusFolder() << "; KZMSP_CORPUS names another folder";
    }
}

// A plan that fails for another reason than it did, or no longer, is worth a look. Some assertions have no text.
TEST(CorpusFolder, failsForTheKnownReasonsOnly) {
    const auto folder = fs::path(KZMSP_SOURCE).parent_path() / "shared" / "corpus";
    if (corpusFolder() != folder || plansIn(folder).empty()) {
        GTEST_SKIP() << "the known plans are those of " << folder;
    }
    EXPECT_EQ(outcomesIn(folder), (Outcomes{{"(imported)", 224},
                                            {"This does not seem like a MS Project root task.", 46},
                                            {"MS Project 'Standard' Calendar not found.", 10},
                                            {"Duplicate tasks with UID=0 found in the source document.", 1},
                                            {"Parent task was not assigned a type.", 1},
                                            {"", 1}}));
    EXPECT_EQ(outcomesIn(folder / "bad"),
              (Outcomes{{"MSPIMapper.map: Source XML DOM is not a valid MSPDI document.", 4},
                        {"MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data.", 3}}));
}

TEST_P(Corpus, endsWithOneVerdictAndWellFormedDocuments) {
    const auto plan = corpusFolder() / GetParam();
    const auto before = bytesOf(plan);
    const auto scratch = fs::path(KZMSP_SCRATCH) / "corpus" / GetParam();

    const auto result = importOf(plan, scratch);

    const auto& log = result.standardError;
    ASSERT_EQ(result.signal, 0) << log;
    const auto succeeded = countOf("### Importer SUCCEEDED.\n", log);
    const auto failed = countOf("### Importer FAILED.\n", log);
    EXPECT_EQ(succeeded + failed, 1U) << log;
    EXPECT_EQ(countOf("Exception: ", log), failed) << log;
    EXPECT_EQ(result.status, succeeded == 1 ? 0 : 1) << log;
    for (const auto& entry : fs::recursive_directory_iterator(scratch)) {
        if (entry.path().extension() == ".xml") {
            EXPECT_EQ(strictXMLComplaint(entry.path()), "") << entry.path();
        }
    }
    EXPECT_TRUE(bytesOf(plan) == before) << "the plan was changed";
    fs::remove_all(scratch);
}

INSTANTIATE_TEST_SUITE_P(Plans, Corpus, testing::ValuesIn(corpusPlans()),
                         [](const auto& plan) { return testNameOf(plan.param); });
