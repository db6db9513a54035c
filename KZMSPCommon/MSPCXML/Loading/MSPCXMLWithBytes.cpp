#include "MSPCXMLWithBytes.h"

#include <utility>

#include "MSPCXMLEncoding.h"
#include "MSPCXMLLoader.h"

std::optional<MSPCXMLWithBytes> MSPCXMLLoadWithBytes(const std::string& bytes, std::string_view mendableRoot) {
    auto utf8 = xmlBytesAsUtf8(bytes);
    if (!utf8) {
        return std::nullopt;
    }
    const bool isConverted = *utf8 != bytes;
    const auto traits = traitsOfXML(*utf8);
    if (!traits.hasInternalSubset && !traits.hasStrayAmpersand) {
        auto document = MSPCXMLDocument::read(*utf8, {.content = MSPCXMLContent::DataOnly,
                                                      .hasSections = traits.hasSections,
                                                      .hasMixedContent = traits.hasMixedContent});
        if (document) {
            return MSPCXMLWithBytes{std::move(*document), std::move(*utf8), isConverted, false};
        }
    }
    auto mended = mendedXML(*utf8, traits.hasInternalSubset, mendableRoot);
    auto document = mended
                        ? MSPCXMLDocument::read(mended->bytes, {.content = MSPCXMLContent::DataOnly, .isMended = true})
                        : std::nullopt;
    return document ? std::optional(MSPCXMLWithBytes{std::move(*document), std::move(mended->bytes), isConverted, true})
                    : std::nullopt;
}
