#include "WrittenTexts.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>

#include "FuzzWorld.h"
#include "MSPCXMLDocument.h"

namespace {

constexpr std::string_view Replacement = "\xEF\xBF\xBD";

// The length of the character at the start of a text, 0 where XML cannot hold it or it is no UTF-8.
std::size_t lengthOfHoldableCharacter(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    constexpr unsigned char leads[] = {0x80, 0xC2, 0xE0, 0xF0, 0xF5};
    constexpr std::size_t lengths[] = {1, 0, 2, 3, 4, 0};
    const std::size_t length = lengths[std::upper_bound(std::begin(leads), std::end(leads), first) - std::begin(leads)];
    if (length == 0 || length > text.size()) {
        return 0;
    }
    std::uint32_t code = length == 1 ? first : first & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0U) != 0x80U) {
            return 0;
        }
        code = code << 6U | (byte & 0x3FU);
    }
    constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isHeld = code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code <= 0xD7FF) ||
                        (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
    return code >= smallest[length] && isHeld ? length : 0;
}

std::string holdable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto length = lengthOfHoldableCharacter(text);
        const auto character = length == 0 ? Replacement : text.substr(0, length);
        if (character != Replacement || !std::string_view(result).ends_with(Replacement)) {
            result += character;
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

bool isAllBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

void addText(WrittenTexts& texts, const std::string& text, bool hasElements) {
    if (!text.empty() && !(hasElements && isAllBlank(text))) {
        texts.push_back("text " + holdable(text));
    }
}

void addNamespace(WrittenTexts& texts, std::string_view prefix, std::string_view uri) {
    std::string text = "attribute xmlns";
    if (!prefix.empty()) {
        text.append(":").append(prefix);
    }
    texts.push_back(text.append("=").append(holdable(uri)));
}

void addElement(WrittenTexts& texts, const MSPCXMLNode& element) {
    texts.push_back("element " + std::string(element.name()));
    for (const auto& [prefix, uri] : element.namespaceDeclarations()) {
        addNamespace(texts, prefix, uri);
    }
    const auto attributes = element.nodesForXPath("@*");
    for (const auto& attribute : *attributes) {
        texts.push_back("attribute " + std::string(attribute.name()) + "=" + holdable(attribute.stringValue()));
    }
}

std::string ownTextOf(const MSPCXMLNode& element, bool& hasElements) {
    std::string text;
    for (auto child = element.firstChild(); child; child = child.nextSibling()) {
        hasElements = hasElements || child.isElement();
        if (child.kind() == MSPCXMLNodeKind::Text || child.kind() == MSPCXMLNodeKind::CData) {
            text += child.stringValue();
        }
    }
    return text;
}

const char* chars(const xmlChar* text) {
    return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

std::string qualified(const xmlNs* space, const xmlChar* name) {
    const bool hasPrefix = space != nullptr && space->prefix != nullptr;
    return hasPrefix ? std::string(chars(space->prefix)) + ":" + chars(name) : std::string(chars(name));
}

std::string contentOf(const xmlAttr& attribute) {
    std::string text;
    for (const auto* child = attribute.children; child != nullptr; child = child->next) {
        text += chars(child->content);
    }
    return text;
}

void addElement(WrittenTexts& texts, const xmlNode& element) {
    texts.push_back("element " + qualified(element.ns, element.name));
    for (const auto* space = element.nsDef; space != nullptr; space = space->next) {
        addNamespace(texts, chars(space->prefix), chars(space->href));
    }
    for (const auto* attribute = element.properties; attribute != nullptr; attribute = attribute->next) {
        texts.push_back("attribute " + qualified(attribute->ns, attribute->name) + "=" +
                        holdable(contentOf(*attribute)));
    }
}

std::string ownTextOf(const xmlNode& element, bool& hasElements) {
    std::string text;
    for (const auto* child = element.children; child != nullptr; child = child->next) {
        hasElements = hasElements || child->type == XML_ELEMENT_NODE;
        if (child->type == XML_TEXT_NODE || child->type == XML_CDATA_SECTION_NODE) {
            text += chars(child->content);
        }
    }
    return text;
}

const xmlNode* nextInDocument(const xmlNode* node) {
    if (node->children != nullptr && node->type == XML_ELEMENT_NODE) {
        return node->children;
    }
    while (node != nullptr && node->next == nullptr) {
        node = node->parent;
        if (node != nullptr && node->type == XML_DOCUMENT_NODE) {
            return nullptr;
        }
    }
    return node == nullptr ? nullptr : node->next;
}

MSPCXMLNode nextInDocument(MSPCXMLNode node) {
    if (const auto child = node.firstChild()) {
        return child;
    }
    while (node && node.kind() != MSPCXMLNodeKind::Document) {
        if (const auto sibling = node.nextSibling()) {
            return sibling;
        }
        node = node.parent();
    }
    return {};
}

}  // namespace

WrittenTexts textsOf(const MSPCXMLDocument& document) {
    WrittenTexts texts;
    for (auto node = document.root(); node; node = nextInDocument(node)) {
        if (node.isElement()) {
            addElement(texts, node);
            bool hasElements = false;
            const auto text = ownTextOf(node, hasElements);
            addText(texts, text, hasElements);
        }
    }
    return texts;
}

WrittenTexts textsOfStrictReading(std::string_view bytes) {
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(xmlNewParserCtxt(), xmlFreeParserCtxt);
    // Without its entities replaced the URI of a namespace would keep "&#38;" for each ampersand.
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
        xmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                          XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE),
        xmlFreeDoc);
    if (!document || parser->wellFormed != 1) {
        const auto* error = xmlCtxtGetLastError(parser.get());
        std::fwrite(bytes.data(), 1, bytes.size(), stderr);
        require(false, error != nullptr && error->message != nullptr
                           ? "a written document is well-formed: " + std::string(error->message)
                           : std::string("a written document is well-formed"));
    }
    WrittenTexts texts;
    for (const auto* node = xmlDocGetRootElement(document.get()); node != nullptr; node = nextInDocument(node)) {
        if (node->type == XML_ELEMENT_NODE) {
            addElement(texts, *node);
            bool hasElements = false;
            const auto text = ownTextOf(*node, hasElements);
            addText(texts, text, hasElements);
        }
    }
    return texts;
}
