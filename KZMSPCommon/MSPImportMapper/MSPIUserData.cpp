#include "MSPIUserData.h"

void MSPIUserData::set(std::optional<std::string> name, MSPIUserDataValue value) {
    if (name) {
        const auto [position, isNew] = _positions.try_emplace(*name, _entries.size());
        if (!isNew) {
            _entries[position->second].second = std::move(value);
            return;
        }
    }
    _entries.emplace_back(std::move(name), std::move(value));
}
