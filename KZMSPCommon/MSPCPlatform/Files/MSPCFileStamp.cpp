#include "MSPCFileStamp.h"

#include <sys/stat.h>

std::optional<MSPCFileStamp> MSPCStampOf(const std::string& path) {
    struct stat status {};
    const bool isCutOff = path.find('\0') != std::string::npos;
    if (isCutOff || ::stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    constexpr std::int64_t nanosecondsOfSecond = 1'000'000'000;
    return MSPCFileStamp{static_cast<std::uint64_t>(status.st_size),
                         status.st_mtim.tv_sec * nanosecondsOfSecond + status.st_mtim.tv_nsec};
}
