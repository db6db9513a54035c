#include <fcntl.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <string_view>
#include <thread>

#include "MSPCFileDescriptor.h"
#include "MSPCFileSystem.h"
#include "ScopedEnvironment.h"
#include "ScopedTempFolder.h"

namespace {

class MSPCDiskFileSystemTest : public ::testing::Test {
protected:
    ScopedTempFolder folder;
    MSPCDiskFileSystem files;
};

}  // namespace

using MSPCDiskFileSystem_standardizedPath = MSPCDiskFileSystemTest;

TEST_F(MSPCDiskFileSystem_standardizedPath, resolvesDotsAndSuperfluousSlashes) {
    const std::pair<const char*, const char*> table[] = {
        {"/a/b.xml", "/a/b.xml"}, {"/a/./b/../c", "/a/c"},
        {"//a///b/", "/a/b"},     {"/..", "/"},
        {"/../../a", "/a"},       {"/", "/"},
        {"/a/..", "/"},           {"/a/...", "/a/..."},
        {"/a/~/b", "/a/~/b"},     {"/a/.hidden", "/a/.hidden"},
    };
    for (const auto& [path, expected] : table) {
        EXPECT_EQ(files.standardizedPath(path), expected) << path;
    }
}

TEST_F(MSPCDiskFileSystem_standardizedPath, leavesARelativePathRelative) {
    const std::pair<const char*, const char*> rows[] = {
        {"Plan.xml", "Plan.xml"},
        {"./Plan.xml", "Plan.xml"},
        {"a//b/", "a/b"},
        {"a/../b/", "b"},
        {"../Plan.xml", "../Plan.xml"},
        {"a/../../b", "../b"},
        {"../../b/..", "../.."},
        {".", "."},
        {"./", "."},
        {"a/..", "."},
        {"..", ".."},
        {"a/./b/../c", "a/c"},
    };
    for (const auto& [path, expected] : rows) {
        EXPECT_EQ(files.standardizedPath(path), expected) << path;
    }
}

TEST_F(MSPCDiskFileSystem_standardizedPath, isMadeAbsoluteInTheCurrentFolder) {
    const auto before = std::filesystem::current_path();
    folder.addFolder("inner");
    std::filesystem::current_path(folder / "inner");
    EXPECT_EQ(files.absolutePath("Plan.xml"), folder / "inner/Plan.xml");
    EXPECT_EQ(files.absolutePath("../Plan.xml"), folder / "Plan.xml");
    EXPECT_EQ(files.absolutePath("."), folder / "inner");
    EXPECT_EQ(files.absolutePath("/a/../b"), "/b");
    EXPECT_EQ(files.absolutePath(""), "");
    std::filesystem::current_path(before);
}

TEST_F(MSPCDiskFileSystem_standardizedPath, resolvesTheHomeFolderOfTheUser) {
    const ScopedEnvironment home("HOME", "/home/mara/");
    EXPECT_EQ(files.standardizedPath("~"), "/home/mara");
    EXPECT_EQ(files.standardizedPath("~/Plans/a.xml"), "/home/mara/Plans/a.xml");
    EXPECT_EQ(files.standardizedPath("~/../x"), "/home/x");
}

TEST_F(MSPCDiskFileSystem_standardizedPath, resolvesTheHomeFolderOfAnotherUser) {
    const ScopedEnvironment home("HOME", "/elsewhere");
    const auto* root = ::getpwnam("root");
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(files.standardizedPath("~root/a"), std::string(root->pw_dir) + "/a");
}

TEST_F(MSPCDiskFileSystem_standardizedPath, asksTheUserListWhereHomeIsUnset) {
    const ScopedEnvironment home("HOME", nullptr);
    const auto* user = ::getpwuid(::getuid());
    ASSERT_NE(user, nullptr);
    EXPECT_EQ(files.standardizedPath("~/a"), std::string(user->pw_dir) + "/a");
}

TEST_F(MSPCDiskFileSystem_standardizedPath, takesAnUnknownUserAsAnOrdinaryName) {
    EXPECT_EQ(files.standardizedPath("~no-such-user/a"), "~no-such-user/a");
}

TEST_F(MSPCDiskFileSystem_standardizedPath, leavesTheEmptyPathEmpty) {
    EXPECT_EQ(files.standardizedPath(""), "");
}

TEST_F(MSPCDiskFileSystem_standardizedPath, doesNotFollowLinks) {
    folder.addFolder("real/inner");
    std::filesystem::create_symlink(folder / "real/inner", folder / "link");
    EXPECT_EQ(files.standardizedPath(folder / "link/../a"), folder / "a");
}

using MSPCDiskFileSystem_queries = MSPCDiskFileSystemTest;

