#include "WrittenTexts.h"

#include <expat.h>
#include <libxml/parser.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <pugixml.hpp>
#include <string>
#include <utility>

#include "FuzzWorld.h"
#include "MSPCXMLDocument.h"
#include "MSPCXMLNode.h"

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

bool isNamespace(std::string_view name) {
    return name == "xmlns" || name.starts_with("xmlns:");
}

// Declarations of namespaces first: they have no place of their own in a document's tree.
template <typename Attributes>
void addAttributes(WrittenTexts& texts, const Attributes& attributes) {
    for (const bool wantsNamespaces : {true, false}) {
        for (const auto& [name, value] : attributes) {
            if (isNamespace(name) == wantsNamespaces) {
                texts.push_back("attribute " + std::string(name) + "=" + holdable(value));
            }
        }
    }
}

using Attributes = std::vector<std::pair<std::string_view, std::string_view>>;

void addElement(WrittenTexts& texts, const MSPCXMLNode& element) {
    texts.push_back("element " + std::string(element.name()));
    Attributes attributes;
    for (const auto& attribute : pugi::xml_node(MSPCXMLNodeAccess::node(element)).attributes()) {
        attributes.emplace_back(attribute.name(), attribute.value());
    }
    addAttributes(texts, attributes);
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

// What the strict reader tells of a document. An element's own text is complete at its end only, and has its place
// behind the element's attributes all the same.
class StrictReading {
public:
    void start(const char* name, const char** namesAndValues, int count) {
        if (!_open.empty()) {
            _open.back().hasElements = true;
        }
        _texts.push_back(std::string("element ") + name);
        Attributes attributes;
        for (int i = 0; i < count; i += 2) {
            attributes.emplace_back(namesAndValues[i], namesAndValues[i + 1]);
        }
        addAttributes(_texts, attributes);
        _open.push_back({_texts.size(), {}, false});
        _texts.emplace_back();
    }
    void text(std::string_view characters) { _open.back().text += characters; }
    void end() {
        WrittenTexts text;
        addText(text, _open.back().text, _open.back().hasElements);
        if (!text.empty()) {
            _texts[_open.back().place] = std::move(text.front());
        }
        _open.pop_back();
    }
    [[nodiscard]] WrittenTexts texts() && {
        std::erase(_texts, std::string());
        return std::move(_texts);
    }

private:
    struct Element {
        std::size_t place;
        std::string text;
        bool hasElements;
    };
    std::vector<Element> _open;
    WrittenTexts _texts;
};

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

// The strict reader knows the letters that the fourth edition of XML 1.0 allowed in names; the fifth has more.
bool isWellFormedByTheFifthEdition(std::string_view bytes) {
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(xmlNewParserCtxt(), xmlFreeParserCtxt);
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
        xmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                          XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE),
        xmlFreeDoc);
    return document != nullptr && parser->wellFormed == 1;
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

std::optional<WrittenTexts> textsOfStrictReading(std::string_view bytes) {
    StrictReading reading;
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate("UTF-8"),
                                                                              XML_ParserFree);
    XML_SetUserData(parser.get(), &reading);
    // The parser is its own argument, for only it knows how many attributes the document itself gives.
    XML_UseParserAsHandlerArg(parser.get());
    XML_SetElementHandler(
        parser.get(),
        [](void* self, const XML_Char* name, const XML_Char** attributes) {
            auto* inner = static_cast<XML_Parser>(self);
            static_cast<StrictReading*>(XML_GetUserData(inner))
                ->start(name, attributes, XML_GetSpecifiedAttributeCount(inner));
        },
        [](void* self, const XML_Char*) {
            static_cast<StrictReading*>(XML_GetUserData(static_cast<XML_Parser>(self)))->end();
        });
    XML_SetCharacterDataHandler(parser.get(), [](void* self, const XML_Char* characters, int count) {
        static_cast<StrictReading*>(XML_GetUserData(static_cast<XML_Parser>(self)))
            ->text({characters, static_cast<std::size_t>(count)});
    });
    if (XML_Parse(parser.get(), bytes.data(), static_cast<int>(bytes.size()), XML_TRUE) != XML_STATUS_OK) {
        if (XML_GetErrorCode(parser.get()) == XML_ERROR_INVALID_TOKEN && isWellFormedByTheFifthEdition(bytes)) {
            return std::nullopt;
        }
        std::fwrite(bytes.data(), 1, bytes.size(), stderr);
        require(false,
                "a written document is well-formed: " + std::string(XML_ErrorString(XML_GetErrorCode(parser.get()))) +
                    " in line " + std::to_string(XML_GetCurrentLineNumber(parser.get())));
    }
    return std::move(reading).texts();
}
