#include "MSPCTemporaryName.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>

#include "MSPCUnfinishedItem.h"

namespace {

constexpr std::string_view prefix = ".MSPDIImport-";
constexpr std::string_view suffix = ".tmp";

bool isNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

std::string MSPCHiddenName(std::string_view middle) {
    return std::string(prefix).append(middle).append(suffix);
}

bool MSPCIsHiddenName(std::string_view name) {
    return name.size() > prefix.size() + suffix.size() && name.starts_with(prefix) && name.ends_with(suffix);
}

int MSPCMakeUnderTemporaryName(int folder, MSPCUnfinishedItem& item, const std::function<int(const char*)>& make) {
    // Names stay short: the final name may be as long as the file system allows.
    const auto stem = std::to_string(::getpid()) + "-";
    int error = EEXIST;
    for (int number = 1; error == EEXIST && number <= 10'000; ++number) {
        error = item.create(folder, MSPCHiddenName(stem + std::to_string(number)), make);
    }
    return error;
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
