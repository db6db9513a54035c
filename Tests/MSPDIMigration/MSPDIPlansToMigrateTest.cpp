#include "MSPDIPlansToMigrate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "MSPCFileSystem.h"
#include "MSPDIReadOnlyFileSystem.h"
#include "ScopedTempFolder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PlansToMigrateTest : public testing::Test {
protected:
    // The plans, without the folder of the test.
    std::vector<std::string> found(const std::string& listOrFolder, bool keepsTree = false) {
        return told(MSPDIFindPlans(folder / listOrFolder, keepsTree, files));
    }
    std::vector<std::string> told(const MSPDIPlansToMigrate& result) {
        obstacle = result.obstacle.value_or("");
        treeRoot = result.treeRoot;
        unread.clear();
        for (const auto& [path, reason] : result.unread) {
            unread.push_back(path.substr(folder.path().size() + 1) + ": " + reason);
        }
        std::vector<std::string> texts;
        MSPDIPlanPaths::Walk walk(result.plans);
        while (const auto* const plan = walk.next()) {
            texts.push_back(plan->substr(folder.path().size() + 1));
        }
        EXPECT_EQ(texts.size(), result.plans.size());
        return texts;
    }

    ScopedTempFolder folder;
    MSPCDiskFileSystem files;
    std::string obstacle;
    std::string treeRoot;
    std::vector<std::string> unread;
};

// Folders that cannot be looked through, whoever looks: one whose names are not told, and one of which only the names
// are.
class ClosedFolders final : public MSPDIReadOnlyFileSystem {
public:
    using MSPDIReadOnlyFileSystem::MSPDIReadOnlyFileSystem;

    [[nodiscard]] std::optional<std::vector<std::string>> namesIn(const std::string& path,
                                                                  std::string* failure) const override {
        if (path.ends_with("/shut")) {
            *failure = "Permission denied";
            return std::nullopt;
        }
        return MSPDIReadOnlyFileSystem::namesIn(path, failure);
    }
    [[nodiscard]] bool leadsToAnything(const std::string& path) const override {
        return path.find("/dim/") == std::string::npos && MSPDIReadOnlyFileSystem::leadsToAnything(path);
    }
    [[nodiscard]] bool isDirectory(const std::string& path) const override {
        return path.find("/dim/") == std::string::npos && MSPDIReadOnlyFileSystem::isDirectory(path);
    }
};

}  // namespace

TEST_F(PlansToMigrateTest, findsAllPlansBelowAFolder) {
    for (const auto* name :
         {"in/b.xml", "in/A.XML", "in/c.mspxml", "in/notes.txt", "in/deep/er/d.xml", "in/{=x=}/e.xml",
          "in/Old.kdzx/Actual.xml", "in/.hidden/f.xml", "in/.g.xml", "in/.xml", "in/.mspxml"}) {
        folder.addFile(name);
    }
    EXPECT_THAT(found("in"),
                ElementsAre("in/.g.xml", "in/A.XML", "in/b.xml", "in/c.mspxml", "in/deep/er/d.xml", "in/{=x=}/e.xml"));
    EXPECT_EQ(treeRoot, "");
    EXPECT_EQ(found("in", true).size(), 6U);
    EXPECT_EQ(treeRoot, folder / "in");
    EXPECT_EQ(obstacle, "");
}

TEST_F(PlansToMigrateTest, goesOnWhereAFolderCannotBeRead) {
    for (const auto* name : {"in/a.xml", "in/shut/b.xml", "in/dim/c.xml", "in/dim/more/d.xml", "in/z/e.xml"}) {
        folder.addFile(name);
    }
    const ClosedFolders closed(files);
    EXPECT_THAT(told(MSPDIFindPlans(folder / "in", false, closed)), ElementsAre("in/a.xml", "in/z/e.xml"));
    EXPECT_THAT(unread,
                ElementsAre("in/dim: the names in it are known, but nothing else", "in/shut: Permission denied"));
    EXPECT_EQ(obstacle, "");
    EXPECT_THAT(told(MSPDIFindPlans(folder / "in/shut", false, closed)), IsEmpty());
    EXPECT_EQ(obstacle, folder / "in/shut: Permission denied") << "there is nothing to go on with";
}

TEST_F(PlansToMigrateTest, endsInCirclesOfLinks) {
    folder.addFile("in/a/plan.xml");
    ASSERT_EQ(::symlink("../b", (folder.addFolder("in/a") + "/to b").c_str()), 0);
    ASSERT_EQ(::symlink("../a", (folder.addFolder("in/b") + "/to a").c_str()), 0);
    ASSERT_EQ(::symlink("self.xml", (folder / "in/self.xml").c_str()), 0);
    EXPECT_THAT(found("in"), ElementsAre("in/a/plan.xml", "in/self.xml"));
    EXPECT_THAT(unread, IsEmpty());
}

TEST_F(PlansToMigrateTest, followsNoLinksToFolders) {
    folder.addFile("in/a.xml");
    folder.addFile("other/b.xml");
    ASSERT_EQ(::symlink(".", (folder / "in/loop").c_str()), 0);
    ASSERT_EQ(::symlink("../other", (folder / "in/link").c_str()), 0);
    ASSERT_EQ(::symlink("../other/b.xml", (folder / "in/link.xml").c_str()), 0);
    EXPECT_THAT(found("in"), ElementsAre("in/a.xml", "in/link.xml"));
    ASSERT_EQ(::symlink("in", (folder / "start").c_str()), 0);
    EXPECT_THAT(found("start"), ElementsAre("start/a.xml", "start/link.xml"));
}

TEST_F(PlansToMigrateTest, takesEachPlanOfAListOnce) {
    const auto path = folder / "";
    folder.addFile("list.txt", "\xEF\xBB\xBF:: plans\r\n\r\n" + path + "a.xml\r\n" + path + "./b.xml\n" + path +
                                   "a.xml\n" + path + "x/../a.xml\n" + path + "none.xml\n" + path + "notes.txt\n");
    EXPECT_THAT(found("list.txt"), ElementsAre("a.xml", "b.xml", "none.xml", "notes.txt"));
}

TEST_F(PlansToMigrateTest, saysWhatIsNoListAndNoFolder) {
    EXPECT_THAT(found("none"), IsEmpty());
    EXPECT_EQ(obstacle, folder / "none: no such list or folder");
    folder.addFile("latin.txt", "\xE4.xml");
    EXPECT_THAT(found("latin.txt"), IsEmpty());
    EXPECT_EQ(obstacle, folder / "latin.txt: it cannot be read as a list in UTF-8");
    folder.addFile("plan.XML", "<Project/>");
    EXPECT_THAT(found("plan.XML"), IsEmpty());
    EXPECT_EQ(obstacle, folder / "plan.XML: a plan, not a list; mspdi import takes it");
    EXPECT_EQ(MSPDIFindPlans("", false, files).obstacle, ": no such list or folder");
    folder.addFolder("empty");
    EXPECT_THAT(found("empty"), IsEmpty());
    EXPECT_EQ(obstacle, "");
}
