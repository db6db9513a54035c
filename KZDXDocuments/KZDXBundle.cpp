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
    }
}

const KZDXEntry* KZDXContents::entryNamed(std::string_view name) const {
    const auto found =
        std::find_if(_entries.begin(), _entries.end(), [name](const KZDXEntry& entry) { return entry.name == name; });
    return found == _entries.end() ? nullptr : &*found;
}
