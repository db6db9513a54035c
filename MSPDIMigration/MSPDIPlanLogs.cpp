#include "MSPDIPlanLogs.h"

#include <fmt/format.h>

#include <utility>

#include "MSPCFileSystem.h"
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
        return earlierLog;
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
        if (!_fileSystem.exists(path)) {
            // It is there from now on, so that nobody else takes the name.
            return MSPCFileLog::openAnew(path, processName, failure) ? path : std::string();
        }
    }
}

std::unique_ptr<MSPCFileLog> MSPDIPlanLogs::open(const std::string& log) {
    std::string failure;
    return MSPCFileLog::openAnew(log, processName, failure);
}

void MSPDIPlanLogs::addVerdict(const std::string& log, const std::string& plan, const std::string& verdict) {
    std::string failure;
    if (const auto file = MSPCFileLog::open(log, processName, failure)) {
        file->log("{}: {}", plan, verdict);
    }
}
