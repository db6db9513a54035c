#include "MSPCNodeValues.h"

#include "MSPCException.h"
#include "MSPCPath.h"
#include "MSPCTextScanner.h"

namespace {

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

[[noreturn]] void raiseUnreadable(const char* kind, const MSPCXMLNode& node) {
    throw MSPCInternalInconsistency(std::string("Failed to get ") + kind + " value from XML node: " + node.markup());
}

}  // namespace

void checkIsNode(const MSPCXMLNode& node) {
    if (!node) {
        throw MSPCInternalInconsistency(
            "Sent message singleObjectForXQuery:error: to an object which is not NSXMLNodeProxy.");
    }
}

void reportMatches(std::size_t count, Error* error) {
    if (error != nullptr && count != 1) {
        *error = Error{MSPCXQueryErrorDomain, count == 0 ? MSPCXQueryNoMatch : MSPCXQueryMoreThanOneMatch, {}};
    }
}

MSPCNodeText::MSPCNodeText(const MSPCXMLNode& node) : _isPresent(node) {
    _piece = node.stringValue(_joined);
    _isInPieces = _piece.data() == _joined.data();
}

std::optional<std::string> stringValueOf(const MSPCXMLNode& node) {
    return node ? std::optional(node.stringValue()) : std::nullopt;
}

std::int64_t intValueOf(const MSPCXMLNode& node) {
    if (!node) {
        return 0;
    }
    std::string buffer;
    const auto value = scanInteger64(node.stringValue(buffer));
    if (!value) {
        raiseUnreadable("int", node);
    }
    return *value;
}

double floatValueOf(const MSPCXMLNode& node) {
    if (!node) {
        return 0.0;
    }
    std::string buffer;
    const auto value = scanDouble(node.stringValue(buffer));
    if (!value) {
        raiseUnreadable("float", node);
    }
    return *value;
}

bool boolValueOf(const MSPCXMLNode& node) {
    if (!node) {
        return false;
    }
    std::string buffer;
    const auto text = trimmed(node.stringValue(buffer));
    if (text == "0" || text == "1") {  // as MSPDI writes them
        return text == "1";
    }
    if (const auto word = boolOfWord(text)) {
        return *word;
    }
    const auto value = scanInteger32(text);
    if (!value) {
        raiseUnreadable("boolean", node);
    }
    return *value != 0;
}
