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
    auto& values = blockWithRoomFor(childCountOf(baseline));
    const auto start = values.size();
    std::string buffer;
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
            _fieldsShown.push_back(field);
            _haveUID = _haveUID || name.ends_with("UID");
        }
        values[position].text = kept(child.stringValue(buffer));
    }
    for (const auto field : _fieldsShown) {
        _positionByField[field] = None;
    }
    _fieldsShown.clear();
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
