#include "MSPCFileLog.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>

#include "ScopedTempFolder.h"

namespace {

using testing::EndsWith;
using testing::MatchesRegex;
using testing::StartsWith;

std::unique_ptr<MSPCFileLog> opened(const std::string& path) {
    std::string failure;
    auto log = MSPCFileLog::open(path, "mspdi", failure);
    EXPECT_EQ(failure, "");
    return log;
}

}  // namespace

TEST(MSPCFileLog, putsTimeNameAndProcessInFrontOfEachMessage) {
    const ScopedTempFolder folder;
    opened(folder / "log")->log("Mapping {} Tasks ...", 71);
    EXPECT_THAT(folder.contents("log"),
                MatchesRegex("[0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+:[0-9.]+ mspdi.[0-9]+. Mapping 71 Tasks \\.\\.\\.\n"));
}

TEST(MSPCFileLog, addsToWhatTheFileHolds) {
    const ScopedTempFolder folder;
    opened(folder / "log")->log("first");
    opened(folder / "log")->log("second");
    const auto text = folder.contents("log");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2);
    EXPECT_THAT(text, EndsWith(" second\n"));
}

TEST(MSPCFileLog, losesNothingOfManyLines) {
    const ScopedTempFolder folder;
    constexpr int lines = 5'000;
    const auto log = opened(folder / "log");
    for (int line = 0; line < lines; ++line) {
        log->log("line {}", line);
    }
    EXPECT_TRUE(log->flush());
    const auto text = folder.contents("log");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), lines);
    EXPECT_THAT(text, EndsWith(" line 4999\n"));
}

TEST(MSPCFileLog, saysWhyAFileCannotBeWrittenTo) {
    const ScopedTempFolder folder;
    std::string failure;
    EXPECT_EQ(MSPCFileLog::open(folder.path(), "mspdi", failure), nullptr);
    EXPECT_EQ(failure, "Is a directory");
    EXPECT_EQ(MSPCFileLog::open(folder / "none/log", "mspdi", failure), nullptr);
    EXPECT_EQ(failure, "No such file or directory");
    EXPECT_EQ(MSPCFileLog::open(std::string("a\0b", 3), "mspdi", failure), nullptr);
    EXPECT_EQ(failure, "No such file or directory");
}

TEST(MSPCFileLog, saysWhetherTheFileTookAll) {
    if (::access("/dev/full", W_OK) != 0) {
        GTEST_SKIP() << "no /dev/full on this machine";
    }
    const auto log = opened("/dev/full");
    EXPECT_TRUE(log->flush());
    log->log("lost");
    EXPECT_FALSE(log->flush());
    EXPECT_FALSE(log->flush()) << "what is lost stays lost";
    EXPECT_EQ(log->failure(), "No space left on device");
    EXPECT_EQ(opened("/dev/null")->failure(), "");
}

TEST(MSPCFileLog, beginsAnewAndWritesAtOnceWhereThatIsWanted) {
    const ScopedTempFolder folder;
    folder.addFile("log", "of yesterday");
    std::string failure;
    const auto log = MSPCFileLog::openAnew(folder / "log", "mspdi", failure);
    ASSERT_NE(log, nullptr);
    log->log("first");
    EXPECT_THAT(folder.contents("log"), EndsWith("first\n"));
    EXPECT_EQ(folder.contents("log").find("yesterday"), std::string::npos);
    EXPECT_EQ(folder.listing(), "log ");
}

TEST(MSPCFileLog, thatBeginsAnewLeavesWhatLinksLeadToAsItWas) {
    const ScopedTempFolder folder;
    folder.addFile("foreign", "text of others");
    ASSERT_EQ(::symlink("foreign", (folder / "symbolic").c_str()), 0);
    ASSERT_EQ(::link((folder / "foreign").c_str(), (folder / "hard").c_str()), 0);
    std::string failure;
    for (const auto* const name : {"symbolic", "hard"}) {
        const auto log = MSPCFileLog::openAnew(folder / name, "mspdi", failure);
        ASSERT_NE(log, nullptr) << failure;
        log->log("of today");
        EXPECT_THAT(folder.contents(name), EndsWith(" of today\n"));
        EXPECT_EQ(folder.contents("foreign"), "text of others") << name;
    }
    EXPECT_FALSE(std::filesystem::is_symlink(folder / "symbolic"));
    EXPECT_EQ(folder.listing(), "foreign hard symbolic ") << "nothing hidden is left";
    folder.addFolder("folder");
    EXPECT_EQ(MSPCFileLog::openAnew(folder / "folder", "mspdi", failure), nullptr);
    EXPECT_EQ(failure, "Is a directory");
    EXPECT_EQ(MSPCFileLog::openAnew(folder / "none/log", "mspdi", failure), nullptr);
    EXPECT_EQ(failure, "No such file or directory");
    EXPECT_EQ(folder.listing(), "folder foreign hard symbolic ");
}

TEST(MSPCFileLog, ofTheProgramItselfFollowsNoLink) {
    const ScopedTempFolder folder;
    folder.addFile("own", "first\n");
    folder.addFile("foreign", "text of others");
    ASSERT_EQ(::symlink("foreign", (folder / "link").c_str()), 0);
    std::string failure;
    const auto log = MSPCFileLog::openOwn(folder / "own", "mspdi", failure);
    ASSERT_NE(log, nullptr);
    log->log("second");
    EXPECT_TRUE(log->flush());
    EXPECT_THAT(folder.contents("own"), StartsWith("first\n"));
    EXPECT_THAT(folder.contents("own"), EndsWith(" second\n"));
    EXPECT_EQ(MSPCFileLog::openOwn(folder / "link", "mspdi", failure), nullptr);
    EXPECT_EQ(failure, "Too many levels of symbolic links");
    EXPECT_EQ(folder.contents("foreign"), "text of others");
}

TEST(MSPCFileLog, waitsForNoReaderOfAPipe) {
    const ScopedTempFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    std::string failure;
    EXPECT_EQ(MSPCFileLog::open(folder / "pipe", "mspdi", failure), nullptr);
    EXPECT_EQ(failure, "a pipe that nobody reads");
    const MSPCFileDescriptor reader(::open((folder / "pipe").c_str(), O_RDONLY | O_NONBLOCK));
    opened(folder / "pipe")->log("told");
    std::string text(4096, '\0');
    const auto count = ::read(reader.number(), text.data(), text.size());
    ASSERT_GT(count, 0);
    text.resize(static_cast<std::size_t>(count));
    EXPECT_THAT(text, EndsWith(" told\n"));
}
