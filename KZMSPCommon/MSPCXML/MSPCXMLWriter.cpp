#include "MSPCXMLWriter.h"

#include <pugixml.hpp>

#include "MSPCByteStreams.h"
#include "MSPCXMLLexis.h"
#include "MSPCXMLOutput.h"
#include "MSPCXMLTree.h"

namespace {

// Writes a subtree, one element per line. An element whose text must not change is written on the line it is on, with
// all that is inside it.
class TreeWriter {
public:
    explicit TreeWriter(MSPCXMLOutput& output) : _output(output) {}

    // Each node begins a line of its own.
    void writeOnLines(const pugi::xml_node& top) { walk(top); }
    // No line end and no blank is added.
    void writeInline(const pugi::xml_node& top) {
        _inlineTop = top;
        walk(top);
    }
    void writeAttribute(const pugi::xml_attribute& attribute) {
        _output.raw(attribute.name());
        _output.raw("=\"");
        _output.attributeValue(attribute.value());
        _output.raw("\"");
    }

private:
    void walk(const pugi::xml_node& top) {
        for (auto node = top; isThere(node);) {
            if (open(node)) {
                ++_level;
                node = node.first_child();
            } else {
                node = nextBehind(node, top);
            }
        }
    }

    // The node that follows one without children; writes the end tags on the way there.
    pugi::xml_node nextBehind(pugi::xml_node node, const pugi::xml_node& top) {
        while (!areSame(node, top)) {
            if (const auto sibling = node.next_sibling(); isThere(sibling)) {
                return sibling;
            }
            node = node.parent();
            --_level;
            close(node);
        }
        return {};
    }

    // Writes a node as far as its first child; says whether children follow.
    bool open(const pugi::xml_node& node) {
        const auto type = node.type();
        if (type == pugi::node_pcdata) {
            if (isThere(_inlineTop)) {
                _output.text(node.value());
            }
            return false;  // between elements on lines of their own only blanks are left, which give way to indentation
        }
        if (!isThere(_inlineTop)) {
            _output.newLine(_level);
        }
        if (type == pugi::node_element) {
            return openElement(node);
        }
        writeLeaf(node, type);
        return false;
    }

    void writeLeaf(const pugi::xml_node& node, pugi::xml_node_type type) {
        switch (type) {
            case pugi::node_cdata:
                _output.raw("<![CDATA[");
                _output.unescaped(node.value());
                _output.raw("]]>");
                break;
            case pugi::node_comment:
                _output.raw("<!--");
                _output.comment(node.value());
                _output.raw("-->");
                break;
            case pugi::node_pi:
                _output.raw("<?");
                _output.raw(node.name());
                if (*node.value() != '\0') {
                    _output.raw(" ");
                    _output.unescaped(node.value());
                }
                _output.raw("?>");
                break;
            case pugi::node_doctype:
                _output.raw("<!DOCTYPE ");
                _output.unescaped(node.value());
                _output.raw(">");
                break;
            default:
                break;
        }
    }

    bool openElement(const pugi::xml_node& element) {
        const std::string_view name = element.name();
        _output.raw("<");
        _output.raw(name);
        bool preservesSpace = false;
        for (auto attribute = element.first_attribute(); isThere(attribute); attribute = attribute.next_attribute()) {
            _output.raw(" ");
            writeAttribute(attribute);
            preservesSpace = preservesSpace || isSpacePreserved(attribute);
        }
        const auto first = element.first_child();
        if (!isThere(first) || (first.type() == pugi::node_pcdata && !isThere(first.next_sibling()))) {
            writeOnlyText(name, element.value(), first.value());
            return false;
        }
        _output.raw(">");
        if (!isThere(_inlineTop) && (preservesSpace || !isElementOnly(element))) {
            _inlineTop = element;
        }
        _output.text(element.value());
        return true;
    }

    // `embedded` is the text in the element itself, `own` that of its only child.
    void writeOnlyText(std::string_view name, const char* embedded, const char* own) {
        if (*embedded == '\0' && *own == '\0') {
            _output.raw("/>");
            return;
        }
        _output.raw(">");
        if (*embedded != '\0') {
            _output.text(embedded);
        }
        _output.text(own);
        writeEndTag(name);
    }

    void close(const pugi::xml_node& element) {
        if (!isThere(_inlineTop)) {
            _output.newLine(_level);
        }
        writeEndTag(element.name());
        if (areSame(element, _inlineTop)) {
            _inlineTop = {};
        }
    }

    void writeEndTag(std::string_view name) {
        _output.raw("</");
        _output.raw(name);
        _output.raw(">");
    }

    static bool isSpacePreserved(const pugi::xml_attribute& attribute) {
        return attribute.name() == MSPCXMLLexis::SpaceAttribute && attribute.value() == MSPCXMLLexis::SpacePreserved;
    }

    // Whether an element holds other nodes and no text but blanks, which may give way to indentation.
    static bool isElementOnly(const pugi::xml_node& element) {
        bool hasOtherNodes = false;
        for (auto child = element.first_child(); isThere(child); child = child.next_sibling()) {
            const auto type = child.type();
            if (type == pugi::node_cdata || (type == pugi::node_pcdata && !MSPCXMLLexis::isAllBlank(child.value()))) {
                return false;
            }
            hasOtherNodes = hasOtherNodes || type != pugi::node_pcdata;
        }
        return hasOtherNodes && MSPCXMLLexis::isAllBlank(element.value());
    }

    MSPCXMLOutput& _output;
    std::size_t _level = 0;
    pugi::xml_node _inlineTop;  // the outermost element that is being written on one line
};

}  // namespace

std::size_t writeXMLDocument(const MSPCXMLNode& document, MSPCByteWriter& bytes) {
    MSPCXMLOutput output(bytes);
    output.raw(R"(<?xml version="1.0" encoding="UTF-8"?>)");
    TreeWriter writer(output);
    for (auto node = firstVisibleChild(treeNode(document)); isThere(node); node = node.next_sibling()) {
        writer.writeOnLines(node);
    }
    output.raw("\n");
    output.flush();
    return output.replacedCharacters();
}

std::string MSPCXMLNode::markup() const {
    MSPCStringWriter bytes;
    MSPCXMLOutput output(bytes);
    TreeWriter writer(output);
    if (_attribute != nullptr) {
        writer.writeAttribute(pugi::xml_attribute(MSPCXMLNodeAccess::attribute(*this)));
    } else if (const auto node = treeNode(*this); node.type() == pugi::node_document) {
        writer.writeInline(rootElementOf(node));
    } else if (node) {
        writer.writeInline(node);
    }
    output.flush();
    return bytes.take();
}
