#include "MSPCExtensions.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "MSPCException.h"
#include "MSPCLog.h"
#include "MSPCPath.h"
#include "MSPCURL.h"
#include "MSPCXMLLoader.h"
#include "MSPCXMLQuery.h"

namespace {

// The last of the nodes that a query selects, and how many they are.
struct Matches {
    MSPCXMLNode last;
    std::size_t count = 0;
};

Matches matchesOf(const MSPCXMLNode& node, std::string_view query) {
    if (isPlainChildName(query)) {
        const auto [element, count] = node.lastChildElement(query);
        return {element, count};
    }
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

MSPCXMLLoader loaderFor(MSPCXMLContent content) {
    return MSPCXMLLoader(content, "Project");  // other documents are not mended
}

void logRepair(const std::optional<MSPCXMLLoaded>& loaded, const MSPCURL& url, MSPCLog& log) {
    if (loaded && loaded->repair) {
        const auto& [line, message] = *loaded->repair;
        log.log("WARNING: Repaired malformed XML in '{}' at line {}: {}", url.path(), line, message);
    }
}

MSPCXMLLoaded checkedLoaded(std::optional<MSPCXMLLoaded> loaded, const MSPCURL& url, MSPCLog& log) {
    logRepair(loaded, url, log);
    if (!loaded) {
        throw MSPEXMLException("MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data.");
    }
    return std::move(*loaded);
}

}  // namespace

MSPCXMLNode singleObjectForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error) {
    checkIsNode(node);
    const auto matches = matchesOf(node, query);
    reportMatches(matches.count, error);
    return matches.last;
}

std::optional<std::string> stringValueForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error) {
    return stringValueOf(singleObjectForXQuery(node, query, error));
}

MSPCNodeText textForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error) {
    return MSPCNodeText(singleObjectForXQuery(node, query, error));
}

std::int64_t intValueForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error) {
    return intValueOf(singleObjectForXQuery(node, query, error));
}

double floatValueForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error) {
    return floatValueOf(singleObjectForXQuery(node, query, error));
}

bool boolValueForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error) {
    return boolValueOf(singleObjectForXQuery(node, query, error));
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
    return value ? element.setAttribute(name, *value) : element.findOrAddAttribute(name);
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
    return text ? element.appendElement(name, *text) : element.appendElement(name);
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

MSPCXMLDocument newXmlDocFromUrl(const MSPCURL& url, MSPCXMLContent content, const MSPCFileReader& fileSystem,
                                 MSPCLog& log) {
    return checkedLoaded(loaderFor(content).loadFile(fileSystem, url.path()), url, log).document;
}

MSPCXMLLoaded newXmlDocFromUrlSelection(const MSPCURL& url, const MSPCXMLSelection& selection,
                                        const MSPCFileReader& fileSystem, MSPCLog& log) {
    const auto loader = loaderFor(MSPCXMLContent::DataOnly);
    return checkedLoaded(loader.loadSelection(fileSystem, url.path(), selection), url, log);
}

MSPCXMLDocument newXmlDocFromUrlStripNamespace(const MSPCURL& url, MSPCXMLContent content,
                                               const MSPCFileReader& fileSystem, MSPCLog& log) {
    // Deliberate: the namespace stays, despite the name.
    auto loaded = loaderFor(content).loadFile(fileSystem, url.path());
    logRepair(loaded, url, log);
    if (!loaded) {
        throw MSPEXMLException(
            "MSPEXMLExporter.newXmlDocFromUrlStripNamespace: Failed to build XML DOM from source data.");
    }
    return std::move(loaded->document);
}

Error notPortedXQueryError(std::string_view sourcePath, int line, std::string_view query) {
    return Error{MSPCGeneralErrorDomain, MSPCNotPortedXQuery,
                 fmt::format("NOT PORTED XQUERY ({} [{}]): {}", lastPathComponent(sourcePath), line, query)};
}
