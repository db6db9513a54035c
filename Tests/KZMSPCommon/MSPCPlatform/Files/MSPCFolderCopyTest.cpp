#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>

#include "MSPCFileDescriptor.h"
#include "MSPCFileSystem.h"
#include "MSPCFolderCopy.h"
#include "ScopedTempFolder.h"

namespace fs = std::filesystem;

namespace {

class MSPCFolderCopyTest : public ::testing::Test {
protected:
    unsigned modeOf(const std::string& name) const {
        struct stat status {};
        EXPECT_EQ(::stat((folder / name).c_str(), &status), 0) << name;
        return status.st_mode & 07777U;
    }
    std::string failureAt(const std::string& name, const std::string& description) const {
        return std::string("'").append(folder / name).append("'").append(description);
    }
    // Copies a folder, as a document is made of a template.
    std::optional<std::string> copyTo(const std::string& path) {
        const auto copy = files.newFolder(path, false);
        existedAlready = copy == nullptr;
        if (existedAlready) {
            return "taken";
        }
        const auto failure = copy->copyContent(folder / "T.kdzx");
        return failure ? failure : copy->appear(existedAlready);
    }
    std::optional<std::string> copy() { return copyTo(folder / "Plan.kdzx"); }

    ScopedTempFolder folder;
    MSPCDiskFileSystem files;
    bool existedAlready = true;
};

}  // namespace

