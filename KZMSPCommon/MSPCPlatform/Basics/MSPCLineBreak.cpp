#include "MSPCLineBreak.h"

namespace {

// The length of the terminator that starts at a position; 0 when none does.
std::size_t terminatorLength(std::string_view text) {
    for (const std::string_view terminator : {"\r\n", "\n", "\r", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
        if (text.starts_with(terminator)) {
            return terminator.size();
        }
    }
    return 0;
}

}  // namespace

MSPCLineBreak nextLineBreak(std::string_view text, std::size_t from) {
    constexpr std::string_view firstBytes = "\n\r\xC2\xE2";
    for (auto at = text.find_first_of(firstBytes, from); at != std::string_view::npos;
         at = text.find_first_of(firstBytes, at + 1)) {
        if (const auto length = terminatorLength(text.substr(at)); length > 0) {
            return {at, at + length};
        }
    }
    return {text.size(), text.size()};
}
