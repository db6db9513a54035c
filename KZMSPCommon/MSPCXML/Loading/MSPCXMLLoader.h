#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "MSPCXMLDeferredElements.h"
#include "MSPCXMLDocument.h"
#include "MSPCXMLRepair.h"

class MSPCFileReader;
class MSPCXMLSelection;

// A document, and what there is to say about how it was loaded.
struct MSPCXMLLoaded {
    MSPCXMLDocument document;
    MSPCXMLDeferredElements deferred;     // none of a document that was read as a whole: there they stand in the tree
    std::optional<MSPCXMLRepair> repair;  // none of markup that parses as it stands
};

// What has to be known about the bytes of a document (UTF-8) before they are parsed, found without parsing them.
struct MSPCXMLTraits {
    bool hasInternalSubset = false;  // the document type brings declarations of its own, entities perhaps
    bool hasStrayAmpersand = false;  // an "&" that begins no reference, outside CDATA sections and comments
    bool hasSections = false;        // CDATA sections, comments or processing instructions in the content
    bool hasMixedContent = false;    // text beside elements perhaps, or "xml:space"; looked for without sections only
};
[[nodiscard]] MSPCXMLTraits traitsOfXML(std::string_view utf8);

// From bytes to a document: decides which way they take. What is plain is read in part or by the quick parser; what
// brings entities or does not parse by the thorough one, which is slow. The encoding is the one that the XML
// declaration or a byte-order mark names. Internal entities are expanded within bounds; nothing outside the bytes is
// ever read. What is kept with `Everything` must be sound in every respect, names included, since it is written back.
class MSPCXMLLoader {
public:
    // Markup that does not parse (a bare "&", a missing end tag) is mended where that yields a root element named
    // `mendableRoot`; otherwise there is no document.
    explicit MSPCXMLLoader(MSPCXMLContent content, std::string_view mendableRoot = {})
        : _content(content), _mendableRoot(mendableRoot) {}

    // The document in a file; none when the file cannot be read or holds none. It is read once more for a repair.
    [[nodiscard]] std::optional<MSPCXMLLoaded> loadFile(const MSPCFileReader& files, const std::string& path) const;
    // The same with what a selection names, and perhaps more; the answers are those of the whole document. Of documents
    // that are plain enough to be read in part nothing else is kept, whatever the loader's content.
    [[nodiscard]] std::optional<MSPCXMLLoaded> loadSelection(const MSPCFileReader& files, const std::string& path,
                                                             const MSPCXMLSelection& selection) const;
    // The document in bytes that are there already. Where markup may be mended, that takes a copy of them.
    [[nodiscard]] std::optional<MSPCXMLLoaded> loadBytes(std::string bytes) const;

    // The document in UTF-8 bytes that must be well-formed in every respect, namespaces included; mends nothing and
    // takes no declarations in a document type. Comments are kept, processing instructions are not, and blanks where
    // they are all of an element's content. None otherwise, and `error` tells what is wrong first (the line is 0 for
    // the document as a whole).
    [[nodiscard]] static std::optional<MSPCXMLDocument> loadStrictly(std::string utf8, MSPCXMLRepair& error);

private:
    using Bytes = std::function<std::optional<std::string>()>;
    [[nodiscard]] std::optional<MSPCXMLLoaded> loadWhole(std::string bytes, const Bytes& readAgain) const;
    // What is left when the markup is broken or brings entities.
    [[nodiscard]] std::optional<MSPCXMLLoaded> loadMended(const std::string& utf8, bool hasInternalSubset) const;

    MSPCXMLContent _content;
    std::string _mendableRoot;
};
