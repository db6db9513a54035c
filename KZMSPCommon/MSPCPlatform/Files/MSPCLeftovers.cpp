#include "MSPCLeftovers.h"

#include <dirent.h>
#include <fcntl.h>

#include <memory>
#include <string>
#include <vector>

#include "MSPCFileDescriptor.h"
#include "MSPCNameLock.h"
#include "MSPCUnfinishedItem.h"

namespace {

// The hidden names in a folder that may be locks.
std::vector<std::string> locksIn(int folder) {
    MSPCFileDescriptor listed(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(listed.isOpen() ? ::fdopendir(listed.number()) : nullptr,
                                                      &::closedir);
    if (!entries) {
        return {};
    }
    static_cast<void>(listed.release());  // closed with the entries
    std::vector<std::string> names;
    while (const auto* entry = ::readdir(entries.get())) {
        const auto* const name = static_cast<const char*>(entry->d_name);
        if (MSPCIsHiddenName(name) && !MSPCIsTemporaryName(name)) {
            names.emplace_back(name);
        }
    }
    return names;
}

}  // namespace

void MSPCRemoveLeftovers(int folder) {
    if (!MSPCNameLock::isLocal(folder)) {
        return;
    }
    for (const auto& name : locksIn(folder)) {
        MSPCNameLock::removeIfDead(folder, name.c_str());
    }
}
