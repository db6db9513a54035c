#include "MSPCLog.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <future>
#include <sstream>
#include <string>
#include <vector>

#include "ScopedDescriptor.h"
#include "ScopedEnvironment.h"
#include "ScopedTempFolder.h"

namespace {

// Standard error goes to a file while this lives.
class MSPCStandardErrorLogTest : public ::testing::Test {
protected:
    MSPCStandardErrorLogTest() : file(::open((folder / "log").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600)) {}
    ~MSPCStandardErrorLogTest() override { ::close(file); }
    std::string written() const { return folder.contents("log"); }

    ScopedTempFolder folder;
    int file;
};

constexpr std::size_t stampLength = 23;

// A line with its digits of the time replaced by "0"; what has no time in front stays.
std::string withMaskedTime(std::string line) {
    const bool hasTime = line.size() > stampLength && line[4] == '-' && line[13] == ':';
    std::replace_if(
        line.begin(), line.begin() + (hasTime ? stampLength : 0),
        [](char character) { return character >= '0' && character <= '9'; }, '0');
    return line;
}

std::vector<std::string> maskedLines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(withMaskedTime(line));
    }
    return lines;
}

}  // namespace

TEST_F(MSPCStandardErrorLogTest, putsTimeNameAndProcessInFrontOfEachMessage) {
    {
        const ScopedDescriptor standardError(STDERR_FILENO, file);
        MSPCStandardErrorLog log("MSPDIImport");
        log.log("first");
        log.log("");
        log.log("with {{}} and %v\nand a second line");
    }
    const auto front = "0000-00-00 00:00:00.000 MSPDIImport[" + std::to_string(::getpid()) + "] ";
    EXPECT_EQ(maskedLines(written()),
              (std::vector<std::string>{front + "first", front, front + "with {} and %v", "and a second line"}));
}

TEST_F(MSPCStandardErrorLogTest, showsTheLocalTime) {
    std::string earlier;
    {
        const ScopedEnvironment zone("TZ", "XYZ-7");
        ::tzset();
        const ScopedDescriptor standardError(STDERR_FILENO, file);
        MSPCStandardErrorLog log("MSPDIImport");
        const auto before = ::time(nullptr);
        log.log("x");
        // Seven hours ahead of Greenwich; the message may come a second later.
        for (const auto second : {before, before + 1}) {
            std::array<char, 32> text{};
            const auto shifted = second + 7 * 3'600;
            std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S|", std::gmtime(&shifted));
            earlier += text.data();
        }
    }
    ::tzset();
    EXPECT_NE(earlier.find(written().substr(0, 19) + "|"), std::string::npos) << written() << " not in " << earlier;
}

TEST_F(MSPCStandardErrorLogTest, collectsLinesAndLosesNone) {
    constexpr int count = 100'000;
    {
        const ScopedDescriptor standardError(STDERR_FILENO, file);
        MSPCStandardErrorLog log("MSPDIImport");
        log.log("line 0");
        EXPECT_EQ(written(), "") << "one line is not worth a write of its own";
        for (int line = 1; line < count; ++line) {
            log.log("line {}", line);
        }
    }
    const auto text = written();
    std::size_t at = 0;
    for (int line = 0; line < count; ++line) {
        at = text.find("] line " + std::to_string(line) + "\n", at);
        ASSERT_NE(at, std::string::npos) << line;
    }
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), count);
}

TEST_F(MSPCStandardErrorLogTest, writesOnceForManyLines) {
    // Each write of the log is one message of the socket.
    std::array<int, 2> ends{};
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends.data()), 0);
    auto sizesOfWrites = std::async(std::launch::async, [reader = ends[1]] {
        std::vector<std::ptrdiff_t> sizes;
        std::vector<char> message(128 * 1024);
        for (auto size = ::read(reader, message.data(), message.size()); size > 0;
             size = ::read(reader, message.data(), message.size())) {
            sizes.push_back(size);
        }
        return sizes;
    });
    {
        const ScopedDescriptor standardError(STDERR_FILENO, ends[0]);
        MSPCStandardErrorLog log("MSPDIImport");
        for (int line = 0; line < 10'000; ++line) {
            log.log("a line");
        }
    }
    ::close(ends[0]);
    auto sizes = sizesOfWrites.get();
    ::close(ends[1]);
    ASSERT_GT(sizes.size(), 5U);
    sizes.pop_back();  // the rest, at the end
    for (const auto size : sizes) {
        EXPECT_GT(size, 65'000);
    }
}

