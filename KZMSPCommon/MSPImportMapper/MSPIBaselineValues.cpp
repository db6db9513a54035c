#include "MSPIBaselineValues.h"

#include <string>

void MSPIBaselineValues::append(const MSPCFields& element, const MSPCXMLNode& baseline) {
    const MSPCFields fields(baseline);
    std::string buffer;
    for (const auto& [name, value] : fields.elements()) {
        // Of several of one name, which timephased data gives by the hundred, the last one is what shows.
        if (name == "Number" || value != fields.singleObject(name)) {
            continue;
        }
        if (const auto child = element.singleObject(name)) {
            _values.push_back({child, kept(value.stringValue(buffer))});
        }
    }
}

std::string_view MSPIBaselineValues::kept(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    auto* const copy = static_cast<char*>(_texts.allocate(text.size(), 1));
    text.copy(copy, text.size());
    return {copy, text.size()};
}
