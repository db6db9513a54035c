#include "MSPCUnfinishedItem.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "MSPCRemoval.h"
#include "MSPCSignalsBlocked.h"

namespace {

constexpr std::string_view prefix = ".MSPDIImport-";
constexpr std::string_view suffix = ".tmp";

bool isNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Changed only while signals are blocked, so that a handler finds it whole.
MSPCUnfinishedItem* firstUnfinished = nullptr;

}  // namespace

std::string MSPCHiddenName(std::string_view middle) {
    return std::string(prefix).append(middle).append(suffix);
}

bool MSPCIsHiddenName(std::string_view name) {
    return name.size() > prefix.size() + suffix.size() && name.starts_with(prefix) && name.ends_with(suffix);
}

bool MSPCIsTemporaryName(std::string_view name) {
    if (!MSPCIsHiddenName(name)) {
        return false;
    }
    name.remove_prefix(prefix.size());
    name.remove_suffix(suffix.size());
    const auto hyphen = std::min(name.find('-'), name.size() - 1);
    return isNumber(name.substr(0, hyphen)) && isNumber(name.substr(hyphen + 1));
}

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

int MSPCUnfinishedItem::createUnderTemporaryName(int folder, const std::function<int(const char*)>& make) {
    // Names stay short: the final name may be as long as the file system allows.
    const auto stem = std::to_string(::getpid()) + "-";
    int error = EEXIST;
    for (int number = 1; error == EEXIST && number <= 10'000; ++number) {
        error = create(folder, MSPCHiddenName(stem + std::to_string(number)), make);
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
