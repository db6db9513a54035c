#include "MSPDIMemoryImport.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "MSPDIEmptyDocument.h"
#include "ServicesInMemory.h"

namespace {

std::string sourceFile(const std::string& path) {
    std::ifstream file(std::string(KZMSP_SOURCE) + "/" + path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string planOf(const std::string& content) {
    return R"(<Project xmlns="http://schemas.microsoft.com/project"><StartDate>2012-01-09T08:00:00</StartDate><Calendars>)"
           R"(<Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars>)" +
           content + "</Project>";
}

class MemoryImportTest : public testing::Test, protected ServicesInMemory {
protected:
    MSPDIMemoryImport importOf(const std::string& plan, MSPDIMemoryKeeping keeping = MSPDIMemoryKeeping::Content) {
        machine.addFile("/plans/Plan.xml", plan);
        return MSPDIImportInMemory("/plans/Plan.xml", services, keeping);
    }
};

}  // namespace

TEST_F(MemoryImportTest, startsFromTheDeliveredEmptyDocument) {
    for (const auto& [name, content] : MSPDIEmptyDocument()) {
        EXPECT_EQ(content, sourceFile("share/kadenza2/Empty.kdzx/" + std::string(name))) << name;
    }
}

TEST_F(MemoryImportTest, givesTheFilesOfTheBundle) {
    const auto result =
        importOf(planOf("<Tasks><Task><UID>7</UID><Name>Paint</Name><OutlineLevel>1</OutlineLevel>"
                        "<Baseline><Number>3</Number></Baseline></Task></Tasks>"));
    ASSERT_TRUE(result.isImported()) << result.refusal->reason;
    ASSERT_EQ(result.bundle.size(), 3U);
    EXPECT_NE(result.bundle.at("Actual.xml").find("<title>Paint</title>"), std::string::npos);
    EXPECT_NE(result.bundle.at("Baseline3.xml").find("<task id=\"t7\""), std::string::npos);
    EXPECT_NE(result.bundle.at("__TOC.xml").find("<title>Plan</title>"), std::string::npos);
    EXPECT_TRUE(result.warnings.empty());
}

TEST_F(MemoryImportTest, onlyReadsFromTheMachine) {
    ASSERT_TRUE(importOf(planOf("")).isImported());
    for (const auto& call : machine.calls()) {
        EXPECT_EQ(call, "readFile /plans/Plan.xml");
    }
    EXPECT_EQ(machine.pathsBelow("/plans"), (std::vector<std::string>{"/plans", "/plans/Plan.xml"}));
}

TEST_F(MemoryImportTest, givesTheReasonOfARefusal) {
    const auto result = importOf("<Project/>");
    ASSERT_FALSE(result.isImported());
    EXPECT_EQ(result.refusal->name, "MSPIMapperException");
    EXPECT_EQ(result.refusal->reason, "MSPIMapper.map: Source XML DOM is not a valid MSPDI document.");
    EXPECT_TRUE(result.bundle.empty());
}

TEST_F(MemoryImportTest, tellsWhatARefusalIsAbout) {
    const auto result = importOf(planOf("<Tasks><Task><UID>7</UID><Name>Paint</Name><Type>9</Type></Task></Tasks>"));
    ASSERT_FALSE(result.isImported());
    EXPECT_EQ(result.refusal->reason, "Unexpected MSPDI Task Type: 9");
    EXPECT_EQ(result.refusal->subject, "Task UID='7' name='Paint'");
}

TEST(RefusalTest, isOneSentence) {
    EXPECT_EQ((MSPDIRefusal{"", "No.", ""}).sentence(), "No.");
    EXPECT_EQ((MSPDIRefusal{"", "No: 9", "Task UID='7'"}).sentence(), "No: 9 (Task UID='7')");
    EXPECT_EQ((MSPDIRefusal{"", "No.", "Task UID='7'"}).sentence(), "No (Task UID='7').");
    EXPECT_EQ((MSPDIRefusal{"", "", "Task UID='7'"}).sentence(), "The importer gives no reason (Task UID='7').");
    EXPECT_EQ((MSPDIRefusal{"", "", ""}).sentence(), "The importer gives no reason.");
    EXPECT_EQ((MSPDIRefusal{"", "One\ntwo", ""}).sentence(), "One two");
}

TEST_F(MemoryImportTest, givesWarningsWithoutTheWord) {
    const auto result = importOf(planOf("<SaveVersion>14</SaveVersion><CurrencyCode>EUR</CurrencyCode>"));
    ASSERT_TRUE(result.isImported());
    ASSERT_EQ(result.warnings.size(), 1U);
    EXPECT_EQ(result.warnings.front(), "Igonring currency code from MSPDI: EUR. Always assume USD.");
}

TEST_F(MemoryImportTest, writesNoContentWhereNamesAreEnough) {
    const auto result = importOf(planOf(""), MSPDIMemoryKeeping::Names);
    ASSERT_TRUE(result.isImported());
    EXPECT_EQ(result.bundle, (std::map<std::string, std::string>{{"Actual.xml", ""}, {"__TOC.xml", ""}}));
}

TEST_F(MemoryImportTest, mapsWithTheMappingGiven) {
    machine.addFile("/plans/Plan.xml", planOf(""));
    int count = 0;
    const auto result = MSPDIImportInMemory(
        "/plans/Plan.xml", services, MSPDIMemoryKeeping::Names,
        [&count](auto& mspdi, const auto& kdzxTemplate, auto& kdzxTOC, const auto& info, const auto& ofImport) {
            ++count;
            return MSPIMapScenario(mspdi, kdzxTemplate, kdzxTOC, info, ofImport);
        });
    EXPECT_TRUE(result.isImported());
    EXPECT_EQ(count, 12);  // the plan itself and its eleven baselines
}
