#include "MSPCUnfinishedItem.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <utility>

#include "MSPCFileDescriptor.h"
#include "MSPCSignalsBlocked.h"

namespace {

// Changed only while signals are blocked, so that a handler finds it whole.
MSPCUnfinishedItem* firstUnfinished = nullptr;

// What the system tells of an entry of a folder.
struct FolderEntry {
    std::uint64_t inode;
    std::int64_t offset;
    unsigned short size;
    unsigned char type;
    char name[1];
};

bool removeItem(int folder, const char* name, int levels) noexcept;

// Removes what is in a folder; false when nothing could be removed. The library's functions for reading folders allocate
// memory, which a signal handler must not do.
bool removeSomeContent(int folder, int levels) noexcept {
    alignas(FolderEntry) std::array<char, 4'096> entries;
    const long size = ::syscall(SYS_getdents64, folder, entries.data(), entries.size());
    bool hasRemoved = false;
    for (long at = 0; at < size;) {
        const auto* const entry = reinterpret_cast<const FolderEntry*>(entries.data() + at);
        const char* const name = static_cast<const char*>(entry->name);
        if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0) {
            hasRemoved = removeItem(folder, name, levels) || hasRemoved;
        }
        at += entry->size;
    }
    return hasRemoved;
}

bool removeFolder(int parent, const char* name, int levels) noexcept {
    {
        const MSPCFileDescriptor folder(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        while (levels > 0 && folder.isOpen() && removeSomeContent(folder.number(), levels - 1)) {
            ::lseek(folder.number(), 0, SEEK_SET);
        }
    }
    return ::unlinkat(parent, name, AT_REMOVEDIR) == 0;
}

bool removeItem(int folder, const char* name, int levels) noexcept {
    return ::unlinkat(folder, name, 0) == 0 || (errno == EISDIR && removeFolder(folder, name, levels));
}

}  // namespace

MSPCUnfinishedItem::~MSPCUnfinishedItem() {
    if (!_path.empty()) {
        remove();
        finish();
    }
}

int MSPCUnfinishedItem::create(const std::string& path, const std::function<int(const char*)>& make) {
    auto made = path;
    const MSPCSignalsBlocked blocked;
    const int error = make(made.c_str());
    if (error == 0) {
        _path = std::move(made);
        _next = firstUnfinished;
        firstUnfinished = this;
    }
    return error;
}

void MSPCUnfinishedItem::finish() noexcept {
    const MSPCSignalsBlocked blocked;
    for (auto** link = &firstUnfinished; *link != nullptr; link = &(*link)->_next) {
        if (*link == this) {
            *link = _next;
            break;
        }
    }
    _path.clear();
}

void MSPCUnfinishedItem::remove() const noexcept {
    constexpr int mostLevels = 1'000;  // of nested folders; no stack is endless
    if (_removal == Removal::OnlyWhenEmpty) {
        ::rmdir(_path.c_str());
    } else {
        removeItem(AT_FDCWD, _path.c_str(), mostLevels);
    }
}

void MSPCUnfinishedItem::removeAll() noexcept {
    for (const auto* item = firstUnfinished; item != nullptr; item = item->_next) {
        item->remove();
    }
}
