#include "DocumentSteps.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace {

// The declarations of a document type multiply what stands in the document; how far they may is the importer's to
// bound.
bool multiplies(std::string text) {
    std::erase(text, '\0');  // whatever the width of its characters
    return text.find("<!ENTITY") != std::string::npos || text.find("<!ATTLIST") != std::string::npos;
}

// About as many as the tag that has the most attributes, or even more.
std::uint64_t mostAttributesOfATag(std::string_view text) {
    std::uint64_t most = 0;
    std::uint64_t count = 0;
    for (const char character : text) {
        count = character == '<' ? 0 : count + (character == '=' ? 1U : 0U);
        most = std::max(most, count);
    }
    return most;
}

}  // namespace

std::optional<std::uint64_t> stepsBeyondBytes(const std::string& document) {
    if (multiplies(document)) {
        return std::nullopt;
    }
    // libxml2 compares the attributes of a tag two by two, which is why it is never given one with more than a
    // thousand.
    constexpr std::uint64_t stepsOfPair = 8;
    constexpr std::uint64_t mostAttributes = 1'000;
    const auto count = std::min(mostAttributesOfATag(document), mostAttributes);
    return stepsOfPair * count * count;
}
