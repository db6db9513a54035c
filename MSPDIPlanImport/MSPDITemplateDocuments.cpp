#include "MSPDITemplateDocuments.h"

#include <utility>

#include "MSPCExtensions.h"
#include "MSPCFileSystem.h"
#include "MSPCPath.h"
#include "MSPCXMLLoader.h"

namespace {

constexpr std::size_t mostBytes = 256 * 1024;

// Whether the quick parser alone makes the same of the bytes as all the care that a document is loaded with.
bool areSound(const std::string& bytes, const MSPCXMLDocument& document) {
    const auto loaded = MSPCXMLLoader(MSPCXMLContent::Everything).loadBytes(bytes);
    const auto quick = MSPCXMLDocument::read(bytes);
    return loaded && !loaded->repair && quick && quick->serialized() == document.serialized();
}

}  // namespace

MSPCXMLDocument MSPDITemplateDocuments::load(const MSPCURL& url, const MSPCFileReader& files, MSPCLog& log) {
    const auto [known, isNew] = _sound.try_emplace(lastPathComponent(url.path()));
    const auto bytes = isNew || known->second ? files.readFile(url.path()) : std::nullopt;
    if (bytes && bytes == known->second) {
        if (auto document = MSPCXMLDocument::read(*bytes)) {
            return std::move(*document);
        }
    }
    auto document = newXmlDocFromUrl(url, MSPCXMLContent::Everything, files, log);
    known->second = bytes && bytes->size() <= mostBytes && areSound(*bytes, document) ? bytes : std::nullopt;
    return document;
}
