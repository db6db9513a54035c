#include "MSPCXMLReader.h"

#include <pugixml.hpp>
#include <string_view>
#include <unordered_set>

#include "MSPCXMLTree.h"

namespace {

// Text stands in its element instead of in a node of its own, and blanks between elements are never stored. Without
// sections an element's text is in one piece, so nothing of it is lost that way.
constexpr unsigned FastOptions = pugi::parse_default | pugi::parse_ws_pcdata_single | pugi::parse_embed_pcdata;
constexpr unsigned CompleteOptions =
    pugi::parse_default | pugi::parse_ws_pcdata | pugi::parse_comments | pugi::parse_pi | pugi::parse_doctype;

// Exactly one element at the top, and no text. Blanks there are removed.
bool tidyTopLevel(pugi::xml_document& document) {
    std::size_t elements = 0;
    for (auto node = document.first_child(); node;) {
        const auto next = node.next_sibling();
        if (node.type() == pugi::node_element) {
            ++elements;
        } else if (isTextOrCData(node)) {
            if (node.type() == pugi::node_cdata || !isXMLBlank(node.value())) {
                return false;
            }
            document.remove_child(node);
        }
        node = next;
    }
    return elements == 1;
}

// Keeps the first of each name; says whether that was all.
bool removeRepeatedAttributes(pugi::xml_node element) {
    const auto first = element.first_attribute();
    if (!first || !first.next_attribute()) {
        return true;
    }
    bool wasAll = true;
    std::unordered_set<std::string_view> names;
    for (auto attribute = first; attribute;) {
        const auto following = attribute.next_attribute();
        if (!names.insert(attribute.name()).second) {
            element.remove_attribute(attribute);
            wasAll = false;
        }
        attribute = following;
    }
    return wasAll;
}

bool isSpacePreserved(const pugi::xml_node& element) {
    return std::string_view(element.attribute("xml:space").value()) == "preserve";
}

// Brings a complete tree into the form that the contents ask for.
class TreeTidier {
public:
    explicit TreeTidier(MSPCXMLContent content) : _dropsComments(content == MSPCXMLContent::DataOnly) {}

    // Says whether each element had each attribute once.
    bool tidy(const pugi::xml_document& document) {
        bool hadEachOnce = true;
        for (pugi::xml_node node = document; node; node = next(node)) {
            hadEachOnce = removeRepeatedAttributes(node) && hadEachOnce;
            tidyChildren(node);
        }
        return hadEachOnce;
    }

private:
    void tidyChildren(pugi::xml_node parent) {
        if (_dropsComments) {
            removeChildren(parent, [](const pugi::xml_node& child) {
                return child.type() == pugi::node_comment || child.type() == pugi::node_pi;
            });
        }
        if (_verbatimTop || parent.type() != pugi::node_element) {
            return;
        }
        bool hasText = false;
        bool hasOtherNodes = false;
        for (const auto& child : parent.children()) {
            const bool isText = child.type() == pugi::node_pcdata;
            hasText = hasText || child.type() == pugi::node_cdata || (isText && !isXMLBlank(child.value()));
            hasOtherNodes = hasOtherNodes || !isText;
        }
        if ((hasText && hasOtherNodes) || isSpacePreserved(parent)) {
            _verbatimTop = parent;
        } else if (hasOtherNodes) {
            removeChildren(parent, [](const pugi::xml_node& child) { return child.type() == pugi::node_pcdata; });
        }
    }

    template <typename Predicate>
    static void removeChildren(pugi::xml_node parent, Predicate&& isUnwanted) {
        for (auto child = parent.first_child(); child;) {
            const auto following = child.next_sibling();
            if (isUnwanted(child)) {
                parent.remove_child(child);
            }
            child = following;
        }
    }

    // The next node in document order. Blanks count again once the walk has left the element that keeps them.
    pugi::xml_node next(pugi::xml_node node) {
        if (const auto child = node.first_child()) {
            return child;
        }
        while (node) {
            if (node == _verbatimTop) {
                _verbatimTop = {};
            }
            if (const auto sibling = node.next_sibling()) {
                return sibling;
            }
            node = node.parent();
        }
        return {};
    }

    bool _dropsComments;
    pugi::xml_node _verbatimTop;  // the outermost element around the walk whose blanks all count
};

}  // namespace

bool loadXMLTree(pugi::xml_document& document, char* bytes, std::size_t size, const MSPCXMLReading& reading) {
    const bool isFast = reading.content == MSPCXMLContent::DataOnly && !reading.hasSections && !reading.isMended;
    // As a fragment, or text around the root element would pass unnoticed.
    const auto options = (isFast ? FastOptions : CompleteOptions) | pugi::parse_fragment;
    if (!document.load_buffer_inplace(bytes, size, options, pugi::encoding_utf8) || !tidyTopLevel(document)) {
        return false;
    }
    return isFast || TreeTidier(reading.content).tidy(document) || reading.isMended;
}
