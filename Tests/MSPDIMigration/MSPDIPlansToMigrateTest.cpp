#include "MSPDIPlansToMigrate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "MSPCFileSystem.h"
#include "ScopedTempFolder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PlansToMigrateTest : public testing::Test {
protected:
    // "<plan> <folder>", without the folder of the test.
    std::vector<std::string> found(const std::string& listOrFolder, bool keepsTree = false) {
        const auto result = MSPDIFindPlans(folder / listOrFolder, keepsTree, "/out", files);
        obstacle = result.obstacle.value_or("");
        std::vector<std::string> texts;
        for (const auto& plan : result.plans) {
            texts.push_back(plan.path.substr(folder.path().size() + 1) + " " + plan.folder);
        }
        return texts;
    }

    ScopedTempFolder folder;
    MSPCDiskFileSystem files;
    std::string obstacle;
};

}  // namespace

TEST_F(PlansToMigrateTest, findsAllPlansBelowAFolder) {
    for (const auto* name : {"in/b.xml", "in/A.XML", "in/c.mspxml", "in/notes.txt", "in/deep/er/d.xml",
                             "in/{=x=}/e.xml", "in/Old.kdzx/Actual.xml", "in/.hidden/f.xml", "in/.g.xml"}) {
        folder.addFile(name);
    }
    EXPECT_THAT(found("in"), ElementsAre("in/.g.xml /out", "in/A.XML /out", "in/b.xml /out", "in/c.mspxml /out",
                                         "in/deep/er/d.xml /out", "in/{=x=}/e.xml /out"));
    EXPECT_THAT(found("in", true), ElementsAre("in/.g.xml /out", "in/A.XML /out", "in/b.xml /out", "in/c.mspxml /out",
                                               "in/deep/er/d.xml /out/deep/er", "in/{=x=}/e.xml /out/{=x=}"));
    EXPECT_EQ(obstacle, "");
}

TEST_F(PlansToMigrateTest, followsNoLinksToFolders) {
    folder.addFile("in/a.xml");
    folder.addFile("other/b.xml");
    ASSERT_EQ(::symlink(".", (folder / "in/loop").c_str()), 0);
    ASSERT_EQ(::symlink("../other", (folder / "in/link").c_str()), 0);
    ASSERT_EQ(::symlink("../other/b.xml", (folder / "in/link.xml").c_str()), 0);
    EXPECT_THAT(found("in"), ElementsAre("in/a.xml /out", "in/link.xml /out"));
    ASSERT_EQ(::symlink("in", (folder / "start").c_str()), 0);
    EXPECT_THAT(found("start"), ElementsAre("start/a.xml /out", "start/link.xml /out"));
}

TEST_F(PlansToMigrateTest, takesEachPlanOfAListOnce) {
    const auto path = folder / "";
    folder.addFile("list.txt", "\xEF\xBB\xBF:: plans\r\n\r\n" + path + "a.xml\r\n" + path + "./b.xml\n" + path +
                                   "a.xml\n" + path + "x/../a.xml\n" + path + "none.xml\n" + path + "notes.txt\n");
    EXPECT_THAT(found("list.txt"), ElementsAre("a.xml /out", "b.xml /out", "none.xml /out", "notes.txt /out"));
}

TEST_F(PlansToMigrateTest, saysWhatIsNoListAndNoFolder) {
    EXPECT_THAT(found("none"), IsEmpty());
    EXPECT_EQ(obstacle, folder / "none: no such list or folder");
    folder.addFile("list.txt", "a.xml");
    EXPECT_THAT(found("list.txt", true), IsEmpty());
    EXPECT_EQ(obstacle, folder / "list.txt: --keep-tree takes a folder, not a list");
    folder.addFile("latin.txt", "\xE4.xml");
    EXPECT_THAT(found("latin.txt"), IsEmpty());
    EXPECT_EQ(obstacle, folder / "latin.txt: it cannot be read as a list in UTF-8");
    folder.addFile("plan.XML", "<Project/>");
    EXPECT_THAT(found("plan.XML"), IsEmpty());
    EXPECT_EQ(obstacle, folder / "plan.XML: a plan, not a list; mspdi import takes it");
    EXPECT_EQ(MSPDIFindPlans("", false, "/out", files).obstacle, ": no such list or folder");
    folder.addFolder("empty");
    EXPECT_THAT(found("empty"), IsEmpty());
    EXPECT_EQ(obstacle, "");
}
