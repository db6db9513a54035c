#include "MSPCTemporaryName.h"

#include <unistd.h>

#include <cerrno>

#include "MSPCPath.h"

int MSPCMakeUnderTemporaryName(const std::string& finalPath, std::string& path,
                               const std::function<int(const std::string&)>& make) {
    // Names stay short: the final name may be as long as the file system allows.
    const auto stem = ".MSPDIImport-" + std::to_string(::getpid()) + "-";
    const auto folder = pathByDeletingLastComponent(finalPath);
    int error = EEXIST;
    for (int number = 1; error == EEXIST && number <= 10'000; ++number) {
        path = pathByAppendingComponent(folder, stem + std::to_string(number) + ".tmp");
        error = make(path);
    }
    return error;
}
