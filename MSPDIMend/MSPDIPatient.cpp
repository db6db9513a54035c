#include "MSPDIPatient.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "MSPCException.h"
#include "MSPCXMLLexis.h"

namespace {

bool isOneOf(std::string_view name, std::span<const std::string_view> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// The last child element.
MSPCXMLNode lastElementIn(const MSPCXMLNode& parent) {
    auto last = parent.lastChild();
    while (last && !last.isElement()) {
        last = last.previousSibling();
    }
    return last;
}

}  // namespace

MSPDIPatient::MSPDIPatient(MSPCXMLWithBytes loaded, const MSPDIMendOptions& options)
    : _loaded(std::move(loaded)),
      _plan({std::move(_loaded.document), {}, std::nullopt}),
      _utf8(_loaded.utf8),
      _options(options) {
}

std::vector<MSPCXMLNode> MSPDIPatient::items(std::string_view list, std::string_view item) const {
    std::vector<MSPCXMLNode> all;
    for (auto holder = project().firstChildElement(list); holder; holder = holder.nextSiblingElement(list)) {
        for (auto element = holder.firstChildElement(item); element; element = element.nextSiblingElement(item)) {
            all.push_back(element);
        }
    }
    return all;
}

void MSPDIPatient::note(std::string_view step, const std::function<std::string()>& place) {
    auto done = std::find_if(_done.begin(), _done.end(), [&](const auto& known) { return known.step == step; });
    if (done == _done.end()) {
        done = _done.insert(_done.end(), MSPDIMendDone{step, 0, {}});
    }
    ++done->count;
    if (done->where.size() < _options.mostPlaces) {
        done->where.push_back(place());
    }
}

void MSPDIPatient::leave(std::string_view step, std::string_view why) {
    auto left = std::find_if(_left.begin(), _left.end(),
                             [&](const auto& known) { return known.step == step && known.why == why; });
    if (left == _left.end()) {
        left = _left.insert(_left.end(), MSPDIMendLeft{step, why, 0});
    }
    ++left->count;
}

bool MSPDIPatient::isChangeable(const MSPCXMLNode& element) const {
    return _inserted.contains(element) || _loaded.startOf(element).has_value();
}

MSPDIExtent MSPDIPatient::extentOf(const MSPCXMLNode& element) const {
    const auto start = _loaded.startOf(element);
    if (!start) {
        throw MSPCInternalInconsistency("An element is not found in the bytes of its plan.");
    }
    auto extent = MSPDIExtentOfElement(_utf8, *start);
    if (extent.isSelfClosed && _opened.contains(element)) {
        extent.isSelfClosed = false;
        extent.contentBegin = extent.contentEnd = extent.end - 1;
    }
    return extent;
}

// "<Summary/>" becomes "<Summary></Summary>"; what it is to hold goes between the two changes.
MSPDIExtent MSPDIPatient::openExtentOf(const MSPCXMLNode& element) {
    const auto extent = extentOf(element);
    if (!extent.isSelfClosed) {
        return extent;
    }
    _edits.replace(extent.end - 2, extent.end - 1, ">");
    _edits.replace(extent.end - 1, extent.end, fmt::format("</{}>", element.name()));
    _opened.insert(element);
    return extentOf(element);
}

// Where the element ends is not looked for: it may be the whole plan.
std::size_t MSPDIPatient::contentBeginOf(const MSPCXMLNode& element) {
    const auto start = _loaded.startOf(element);
    const auto end = start ? MSPDIEndOfTag(_utf8, *start) : 0;
    const bool isOpen = end > 1 && _utf8[end - 2] != '/';
    return isOpen ? end : openExtentOf(element).contentBegin;
}

std::optional<MSPDIChildMarkup> MSPDIPatient::childFrom(const MSPCXMLNode& parent, std::size_t offset) const {
    return _opened.contains(parent) ? std::nullopt : MSPDINextChild(_utf8, offset);
}

void MSPDIPatient::setText(MSPCXMLNode element, std::string_view text) {
    if (const auto inserted = _inserted.find(element); inserted != _inserted.end()) {
        _edits.setText(inserted->second.edit, inserted->second.lead + MSPDIElementMarkup(element.name(), text));
    } else if (const auto replaced = _replaced.find(element); replaced != _replaced.end()) {
        _edits.setText(replaced->second, MSPDIEscapedText(text));
    } else {
        const auto extent = openExtentOf(element);
        _replaced[element] = _edits.replace(extent.contentBegin, extent.contentEnd, MSPDIEscapedText(text));
    }
    element.setStringValue(text);
}

MSPCXMLNode MSPDIPatient::setChild(MSPCXMLNode parent, std::string_view name, std::string_view text,
                                   std::span<const std::string_view> after) {
    if (const auto child = parent.lastChildElement(name).element) {
        setText(child, text);
        return child;
    }
    return insertBehind(parent, after, MSPDIElementMarkup(name, text));
}

MSPCXMLNode MSPDIPatient::append(MSPCXMLNode parent, std::string_view markup) {
    const auto last = lastElementIn(parent);
    return last ? insertBehind(last, markup) : insertBehind(parent, {}, markup);
}

// What was put in has no place of its own: the next one follows it at the same place.
MSPCXMLNode MSPDIPatient::insertBehind(const MSPCXMLNode& sibling, std::string_view markup) {
    const auto inserted = _inserted.find(sibling);
    const bool isOfNew = _inserted.contains(sibling.parent());
    const auto place = inserted != _inserted.end() ? inserted->second.place : isOfNew ? 0 : extentOf(sibling).end;
    return putIn(sibling.parent(), place, sibling, markup);
}

MSPCXMLNode MSPDIPatient::insertBehind(MSPCXMLNode parent, std::span<const std::string_view> names,
                                       std::string_view markup) {
    MSPCXMLNode sibling;
    for (const auto& [name, child] : parent.childElements()) {
        sibling = isOneOf(name, names) ? child : sibling;
    }
    if (_inserted.contains(parent)) {
        return putIn(parent, 0, sibling, markup);
    }
    auto place = contentBeginOf(parent);
    for (auto child = names.empty() ? std::nullopt : childFrom(parent, place); child;
         child = childFrom(parent, child->end)) {
        place = isOneOf(child->name, names) ? child->end : place;
    }
    return putIn(parent, place, sibling, markup);
}

MSPCXMLNode MSPDIPatient::insertBefore(MSPCXMLNode parent, std::span<const std::string_view> names,
                                       std::string_view markup) {
    MSPCXMLNode sibling;
    for (const auto& [name, child] : parent.childElements()) {
        if (isOneOf(name, names)) {
            break;
        }
        sibling = child;
    }
    auto place = contentBeginOf(parent);
    for (auto child = childFrom(parent, place); child && !isOneOf(child->name, names);
         child = childFrom(parent, place)) {
        place = child->end;
    }
    return putIn(parent, place, sibling, markup);
}

MSPCXMLNode MSPDIPatient::putIn(MSPCXMLNode parent, std::size_t place, const MSPCXMLNode& sibling,
                                std::string_view markup) {
    const auto document = MSPCXMLDocument::read(std::string(markup), {.content = MSPCXMLContent::DataOnly});
    if (!document) {
        throw MSPCInternalInconsistency("What is put into a plan is no element.");
    }
    auto child = parent.insertChildAfter(parent.newCopyOf(document->root()), sibling);
    if (const auto holder = _inserted.find(parent); holder != _inserted.end()) {
        _edits.insertBeforeEnd(holder->second.edit, parent.name().size() + 3, markup);
    } else {
        const auto& lead = indentationWithin(parent);
        _inserted[child] = {_edits.replace(place, place, lead + std::string(markup)), place, lead};
    }
    return child;
}

std::string MSPDIPatient::markupOf(const MSPCXMLNode& element) const {
    if (!_loaded.startOf(element)) {
        return element.markup();
    }
    const auto extent = extentOf(element);
    return _utf8.substr(extent.begin, extent.end - extent.begin);
}

std::string MSPDIPatient::blanksBefore(std::size_t offset) const {
    auto begin = offset;
    while (begin > 0 && MSPCXMLLexis::hasClass(_utf8[begin - 1], MSPCXMLLexis::Blank)) {
        --begin;
    }
    return _utf8.substr(begin, offset - begin);
}

const std::string& MSPDIPatient::indentationWithin(const MSPCXMLNode& parent) {
    const auto [known, isNew] = _indentations.try_emplace(parent);
    if (!isNew) {
        return known->second;
    }
    for (auto child = parent.firstChild(); child; child = child.nextSibling()) {
        if (const auto start = _loaded.startOf(child)) {
            const auto blanks = blanksBefore(*start);
            const auto lineEnd = blanks.rfind('\n');
            const auto lineBegin =
                lineEnd != std::string::npos && lineEnd > 0 && blanks[lineEnd - 1] == '\r' ? lineEnd - 1 : lineEnd;
            known->second = lineEnd == std::string::npos ? std::string() : blanks.substr(lineBegin);
            break;
        }
    }
    return known->second;
}

void MSPDIPatient::remove(MSPCXMLNode element) {
    if (const auto inserted = _inserted.find(element); inserted != _inserted.end()) {
        _edits.setText(inserted->second.edit, {});
    } else {
        const auto extent = extentOf(element);
        const auto blanks = blanksBefore(extent.begin);
        const bool hasLine = blanks.find('\n') != std::string::npos;
        _edits.replace(hasLine ? extent.begin - blanks.size() : extent.begin, extent.end, {});
    }
    _removed.push_back(element.detach());
}

std::string MSPDIPatient::takeBytes() {
    auto mended = _edits.appliedTo(std::move(_utf8));
    if (isConverted()) {
        mended = MSPDIWithUtf8Declared(std::move(mended));
    }
    return mended;
}
