#include "MSPCFileStamp.h"

#include <sys/stat.h>

namespace {

std::int64_t nanosecondsOf(const timespec& time) {
    constexpr std::int64_t nanosecondsOfSecond = 1'000'000'000;
    return time.tv_sec * nanosecondsOfSecond + time.tv_nsec;
}

}  // namespace

std::optional<MSPCFileStamp> MSPCStampOf(const std::string& path) {
    struct stat status {};
    const bool isCutOff = path.find('\0') != std::string::npos;
    if (isCutOff || ::stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return MSPCFileStamp{static_cast<std::uint64_t>(status.st_size), nanosecondsOf(status.st_mtim),
                         nanosecondsOf(status.st_ctim)};
}