TEST_F(MSPCDiskFileSystem_queries, tellFilesFromFolders) {
    const auto file = folder.addFile("a.xml");
    EXPECT_TRUE(files.exists(file));
    EXPECT_FALSE(files.isDirectory(file));
    EXPECT_TRUE(files.exists(folder.path()));
    EXPECT_TRUE(files.isDirectory(folder.path()));
    EXPECT_FALSE(files.exists(folder / "none"));
    EXPECT_FALSE(files.isDirectory(folder / "none"));
    EXPECT_FALSE(files.exists(""));
}

TEST_F(MSPCDiskFileSystem_queries, followALinkToAFolderAndCountOneThatPointsNowhere) {
    folder.addFolder("real");
    std::filesystem::create_symlink("real", folder / "link");
    std::filesystem::create_symlink("nowhere", folder / "dangling");
    EXPECT_TRUE(files.isDirectory(folder / "link"));
    EXPECT_TRUE(files.exists(folder / "dangling"));
    EXPECT_FALSE(files.isDirectory(folder / "dangling"));
}

TEST_F(MSPCDiskFileSystem_queries, tellLinksThatLeadNowhere) {
    folder.addFile("a");
    std::filesystem::create_symlink("a", folder / "live");
    std::filesystem::create_symlink("none", folder / "dead");
    std::filesystem::create_symlink("loop", folder / "loop");
    for (const auto* name : {"a", "live", "."}) {
        EXPECT_TRUE(files.leadsToAnything(folder / name)) << name;
    }
    for (const auto* name : {"dead", "loop", "none", "a/x"}) {
        EXPECT_FALSE(files.leadsToAnything(folder / name)) << name;
    }
    EXPECT_TRUE(files.exists(folder / "dead"));
}

TEST_F(MSPCDiskFileSystem_queries, neverCutAPathAtAZeroByte) {
    const auto path = folder.addFile("a.xml") + std::string("\0.xml", 5);
    EXPECT_FALSE(files.exists(path));
    EXPECT_FALSE(files.isDirectory(folder.path() + std::string("\0x", 2)));
    EXPECT_EQ(files.readFile(path), std::nullopt);
    EXPECT_EQ(files.resolvedPath(path), "");
    EXPECT_EQ(files.createFolder(folder / "new" + std::string("\0x", 2)), "No such file or directory");
    EXPECT_EQ(files.writeAtomically(path, [](MSPCByteWriter&) {}), "No such file or directory");
    EXPECT_EQ(files.newFolder(path, false)->copyContent(folder.path()), "'" + path + "': No such file or directory");
}

TEST_F(MSPCDiskFileSystem_queries, knowOneFileUnderTwoNames) {
    folder.addFolder("real");
    const auto file = folder.addFile("real/a");
    std::filesystem::create_symlink("real", folder / "link");
    std::filesystem::create_hard_link(file, folder / "hard");
    EXPECT_TRUE(files.isSameFile(file, folder / "link/a"));
    EXPECT_TRUE(files.isSameFile(file, folder / "hard"));
    EXPECT_FALSE(files.isSameFile(file, folder.addFile("b")));
    EXPECT_FALSE(files.isSameFile(folder / "none", folder / "none"));
}

TEST_F(MSPCDiskFileSystem_queries, resolveAllLinksOfAPath) {
    const auto file = folder.addFile("real/a");
    std::filesystem::create_symlink("real", folder / "link");
    EXPECT_EQ(files.resolvedPath(folder / "link/a"), file);
    EXPECT_EQ(files.resolvedPath(folder / "none"), "");
}

using MSPCDiskFileSystem_readFile = MSPCDiskFileSystemTest;