TEST_F(MSPCStandardErrorLogTest, writesALineThatIsLargerThanItsBlock) {
    const std::string large(200'000, 'x');
    {
        const ScopedDescriptor standardError(STDERR_FILENO, file);
        MSPCStandardErrorLog log("MSPDIImport");
        log.log("before");
        log.log("{}", large);
        log.log("after");
    }
    const auto text = written();
    EXPECT_LT(text.find("] before\n"), text.find("] " + large + "\n"));
    EXPECT_LT(text.find("] " + large + "\n"), text.find("] after\n"));
}

TEST_F(MSPCStandardErrorLogTest, writesWhenToldTo) {
    const ScopedDescriptor standardError(STDERR_FILENO, file);
    MSPCStandardErrorLog log("MSPDIImport");
    log.log("now");
    log.flush();
    const auto text = written();
    EXPECT_NE(text.find("] now\n"), std::string::npos);
    log.flush();
    EXPECT_EQ(written(), text) << "nothing is written twice";
}

TEST_F(MSPCStandardErrorLogTest, showsEachLineAtOnceOnATerminal) {
    const int controller = ::posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_GE(controller, 0);
    ASSERT_EQ(::grantpt(controller), 0);
    ASSERT_EQ(::unlockpt(controller), 0);
    const int terminal = ::open(::ptsname(controller), O_RDWR | O_NOCTTY);
    ASSERT_GE(terminal, 0);
    {
        const ScopedDescriptor standardError(STDERR_FILENO, terminal);
        MSPCStandardErrorLog log("MSPDIImport");
        log.log("seen");
        pollfd request{controller, POLLIN, 0};
        EXPECT_EQ(::poll(&request, 1, 5'000), 1);
        std::array<char, 256> buffer{};
        const auto count = ::read(controller, buffer.data(), buffer.size());
        ASSERT_GT(count, 0);
        EXPECT_NE(std::string(buffer.data(), static_cast<std::size_t>(count)).find("] seen"), std::string::npos);
    }
    ::close(terminal);
    ::close(controller);
}

TEST_F(MSPCStandardErrorLogTest, outlivesAClosedOrFullStandardError) {
    const int full = ::open("/dev/full", O_WRONLY);
    for (const int replacement : {-1, full}) {
        const ScopedDescriptor standardError(STDERR_FILENO, replacement);
        MSPCStandardErrorLog log("MSPDIImport");
        for (int line = 0; line < 10'000; ++line) {
            log.log("nobody reads this");
        }
        log.flush();
    }
    ::close(full);
    EXPECT_EQ(written(), "");
}

TEST_F(MSPCStandardErrorLogTest, waitsForAReaderOnlyAsLongAsItIsTold) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    ASSERT_EQ(::fcntl(ends[1], F_SETPIPE_SZ, 4'096), 4'096);
    {
        const ScopedDescriptor standardError(STDERR_FILENO, ends[1]);
        MSPCStandardErrorLog log("MSPDIImport");
        for (int line = 0; line < 300; ++line) {
            log.log("a pipe that nobody empties");
        }
        const auto before = std::chrono::steady_clock::now();
        log.flushWithin(std::chrono::milliseconds(50));
        const auto waited = std::chrono::steady_clock::now() - before;
        EXPECT_GE(waited, std::chrono::milliseconds(45));
        EXPECT_LT(waited, std::chrono::seconds(30));
    }
    ::close(ends[0]);
    ::close(ends[1]);
}
