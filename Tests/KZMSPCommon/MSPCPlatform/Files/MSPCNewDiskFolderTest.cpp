#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>

#include "MSPCFileSystem.h"
#include "ScopedTempFolder.h"

namespace fs = std::filesystem;

namespace {

using testing::MatchesRegex;

class MSPCNewDiskFolderTest : public ::testing::Test {
protected:
    MSPCNewDiskFolderTest() {
        folder.addFile("T.kdzx/Actual.xml", "template");
        folder.addFolder("out");
    }

    // A new folder with the template's content.
    std::unique_ptr<MSPCNewFolder> begin(bool replacesOld = false, const std::string& name = "Plan.kdzx") {
        auto begun = files.newFolder(folder / ("out/" + name), replacesOld);
        if (begun) {
            EXPECT_EQ(begun->copyContent(folder / "T.kdzx"), std::nullopt);
        }
        return begun;
    }
    std::string write(MSPCNewFolder& begun, const std::string& name, const std::string& bytes) const {
        return begun
            .writeAtomically(folder / ("out/Plan.kdzx/" + name), [&](MSPCByteWriter& writer) { writer.write(bytes); })
            .value_or("");
    }
    // What `appear` answers: "" for success, the failure otherwise, with a mark where the name is taken.
    static std::string appear(MSPCNewFolder& begun) {
        bool isTaken = true;
        const auto failure = begun.appear(isTaken);
        return failure.value_or("") + (isTaken ? " (taken)" : "");
    }
    // Does something in another process, which then is killed.
    static void killAfter(const std::function<void()>& deed) {
        const pid_t child = ::fork();
        if (child == 0) {
            deed();
            ::raise(SIGKILL);
        }
        ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    }
    std::size_t hiddenItems() const {
        const auto listing = folder.listing("out");
        std::size_t count = 0;
        for (auto at = listing.find(".MSPDIImport-"); at != std::string::npos;
             at = listing.find(".MSPDIImport-", at + 1)) {
            ++count;
        }
        return count;
    }

    ScopedTempFolder folder;
    MSPCDiskFileSystem files;
};

}  // namespace

TEST_F(MSPCNewDiskFolderTest, isOutOfSightUntilItAppears) {
    const auto begun = begin();
    EXPECT_FALSE(fs::exists(folder / "out/Plan.kdzx"));
    EXPECT_EQ(write(*begun, "Actual.xml", "new"), "");
    EXPECT_FALSE(fs::exists(folder / "out/Plan.kdzx"));
    EXPECT_EQ(appear(*begun), "");
    EXPECT_EQ(folder.contents("out/Plan.kdzx/Actual.xml"), "new");
    EXPECT_EQ(begun->remainsOfReplaced(), "");
}

TEST_F(MSPCNewDiskFolderTest, beginsWithItsFirstFileWhereNothingIsCopied) {
    const auto begun = files.newFolder(folder / "out/Plan.kdzx", false);
    EXPECT_EQ(write(*begun, "Actual.xml", "new"), "");
    EXPECT_EQ(write(*begun, "__TOC.xml", "contents"), "");
    EXPECT_EQ(folder.listing("out").find("Plan.kdzx "), std::string::npos);
    EXPECT_EQ(appear(*begun), "");
    EXPECT_EQ(folder.listing("out/Plan.kdzx"), "Actual.xml __TOC.xml ");
    EXPECT_EQ(folder.contents("out/Plan.kdzx/Actual.xml"), "new");
    const auto nowhere = files.newFolder(folder / "none/Plan.kdzx", false);
    EXPECT_EQ(write(*nowhere, "Actual.xml", "new"), "No such file or directory");
}

TEST_F(MSPCNewDiskFolderTest, leavesNothingBesideIt) {
    auto begun = begin();
    EXPECT_EQ(appear(*begun), "");
    begun.reset();
    EXPECT_EQ(folder.listing("out"), "Plan.kdzx ");
    EXPECT_EQ(folder.listing("out/Plan.kdzx"), "Actual.xml ");
}

TEST_F(MSPCNewDiskFolderTest, goesWithItsObjectUnlessItAppeared) {
    begin().reset();
    EXPECT_EQ(folder.listing("out"), "");
}

