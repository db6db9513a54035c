#include "MSPCXMLWithBytes.h"

#include <algorithm>
#include <utility>

#include "MSPCBytesSource.h"
#include "MSPCXMLEncoding.h"
#include "MSPCXMLLoader.h"

namespace {

std::optional<MSPCXMLWithBytes> loadedInPart(std::string& bytes, const MSPCXMLSelection& selection) {
    MSPCBytesSource source(bytes);
    auto selected = selectedXML(source, selection, true);
    auto document = selected ? MSPCXMLDocument::read(std::move(selected->bytes), selected->reading) : std::nullopt;
    return document
               ? std::optional(MSPCXMLWithBytes{std::move(*document), std::move(bytes), std::move(selected->places)})
               : std::nullopt;
}

}  // namespace

std::optional<std::size_t> MSPCXMLWithBytes::startOf(const MSPCXMLNode& element) const {
    auto offset = element.offset();
    if (!offset) {
        return std::nullopt;
    }
    if (!places.empty()) {
        const auto next = std::upper_bound(places.begin(), places.end(), *offset,
                                           [](std::size_t wanted, const auto& place) { return wanted < place.kept; });
        const auto& place = *(next - 1);
        offset = place.original + (*offset - place.kept);
    }
    const auto tag = *offset - 1;  // the name begins behind the "<"
    return *offset > 0 && tag < utf8.size() && utf8[tag] == '<' ? std::optional(tag) : std::nullopt;
}

std::optional<MSPCXMLWithBytes> MSPCXMLLoadWithBytes(std::string& bytes, std::string_view mendableRoot,
                                                     const MSPCXMLSelection& selection) {
    if (auto inPart = loadedInPart(bytes, selection)) {
        return inPart;
    }
    auto utf8 = xmlBytesAsUtf8(bytes);
    if (!utf8) {
        return std::nullopt;
    }
    // Bytes that are the same in both stay in another encoding as long as they are declared to be.
    const bool isConverted = *utf8 != bytes || !isDeclaredUtf8(*utf8);
    const auto traits = traitsOfXML(*utf8);
    if (!traits.hasInternalSubset && !traits.hasStrayAmpersand) {
        auto document = MSPCXMLDocument::read(*utf8, {.content = MSPCXMLContent::DataOnly,
                                                      .hasSections = traits.hasSections,
                                                      .hasMixedContent = traits.hasMixedContent});
        if (document) {
            return MSPCXMLWithBytes{std::move(*document), std::move(*utf8), {}, isConverted, false};
        }
    }
    auto mended = mendedXML(*utf8, traits.hasInternalSubset, mendableRoot);
    auto document = mended
                        ? MSPCXMLDocument::read(mended->bytes, {.content = MSPCXMLContent::DataOnly, .isMended = true})
                        : std::nullopt;
    return document
               ? std::optional(MSPCXMLWithBytes{std::move(*document), std::move(mended->bytes), {}, isConverted, true})
               : std::nullopt;
}
