#include "MSPDICutOff.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "ServicesInMemory.h"

namespace {

const std::string plan =
    R"(<?xml version="1.0" encoding="UTF-8"?><!-- saved --><Project xmlns="http://schemas.microsoft.com/project">)"
    R"(<Title>House</Title><Tasks><Task><UID>1</UID><Name>Paint</Name><Notes><![CDATA[a < b]]></Notes></Task></Tasks>)"
    R"(</Project>)";

std::string inUTF16(std::string_view text, bool isLittle) {
    std::string bytes = isLittle ? "\xFF\xFE" : "\xFE\xFF";
    for (const char character : text) {
        bytes += isLittle ? character : '\0';
        bytes += isLittle ? '\0' : character;
    }
    return bytes;
}

std::string withReplaced(std::string text, std::string_view piece, std::string_view other) {
    return text.replace(text.find(piece), piece.size(), other);
}

}  // namespace

TEST(MSPDICutOffTest, isCutOffWhereverTheFileEndsBeforeThePlan) {
    const auto start = plan.find("<Project") + std::string("<Project").size();
    for (auto size = start; size < plan.size(); ++size) {
        EXPECT_TRUE(MSPDIIsCutOff(plan.substr(0, size))) << plan.substr(0, size);
        EXPECT_TRUE(MSPDIIsCutOff(inUTF16(plan.substr(0, size), true))) << size;
        EXPECT_TRUE(MSPDIIsCutOff(inUTF16(plan.substr(0, size), false))) << size;
    }
    EXPECT_FALSE(MSPDIIsCutOff(plan));
    EXPECT_FALSE(MSPDIIsCutOff(inUTF16(plan, true)));
    EXPECT_FALSE(MSPDIIsCutOff(inUTF16(plan, false)));
}

TEST(MSPDICutOffTest, isNotWhereNoPlanBegins) {
    for (const std::string bytes : {"", "<", "<?xml version", "<Proj", "Project", "<html><body>"}) {
        EXPECT_FALSE(MSPDIIsCutOff(bytes)) << bytes;
    }
}

TEST(MSPDICutOffTest, isNotWhatIsOnlyDamaged) {
    for (const auto& [piece, other] :
         {std::pair<std::string_view, std::string_view>("<Name>Paint</Name>", "<Name>Paint"),
          {"<Name>Paint</Name>", "Paint</Name>"},
          {"<Name>Paint</Name>", "<Name>P<aint</Name>"},
          {"<Name>Paint</Name>", "<Name>a < b & <c</Name"},
          {"<Name>Paint</Name>", "<Name>Paint</Name></Task></Tasks>"},
          {"<Name>Paint</Name>", "<Name a=\"1>Paint</Name>"},
          {"</Task></Tasks>", ""},
          {"<!-- saved -->", "<!-- saved -- >"},
          {"]]>", "]] >"},
          {"<Title>House", "<Title><!-- House -> "},
          {"</Project>", "</project>"},
          {"</Project>", "</Project>\n<"},
          {"</Project>", "</Project>\n<Project"},
          {"</Project>", "</Project>\n]]> and more <a"},
          {"<Title>House</Title>", "<Project>1</Project>"},
          {"<Project xmlns=\"http://schemas.microsoft.com/project\">", "<Project xmlns="}}) {
        EXPECT_FALSE(MSPDIIsCutOff(withReplaced(plan, piece, other))) << piece << " -> " << other;
    }
    EXPECT_FALSE(MSPDIIsCutOff("<Project/>"));
    EXPECT_FALSE(MSPDIIsCutOff("<p:Project xmlns:p=\"u\"><p:Title>a</Title></p:Project>"));
}

// What ends early is the mail, the page or the archive around it.
TEST(MSPDICutOffTest, isNotAPlanInsideAnotherFile) {
    EXPECT_FALSE(MSPDIIsCutOff("<html><body><br>" + plan));
    EXPECT_FALSE(MSPDIIsCutOff("<mail><part>" + plan + "</part><pa"));
    EXPECT_TRUE(MSPDIIsCutOff("<mail><part>" + plan.substr(0, plan.size() - 20)));
}

TEST(MSPDICutOffTest, looksAtAFileAsItStandsInTheFileSystem) {
    ServicesInMemory world;
    world.machine.addFile("/plans/Cut.xml", plan.substr(0, plan.size() - 3));
    world.machine.addFile("/plans/Whole.xml", plan);
    EXPECT_TRUE(MSPDIIsPlanCutOff("/plans/Cut.xml", world.services.fileSystem));
    EXPECT_FALSE(MSPDIIsPlanCutOff("/plans/Whole.xml", world.services.fileSystem));
    EXPECT_FALSE(MSPDIIsPlanCutOff("/plans/None.xml", world.services.fileSystem));
}