TEST_F(MSPCNewDiskFolderTest, readsItsFilesByThePathsThatTheyWillHave) {
    const auto begun = begin();
    EXPECT_EQ(begun->readFile(folder / "out/Plan.kdzx/Actual.xml"), "template");
    std::string failure;
    EXPECT_EQ(begun->readFile(folder / "out/Plan.kdzx/none", &failure), std::nullopt);
    EXPECT_EQ(failure, "No such file or directory");
    EXPECT_EQ(begun->openFile(folder / "out/Plan.kdzx/Actual.xml")->expectedSize(), 8U);
}

TEST_F(MSPCNewDiskFolderTest, keepsItsNameFromOthersBeforeItAppears) {
    const auto first = begin();
    EXPECT_EQ(begin(), nullptr);
    const auto second = begin(false, "Plan-1.kdzx");
    EXPECT_EQ(appear(*second), "");
    EXPECT_EQ(appear(*first), "");
    EXPECT_EQ(begin(), nullptr);
}

TEST_F(MSPCNewDiskFolderTest, anythingThatHasTheNameKeepsIt) {
    folder.addFolder("out/a.kdzx");
    folder.addFile("out/b.kdzx");
    fs::create_symlink("nowhere", folder / "out/c.kdzx");
    for (const auto* name : {"a.kdzx", "b.kdzx", "c.kdzx"}) {
        EXPECT_EQ(begin(false, name), nullptr) << name;
    }
    EXPECT_EQ(folder.listing("out"), "a.kdzx b.kdzx c.kdzx ");
}

TEST_F(MSPCNewDiskFolderTest, findsItsNameTakenWhereSomethingCameMeanwhile) {
    const auto begun = begin();
    folder.addFolder("out/Plan.kdzx");  // even an empty folder is not replaced
    EXPECT_EQ(appear(*begun), "File exists (taken)");
    folder.addFile("out/Plan-1.kdzx");
    begun->setPath(folder / "out/Plan-1.kdzx");
    EXPECT_EQ(appear(*begun), "File exists (taken)");
    begun->setPath(folder / "out/Plan-2.kdzx");
    EXPECT_EQ(appear(*begun), "");
    EXPECT_EQ(folder.listing("out/Plan.kdzx"), "");
    EXPECT_EQ(folder.contents("out/Plan-2.kdzx/Actual.xml"), "template");
}

TEST_F(MSPCNewDiskFolderTest, aLinkPutInItsPlaceLeadsNothingAstray) {
    folder.addFile("victim/Actual.xml", "precious");
    const auto begun = begin();
    fs::create_directory_symlink(folder / "victim", folder / "out/Plan.kdzx");
    EXPECT_EQ(write(*begun, "Actual.xml", "new"), "");
    EXPECT_EQ(appear(*begun), "File exists (taken)");
    EXPECT_EQ(folder.contents("victim/Actual.xml"), "precious");
    EXPECT_EQ(folder.listing("victim"), "Actual.xml ");
}

TEST_F(MSPCNewDiskFolderTest, theHiddenFolderSwappedForALinkLeadsNothingAstray) {
    folder.addFile("victim/Actual.xml", "precious");
    const auto begun = begin();
    const auto hidden = ".MSPDIImport-" + std::to_string(::getpid()) + "-1.tmp";
    ASSERT_TRUE(fs::is_directory(folder / ("out/" + hidden)));
    fs::rename(folder / ("out/" + hidden), folder / "out/moved");
    fs::create_directory_symlink(folder / "victim", folder / ("out/" + hidden));
    EXPECT_EQ(write(*begun, "Actual.xml", "new"), "");
    EXPECT_EQ(folder.contents("victim/Actual.xml"), "precious");
    EXPECT_EQ(folder.contents("out/moved/Actual.xml"), "new");
    EXPECT_EQ(appear(*begun), "Stale file handle") << "somebody else's link is not given the name";
    EXPECT_FALSE(fs::exists(fs::symlink_status(folder / "out/Plan.kdzx")));
}

TEST_F(MSPCNewDiskFolderTest, theFolderAroundItMayGetAnotherName) {
    const auto begun = begin();
    fs::rename(folder / "out", folder / "moved");
    folder.addFolder("out");
    EXPECT_EQ(appear(*begun), "");
    EXPECT_EQ(folder.listing("out"), "");
    EXPECT_EQ(folder.contents("moved/Plan.kdzx/Actual.xml"), "template");
}