TEST_F(MSPCFolderCopyTest, copiesAllContent) {
    folder.addFile("T.kdzx/Actual.xml", "actual");
    folder.addFile("T.kdzx/a/b/c", std::string(200'000, 'c'));
    folder.addFile("T.kdzx/.hidden", "h");
    folder.addFolder("T.kdzx/empty");
    EXPECT_EQ(copy(), std::nullopt);
    EXPECT_FALSE(existedAlready);
    EXPECT_EQ(folder.listing("Plan.kdzx"), ".hidden Actual.xml a empty ");
    EXPECT_EQ(folder.contents("Plan.kdzx/Actual.xml"), "actual");
    EXPECT_TRUE(folder.contents("Plan.kdzx/a/b/c") == std::string(200'000, 'c'));
    EXPECT_EQ(folder.listing(), "Plan.kdzx T.kdzx ");
}

TEST_F(MSPCFolderCopyTest, copiesLinksAsLinks) {
    folder.addFile("outside", "o");
    folder.addFolder("T.kdzx");
    fs::create_symlink("../outside", folder / "T.kdzx/Actual.xml");
    fs::create_symlink("..", folder / "T.kdzx/up");
    fs::create_symlink("nowhere", folder / "T.kdzx/dangling");
    EXPECT_EQ(copy(), std::nullopt);
    EXPECT_EQ(fs::read_symlink(folder / "Plan.kdzx/Actual.xml"), "../outside");
    EXPECT_EQ(fs::read_symlink(folder / "Plan.kdzx/up"), "..");
    EXPECT_EQ(fs::read_symlink(folder / "Plan.kdzx/dangling"), "nowhere");
}

TEST_F(MSPCFolderCopyTest, followsALinkThatIsTheTemplateItself) {
    folder.addFile("real/Actual.xml", "actual");
    fs::create_symlink("real", folder / "T.kdzx");
    EXPECT_EQ(copy(), std::nullopt);
    EXPECT_FALSE(fs::is_symlink(folder / "Plan.kdzx"));
    EXPECT_EQ(folder.contents("Plan.kdzx/Actual.xml"), "actual");
}

TEST_F(MSPCFolderCopyTest, makesTheCopyWritableByItsOwner) {
    folder.addFile("T.kdzx/sub/Actual.xml", "actual");
    fs::permissions(folder / "T.kdzx/sub/Actual.xml", fs::perms(0444));
    fs::permissions(folder / "T.kdzx/sub", fs::perms(0555));
    fs::permissions(folder / "T.kdzx", fs::perms(0555));
    const auto failure = copy();
    fs::permissions(folder / "T.kdzx", fs::perms(0755));
    fs::permissions(folder / "T.kdzx/sub", fs::perms(0755));
    EXPECT_EQ(failure, std::nullopt);
    EXPECT_EQ(modeOf("Plan.kdzx"), 0755U);
    EXPECT_EQ(modeOf("Plan.kdzx/sub"), 0755U);
    EXPECT_EQ(modeOf("Plan.kdzx/sub/Actual.xml"), 0644U);
}

TEST_F(MSPCFolderCopyTest, neverReplacesWhatIsThere) {
    folder.addFile("T.kdzx/Actual.xml");
    folder.addFolder("Plan.kdzx");
    EXPECT_EQ(copy(), "taken");
    EXPECT_TRUE(existedAlready);
    EXPECT_EQ(folder.listing("Plan.kdzx"), "");
    EXPECT_EQ(folder.listing(), "Plan.kdzx T.kdzx ");
}

TEST_F(MSPCFolderCopyTest, countsALinkThatPointsNowhereAsThere) {
    folder.addFile("T.kdzx/Actual.xml");
    fs::create_symlink("nowhere", folder / "Plan.kdzx");
    EXPECT_EQ(copy(), "taken");
    EXPECT_TRUE(existedAlready);
    EXPECT_EQ(fs::read_symlink(folder / "Plan.kdzx"), "nowhere");
}

TEST_F(MSPCFolderCopyTest, tellsOtherFailuresFromATakenName) {
    EXPECT_EQ(copy(), failureAt("T.kdzx", ": No such file or directory"));
    EXPECT_FALSE(existedAlready);
    folder.addFile("T.kdzx");
    EXPECT_EQ(copy(), failureAt("T.kdzx", ": Not a directory"));
    EXPECT_EQ(folder.listing(), "T.kdzx ");
}

TEST_F(MSPCFolderCopyTest, failsWhereTheOutputFolderIsMissing) {
    folder.addFile("T.kdzx/Actual.xml");
    EXPECT_EQ(copyTo(folder / "none/Plan.kdzx"), failureAt("none/Plan.kdzx", ": No such file or directory"));
    EXPECT_FALSE(existedAlready);
}

TEST_F(MSPCFolderCopyTest, refusesAPipeWithoutOpeningIt) {
    folder.addFolder("T.kdzx");
    ASSERT_EQ(::mkfifo((folder / "T.kdzx/pipe").c_str(), 0600), 0);
    EXPECT_EQ(copy(), failureAt("T.kdzx/pipe", " is neither a file, a folder nor a link."));
    EXPECT_FALSE(existedAlready);
    EXPECT_EQ(folder.listing(), "T.kdzx ");
}

TEST_F(MSPCFolderCopyTest, refusesASocket) {
    folder.addFolder("T.kdzx");
    const auto path = folder / "T.kdzx/s";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    const int listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(copy(), failureAt("T.kdzx/s", " is neither a file, a folder nor a link."));
    ::close(listener);
}

TEST_F(MSPCFolderCopyTest, leavesNothingWhenItFailsHalfway) {
    folder.addFile("T.kdzx/a", std::string(1'000, 'a'));
    folder.addFile("T.kdzx/b/large", std::string(200'000, 'b'));
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{100'000, before.rlim_max};
    const auto signalBefore = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &small);
    const auto failure = copy();
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, signalBefore);
    EXPECT_EQ(failure, failureAt("T.kdzx/b/large", ": File too large"));
    EXPECT_FALSE(existedAlready);
    EXPECT_EQ(folder.listing(), "T.kdzx ");
}

// What is a file when the folder is listed may be something else when it is copied.
TEST_F(MSPCFolderCopyTest, refusesAFileThatBecameSomethingElse) {
    const struct {
        std::function<void(const std::string&)> replace;
        const char* description;
    } table[] = {
        {[](const std::string& path) { ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0); }, ": Invalid argument"},
        {[](const std::string& path) { fs::create_directory(path); }, ": Invalid argument"},
        {[](const std::string& path) { fs::create_symlink("Actual.xml", path); },
         ": Too many levels of symbolic links"},
        {[](const std::string&) {}, ": No such file or directory"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.description);
        fs::remove_all(folder.path());
        folder.addFile("T.kdzx/Actual.xml", "actual");
        const auto path = folder.addFile("T.kdzx/sub/file", "file");
        MSPCFolderCopy changing(folder / "T.kdzx");
        EXPECT_EQ(changing.list(), std::nullopt);
        fs::remove(path);
        row.replace(path);
        const MSPCFileDescriptor target(::open(folder.addFolder("target").c_str(), O_RDONLY | O_DIRECTORY));
        EXPECT_EQ(changing.copyInto(target.number()), failureAt("T.kdzx/sub/file", row.description));
    }
}

TEST_F(MSPCFolderCopyTest, copiesAFileThatGrowsWithoutEndAsLongAsItWas) {
    const auto path = folder.addFile("T.kdzx/growing", std::string(1'000'000, 'a'));
    const pid_t writer = ::fork();
    if (writer == 0) {
        const MSPCFileDescriptor file(::open(path.c_str(), O_WRONLY | O_APPEND));
        const std::string more(4'000'000, 'b');
        for (int count = 0; count < 500; ++count) {  // so that it would take long, not for ever
            static_cast<void>(file.write(more));
        }
        ::_exit(0);
    }
    const auto failure = copy();
    const auto size = fs::file_size(folder / "Plan.kdzx/growing");
    ::kill(writer, SIGKILL);
    ::waitpid(writer, nullptr, 0);
    EXPECT_EQ(failure, std::nullopt);
    EXPECT_GE(size, 1'000'000U);
    EXPECT_LT(size, 500'000'000U);
}

TEST_F(MSPCFolderCopyTest, failsWhereFoldersAreDeeperThanFilesMayBeOpen) {
    std::string name = "T.kdzx";
    for (int level = 0; level < 60; ++level) {
        name += "/d";
    }
    folder.addFile(name + "/file", "deep");
    EXPECT_EQ(copy(), std::nullopt);
    EXPECT_EQ(folder.contents("Plan.kdzx" + name.substr(6) + "/file"), "deep");
    fs::remove_all(folder / "Plan.kdzx");
    rlimit before{};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const rlimit few{40, before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &few);
    const auto failure = copy();
    ::setrlimit(RLIMIT_NOFILE, &before);
    ASSERT_TRUE(failure);
    EXPECT_TRUE(failure->ends_with("': Too many open files")) << *failure;
    fs::remove_all(folder / "T.kdzx");
    EXPECT_EQ(folder.listing(), "");
}

TEST_F(MSPCFolderCopyTest, copiesIntoTheTemplateItselfWithoutEnd) {
    folder.addFile("T.kdzx/Actual.xml", "actual");
    EXPECT_EQ(copyTo(folder / "T.kdzx/Plan.kdzx"), std::nullopt);
    EXPECT_EQ(folder.listing("T.kdzx/Plan.kdzx"), "Actual.xml ");
    EXPECT_EQ(folder.listing("T.kdzx"), "Actual.xml Plan.kdzx ");
}

TEST_F(MSPCFolderCopyTest, givesTheNameToExactlyOneOfManyRuns) {
    for (int number = 0; number < 50; ++number) {
        folder.addFile("T.kdzx/" + std::to_string(number), "content");
    }
    constexpr int runs = 20;
    for (int run = 0; run < runs; ++run) {
        if (::fork() == 0) {
            const bool failed = copy().has_value();
            ::_exit(!failed ? 0 : existedAlready ? 1 : 2);
        }
    }
    int counts[3] = {};
    for (int run = 0; run < runs; ++run) {
        int status = 0;
        ASSERT_GT(::wait(&status), 0);
        ASSERT_TRUE(WIFEXITED(status));
        ASSERT_LE(WEXITSTATUS(status), 2);
        ++counts[WEXITSTATUS(status)];
    }
    EXPECT_EQ(counts[0], 1) << "copies made";
    EXPECT_EQ(counts[1], runs - 1) << "names found taken";
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "Plan.kdzx"), {}), 50);
    EXPECT_EQ(folder.listing(), "Plan.kdzx T.kdzx ");
}
