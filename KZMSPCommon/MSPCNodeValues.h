#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "MSPCError.h"
#include "MSPCXMLNode.h"

// How the result of a query for one node is reported and read, whichever way the node was found.

// Raises `MSPCInternalInconsistency` "Sent message singleObjectForXQuery:error: to an object which is not
// NSXMLNodeProxy." for an empty handle.
void checkIsNode(const MSPCXMLNode& node);

// Sets the error of the XQuery domain where not exactly one node matched and an error is given.
void reportMatches(std::size_t count, Error* error);

// The text of a node that may be missing, without a copy where it is one piece. Valid as long as the node keeps its
// content.
class MSPCNodeText {
public:
    MSPCNodeText() = default;                        // of a missing node
    explicit MSPCNodeText(const MSPCXMLNode& node);  // of an empty handle: the same

    // Whether the node is there; its text may be empty.
    [[nodiscard]] explicit operator bool() const { return _isPresent; }
    // Empty where the node is missing. Of one that nobody keeps a copy.
    [[nodiscard]] std::string_view textOrEmpty() const& { return _isInPieces ? _joined : _piece; }
    [[nodiscard]] std::string textOrEmpty() && { return _isInPieces ? std::move(_joined) : std::string(_piece); }

private:
    bool _isPresent = false;
    bool _isInPieces = false;
    std::string_view _piece;
    std::string _joined;
};

// The text of a node; none for an empty handle.
[[nodiscard]] std::optional<std::string> stringValueOf(const MSPCXMLNode& node);
// The number at the start of a node's text, or its truth; 0 and false for an empty handle. Raise
// `MSPCInternalInconsistency` "Failed to get int value from XML node: <the node's markup>", "Failed to get float value
// from XML node: …" and "Failed to get boolean value from XML node: …" for a text that holds none.
[[nodiscard]] std::int64_t intValueOf(const MSPCXMLNode& node);
[[nodiscard]] double floatValueOf(const MSPCXMLNode& node);
[[nodiscard]] bool boolValueOf(const MSPCXMLNode& node);
