#include "MSPCXMLQuery.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <pugixml.hpp>

#include "MSPCXMLNode.h"
#include "MSPCXMLTree.h"

namespace {

constexpr bool isNameStart(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z') || character == '_';
}

bool isNameCharacter(char character) {
    static constexpr auto kinds = [] {
        std::array<bool, 256> isIn{};
        for (std::size_t byte = 0; byte < isIn.size(); ++byte) {
            const auto candidate = static_cast<char>(byte);
            isIn[byte] = isNameStart(candidate) || (candidate >= '0' && candidate <= '9') || candidate == '-' ||
                         candidate == '.';
        }
        return isIn;
    }();
    return kinds[static_cast<unsigned char>(character)];
}

// Compiled queries by their text, null for malformed ones. Texts with ids in them would let it grow without end.
class QueryCache {
public:
    const pugi::xpath_query* compiled(std::string_view query) {
        const auto found = _queries.find(query);
        if (found != _queries.end()) {
            return found->second.get();
        }
        if (_queries.size() >= MostQueries) {
            _queries.clear();
        }
        return _queries.emplace(std::string(query), compile(std::string(query))).first->second.get();
    }

private:
    static constexpr std::size_t MostQueries = 512;

    static std::unique_ptr<pugi::xpath_query> compile(const std::string& query) {
        try {
            auto compiled = std::make_unique<pugi::xpath_query>(query.c_str());
            return compiled->return_type() == pugi::xpath_type_node_set ? std::move(compiled) : nullptr;
        } catch (const pugi::xpath_exception&) {
            return nullptr;
        }
    }

    std::map<std::string, std::unique_ptr<pugi::xpath_query>, std::less<>> _queries;
};

// Whether a document has free elements. An empty holder is swept away: no query meets it then.
bool hasFreeElements(pugi::xml_node document) {
    const auto holder = holderOfFreeElementsIfAny(document);
    if (isThere(holder) && !isThere(holder.first_child())) {
        document.remove_child(holder);
        return false;
    }
    return isThere(holder);
}

// What tells a free element's inside from all that is outside: the free element; none for a node of the document
// proper, the holder itself for the holder.
pugi::xml_node freeElementAround(pugi::xml_node node) {
    while (isThere(node) && !isFree(node) && !isHolderOfFreeElements(node)) {
        node = node.parent();
    }
    return node;
}

// Of a free element's inside and all that is outside, only the side that `from` is on stays.
void dropMatchesElsewhere(std::vector<MSPCXMLNode>& matches, const MSPCXMLNode& from) {
    const auto side = freeElementAround(treeNode(from));
    std::erase_if(matches, [&](const auto& match) { return !areSame(freeElementAround(treeNode(match)), side); });
}

std::vector<MSPCXMLNode> nodesAtPlainPath(const MSPCXMLNode& node, std::string_view path) {
    const auto slash = path.find('/');
    auto children = node.childElements(path.substr(0, slash));
    if (slash == std::string_view::npos) {
        return children;
    }
    std::vector<MSPCXMLNode> nodes;
    for (const auto& child : children) {
        const auto below = nodesAtPlainPath(child, path.substr(slash + 1));
        nodes.insert(nodes.end(), below.begin(), below.end());
    }
    return nodes;
}

std::vector<MSPCXMLNode> evaluated(const pugi::xpath_query& query, const MSPCXMLNode& node) {
    const pugi::xml_attribute attribute(MSPCXMLNodeAccess::attribute(node));
    auto matches = query.evaluate_node_set(attribute ? pugi::xpath_node(attribute, treeNode(node))
                                                     : pugi::xpath_node(treeNode(node)));
    matches.sort();
    std::vector<MSPCXMLNode> nodes;
    nodes.reserve(matches.size());
    for (const auto& match : matches) {
        const auto holder = match.attribute() ? match.parent() : match.node();
        nodes.push_back(MSPCXMLNodeAccess::handle(holder.internal_object(), match.attribute().internal_object()));
    }
    return nodes;
}

}  // namespace

bool isPlainChildName(std::string_view query) {
    return !query.empty() && isNameStart(query.front()) && std::all_of(query.begin(), query.end(), isNameCharacter);
}

bool isPlainChildPath(std::string_view query) {
    bool atStart = true;
    for (const char character : query) {
        if (atStart ? !isNameStart(character) : !isNameCharacter(character) && character != '/') {
            return false;
        }
        atStart = character == '/';
    }
    return !atStart;
}

std::optional<std::vector<MSPCXMLNode>> MSPCXMLNode::nodesForXPath(std::string_view query) const {
    if (_node == nullptr) {
        return std::vector<MSPCXMLNode>();
    }
    if (isPlainChildPath(query)) {
        return nodesAtPlainPath(*this, query);
    }
    static thread_local QueryCache cache;
    const auto* compiled = cache.compiled(query);
    if (compiled == nullptr) {
        return std::nullopt;
    }
    auto matches = evaluated(*compiled, *this);
    if (hasFreeElements(treeNode(*this).root())) {
        dropMatchesElsewhere(matches, *this);
    }
    return matches;
}
