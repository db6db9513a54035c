#include "MSPIBaselineValues.h"

#include <string>

void MSPIBaselineValues::append(const MSPCFields& element, const MSPCXMLNode& baseline) {
    const auto fields = element.elements();
    if (_positionByField.size() < fields.size()) {
        _positionByField.resize(fields.size(), None);
    }
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
            position = _values.size();
            _values.push_back({fields[field].element, {}});
            _fieldsShown.push_back(field);
            _haveUID = _haveUID || name.ends_with("UID");
        }
        _values[position].text = kept(child.stringValue(buffer));
    }
    for (const auto field : _fieldsShown) {
        _positionByField[field] = None;
    }
    _fieldsShown.clear();
}

std::string_view MSPIBaselineValues::kept(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    auto* const copy = static_cast<char*>(_texts.allocate(text.size(), 1));
    text.copy(copy, text.size());
    return {copy, text.size()};
}
