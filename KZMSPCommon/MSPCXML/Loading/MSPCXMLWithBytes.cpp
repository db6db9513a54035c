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
    const auto prescan = prescannedXML(*utf8);
    if (!prescan.hasInternalSubset && !prescan.hasStrayAmpersand) {
        auto document = MSPCXMLDocument::read(*utf8, {.content = MSPCXMLContent::DataOnly,
                                                      .hasSections = prescan.hasSections,
                                                      .hasMixedContent = prescan.hasMixedContent});
        if (document) {
            return MSPCXMLWithBytes{std::move(*document), std::move(*utf8), isConverted, false};
        }
    }
    auto mended = mendedXML(*utf8, prescan.hasInternalSubset, mendableRoot);
    auto document = mended
                        ? MSPCXMLDocument::read(mended->bytes, {.content = MSPCXMLContent::DataOnly, .isMended = true})
                        : std::nullopt;
    return document ? std::optional(MSPCXMLWithBytes{std::move(*document), std::move(mended->bytes), isConverted, true})
                    : std::nullopt;
}
