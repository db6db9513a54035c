#include <gtest/gtest.h>

#include "ImportCase.h"
#include "ProgramRun.h"
#include "StrictXML.h"

namespace {

class ImportCases : public testing::TestWithParam<std::string> {};

}  // namespace

TEST(ImportCasesFolder, holdsCases) {
    EXPECT_FALSE(ImportCase::names().empty());
}

TEST_P(ImportCases, endsAsExpected) {
    const ImportCase importCase(GetParam());
    importCase.run();
    const auto difference = importCase.difference();
    EXPECT_TRUE(difference.empty()) << difference;
    for (const auto& bundle : importCase.bundles()) {
        for (const auto& entry : std::filesystem::directory_iterator(bundle)) {
            if (entry.path().extension() == ".xml") {
                EXPECT_EQ(strictXMLComplaint(entry.path()), "") << entry.path();
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, ImportCases, testing::ValuesIn(ImportCase::names()),
                         [](const auto& plan) { return testNameOf(plan.param); });
