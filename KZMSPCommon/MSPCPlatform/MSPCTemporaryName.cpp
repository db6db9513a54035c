#include "MSPCTemporaryName.h"

#include <unistd.h>

#include <cerrno>

#include "MSPCPath.h"
#include "MSPCUnfinishedItem.h"

int MSPCMakeUnderTemporaryName(const std::string& finalPath, MSPCUnfinishedItem& item,
                               const std::function<int(const char*)>& make) {
    // Names stay short: the final name may be as long as the file system allows.
    const auto stem = ".MSPDIImport-" + std::to_string(::getpid()) + "-";
    const auto folder = pathByDeletingLastComponent(finalPath);
    int error = EEXIST;
    for (int number = 1; error == EEXIST && number <= 10'000; ++number) {
        error = item.create(pathByAppendingComponent(folder, stem + std::to_string(number) + ".tmp"), make);
    }
    return error;
}