TEST_F(MSPCNewDiskFolderTest, replacesWhatIsThereInOneStep) {
    folder.addFile("out/a.kdzx/sub/old", "old");
    folder.addFile("out/b.kdzx", "old");
    fs::create_symlink("nowhere", folder / "out/c.kdzx");
    folder.addFile("kept/old", "kept");
    fs::create_directory_symlink(folder / "kept", folder / "out/d.kdzx");
    folder.addFolder("out/e.kdzx");
    for (const auto* name : {"a.kdzx", "b.kdzx", "c.kdzx", "d.kdzx", "e.kdzx", "none.kdzx"}) {
        SCOPED_TRACE(name);
        const auto before = folder.listing("out");
        auto begun = begin(true, name);
        ASSERT_NE(begun, nullptr);
        EXPECT_TRUE(fs::exists(fs::symlink_status(folder / ("out/" + std::string(name)))) ||
                    name == std::string("none.kdzx"));
        EXPECT_EQ(appear(*begun), "");
        EXPECT_EQ(begun->remainsOfReplaced(), "");
        begun.reset();
        EXPECT_EQ(folder.listing("out/" + std::string(name)), "Actual.xml ");
    }
    EXPECT_EQ(folder.listing("out"), "a.kdzx b.kdzx c.kdzx d.kdzx e.kdzx none.kdzx ");
    EXPECT_EQ(folder.contents("kept/old"), "kept");
}

TEST_F(MSPCNewDiskFolderTest, ofTwoThatReplaceTheLastOneStands) {
    folder.addFile("out/Plan.kdzx/old", "old");
    auto first = begin(true);
    auto second = begin(true);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(write(*first, "Actual.xml", "first"), "");
    EXPECT_EQ(write(*second, "Actual.xml", "second"), "");
    EXPECT_EQ(appear(*second), "");
    EXPECT_EQ(appear(*first), "");
    first.reset();
    second.reset();
    EXPECT_EQ(folder.contents("out/Plan.kdzx/Actual.xml"), "first");
    EXPECT_EQ(folder.listing("out"), "Plan.kdzx ");
}

TEST_F(MSPCNewDiskFolderTest, replacesWhatIsGoneByThen) {
    folder.addFile("out/Plan.kdzx/old", "old");
    const auto begun = begin(true);
    fs::remove_all(folder / "out/Plan.kdzx");
    EXPECT_EQ(appear(*begun), "");
    EXPECT_EQ(folder.contents("out/Plan.kdzx/Actual.xml"), "template");
}

TEST_F(MSPCNewDiskFolderTest, theNameOfADeadRunIsFreeAndWhatItLeftGoes) {
    killAfter([this] {
        const auto begun = begin();
        static_cast<void>(write(*begun, "Actual.xml", "half"));
        ::raise(SIGKILL);
    });
    EXPECT_EQ(hiddenItems(), 2U) << "a folder and a lock: " << folder.listing("out");
    auto begun = begin();
    ASSERT_NE(begun, nullptr);
    EXPECT_EQ(appear(*begun), "");
    begun.reset();
    EXPECT_EQ(folder.listing("out"), "Plan.kdzx ");
    EXPECT_EQ(folder.contents("out/Plan.kdzx/Actual.xml"), "template");
}

TEST_F(MSPCNewDiskFolderTest, whatADeadRunLeftGoesWithTheNextRunWhateverItMakes) {
    killAfter([this] {
        const auto one = begin(false, "a.kdzx");
        const auto other = begin(false, "b.kdzx");
        ::raise(SIGKILL);
    });
    EXPECT_EQ(hiddenItems(), 4U) << folder.listing("out");
    begin(false, "c.kdzx").reset();
    EXPECT_EQ(folder.listing("out"), "");
}