TEST_F(MSPCDiskFileSystem_readFile, givesAllBytes) {
    const std::string bytes = std::string("a\0b\r\n", 5) + std::string(300'000, 'x');
    EXPECT_EQ(files.readFile(folder.addFile("a", bytes)), bytes);
    EXPECT_EQ(files.readFile(folder.addFile("empty")), "");
}

TEST_F(MSPCDiskFileSystem_readFile, tellsWhyItGivesNone) {
    std::string failure;
    EXPECT_EQ(files.readFile(folder / "none", &failure), std::nullopt);
    EXPECT_EQ(failure, "No such file or directory");
    EXPECT_EQ(files.readFile(folder.path(), &failure), std::nullopt);
    EXPECT_EQ(failure, "Is a directory");
}

TEST_F(MSPCDiskFileSystem_readFile, readsWhatTellsNoSize) {
    const auto text = files.readFile("/proc/self/status");
    ASSERT_TRUE(text);
    EXPECT_NE(text->find("Pid:"), std::string::npos);
}

using MSPCDiskFileSystem_createFolder = MSPCDiskFileSystemTest;

TEST_F(MSPCDiskFileSystem_createFolder, makesTheFoldersAboveToo) {
    EXPECT_EQ(files.createFolder(folder / "a/b/c"), std::nullopt);
    EXPECT_TRUE(files.isDirectory(folder / "a/b/c"));
    EXPECT_EQ(files.createFolder(folder / "a/b/c"), std::nullopt) << "an existing folder is fine";
}

TEST_F(MSPCDiskFileSystem_createFolder, failsBelowAFile) {
    folder.addFile("a");
    EXPECT_EQ(files.createFolder(folder / "a/b"), "Not a directory");
}

TEST_F(MSPCDiskFileSystem_readFile, refusesADevice) {
    std::string failure;
    EXPECT_FALSE(files.readFile("/dev/zero", &failure));
    EXPECT_EQ(failure, "Operation not supported");
    EXPECT_FALSE(files.openFile("/dev/zero"));
}

TEST_F(MSPCDiskFileSystem_readFile, takesAPipeWithoutAWriterAsEmpty) {
    const auto pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(files.readFile(pipe), "");
    EXPECT_FALSE(files.openFile(pipe));
}

TEST_F(MSPCDiskFileSystem_readFile, waitsForTheWriterOfAPipe) {
    const auto pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const int writer = ::open(pipe.c_str(), O_RDWR);  // opens at once, with a reader of its own
    ASSERT_GE(writer, 0);
    // What is written stays, should the one who reads come after the writer.
    const MSPCFileDescriptor keeper(::open(pipe.c_str(), O_RDONLY | O_NONBLOCK));
    std::thread late([writer] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_EQ(::write(writer, "late", 4), 4);
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        ::close(writer);
    });
    EXPECT_EQ(files.readFile(pipe), "late");
    late.join();
}

TEST_F(MSPCDiskFileSystem_readFile, goesOnAfterSignals) {
    const auto pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const int writer = ::open(pipe.c_str(), O_RDWR);
    ASSERT_GE(writer, 0);
    const MSPCFileDescriptor keeper(::open(pipe.c_str(), O_RDONLY | O_NONBLOCK));
    sigset_t alarm;
    sigset_t maskBefore;
    ::sigemptyset(&alarm);
    ::sigaddset(&alarm, SIGALRM);
    ::pthread_sigmask(SIG_BLOCK, &alarm, &maskBefore);  // for the writer
    std::thread late([writer] {
        for (const std::string_view piece : {"first ", "second ", "third"}) {
            std::this_thread::sleep_for(std::chrono::milliseconds(60));
            EXPECT_EQ(::write(writer, piece.data(), piece.size()), std::ssize(piece));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(60));
        ::close(writer);
    });
    ::pthread_sigmask(SIG_UNBLOCK, &alarm, nullptr);
    static std::atomic<int> signals = 0;
    struct sigaction action {};
    struct sigaction actionBefore {};
    action.sa_handler = [](int) { ++signals; };  // without SA_RESTART, every wait is interrupted
    ::sigaction(SIGALRM, &action, &actionBefore);
    const itimerval often{{0, 10'000}, {0, 10'000}};
    const itimerval never{};
    ::setitimer(ITIMER_REAL, &often, nullptr);
    const auto text = files.readFile(pipe);
    ::setitimer(ITIMER_REAL, &never, nullptr);
    ::sigaction(SIGALRM, &actionBefore, nullptr);
    ::pthread_sigmask(SIG_SETMASK, &maskBefore, nullptr);
    late.join();
    EXPECT_EQ(text, "first second third");
    EXPECT_GT(signals, 3);
}

using MSPCDiskFileSystem_synchronize = MSPCDiskFileSystemTest;

TEST_F(MSPCDiskFileSystem_synchronize, bringsFoldersToTheDisk) {
    EXPECT_EQ(files.synchronize({}), std::nullopt);
    EXPECT_EQ(files.synchronize({folder.path(), folder.addFolder("sub")}), std::nullopt);
}

TEST_F(MSPCDiskFileSystem_synchronize, namesTheFolderThatIsNotThere) {
    EXPECT_EQ(files.synchronize({folder / "missing", folder.path()}),
              "'" + folder / "missing" + "': No such file or directory");
}

TEST_F(MSPCDiskFileSystemTest, namesWhatAFolderHolds) {
    const auto& path = folder.path();
    ASSERT_EQ(files.createFolder(path + "/b/inside"), std::nullopt);
    for (const auto* const name : {"c.xml", "a.xml", ".hidden"}) {
        ASSERT_EQ(files.writeAtomically(path + "/" + name, [](MSPCByteWriter&) {}), std::nullopt);
    }
    EXPECT_EQ(files.namesIn(path), (std::vector<std::string>{".hidden", "a.xml", "b", "c.xml"}));
    std::string failure;
    EXPECT_EQ(files.namesIn(path + "/none", &failure), std::nullopt);
    EXPECT_EQ(failure, "No such file or directory");
    EXPECT_EQ(files.namesIn(path + "/a.xml", &failure), std::nullopt);
    EXPECT_EQ(failure, "Not a directory");
    EXPECT_EQ(files.namesIn(path + std::string("\0", 1)), std::nullopt);
}
