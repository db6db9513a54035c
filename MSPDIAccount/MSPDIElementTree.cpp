#include "MSPDIElementTree.h"

#include <algorithm>

#include "MSPDIElement.h"

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

MSPDIElementTree::MSPDIElementTree(std::span<const MSPDIElement> table) {
    for (const auto& element : table) {
        forEachPiece(element.names, ' ', [&](std::string_view name) {
            const auto& parent = element.parent;
            add(parent.empty() ? std::string(name) : std::string(parent) + "/" + std::string(name), element);
        });
    }
}

void MSPDIElementTree::add(std::string_view path, const MSPDIElement& element) {
    auto* at = this;
    forEachPiece(path, '/', [&](std::string_view name) {
        auto& slot = at->_children[slotOf(name)];
        for (const auto& known : slot) {
            if (known->name() == name) {
                at = known.get();
                return;
            }
        }
        auto child = std::make_unique<MSPDIElementTree>();
        child->_path = at->_path.empty() ? std::string(name) : at->_path + "/" + std::string(name);
        child->_nameStart = child->_path.size() - name.size();
        child->_ordinal = at->_childCount++;
        _all.push_back(child.get());
        child->_index = _all.size();
        at->_hasChildren = true;
        at = slot.emplace_back(std::move(child)).get();
    });
    at->_element = &element;
}

std::size_t MSPDIElementTree::slotOf(std::string_view name) {
    const auto at = [name](std::size_t index) -> std::size_t { return static_cast<unsigned char>(name[index]); };
    return name.empty() ? 0 : (name.size() * 7 + at(0) * 5 + at(name.size() / 2) * 3 + at(name.size() - 1)) % SlotCount;
}

const MSPDIElementTree* MSPDIElementTree::child(std::string_view name) const {
    for (const auto& known : _children[slotOf(name)]) {
        if (known->name() == name) {
            return known.get();
        }
    }
    return nullptr;
}

const MSPDIElementTree* MSPDIElementTree::at(std::string_view path) const {
    const auto* found = this;
    forEachPiece(path, '/',
                 [&found](std::string_view step) { found = found == nullptr ? nullptr : found->child(step); });
    return found;
}
