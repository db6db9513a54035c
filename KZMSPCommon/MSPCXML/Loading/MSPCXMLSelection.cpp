#include "MSPCXMLSelection.h"

#include <algorithm>

namespace {

constexpr std::string_view delimiters = " \n()";

bool takeMark(std::string_view text, std::size_t& at, char mark) {
    const bool isThere = text[at] == mark;
    at += isThere ? 1 : 0;
    return isThere;
}

}  // namespace

MSPCXMLSelection MSPCXMLSelection::fromText(std::string_view text) {
    MSPCXMLSelection document;
    document._isDocument = true;
    readChildren(text, 0, document);
    return document;
}

// Reads names up to the closing bracket and gives the position behind it.
std::size_t MSPCXMLSelection::readChildren(std::string_view text, std::size_t at, MSPCXMLSelection& parent) {
    parent._isWhole = false;
    while (at < text.size() && text[at] != ')') {
        if (text[at] == ' ' || text[at] == '\n') {
            ++at;
            continue;
        }
        MSPCXMLSelection selection;
        selection._isDeferred = takeMark(text, at, '~');
        selection._takesSiblingNames = takeMark(text, at, '*');
        const auto end = std::min(text.find_first_of(delimiters, at), text.size());
        const auto name = text.substr(at, end - at);
        selection._path =
            parent._isDocument ? "" : parent._path + (parent._path.empty() ? "" : "/") + std::string(name);
        parent._defersChildren = parent._defersChildren || selection._isDeferred;
        at = end < text.size() && text[end] == '(' ? readChildren(text, end + 1, selection) : end;
        parent.add(name, std::move(selection));
    }
    for (const auto& slot : parent._childrenByLength) {
        for (const auto& child : slot) {
            if (child.selection->_takesSiblingNames) {
                for (const auto& name : parent.childNames()) {
                    child.selection->add(name, MSPCXMLSelection());
                }
            }
        }
    }
    return at + 1;
}

void MSPCXMLSelection::add(std::string_view name, MSPCXMLSelection selection) {
    if (child(name) == nullptr) {
        auto& slot = _childrenByLength[name.size() % _childrenByLength.size()];
        slot.push_back({std::string(name), std::make_unique<MSPCXMLSelection>(std::move(selection))});
    }
}

const MSPCXMLSelection* MSPCXMLSelection::child(std::string_view name) const noexcept {
    for (const auto& child : _childrenByLength[name.size() % _childrenByLength.size()]) {
        // Most names of one length differ in the first letter.
        if (!name.empty() && child.name.front() == name.front() && child.name == name) {
            return child.selection.get();
        }
    }
    return nullptr;
}

std::vector<std::string> MSPCXMLSelection::childNames() const {
    std::vector<std::string> names;
    for (const auto& slot : _childrenByLength) {
        for (const auto& child : slot) {
            names.push_back(child.name);
        }
    }
    return names;
}
