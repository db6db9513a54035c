#include "MSPIBaselineValues.h"

#include <algorithm>
#include <string>

namespace {

std::size_t childCountOf(const MSPCXMLNode& parent) {
    std::size_t count = 0;
    for (auto child = parent.firstChild(); child; child = child.nextSibling()) {
        ++count;
    }
    return count;
}

}  // namespace

std::span<const MSPIBaselineValue> MSPIBaselineValues::append(const MSPCFields& element, const MSPCXMLNode& baseline) {
    const auto fields = element.elements();
    if (_positionByField.size() < fields.size()) {
        _positionByField.resize(fields.size(), None);
    }
    auto& values = blockWithRoomFor(std::min(fields.size(), childCountOf(baseline)));
    const auto start = values.size();
    for (auto child = baseline.firstChild(); child; child = child.nextSibling()) {
        const auto name = child.name();
        const auto field = element.lastPosition(name);
        if (field == fields.size() || name == "Number" || !child.isElement()) {
            continue;
        }
        // Of several of one name, which timephased data gives by the hundred, the last one is what shows.
        auto& position = _positionByField[field];
        if (position == None) {
            position = values.size();
            values.push_back({fields[field].element, {}});
            _shown.push_back({field, child});
            _showUID = _showUID || name.ends_with("UID");
        } else {
            _shown[position - start].value = child;
        }
    }
    std::string buffer;
    for (std::size_t index = 0; index < _shown.size(); ++index) {
        values[start + index].text = kept(_shown[index].value.stringValue(buffer));
        _positionByField[_shown[index].field] = None;
    }
    _shown.clear();
    return std::span(values).subspan(start);
}

std::vector<MSPIBaselineValue>& MSPIBaselineValues::blockWithRoomFor(std::size_t count) {
    constexpr std::size_t blockSize = 4096;
    if (_blocks.empty() || _blocks.back().capacity() - _blocks.back().size() < count) {
        _blocks.emplace_back().reserve(std::max(blockSize, count));
    }
    return _blocks.back();
}

std::string_view MSPIBaselineValues::kept(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    auto* const copy = static_cast<char*>(_texts.allocate(text.size(), 1));
    text.copy(copy, text.size());
    return {copy, text.size()};
}
