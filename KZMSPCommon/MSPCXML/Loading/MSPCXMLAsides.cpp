#include "MSPCXMLAsides.h"

#include "MSPCException.h"
#include "MSPCXMLDocument.h"
#include "MSPCXMLFilter.h"

namespace {

// Large enough to be few, small enough to be no burden half empty.
constexpr std::size_t BlockSize = 1 << 18;

}  // namespace

std::string& MSPCXMLAsides::List::sinkForChild() {
    const auto parentPosition = _parentCount - 1;
    if (_families.empty() || _families.back().parentPosition != parentPosition) {
        if (_blocks.empty() || _blocks.back().size() >= BlockSize) {
            _blocks.emplace_back().reserve(BlockSize + BlockSize / 8);
        }
        _families.push_back({parentPosition, _blocks.size() - 1, _blocks.back().size()});
    }
    return _blocks.back();
}

std::string_view MSPCXMLAsides::List::markupOf(std::size_t family) const {
    const auto& [parentPosition, block, start] = _families[family];
    const bool hasNextInBlock = family + 1 < _families.size() && _families[family + 1].block == block;
    const auto end = hasNextInBlock ? _families[family + 1].start : _blocks[block].size();
    return std::string_view(_blocks[block]).substr(start, end - start);
}

void MSPCXMLAsides::List::freeBlocksBefore(std::size_t family) {
    const auto block = family < _families.size() ? _families[family].block : _blocks.size();
    for (; _freedBlocks < block; ++_freedBlocks) {
        _blocks[_freedBlocks] = std::string();
    }
}

MSPCXMLAsides::Walk MSPCXMLAsides::take(const std::string& path) {
    return {std::exchange(listAt(path), List()), _hasSections, _hasMixedContent};
}

std::optional<MSPCXMLDocument> MSPCXMLAsides::Walk::next() {
    const auto parentPosition = _parentPosition++;
    const auto& families = _list._families;
    if (_family == families.size() || families[_family].parentPosition != parentPosition) {
        return std::nullopt;
    }
    constexpr std::string_view startTag = "<asides>";
    constexpr std::string_view endTag = "</asides>";
    const auto markup = _list.markupOf(_family++);
    std::string bytes;
    bytes.reserve(startTag.size() + markup.size() + endTag.size());
    bytes.append(startTag).append(markup).append(endTag);
    _list.freeBlocksBefore(_family);
    auto document = MSPCXMLDocument::readFiltered({.bytes = std::move(bytes),
                                                   .hasSections = _hasSections,
                                                   .hasMixedContent = _hasMixedContent,
                                                   .hasNestedValues = false,
                                                   .asides = {}});
    if (!document) {
        throw MSPCInternalInconsistency("Failed to read elements that were set aside.");
    }
    return document;
}
