#include "MSPDIPlanLogs.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "MSPCFileSystem.h"
#include "MSPCMessage.h"
#include "MSPCNewFile.h"
#include "MSPCPath.h"

namespace {

constexpr std::string_view processName = "mspdi";

// What a log begins with.
std::string beginningOf(const std::string& plan, const std::string& outputFolder) {
    return MSPCMessage("Migrating '{}' into '{}'", plan, outputFolder).text();
}

// The first line of a file, as far as it is not longer than such a beginning can be; empty where it cannot be read.
std::string firstLineOf(const std::string& path, const MSPCFileSystem& fileSystem) {
    constexpr std::size_t longest = 64 * 1024;
    std::string text(longest, '\0');
    const auto file = fileSystem.openFile(path);
    const auto size = file ? file->read(text.data(), text.size()).value_or(0) : 0;
    return text.substr(0, std::min(text.find('\n'), size));
}

}  // namespace

MSPDIPlanLogs::MSPDIPlanLogs(std::string folder, std::string outputFolder, MSPCFileSystem& fileSystem)
    : _folder(std::move(folder)), _outputFolder(std::move(outputFolder)), _fileSystem(fileSystem) {
}

std::string MSPDIPlanLogs::logOf(const std::string& plan, const std::string& documentFolder,
                                 const std::string& earlierLog, std::string& failure) {
    failure.clear();
    if (earlierLog.starts_with(_folder + "/")) {
        return begunAnew(earlierLog, plan, failure);
    }
    auto folder = _folder;
    if (documentFolder.starts_with(_outputFolder + "/")) {
        folder = pathByAppendingComponent(folder, documentFolder.substr(_outputFolder.size() + 1));
    }
    if (const auto reason = _fileSystem.createFolder(folder)) {
        failure = folder + ": " + *reason;
        return {};
    }
    constexpr std::size_t longest = 200;  // so that the ending and a number fit into a name
    const auto stem =
        pathByAppendingComponent(folder, pathByDeletingExtension(lastPathComponent(plan)).substr(0, longest));
    constexpr std::size_t mostNumbers = 10'000;
    if (_numbers.size() > mostNumbers) {
        _numbers.clear();  // they only save looking for a free one
    }
    auto& number = _numbers[stem];
    for (;; ++number) {
        auto path = number == 0 ? stem + ".log" : fmt::format("{}-{}.log", stem, number);
        if (_fileSystem.exists(path)) {
            if (isBegunFor(plan, path)) {
                return begunAnew(path, plan, failure);
            }
            continue;
        }
        // It is there from now on, so that nobody else takes the name.
        bool isTaken = false;
        const auto reason = MSPCWriteNewFile(path, beginningOf(plan, _outputFolder) + '\n', isTaken);
        if (!isTaken) {
            failure = reason ? path + ": " + *reason : std::string();
            return reason ? std::string() : path;
        }
    }
}

// A run that was killed has no record of it.
bool MSPDIPlanLogs::isBegunFor(const std::string& plan, const std::string& log) const {
    const auto beginning = beginningOf(plan, _outputFolder);
    const auto line = firstLineOf(log, _fileSystem);
    return line == beginning || line.ends_with("] " + beginning);
}

// A new file, so that what other names lead to the earlier one stays; and at once, so that it is that of this try even
// where nobody comes to write into it.
std::string MSPDIPlanLogs::begunAnew(const std::string& log, const std::string& plan, std::string& failure) {
    const auto folder = pathByDeletingLastComponent(log);
    auto reason = _fileSystem.createFolder(folder);
    if (!reason) {
        reason = _fileSystem.writeAtomically(
            log, [&](MSPCByteWriter& writer) { writer.write(beginningOf(plan, _outputFolder) + '\n'); });
    }
    failure = reason ? log + ": " + *reason : std::string();
    return reason ? std::string() : log;
}

std::unique_ptr<MSPCFileLog> MSPDIPlanLogs::open(const std::string& log, const std::string& plan,
                                                 const std::string& outputFolder, std::string& failure) {
    auto file = MSPCFileLog::openAnew(log, processName, failure);
    if (file) {
        file->log("Migrating '{}' into '{}'", plan, outputFolder);
    }
    return file;
}

void MSPDIPlanLogs::addVerdict(const std::string& log, const std::string& plan, const std::string& verdict) {
    std::string failure;
    if (const auto file = MSPCFileLog::openOwn(log, processName, failure)) {
        file->log("{}: {}", plan, verdict);
    }
}
