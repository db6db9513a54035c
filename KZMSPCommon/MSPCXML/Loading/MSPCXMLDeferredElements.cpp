#include "MSPCXMLDeferredElements.h"

#include "MSPCException.h"
#include "MSPCXMLDocument.h"

namespace {

// Large enough to be few, small enough to be no burden half empty.
constexpr std::size_t BlockSize = 1 << 18;

}  // namespace

std::string& MSPCXMLDeferredElements::List::markupForChild() {
    const auto parentPosition = _parentCount - 1;
    if (_groups.empty() || _groups.back().parentPosition != parentPosition) {
        if (_blocks.empty() || _blocks.back().size() >= BlockSize) {
            _blocks.emplace_back().reserve(BlockSize + BlockSize / 8);
        }
        _groups.push_back({parentPosition, _blocks.size() - 1, _blocks.back().size()});
    }
    return _blocks.back();
}

std::string_view MSPCXMLDeferredElements::List::markupOf(std::size_t group) const {
    const auto& [parentPosition, block, start] = _groups[group];
    const bool hasNextInBlock = group + 1 < _groups.size() && _groups[group + 1].block == block;
    const auto end = hasNextInBlock ? _groups[group + 1].start : _blocks[block].size();
    return std::string_view(_blocks[block]).substr(start, end - start);
}

void MSPCXMLDeferredElements::List::freeBlocksBefore(std::size_t group) {
    const auto block = group < _groups.size() ? _groups[group].block : _blocks.size();
    for (; _freedBlocks < block; ++_freedBlocks) {
        _blocks[_freedBlocks] = std::string();
    }
}

MSPCXMLDeferredElements::Walk MSPCXMLDeferredElements::take(const std::string& path) {
    return {std::exchange(listAt(path), List()), _hasSections, _hasMixedContent};
}

std::optional<MSPCXMLDocument> MSPCXMLDeferredElements::Walk::next() {
    const auto parentPosition = _parentPosition++;
    const auto& groups = _list._groups;
    if (_group == groups.size() || groups[_group].parentPosition != parentPosition) {
        return std::nullopt;
    }
    constexpr std::string_view startTag = "<deferred>";
    constexpr std::string_view endTag = "</deferred>";
    const auto markup = _list.markupOf(_group++);
    std::string bytes;
    bytes.reserve(startTag.size() + markup.size() + endTag.size());
    bytes.append(startTag).append(markup).append(endTag);
    _list.freeBlocksBefore(_group);
    auto document = MSPCXMLDocument::read(std::move(bytes), {.content = MSPCXMLContent::DataOnly,
                                                             .hasSections = _hasSections,
                                                             .hasMixedContent = _hasMixedContent,
                                                             .hasNestedValues = false});
    if (!document) {
        throw MSPCInternalInconsistency("Failed to read elements that were set aside.");
    }
    return document;
}
