#include "MSPDIPatient.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "MSPCException.h"
#include "MSPCXMLLexis.h"

namespace {

std::string elementMarkup(std::string_view name, std::string_view text) {
    return fmt::format("<{0}>{1}</{0}>", name, MSPDIEscapedText(text));
}

}  // namespace

MSPDIPatient::MSPDIPatient(MSPCXMLWithBytes loaded, const MSPDIMendOptions& options)
    : _plan({std::move(loaded.document), {}, std::nullopt}),
      _utf8(std::move(loaded.utf8)),
      _options(options),
      _isConverted(loaded.isConverted),
      _isWrittenAnew(loaded.isWrittenAnew) {
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

bool MSPDIPatient::isAskedFor(std::string_view step) const {
    return _options.isAll || std::find(_options.only.begin(), _options.only.end(), step) != _options.only.end();
}

bool MSPDIPatient::allows(std::string_view step) const {
    return _options.only.empty() || isAskedFor(step);
}

void MSPDIPatient::note(std::string_view step, const std::string& place) {
    auto done = std::find_if(_done.begin(), _done.end(), [&](const auto& known) { return known.step == step; });
    if (done == _done.end()) {
        done = _done.insert(_done.end(), MSPDIMendDone{step, 0, {}});
    }
    ++done->count;
    if (done->where.size() < _options.mostPlaces) {
        done->where.push_back(place);
    }
}

MSPDIExtent MSPDIPatient::extentOf(const MSPCXMLNode& element) const {
    const auto offset = element.offset();
    if (!offset || *offset == 0 || *offset > _utf8.size() || _utf8[*offset - 1] != '<') {
        throw MSPCInternalInconsistency("An element is not found in the bytes of its plan.");
    }
    auto extent = MSPDIExtentOfElement(_utf8, *offset - 1);
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

void MSPDIPatient::setText(MSPCXMLNode element, std::string_view text) {
    if (const auto inserted = _inserted.find(element); inserted != _inserted.end()) {
        const auto& [edit, lead, name] = inserted->second;
        _edits.setText(edit, lead + elementMarkup(name, text));
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
    MSPCXMLNode sibling;
    for (const auto& [childName, child] : parent.childElements()) {
        if (std::find(after.begin(), after.end(), childName) != after.end()) {
            sibling = child;
        }
    }
    auto child = insertAfter(parent, sibling, name, elementMarkup(name, text));
    child.setStringValue(text);
    return child;
}

MSPCXMLNode MSPDIPatient::insertAfter(MSPCXMLNode parent, const MSPCXMLNode& sibling, std::string_view name,
                                      std::string_view markup) {
    if (const auto holder = _inserted.find(parent); holder != _inserted.end()) {
        auto text = _edits.textOf(holder->second.edit);
        text.insert(text.rfind("</"), markup);
        _edits.setText(holder->second.edit, std::move(text));
        return parent.insertChildAfter(parent.newElement(name), sibling);
    }
    // What was put in has no place of its own: the next one follows it at the same place.
    auto anchor = sibling;
    while (anchor && (!anchor.isElement() || _inserted.contains(anchor))) {
        anchor = anchor.previousSibling();
    }
    const auto lead = indentationWithin(parent);
    const auto place = anchor ? extentOf(anchor).end : openExtentOf(parent).contentBegin;
    const auto edit = _edits.replace(place, place, lead + std::string(markup));
    auto child = parent.insertChildAfter(parent.newElement(name), sibling);
    _inserted[child] = {edit, lead, std::string(name)};
    return child;
}

MSPCXMLNode MSPDIPatient::append(MSPCXMLNode parent, std::string_view name, std::string_view markup) {
    MSPCXMLNode last;
    for (const auto& [childName, child] : parent.childElements()) {
        last = child;
    }
    return insertAfter(parent, last, name, markup);
}

std::string MSPDIPatient::markupOf(const MSPCXMLNode& element) const {
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

std::string MSPDIPatient::indentationWithin(const MSPCXMLNode& parent) const {
    for (const auto& [name, child] : parent.childElements()) {
        if (!_inserted.contains(child)) {
            const auto blanks = blanksBefore(extentOf(child).begin);
            const auto lineEnd = blanks.rfind('\n');
            const auto lineBegin =
                lineEnd != std::string::npos && lineEnd > 0 && blanks[lineEnd - 1] == '\r' ? lineEnd - 1 : lineEnd;
            return lineEnd == std::string::npos ? std::string() : blanks.substr(lineBegin);
        }
    }
    return {};
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

std::string MSPDIPatient::bytes() const {
    auto mended = _edits.appliedTo(_utf8);
    return _isConverted ? MSPDIWithUtf8Declared(std::move(mended)) : mended;
}
