#include "MSPCXMLTreeBuilder.h"

#include <pugixml.hpp>
#include <set>
#include <string_view>
#include <vector>

#include "MSPCXMLLexis.h"
#include "MSPCXMLTree.h"

namespace {

using namespace MSPCXMLLexis;

// Blanks between elements are never stored. Without sections and mixed content an element's text is in one piece and
// alone, so nothing that counts is lost that way.
constexpr unsigned FastOptions = pugi::parse_default | pugi::parse_ws_pcdata_single;
// Text stands in its element instead of in a node of its own. The library's queries do not see it in elements within
// the one they ask for.
constexpr unsigned FastestOptions = FastOptions | pugi::parse_embed_pcdata;
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
            if (node.type() == pugi::node_cdata || !isAllBlank(node.value())) {
                return false;
            }
            document.remove_child(node);
        }
        node = next;
    }
    return elements == 1;
}

// The attributes that bear the name of one before them on the same element.
std::vector<pugi::xml_attribute> repeatedAttributes(const pugi::xml_node& element) {
    std::vector<pugi::xml_attribute> repeated;
    const auto first = element.first_attribute();
    if (!first || !first.next_attribute()) {
        return repeated;
    }
    std::set<std::string_view> names;  // ordered, since names can be chosen so that hashed ones all collide
    for (auto attribute = first; attribute; attribute = attribute.next_attribute()) {
        if (!names.insert(attribute.name()).second) {
            repeated.push_back(attribute);
        }
    }
    return repeated;
}

// What to do about attributes that an element has twice.
enum class RepeatedAttributes { Keep, Refuse, Remove };

RepeatedAttributes repeatedAttributesIn(const MSPCXMLReading& reading) {
    if (reading.isMended) {
        return RepeatedAttributes::Remove;
    }
    const bool isLookedAt = reading.content == MSPCXMLContent::Everything || reading.hasSections;
    return isLookedAt ? RepeatedAttributes::Refuse : RepeatedAttributes::Keep;
}

bool isSpacePreserved(const pugi::xml_node& element) {
    return element.attribute(SpaceAttribute.data()).value() == SpacePreserved;
}

// Brings a complete tree into the form that the contents ask for.
class TreeTidier {
public:
    explicit TreeTidier(const MSPCXMLReading& reading)
        : _dropsComments(reading.content == MSPCXMLContent::DataOnly),
          _repeatedAttributes(repeatedAttributesIn(reading)) {}

    // False for a tree that is refused, at the first reason for it.
    bool tidy(const pugi::xml_document& document) {
        for (pugi::xml_node node = document; node; node = next(node)) {
            if (_repeatedAttributes != RepeatedAttributes::Keep && !tidyAttributes(node)) {
                return false;
            }
            tidyChildren(node);
        }
        return true;
    }

private:
    // Of attributes of one name the first stays. Mended tags have a bounded number of them.
    bool tidyAttributes(pugi::xml_node element) {
        const auto repeated = repeatedAttributes(element);
        if (_repeatedAttributes == RepeatedAttributes::Refuse && !repeated.empty()) {
            return false;
        }
        for (const auto& attribute : repeated) {
            element.remove_attribute(attribute);
        }
        return true;
    }

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
            hasText = hasText || child.type() == pugi::node_cdata || (isText && !isAllBlank(child.value()));
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
    RepeatedAttributes _repeatedAttributes;
    pugi::xml_node _verbatimTop;  // the outermost element around the walk whose blanks all count
};

unsigned optionsFor(const MSPCXMLReading& reading) {
    if (reading.isSound) {
        return FastOptions | pugi::parse_comments;
    }
    const bool isPlain = reading.content == MSPCXMLContent::DataOnly && !reading.hasSections &&
                         !reading.hasMixedContent && !reading.isMended;
    return !isPlain ? CompleteOptions : reading.hasNestedValues ? FastOptions : FastestOptions;
}

}  // namespace

bool buildXMLTree(pugi::xml_document& document, char* bytes, std::size_t size, const MSPCXMLReading& reading) {
    const auto options = optionsFor(reading);
    // As a fragment, or text around the root element would pass unnoticed.
    if (!document.load_buffer_inplace(bytes, size, options | pugi::parse_fragment, pugi::encoding_utf8) ||
        !tidyTopLevel(document)) {
        return false;
    }
    return options != CompleteOptions || TreeTidier(reading).tidy(document);
}