TEST_F(MSPCNewDiskFolderTest, ofSeveralThatReplaceOneFolderWhatDeadOnesLeftGoesAndNothingOfThoseThatLive) {
    folder.addFile("out/Plan.kdzx/old", "old");
    const auto first = begin(true);
    for (int number = 0; number < 3; ++number) {
        killAfter([this] {
            const auto begun = begin(true);
            static_cast<void>(write(*begun, "Actual.xml", "half"));
            ::raise(SIGKILL);
        });
    }
    const auto second = begin(true);
    killAfter([this] {
        const auto begun = begin(true);
        ::raise(SIGKILL);
    });
    EXPECT_EQ(hiddenItems(), 6U) << "locks and folders of two that live and a dead one: " << folder.listing("out");
    MSPCDiskFileSystem ofLaterRun;
    ofLaterRun.newFolder(folder / "out/Other.kdzx", false).reset();
    EXPECT_EQ(hiddenItems(), 4U) << folder.listing("out");
    EXPECT_EQ(write(*first, "Actual.xml", "first"), "");
    EXPECT_EQ(appear(*first), "");
    EXPECT_EQ(write(*second, "Actual.xml", "second"), "");
    EXPECT_EQ(appear(*second), "");
    EXPECT_EQ(folder.contents("out/Plan.kdzx/Actual.xml"), "second");
}

TEST_F(MSPCNewDiskFolderTest, aRunThatReplacesAndHasNoLockStillLeavesNothingBesideIt) {
    folder.addFile("out/Plan.kdzx/old", "old");
    auto first = begin(true);
    auto second = begin(true);
    EXPECT_EQ(appear(*first), "");
    first.reset();
    EXPECT_EQ(appear(*second), "");
    second.reset();
    EXPECT_EQ(folder.listing("out"), "Plan.kdzx ");
}

// A folder whose lock somebody else's item stands in the way of has a note all the same.
TEST_F(MSPCNewDiskFolderTest, whatADeadRunWithoutItsNamesLockLeftGoesToo) {
    folder.addFolder("out/.MSPDIImport-Plan.kdzx.tmp");
    killAfter([this] {
        const auto begun = begin();
        ::raise(SIGKILL);
    });
    EXPECT_EQ(hiddenItems(), 3U) << folder.listing("out");
    begin().reset();
    EXPECT_EQ(folder.listing("out"), ".MSPDIImport-Plan.kdzx.tmp ");
}

TEST_F(MSPCNewDiskFolderTest, hiddenItemsThatAreNoLocksStay) {
    folder.addFile("out/.MSPDIImport-of-mine.tmp", "my own words");
    folder.addFile("out/.MSPDIImport-1-1.tmp/document", "of a run without a lock");
    folder.addFile("out/.MSPDIImport-1-2.tmp", "a file in the making");
    fs::create_symlink("nowhere", folder / "out/.MSPDIImport-link.tmp");
    ASSERT_EQ(::mkfifo((folder / "out/.MSPDIImport-pipe.tmp").c_str(), 0600), 0);
    folder.addFile("out/.MSPDIImport-folder.tmp/file", "in a folder");
    const auto before = folder.listing("out");
    begin().reset();
    EXPECT_EQ(folder.listing("out"), before);
    EXPECT_EQ(folder.contents("out/.MSPDIImport-of-mine.tmp"), "my own words");
    EXPECT_EQ(folder.contents("out/.MSPDIImport-1-1.tmp/document"), "of a run without a lock");
    EXPECT_EQ(folder.contents("out/.MSPDIImport-folder.tmp/file"), "in a folder");
}

// The list of a folder may be as long as that of the plans which are imported into it.
TEST_F(MSPCNewDiskFolderTest, aRunLooksForLeftoversInEachFolderOnce) {
    begin().reset();
    killAfter([this] {
        const auto begun = begin(false, "a.kdzx");
        ::raise(SIGKILL);
    });
    begin().reset();
    EXPECT_EQ(hiddenItems(), 2U);
    folder.addFolder("beside");
    fs::rename(folder / "out", folder / "beside/out");
    files.newFolder(folder / "beside/out/Plan.kdzx", false).reset();
    EXPECT_EQ(folder.listing("beside/out"), "");
}

