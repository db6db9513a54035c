#include "MSPCXMLLoader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "MSPCFileSystem.h"
#include "MSPCXMLEncoding.h"
#include "MSPCXMLLexis.h"
#include "MSPCXMLSelectiveReader.h"

namespace {

using namespace MSPCXMLLexis;

constexpr auto npos = std::string_view::npos;

bool holdsAfter(std::string_view bytes, std::size_t start, std::size_t end, char character, char before) {
    while (start < end) {
        const auto* found = static_cast<const char*>(std::memchr(bytes.data() + start, character, end - start));
        if (found == nullptr) {
            return false;
        }
        const auto index = static_cast<std::size_t>(found - bytes.data());
        if (index > 0 && bytes[index - 1] == before) {
            return true;
        }
        start = index + 1;
    }
    return false;
}

// Whether text other than blanks stands anywhere but between a start tag and the end tag behind it. Says yes in doubt.
bool mayMixContent(std::string_view bytes) {
    for (auto tag = bytes.find('<'); tag != npos;) {
        const auto tagEnd = bytes.find('>', tag);
        if (tagEnd == npos) {
            return true;
        }
        const bool behindStartTag = bytes[tag + 1] != '/' && bytes[tagEnd - 1] != '/';
        const auto next = std::min(bytes.find('<', tagEnd), bytes.size());
        const bool beforeEndTag = next + 1 < bytes.size() && bytes[next + 1] == '/';
        if (!(behindStartTag && beforeEndTag) && !isAllBlank(bytes.substr(tagEnd + 1, next - tagEnd - 1))) {
            return true;
        }
        tag = next < bytes.size() ? next : npos;
    }
    return bytes.find(SpaceAttribute) != npos;
}

// Text before the root element is what no parser goes beyond, nor can it be mended: that is told at once, where trying
// would take several passes over it.
bool beginsWithMarkup(std::string_view utf8) {
    if (utf8.starts_with(ByteOrderMark)) {
        utf8.remove_prefix(ByteOrderMark.size());
    }
    const auto first = utf8.find_first_not_of(Blanks);
    return first != npos && utf8[first] == '<';
}

// What a selection keeps of a document, where the document is plain enough to be read piece by piece.
std::optional<MSPCXMLLoaded> loadedInPart(const MSPCFileReader& files, const std::string& path,
                                          const MSPCXMLSelection& selection) {
    const auto source = files.openFile(path);
    auto selected = source ? selectedXML(*source, selection) : std::nullopt;
    auto document = selected ? MSPCXMLDocument::read(std::move(selected->bytes), selected->reading) : std::nullopt;
    return document ? std::optional(MSPCXMLLoaded{std::move(*document), std::move(selected->deferred), std::nullopt})
                    : std::nullopt;
}

}  // namespace

MSPCXMLTraits traitsOfXML(std::string_view utf8) {
    // A block at a time, so that the three searches over it find it in the cache.
    constexpr std::size_t blockSize = std::size_t{1} << 16;
    const auto prolog = prologOf(utf8);
    MSPCXMLTraits traits{.hasInternalSubset = prolog.hasInternalSubset};
    bool isSuspicious = false;
    for (auto start = prolog.end; start < utf8.size(); start += blockSize) {
        const auto end = std::min(start + blockSize, utf8.size());
        traits.hasSections =
            traits.hasSections || holdsAfter(utf8, start, end, '!', '<') || holdsAfter(utf8, start, end, '?', '<');
        isSuspicious = isSuspicious || holdsStrayAmpersand(utf8, start, end);
    }
    // Where there are sections, contents are looked at one by one anyway.
    traits.hasMixedContent = !traits.hasSections && mayMixContent(utf8.substr(prolog.end));
    traits.hasStrayAmpersand = isSuspicious && escapedStrayAmpersands(utf8, Entities::Predefined).has_value();
    return traits;
}

std::optional<MSPCXMLLoaded> MSPCXMLLoader::loadSelection(const MSPCFileReader& files, const std::string& path,
                                                          const MSPCXMLSelection& selection) const {
    auto loaded = loadedInPart(files, path, selection);
    return loaded ? std::move(loaded) : loadFile(files, path);
}

std::optional<MSPCXMLLoaded> MSPCXMLLoader::loadFile(const MSPCFileReader& files, const std::string& path) const {
    const auto readFile = [&] { return files.readFile(path); };
    auto bytes = readFile();
    return bytes ? loadWhole(std::move(*bytes), readFile) : std::nullopt;
}

std::optional<MSPCXMLLoaded> MSPCXMLLoader::loadBytes(std::string bytes) const {
    return loadWhole(std::move(bytes), {});
}

std::optional<MSPCXMLLoaded> MSPCXMLLoader::loadWhole(std::string bytes, const Bytes& readAgain) const {
    auto utf8 = xmlBytesAsUtf8(std::move(bytes));
    if (!utf8 || !beginsWithMarkup(*utf8)) {
        return std::nullopt;
    }
    const auto traits = traitsOfXML(*utf8);
    // What is written back must be sound; it is small, so the thorough parser may look at it first.
    const bool isSound = _content == MSPCXMLContent::DataOnly || traits.hasInternalSubset || isWellFormedXML(*utf8);
    if (!traits.hasInternalSubset && !traits.hasStrayAmpersand && isSound) {
        const bool mayMend = !_mendableRoot.empty();
        auto original = mayMend && !readAgain ? utf8 : std::nullopt;  // the quick parser uses them up
        if (auto document = MSPCXMLDocument::read(
                std::move(*utf8),
                {.content = _content, .hasSections = traits.hasSections, .hasMixedContent = traits.hasMixedContent})) {
            return MSPCXMLLoaded{std::move(*document), {}, std::nullopt};
        }
        if (mayMend && readAgain) {
            original = readAgain();
            original = original ? xmlBytesAsUtf8(std::move(*original)) : std::nullopt;
        }
        utf8 = std::move(original);
    }
    return utf8 ? loadMended(*utf8, traits.hasInternalSubset) : std::nullopt;
}

std::optional<MSPCXMLLoaded> MSPCXMLLoader::loadMended(const std::string& utf8, bool hasInternalSubset) const {
    auto mended = mendedXML(utf8, hasInternalSubset, _mendableRoot);
    auto document = mended ? MSPCXMLDocument::read(std::move(mended->bytes), {.content = _content, .isMended = true})
                           : std::nullopt;
    return document ? std::optional(MSPCXMLLoaded{std::move(*document), {}, std::move(mended->repair)}) : std::nullopt;
}

std::optional<MSPCXMLDocument> MSPCXMLLoader::loadStrictly(std::string utf8, MSPCXMLRepair& error) {
    if (prologOf(utf8).hasInternalSubset) {
        error = {0, "The document type declares something"};
        return std::nullopt;
    }
    if (auto found = firstErrorInXML(utf8)) {
        error = std::move(*found);
        return std::nullopt;
    }
    auto document = MSPCXMLDocument::read(std::move(utf8), {.isSound = true});
    if (!document) {
        error = {0, "not well-formed"};
    }
    return document;
}
