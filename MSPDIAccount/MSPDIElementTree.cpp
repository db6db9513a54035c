#include "MSPDIElementTable.h"

namespace {

// Calls `visit` with each of the pieces between the separators of a text.
template <typename Visit>
void forEachPiece(std::string_view text, char separator, const Visit& visit) {
    while (!text.empty()) {
        const auto end = std::min(text.find(separator), text.size());
        if (end > 0) {
            visit(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

}  // namespace

const MSPDIElementTree& MSPDIElementTree::project() {
    static const auto tree = [] {
        MSPDIElementTree root;
        for (const auto& element : MSPDIElements()) {
            forEachPiece(element.names, ' ', [&](std::string_view name) {
                const auto& parent = element.parent;
                root.add(parent.empty() ? std::string(name) : std::string(parent) + "/" + std::string(name), element);
            });
        }
        return root;
    }();
    return tree;
}

void MSPDIElementTree::add(std::string_view path, const MSPDIElement& element) {
    auto* at = this;
    forEachPiece(path, '/', [&](std::string_view name) {
        const auto known = at->_children.find(name);
        if (known != at->_children.end()) {
            at = known->second.get();
            return;
        }
        auto child = std::make_unique<MSPDIElementTree>();
        child->_path = at->_path.empty() ? std::string(name) : at->_path + "/" + std::string(name);
        const std::string_view ownName = std::string_view(child->_path).substr(child->_path.size() - name.size());
        auto* const place = child.get();
        at->_children.emplace(ownName, std::move(child));
        at = place;
    });
    at->_element = &element;
}

const MSPDIElementTree* MSPDIElementTree::child(std::string_view name) const {
    const auto found = _children.find(name);
    return found == _children.end() ? nullptr : found->second.get();
}

const MSPDIElement* MSPDIElementAt(std::string_view parent, std::string_view name) {
    const auto* at = &MSPDIElementTree::project();
    forEachPiece(parent, '/', [&at](std::string_view step) { at = at == nullptr ? nullptr : at->child(step); });
    at = at == nullptr ? nullptr : at->child(name);
    return at == nullptr ? nullptr : at->element();
}
