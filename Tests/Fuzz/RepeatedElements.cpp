// What the fuzzer does to plans besides its own ways of changing bytes: it repeats an element, with all in it, up to as
// often as there is room. So lists get long, and lists of lists, where growth shows.

#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* bytes, std::size_t size, std::size_t largest);
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t size, std::size_t largest,
                                               unsigned seed);

namespace {

using Random = std::minstd_rand;

// Where tags begin that are no ends, comments or the like.
std::vector<std::size_t> startTags(std::string_view text) {
    std::vector<std::size_t> places;
    for (auto at = text.find('<'); at != std::string_view::npos; at = text.find('<', at + 1)) {
        if (at + 1 < text.size() && std::string_view("/!?<").find(text[at + 1]) == std::string_view::npos) {
            places.push_back(at);
        }
    }
    return places;
}

// The element that begins at the front of a text, up to its end tag; the tag alone where there is no such end.
std::string_view firstElement(std::string_view text) {
    std::size_t depth = 0;
    for (auto at = std::size_t{0}; at != std::string_view::npos; at = text.find('<', at + 1)) {
        const auto end = text.find('>', at);
        if (end == std::string_view::npos) {
            break;
        }
        const bool isEnd = text[at + 1] == '/';
        const bool isEmpty = text[end - 1] == '/';
        depth += isEnd || isEmpty ? 0 : 1;
        depth -= isEnd && depth > 0 ? 1 : 0;
        if (depth == 0) {
            return text.substr(0, end + 1);
        }
    }
    return text.substr(0, text.find('>') == std::string_view::npos ? 0 : text.find('>') + 1);
}

std::string withRepeatedElement(std::string_view text, std::size_t largest, Random& random) {
    const auto places = startTags(text);
    if (places.empty() || text.size() >= largest) {
        return {};
    }
    const auto at = places[random() % places.size()];
    const auto element = firstElement(text.substr(at));
    if (element.empty() || element.size() > largest - text.size()) {
        return {};
    }
    const auto most = (largest - text.size()) / element.size();
    const auto times = random() % 2 == 0 ? most : 1 + random() % most;
    std::string result(text.substr(0, at));
    for (std::size_t i = 0; i < times; ++i) {
        result += element;
    }
    return result += text.substr(at);
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t size, std::size_t largest,
                                               unsigned seed) {
    constexpr unsigned othersForOne = 32;
    Random random(seed);
    if (random() % othersForOne == 0) {
        const auto repeated = withRepeatedElement({reinterpret_cast<const char*>(bytes), size}, largest, random);
        if (!repeated.empty()) {
            std::memcpy(bytes, repeated.data(), repeated.size());
            return repeated.size();
        }
    }
    return LLVMFuzzerMutate(bytes, size, largest);
}