TEST_F(MSPCNewDiskFolderTest, nothingGoesThatSomebodyHolds) {
    const auto note = [this](const std::string& name) { folder.addFile("out/.MSPDIImport-Plan.kdzx.tmp", name); };
    folder.addFile("out/.MSPDIImport-1-1.tmp/kept", "of a run that lives");
    const int held = ::open((folder / "out/.MSPDIImport-1-1.tmp").c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(::flock(held, LOCK_EX | LOCK_NB), 0);
    note(".MSPDIImport-1-1.tmp");
    begin().reset();
    EXPECT_EQ(folder.contents("out/.MSPDIImport-1-1.tmp/kept"), "of a run that lives");
    ::close(held);
    note(".MSPDIImport-1-1.tmp");
    begin().reset();
    EXPECT_EQ(folder.listing("out"), "");
}

TEST_F(MSPCNewDiskFolderTest, aNoteNamesNothingButHiddenFoldersBesideIt) {
    folder.addFile("kept/file", "kept");
    folder.addFile("out/kept/file", "kept");
    fs::create_directory_symlink(folder / "kept", folder / "out/.MSPDIImport-1-2.tmp");
    for (const std::string name : {"kept", "../kept", ".", "..", "", ".MSPDIImport-1-2.tmp", ".MSPDIImport-.tmp",
                                   ".MSPDIImport-1-1.tmp/../kept", "/"}) {
        folder.addFile("out/.MSPDIImport-Plan.kdzx.tmp", name);
        begin().reset();
        EXPECT_EQ(folder.contents("kept/file"), "kept") << name;
        EXPECT_EQ(folder.contents("out/kept/file"), "kept") << name;
    }
}

TEST_F(MSPCNewDiskFolderTest, goesPastAHiddenFolderOfAKilledRun) {
    const auto left = folder.addFile("out/.MSPDIImport-" + std::to_string(::getpid()) + "-1.tmp/Actual.xml", "left");
    auto begun = begin();
    EXPECT_EQ(appear(*begun), "");
    begun.reset();
    EXPECT_EQ(folder.contents("out/Plan.kdzx/Actual.xml"), "template");
    EXPECT_TRUE(fs::exists(left));
}

TEST_F(MSPCNewDiskFolderTest, goesOnWhereTheLockCannotBeHad) {
    folder.addFolder("out/.MSPDIImport-Plan.kdzx.tmp");
    fs::create_symlink("nowhere", folder / "out/.MSPDIImport-b.kdzx.tmp");
    ASSERT_EQ(::mkfifo((folder / "out/.MSPDIImport-c.kdzx.tmp").c_str(), 0600), 0);
    for (const auto* name : {"Plan.kdzx", "b.kdzx", "c.kdzx"}) {
        const auto begun = begin(false, name);
        ASSERT_NE(begun, nullptr) << name;
        EXPECT_EQ(appear(*begun), "") << name;
    }
}

TEST_F(MSPCNewDiskFolderTest, takesTheLongestNameThatTheFileSystemAllowsAndNoLonger) {
    const auto begun = begin(false, std::string(250, 'n') + ".kdzx");
    ASSERT_NE(begun, nullptr);
    EXPECT_EQ(appear(*begun), "");
    const auto path = folder / ("out/" + std::string(251, 'n') + ".kdzx");
    EXPECT_EQ(files.newFolder(path, false)->copyContent(folder / "T.kdzx"), "'" + path + "': File name too long");
}

TEST_F(MSPCNewDiskFolderTest, whatCannotBeRemovedIsNotReplaced) {
    constexpr unsigned nobody = 65'534;
    folder.addFile("out/Plan.kdzx/sub/old", "old");
    fs::permissions(folder.path(), fs::perms(0755));
    fs::permissions(folder / "out", fs::perms(0777));
    fs::permissions(folder / "out/Plan.kdzx/sub", fs::perms(0555));
    const pid_t child = ::fork();
    if (child == 0) {
        const bool isOrdinary = ::geteuid() != 0 || (::setgid(nobody) == 0 && ::setuid(nobody) == 0);
        ::_exit(!isOrdinary ? 2 : files.newFolder(folder / "out/Plan.kdzx", true) == nullptr ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    fs::permissions(folder / "out/Plan.kdzx/sub", fs::perms(0755));
    if (WEXITSTATUS(status) == 2) {
        GTEST_SKIP() << "no ordinary user to be had";
    }
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(folder.contents("out/Plan.kdzx/sub/old"), "old");
}
