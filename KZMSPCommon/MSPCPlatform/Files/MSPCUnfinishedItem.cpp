#include "MSPCUnfinishedItem.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "MSPCRemoval.h"
#include "MSPCSignalsBlocked.h"

namespace {

// Changed only while signals are blocked, so that a handler finds it whole.
MSPCUnfinishedItem* firstUnfinished = nullptr;

}  // namespace

MSPCUnfinishedItem::~MSPCUnfinishedItem() {
    if (!_path.empty()) {
        remove();
    }
}

int MSPCUnfinishedItem::create(const std::string& path, const std::function<int(const char*)>& make) {
    return create(AT_FDCWD, path, make);
}

int MSPCUnfinishedItem::create(int folder, const std::string& path, const std::function<int(const char*)>& make) {
    auto made = path;
    const MSPCSignalsBlocked blocked;
    const int error = make(made.c_str());
    if (error == 0) {
        _folder = folder;
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

bool MSPCUnfinishedItem::remove() noexcept {
    const bool isGone = removeNow();
    finish();
    return isGone;
}

bool MSPCUnfinishedItem::removeNow() const noexcept {
    if (_removal == Removal::OnlyWhenEmpty) {
        return ::unlinkat(_folder, _path.c_str(), AT_REMOVEDIR) == 0;
    }
    return MSPCRemoveItem(_folder, _path.c_str());
}

void MSPCUnfinishedItem::removeAll() noexcept {
    for (const auto* item = firstUnfinished; item != nullptr; item = item->_next) {
        item->removeNow();
    }
}
