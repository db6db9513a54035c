#include "MSPITOCUserData.h"

#include <gtest/gtest.h>

#include <string>

#include "ExpectRaises.h"
#include "MSPIUserDataMapper.h"
#include "MappingFixture.h"

namespace {

// What is recorded while a scenario is mapped, in a document of its own as there.
class Recorded {
public:
    void record(std::optional<std::string_view> tag, const std::string& name) {
        MSPIUserData userData;
        userData.set(name, name + " value");
        MSPIUserDataMapper(elements, _document).setUserDataTOCElementsForTagFromDictionary(tag, userData);
    }

private:
    MSPCXMLDocument _document;

public:
    MSPIUserDataTOCElements elements;  // destroyed before the document it belongs to
};

constexpr std::string_view projectData = "<user-data><key>P</key><string>P value</string></user-data>";
constexpr std::string_view taskKeys = "<user-data><key>T</key><null/></user-data>";
constexpr std::string_view resourceKeys = "<user-data><key>R</key><null/></user-data>";

enum Records { ForProject = 1, ForTasks = 2, ForResources = 4, ForAll = 7 };

// What becomes of the content of `project`.
std::string projectAfter(const std::string& content, int records) {
    const auto toc = documentFromXML("<toc><project>" + content + "</project></toc>", MSPCXMLContent::Everything);
    Recorded recorded;
    if ((records & ForProject) != 0) {
        recorded.record(std::nullopt, "P");
    }
    if ((records & ForTasks) != 0) {
        recorded.record(MSPITaskUserDataKeysTag, "T");
    }
    if ((records & ForResources) != 0) {
        recorded.record(MSPIResourceUserDataKeysTag, "R");
    }
    updateTOCUserData(toc.root(), recorded.elements);
    const auto markup = markupOf(toc);
    constexpr std::string_view before = "<toc><project>";
    constexpr std::string_view after = "</project></toc>";
    EXPECT_TRUE(markup.starts_with(before) && markup.ends_with(after)) << markup;
    return markup.substr(before.size(), markup.size() - before.size() - after.size());
}

std::string concatenated(std::initializer_list<std::string_view> pieces) {
    std::string text;
    for (const auto piece : pieces) {
        text += piece;
    }
    return text;
}

TEST(MSPITOCUserData, FollowsTheLastSettingInTheOrderProjectTasksResources) {
    EXPECT_EQ(projectAfter("<scenario/><base-style/><named-styles/><!--c--><other/>", ForAll),
              concatenated({"<scenario/><base-style/><named-styles/>", projectData, "<task-user-data-keys>", taskKeys,
                            "</task-user-data-keys><resource-user-data-keys>", resourceKeys,
                            "</resource-user-data-keys><!--c--><other/>"}));
}

TEST(MSPITOCUserData, FollowsTheLastScenarioOrTheNextResourceIdWithoutSettings) {
    EXPECT_EQ(projectAfter("<next-resource-id/><scenario/><scenario/><x/>", ForTasks),
              concatenated({"<next-resource-id/><scenario/><scenario/><task-user-data-keys>", taskKeys,
                            "</task-user-data-keys><x/>"}));
    EXPECT_EQ(
        projectAfter("<next-resource-id/><x/>", ForResources),
        concatenated({"<next-resource-id/><resource-user-data-keys>", resourceKeys, "</resource-user-data-keys><x/>"}));
}

TEST(MSPITOCUserData, OfNothingRecordedChangesNothing) {
    EXPECT_EQ(projectAfter("<scenario/><x/>", 0), "<scenario/><x/>");
}

TEST(MSPITOCUserData, OfResourcesAloneFollowsTheSettings) {
    EXPECT_EQ(projectAfter("<scenario/><named-styles/><x/>", ForResources),
              concatenated({"<scenario/><named-styles/><resource-user-data-keys>", resourceKeys,
                            "</resource-user-data-keys><x/>"}));
}

TEST(MSPITOCUserData, OfTheProjectIsDroppedWhereTheTemplateHasIts) {
    EXPECT_EQ(projectAfter("<scenario/><user-data>kept</user-data>", ForProject),
              "<scenario/><user-data>kept</user-data>");
}

TEST(MSPITOCUserData, FollowsTheUserDataOfTheTemplate) {
    EXPECT_EQ(projectAfter("<scenario/><named-styles/><x/><user-data/><y/>", ForAll),
              concatenated({"<scenario/><named-styles/><x/><user-data/><task-user-data-keys>", taskKeys,
                            "</task-user-data-keys><resource-user-data-keys>", resourceKeys,
                            "</resource-user-data-keys><y/>"}));
    EXPECT_EQ(projectAfter("<scenario/><named-styles/><x/><user-data/><y/>", ForResources),
              concatenated({"<scenario/><named-styles/><x/><user-data/><resource-user-data-keys>", resourceKeys,
                            "</resource-user-data-keys><y/>"}));
}

TEST(MSPITOCUserData, OfResourcesFollowsTheTaskKeysOfTheTemplate) {
    EXPECT_EQ(projectAfter("<scenario/><named-styles/><x/><task-user-data-keys/><y/>", ForResources),
              concatenated({"<scenario/><named-styles/><x/><task-user-data-keys/><resource-user-data-keys>",
                            resourceKeys, "</resource-user-data-keys><y/>"}));
}

TEST(MSPITOCUserData, KeepsTheKeyListsOfTheTemplateAndAddsOneMore) {
    EXPECT_EQ(projectAfter("<scenario/><resource-user-data-keys><user-data>r</user-data><!--c-->"
                           "</resource-user-data-keys><task-user-data-keys><user-data>t</user-data>"
                           "</task-user-data-keys>",
                           ForTasks | ForResources),
              concatenated({"<scenario/><resource-user-data-keys><user-data>r</user-data><!--c-->", resourceKeys,
                            "</resource-user-data-keys><task-user-data-keys><user-data>t</user-data>", taskKeys,
                            "</task-user-data-keys>"}));
}

TEST(MSPITOCUserData, OfTasksStandsBeforeTheResourceKeysOfTheTemplate) {
    EXPECT_EQ(projectAfter("<scenario/><named-styles/><resource-user-data-keys/>", ForTasks),
              concatenated({"<scenario/><named-styles/><task-user-data-keys>", taskKeys,
                            "</task-user-data-keys><resource-user-data-keys/>"}));
}

TEST(MSPITOCUserData, OfTheProjectStandsBeforeTheTaskKeysOfTheTemplate) {
    EXPECT_EQ(
        projectAfter("<scenario/><named-styles/><task-user-data-keys/>", ForProject | ForResources),
        concatenated({"<scenario/><named-styles/>", projectData, "<task-user-data-keys/><resource-user-data-keys>",
                      resourceKeys, "</resource-user-data-keys>"}));
}

TEST(MSPITOCUserData, UsesTheLastOfSeveralElementsOfOneName) {
    EXPECT_EQ(projectAfter("<scenario/><user-data>1</user-data><x/><user-data>2</user-data><y/>", ForTasks),
              concatenated({"<scenario/><user-data>1</user-data><x/><user-data>2</user-data><task-user-data-keys>",
                            taskKeys, "</task-user-data-keys><y/>"}));
    EXPECT_EQ(projectAfter("<task-user-data-keys/><x/><task-user-data-keys/><y/>", ForTasks | ForResources),
              concatenated({"<task-user-data-keys/><x/><task-user-data-keys>", taskKeys,
                            "</task-user-data-keys><resource-user-data-keys>", resourceKeys,
                            "</resource-user-data-keys><y/>"}));
}

TEST(MSPITOCUserData, NeedsAProject) {
    const auto toc = documentFromXML("<toc><window/></toc>");
    Recorded recorded;
    recorded.record(MSPITaskUserDataKeysTag, "T");
    EXPECT_RAISES(updateTOCUserData(toc.root(), recorded.elements), MSPCInternalInconsistency,
                  "Failed to find 'project' element in TOC XML DOM.");
}

TEST(MSPITOCUserData, RaisesWhereItHasNoPlace) {
    for (const int records : {ForProject, ForTasks, ForResources}) {
        EXPECT_RAISES(projectAfter("<title/>", records), MSPCInternalInconsistency,
                      "Failed to find element preceeding TOC Project Gantt Settings section.");
    }
}

}  // namespace
