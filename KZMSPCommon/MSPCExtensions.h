#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCError.h"
#include "MSPCNodeValues.h"
#include "MSPCXMLDocument.h"
#include "MSPCXMLNode.h"

class MSPCFileReader;
class MSPCLog;
class MSPCURL;
class MSPCXMLSelection;
struct MSPCXMLLoaded;

// The node operations through which every mapper reads and writes XML.
//
// Queries are XPath 1.0 relative to the node. A query that must yield one node reports through `error` (when given)
// `MSPCXQueryNoMatch` when nothing matched or the query is malformed, and `MSPCXQueryMoreThanOneMatch` when several
// nodes did; the last one in document order then counts. Whoever reads more than one or two children of an element asks
// `MSPCFields` instead. An error that is given is set only in these two cases.
//
// Each query raises `MSPCInternalInconsistency` "Sent message singleObjectForXQuery:error: to an object which is not
// NSXMLNodeProxy." when the node is an empty handle.

// The matched node; empty when nothing matched.
[[nodiscard]] MSPCXMLNode singleObjectForXQuery(const MSPCXMLNode& node, std::string_view query,
                                                Error* error = nullptr);
// The matched node's text, which may be empty; none when nothing matched.
[[nodiscard]] std::optional<std::string> stringValueForXQuery(const MSPCXMLNode& node, std::string_view query,
                                                              Error* error = nullptr);
// The same without a copy, for reading.
[[nodiscard]] MSPCNodeText textForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error = nullptr);
// The number at the start of the matched node's text; 0 when nothing matched. Raises `MSPCInternalInconsistency`
// "Failed to get int value from XML node: <the node's markup>" when the text holds none.
[[nodiscard]] std::int64_t intValueForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error = nullptr);
// The same for a decimal number, "Failed to get float value from XML node: <the node's markup>".
[[nodiscard]] double floatValueForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error = nullptr);
// True for "true", "yes" (any case, blanks around allowed) and non-zero integers; false for "false", "no", zero and
// when nothing matched. Raises "Failed to get boolean value from XML node: <the node's markup>" for any other text.
[[nodiscard]] bool boolValueForXQuery(const MSPCXMLNode& node, std::string_view query, Error* error = nullptr);

// All nodes that a query selects, in document order. A malformed query gives none and sets `error` to
// `MSPCXQueryNoMatch`; a query that selects nothing gives none and leaves `error` alone.
[[nodiscard]] std::vector<MSPCXMLNode> nodesForXQuery(const MSPCXMLNode& node, std::string_view query,
                                                      Error* error = nullptr);

// The attribute of that name, created with an empty value when it is missing. A value that is given becomes its text; a
// missing value leaves it as it is. Raises `MSPCInternalInconsistency` "Sent message
// setAttributeWithName:stringValue: to an object which is not NSXMLElementProxy." when the node is no element.
MSPCXMLNode setAttributeWithName(MSPCXMLNode element, std::string_view name);
MSPCXMLNode setAttributeWithNameStringValue(MSPCXMLNode element, std::string_view name,
                                            std::optional<std::string_view> value);

// A new last child element, with a text when one is given. The handle is valid as long as the parent holds it. Raises
// `MSPCInternalInconsistency` "Sent message addChildElementWithName:stringValue: to an object which is not
// NSXMLElementProxy." when the node is no element.
MSPCXMLNode addChildElementWithName(MSPCXMLNode element, std::string_view name);
MSPCXMLNode addChildElementWithNameStringValue(MSPCXMLNode element, std::string_view name,
                                               std::optional<std::string_view> text);
// The same at a position among all children, 0 being the first; a position past the end appends.
MSPCXMLNode insertChildElementWithNameAtIndex(MSPCXMLNode element, std::string_view name, std::int32_t index);
MSPCXMLNode insertChildElementWithNameStringValueAtIndex(MSPCXMLNode element, std::string_view name,
                                                         std::optional<std::string_view> text, std::int32_t index);
// A new comment, last or at a position; empty when no text is given.
void addComment(MSPCXMLNode element, std::optional<std::string_view> text);
void insertCommentAtIndex(MSPCXMLNode element, std::optional<std::string_view> text, std::int32_t index);

// The document in a file, owned by the caller. Markup that does not parse is mended where that yields an MSPDI
// `Project`, with the log line "WARNING: Repaired malformed XML in '<path>' at line <n>: <parser's message>". Raises
// `MSPEXMLException` "MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data." when no document
// results.
[[nodiscard]] MSPCXMLDocument newXmlDocFromUrl(const MSPCURL& url, MSPCXMLContent content,
                                               const MSPCFileReader& fileSystem, MSPCLog& log);
// The same, data only, of which no more may be asked for than the selection names; the answers are those of the whole
// document. What the selection defers may be beside the document.
[[nodiscard]] MSPCXMLLoaded newXmlDocFromUrlSelection(const MSPCURL& url, const MSPCXMLSelection& selection,
                                                      const MSPCFileReader& fileSystem, MSPCLog& log);
// As the first, with the text "MSPEXMLExporter.newXmlDocFromUrlStripNamespace: Failed to build XML DOM from source
// data.". Deliberate: despite its name it removes no namespace.
[[nodiscard]] MSPCXMLDocument newXmlDocFromUrlStripNamespace(const MSPCURL& url, MSPCXMLContent content,
                                                             const MSPCFileReader& fileSystem, MSPCLog& log);

// The error for a query form that the importer does not offer: general domain, code 100, "NOT PORTED XQUERY (<last
// component of the source path> [<line>]): <query>".
[[nodiscard]] Error notPortedXQueryError(std::string_view sourcePath, int line, std::string_view query);
