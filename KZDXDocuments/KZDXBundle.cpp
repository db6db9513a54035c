#include "KZDXBundle.h"

#include <algorithm>
#include <utility>

bool KZDXEntry::staysInBundle() const {
    return !filename.empty() && filename != "." && filename != ".." &&
           filename.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

KZDXContents::KZDXContents(KZDXXMLFile file)
    : _file(std::move(file)),
      _window(root().firstChildElement("window")),
      _project(root().firstChildElement("project")) {
    for (auto element = _project.firstChildElement("scenario"); element;
         element = element.nextSiblingElement("scenario")) {
        const auto value = [&element](std::string_view name) { return KZDXAttribute(element, name).value_or(""); };
        _entries.push_back({element, value("id"), value("name"), value("filename")});
        _byName.push_back(_byName.size());
    }
    std::stable_sort(_byName.begin(), _byName.end(),
                     [this](std::size_t one, std::size_t other) { return _entries[one].name < _entries[other].name; });
    const auto namespaces = root().namespaceDeclarations();
    _namespaceURI = namespaces.empty() ? std::string_view() : namespaces.front().uri;
}

const KZDXEntry* KZDXContents::entryNamed(std::string_view name) const {
    const auto found =
        std::lower_bound(_byName.begin(), _byName.end(), name,
                         [this](std::size_t index, std::string_view wanted) { return _entries[index].name < wanted; });
    return found != _byName.end() && _entries[*found].name == name ? &_entries[*found] : nullptr;
}
