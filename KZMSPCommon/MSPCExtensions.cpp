#include "MSPCExtensions.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "MSPCException.h"
#include "MSPCFileSystem.h"
#include "MSPCLog.h"
#include "MSPCPath.h"
#include "MSPCTextScanner.h"
#include "MSPCURL.h"
#include "MSPCXMLChildPath.h"
#include "MSPCXMLFilter.h"

namespace {

// The last of the nodes that a query selects, and how many they are.
struct Matches {
    MSPCXMLNode last;
    std::size_t count = 0;
};

Matches matchesOf(const MSPCXMLNode& node, std::string_view query) {
    Matches matches;
    const auto take = [&](const MSPCXMLNode& match) {
        matches.last = match;
        ++matches.count;
    };
    if (isPlainChildPath(query)) {
        visitPlainChildPath(node, query, take);
    } else if (const auto nodes = node.nodesForXPath(query)) {
        std::for_each(nodes->begin(), nodes->end(), take);
    }
    return matches;
}

void setXQueryError(Error* error, int code) {
    if (error != nullptr) {
        *error = Error{MSPCXQueryErrorDomain, code, {}};
    }
}

void checkIsNode(const MSPCXMLNode& node) {
    if (!node) {
        throw MSPCInternalInconsistency(
            "Sent message singleObjectForXQuery:error: to an object which is not NSXMLNodeProxy.");
    }
}

// True or false for the words that mean it; none for any other text.
std::optional<bool> boolOfWord(std::string_view text) {
    constexpr std::size_t longestWord = 5;
    if (text.size() > longestWord) {
        return std::nullopt;
    }
    const auto word = lowerCased(text);
    if (word == "true" || word == "yes") {
        return true;
    }
    if (word == "false" || word == "no") {
        return false;
    }
    return std::nullopt;
}

MSPCXMLNode withText(MSPCXMLNode node, std::optional<std::string_view> text) {
    if (text) {
        node.setStringValue(*text);
    }
    return node;
}

// Positions are signed where they come from; one before the first child means the first.
std::size_t childIndex(std::int32_t index) {
    return static_cast<std::size_t>(std::max(index, 0));
}

// What a selection keeps of a document, where the document is plain enough to be read piece by piece.
std::optional<MSPCXMLDocument> selectedDocument(const MSPCURL& url, const MSPCFileSystem& fileSystem,
                                                const MSPCXMLSelection& selection) {
    const auto source = fileSystem.openFile(url.path());
    if (!source) {
        return std::nullopt;
    }
    bool hasFailed = false;
    const auto read = [&](char* buffer, std::size_t capacity) {
        const auto count = source->read(buffer, capacity);
        hasFailed = hasFailed || !count;
        return count.value_or(0);
    };
    auto filtered = filteredXML(read, source->expectedSize(), selection);
    return filtered && !hasFailed ? MSPCXMLDocument::readFiltered(std::move(*filtered)) : std::nullopt;
}

std::optional<MSPCXMLDocument> loadedDocument(const MSPCURL& url, MSPCXMLContent content,
                                              const MSPCFileSystem& fileSystem, MSPCLog& log) {
    const auto readFile = [&] { return fileSystem.readFile(url.path()); };
    auto bytes = readFile();
    if (!bytes) {
        return std::nullopt;
    }
    std::optional<MSPCXMLRepair> repair;
    auto document = MSPCXMLDocument::read(std::move(*bytes), content, "Project", &repair, readFile);
    if (document && repair) {
        log.log(fmt::format("WARNING: Repaired malformed XML in '{}' at line {}: {}", url.path(), repair->line,
                            repair->message));
    }
    return document;
}

}  // namespace

MSPCXMLNode singleObjectForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error) {
    checkIsNode(node);
    const auto matches = matchesOf(node, query);
    if (matches.count == 0) {
        setXQueryError(error, MSPCXQueryNoMatch);
    } else if (matches.count > 1) {
        setXQueryError(error, MSPCXQueryMoreThanOneMatch);
    }
    return matches.last;
}

std::optional<std::string> stringValueForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error) {
    const auto match = singleObjectForXQuery(node, query, error);
    return match ? std::optional(match.stringValue()) : std::nullopt;
}

std::int64_t intValueForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error) {
    const auto match = singleObjectForXQuery(node, query, error);
    if (!match) {
        return 0;
    }
    std::string buffer;
    const auto value = scanInteger64(match.stringValue(buffer));
    if (!value) {
        throw MSPCInternalInconsistency("Failed to get int value from XML node: " + match.markup());
    }
    return *value;
}

double floatValueForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error) {
    const auto match = singleObjectForXQuery(node, query, error);
    if (!match) {
        return 0.0;
    }
    std::string buffer;
    const auto value = scanDouble(match.stringValue(buffer));
    if (!value) {
        throw MSPCInternalInconsistency("Failed to get float value from XML node: " + match.markup());
    }
    return *value;
}

bool boolValueForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error) {
    const auto match = singleObjectForXQuery(node, query, error);
    if (!match) {
        return false;
    }
    std::string buffer;
    const auto text = trimmed(match.stringValue(buffer));
    if (const auto word = boolOfWord(text)) {
        return *word;
    }
    const auto value = scanInteger32(text);
    if (!value) {
        throw MSPCInternalInconsistency("Failed to get boolean value from XML node: " + match.markup());
    }
    return *value != 0;
}

std::vector<MSPCXMLNode> nodesForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error) {
    checkIsNode(node);
    auto nodes = node.nodesForXPath(query);
    if (!nodes) {
        setXQueryError(error, MSPCXQueryNoMatch);
        return {};
    }
    return std::move(*nodes);
}

MSPCXMLNode setAttributeWithName(MSPCXMLNode element, std::string_view name) {
    return setAttributeWithNameStringValue(element, name, std::nullopt);
}

MSPCXMLNode setAttributeWithNameStringValue(MSPCXMLNode element, std::string_view name,
                                            std::optional<std::string_view> value) {
    if (!element.isElement()) {
        throw MSPCInternalInconsistency(
            "Sent message setAttributeWithName:stringValue: to an object which is not NSXMLElementProxy.");
    }
    return withText(element.findOrAddAttribute(name), value);
}

MSPCXMLNode addChildElementWithName(MSPCXMLNode element, std::string_view name) {
    return addChildElementWithNameStringValue(element, name, std::nullopt);
}

MSPCXMLNode addChildElementWithNameStringValue(MSPCXMLNode element, std::string_view name,
                                               std::optional<std::string_view> text) {
    if (!element.isElement()) {
        throw MSPCInternalInconsistency(
            "Sent message addChildElementWithName:stringValue: to an object which is not NSXMLElementProxy.");
    }
    return withText(element.appendElement(name), text);
}

MSPCXMLNode insertChildElementWithNameAtIndex(MSPCXMLNode element, std::string_view name, std::int32_t index) {
    return insertChildElementWithNameStringValueAtIndex(element, name, std::nullopt, index);
}

MSPCXMLNode insertChildElementWithNameStringValueAtIndex(MSPCXMLNode element, std::string_view name,
                                                         std::optional<std::string_view> text, std::int32_t index) {
    return withText(element.insertElement(name, childIndex(index)), text);
}

void addComment(MSPCXMLNode element, std::optional<std::string_view> text) {
    element.appendComment(text.value_or(std::string_view()));
}

void insertCommentAtIndex(MSPCXMLNode element, std::optional<std::string_view> text, std::int32_t index) {
    element.insertComment(text.value_or(std::string_view()), childIndex(index));
}

MSPCXMLDocument newXmlDocFromUrl(const MSPCURL& url, MSPCXMLContent content, const MSPCFileSystem& fileSystem,
                                 MSPCLog& log, const MSPCXMLSelection* selection) {
    auto document = selection != nullptr ? selectedDocument(url, fileSystem, *selection) : std::nullopt;
    if (!document) {
        document = loadedDocument(url, content, fileSystem, log);
    }
    if (!document) {
        throw MSPEXMLException("MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data.");
    }
    return std::move(*document);
}

MSPCXMLDocument newXmlDocFromUrlStripNamespace(const MSPCURL& url, MSPCXMLContent content,
                                               const MSPCFileSystem& fileSystem, MSPCLog& log) {
    // Deliberate: the namespace stays, despite the name.
    auto document = loadedDocument(url, content, fileSystem, log);
    if (!document) {
        throw MSPEXMLException(
            "MSPEXMLExporter.newXmlDocFromUrlStripNamespace: Failed to build XML DOM from source data.");
    }
    return std::move(*document);
}

Error notPortedXQueryError(std::string_view sourcePath, int line, std::string_view query) {
    return Error{MSPCGeneralErrorDomain, MSPCNotPortedXQuery,
                 fmt::format("NOT PORTED XQUERY ({} [{}]): {}", lastPathComponent(sourcePath), line, query)};
}
