#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
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

std::vector<std::string> corpusPlans() {
    std::vector<std::string> plans;
    if (fs::is_directory(corpusFolder())) {
        for (const auto& entry : fs::directory_iterator(corpusFolder())) {
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

class Corpus : public testing::TestWithParam<std::string> {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Corpus);

}  // namespace

TEST(CorpusFolder, isThere) {
    if (corpusPlans().empty()) {
        GTEST_SKIP() << "no plans in " << corpusFolder() << "; KZMSP_CORPUS names another folder";
    }
}

TEST_P(Corpus, endsWithOneVerdictAndWellFormedDocuments) {
    const auto plan = corpusFolder() / GetParam();
    const auto before = bytesOf(plan);
    const auto scratch = fs::path(KZMSP_SCRATCH) / "corpus" / GetParam();
    fs::remove_all(scratch);
    fs::create_directories(scratch);

    const auto result = runProgram({"--template-path", KZMSP_TEMPLATE, plan.string(), "."}, scratch,
                                   {{"TZ", "Europe/Berlin"}, {"LC_ALL", "C"}, {"HOME", scratch.string()}});

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
