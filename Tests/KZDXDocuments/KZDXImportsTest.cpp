#include <gtest/gtest.h>

#include <filesystem>

#include "CorpusPlans.h"
#include "KZDXCheck.h"
#include "MSPDIEmptyDocument.h"
#include "MSPDIMemoryImport.h"
#include "ServicesInMemory.h"

// What the importer makes is sound: of the examples, of the plans of many programs that are kept beside the checkout
// (without them these tests are skipped), and the empty document itself.

namespace {

// The faults of a plan's document, one a line; empty for a plan that is refused.
std::string faultsOf(const std::string& plan) {
    ServicesInMemory world;
    world.machine.addFile("/plans/Plan.xml", plan);
    auto import = MSPDIImportInMemory("/plans/Plan.xml", world.services);
    if (!import.isImported()) {
        return {};
    }
    const auto check = KZDXCheckBundle(*KZDXFilesInMemory(std::move(import.bundle)));
    std::string faults = check.obstacle.value_or("");
    for (const auto& finding : check.findings) {
        if (finding.severity == KZDXSeverity::Fault) {
            faults += finding.file + ":" + std::to_string(finding.line) + ": " + finding.text + "\n";
        }
    }
    return faults;
}

}  // namespace

TEST(KZDXImports, ofTheExamplesAreSound) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(KZMSP_SOURCE) / "examples")) {
        EXPECT_EQ(faultsOf(corpusBytes(entry.path())), "") << entry.path();
        ++count;
    }
    EXPECT_GE(count, 6);
}

TEST(KZDXImports, ofTheEmptyDocumentAreSound) {
    std::map<std::string, std::string> files;
    for (const auto& [name, content] : MSPDIEmptyDocument()) {
        files[std::string(name)] = content;
    }
    const auto check = KZDXCheckBundle(*KZDXFilesInMemory(std::move(files)));
    EXPECT_FALSE(check.obstacle);
    EXPECT_TRUE(check.findings.empty());
}

// Both times of a working time are of one day, so that one until the next morning has no length. That is what the plan
// says, and no fault of the document.
TEST(KZDXImports, ofAShiftUntilTheNextMorningAreSound) {
    const auto faults = [](const std::string& to) {
        return faultsOf(
            R"(<Project xmlns="http://schemas.microsoft.com/project"><StartDate>2012-01-09T08:00:00</StartDate>)"
            "<Calendars><Calendar><UID>1</UID><IsBaseCalendar>1</IsBaseCalendar><WeekDays><WeekDay><DayType>2"
            "</DayType><DayWorking>1</DayWorking><WorkingTimes><WorkingTime><FromTime>22:00:00</FromTime>"
            "<ToTime>" +
            to +
            "</ToTime></WorkingTime></WorkingTimes></WeekDay></WeekDays></Calendar>"
            "</Calendars></Project>");
    };
    EXPECT_EQ(faults("06:00:00"), "");
    EXPECT_EQ(faults("22:00:00"), "");
    EXPECT_EQ(faults("23:00:00"), "");
}

TEST(KZDXImports, ofTheSharedPlansAreSound) {
    const auto plans = corpusPlans(KZMSP_SOURCE);
    if (plans.empty()) {
        GTEST_SKIP() << "no plans beside the checkout";
    }
    for (const auto& plan : plans) {
        EXPECT_EQ(faultsOf(corpusBytes(plan)), "") << plan;
    }
}
