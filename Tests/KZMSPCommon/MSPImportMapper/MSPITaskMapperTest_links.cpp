#include "TaskMapping.h"

namespace {

const std::string otherTasks =
    "<Task><UID>1</UID></Task><Task><UID>2</UID><IsNull>1</IsNull></Task><Task><UID>5</UID></Task>"
    "<Task><UID>5</UID></Task><Task><UID> 012 </UID></Task><Task><UID>0</UID></Task><Task><UID>9x</UID></Task>"
    "<Task><UID>3</UID><UID>4</UID></Task>";

// The links in the target of a task with UID 7 that has these.
std::string linksOf(std::string_view links) {
    const auto all = TaskMapping("<UID>7</UID>" + std::string(links), {.otherTasks = otherTasks}).content();
    const std::string before = "<effort>0</effort>";
    return all.substr(all.find(before) + before.size());
}

std::string linkTo(const std::string& uid, const std::string& type = "1") {
    return "<PredecessorLink><PredecessorUID>" + uid + "</PredecessorUID><Type>" + type + "</Type></PredecessorLink>";
}

}  // namespace

TEST(MSPITaskMapperLinks, haveAKindByType) {
    const std::pair<const char*, const char*> table[] = {{"0", "FF"}, {"1", "FS"}, {"2", "SF"}, {"3", "SS"}};
    for (const auto& [type, kind] : table) {
        EXPECT_EQ(linksOf(linkTo("1", type)), "<prerequisite-task idref=\"t1\" kind=\"" + std::string(kind) + "\"/>");
    }
}

TEST(MSPITaskMapperLinks, ofOtherMissingOrSeveralTypesHaveNoKind) {
    const std::string bare = "<prerequisite-task idref=\"t1\"/>";
    EXPECT_EQ(linksOf(linkTo("1", "4")), bare);
    EXPECT_EQ(linksOf(linkTo("1", "-1")), bare);
    EXPECT_EQ(linksOf("<PredecessorLink><PredecessorUID>1</PredecessorUID></PredecessorLink>"), bare);
    EXPECT_EQ(linksOf("<PredecessorLink><PredecessorUID>1</PredecessorUID><Type>1</Type><Type>1</Type>"
                      "</PredecessorLink>"),
              bare);
}

TEST(MSPITaskMapperLinks, comeInDocumentOrderDoubleOnesAndLoopsIncludedWithoutLags) {
    EXPECT_EQ(linksOf("<PredecessorLink><PredecessorUID>12</PredecessorUID><Type>3</Type><LinkLag>4800</LinkLag>"
                      "<LagFormat>7</LagFormat></PredecessorLink>" +
                      linkTo("1") + linkTo("1") + linkTo("7")),
              "<prerequisite-task idref=\"t12\" kind=\"SS\"/><prerequisite-task idref=\"t1\" kind=\"FS\"/>"
              "<prerequisite-task idref=\"t1\" kind=\"FS\"/><prerequisite-task idref=\"t7\" kind=\"FS\"/>");
}

TEST(MSPITaskMapperLinks, toTasksThatAreNotThereAreDropped) {
    for (const auto* uid : {"6", "-1", "-5", "9"}) {
        EXPECT_EQ(linksOf(linkTo(uid)), "") << uid;
    }
    EXPECT_EQ(linksOf("<PredecessorLink><Type>1</Type></PredecessorLink>"), "");
    EXPECT_EQ(linksOf("<PredecessorLink><PredecessorUID>1</PredecessorUID><PredecessorUID>1</PredecessorUID>"
                      "</PredecessorLink>"),
              "");
}

TEST(MSPITaskMapperLinks, toAUIDThatTwoTasksHaveAreDropped) {
    EXPECT_EQ(linksOf(linkTo("5")), "");
}

TEST(MSPITaskMapperLinks, toANullTaskOrTheRootTaskStay) {
    EXPECT_EQ(linksOf(linkTo("2")), "<prerequisite-task idref=\"t2\" kind=\"FS\"/>");
    EXPECT_EQ(linksOf(linkTo("0")), "<prerequisite-task idref=\"t0\" kind=\"FS\"/>");
}

TEST(MSPITaskMapperLinks, areWrittenWithThePlainNumber) {
    EXPECT_EQ(linksOf(linkTo(" 0012 ")), "<prerequisite-task idref=\"t12\" kind=\"FS\"/>");
    EXPECT_EQ(linksOf(linkTo("1.7")), "<prerequisite-task idref=\"t1\" kind=\"FS\"/>");
}

TEST(MSPITaskMapperLinks, findATaskByEachOfItsUIDs) {
    EXPECT_EQ(linksOf(linkTo("3")), "<prerequisite-task idref=\"t3\" kind=\"FS\"/>");
    EXPECT_EQ(linksOf(linkTo("4")), "<prerequisite-task idref=\"t4\" kind=\"FS\"/>");
}
