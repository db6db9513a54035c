#include "MSPDIPlanLogs.h"

#include <fmt/format.h>

#include <utility>

#include "MSPCFileSystem.h"
#include "MSPCNewFile.h"
#include "MSPCPath.h"

namespace {

constexpr std::string_view processName = "mspdi";

}  // namespace

MSPDIPlanLogs::MSPDIPlanLogs(std::string folder, std::string outputFolder, MSPCFileSystem& fileSystem)
    : _folder(std::move(folder)), _outputFolder(std::move(outputFolder)), _fileSystem(fileSystem) {
}

std::string MSPDIPlanLogs::logOf(const std::string& plan, const std::string& documentFolder,
                                 const std::string& earlierLog, std::string& failure) {
    failure.clear();
    if (earlierLog.starts_with(_folder + "/")) {
        return begunAnew(earlierLog, failure);
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
            continue;
        }
        // It is there from now on, so that nobody else takes the name.
        bool isTaken = false;
        const auto reason = MSPCWriteNewFile(path, {}, isTaken);
        if (!isTaken) {
            failure = reason ? path + ": " + *reason : std::string();
            return reason ? std::string() : path;
        }
    }
}

// A new file, so that what other names lead to the earlier one stays; and empty at once, so that it is that of this try
// even where nobody comes to write into it.
std::string MSPDIPlanLogs::begunAnew(const std::string& log, std::string& failure) {
    const auto folder = pathByDeletingLastComponent(log);
    auto reason = _fileSystem.createFolder(folder);
    if (!reason) {
        reason = _fileSystem.writeAtomically(log, [](MSPCByteWriter&) {});
    }
    failure = reason ? log + ": " + *reason : std::string();
    return reason ? std::string() : log;
}

std::unique_ptr<MSPCFileLog> MSPDIPlanLogs::open(const std::string& log, std::string& failure) {
    return MSPCFileLog::openAnew(log, processName, failure);
}

void MSPDIPlanLogs::addVerdict(const std::string& log, const std::string& plan, const std::string& verdict) {
    std::string failure;
    if (const auto file = MSPCFileLog::openOwn(log, processName, failure)) {
        file->log("{}: {}", plan, verdict);
    }
}
