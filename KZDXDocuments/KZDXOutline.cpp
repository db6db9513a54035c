#include "KZDXOutline.h"

#include <fmt/format.h>

#include "KZDXWords.h"
#include "KZDXXMLFile.h"

KZDXOutline::KZDXOutline(const KZDXItems& items, const std::vector<KZDXReference>& children,
                         std::string_view nameElement, std::optional<std::size_t> top)
    : _items(items), _top(top), _parents(items.size()), _places(items.size(), 0), _isPiece(items.size(), false) {
    std::vector<bool> isSplit;
    for (const auto& item : items) {
        _names.push_back(KZDXChildText(item.element, nameElement).value_or(""));
        isSplit.push_back(static_cast<bool>(item.element.firstChildElement("split")));
    }
    _starts.assign(1, 0);
    for (const auto& child : children) {
        while (_starts.size() <= child.from) {
            _starts.push_back(_children.size());
        }
        if (child.to && child.to != top && !_parents[*child.to]) {
            _parents[*child.to] = child.from;
            _isPiece[*child.to] = isSplit[child.from];
            _places[*child.to] = _children.size() - _starts[child.from];
            _children.push_back(*child.to);
        }
    }
    _starts.resize(items.size() + 1, _children.size());
    for (std::size_t item = 0; item < items.size(); ++item) {
        if (!_parents[item] && item != top) {
            _outside.push_back(item);
        }
    }
}

std::span<const std::size_t> KZDXOutline::children(std::size_t item) const {
    return std::span(_children).subspan(_starts[item], _starts[item + 1] - _starts[item]);
}

std::string KZDXOutline::shownName(std::size_t item) const {
    if (item == _top && _names[item].empty()) {
        return KZDXNamed("Project", id(item));
    }
    if (!_isPiece[item]) {
        return KZDXNamed(_names[item], id(item));
    }
    const auto owner = *_parents[item];
    return fmt::format("{}, piece {}", KZDXNamed(_names[owner], id(owner)), _places[item] + 1);
}
