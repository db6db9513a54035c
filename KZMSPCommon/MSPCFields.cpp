#include "MSPCFields.h"

MSPCFields::MSPCFields(const MSPCXMLNode& element) : _fields(element.childElements(&_memory)) {
    checkIsNode(element);
    if (_fields.size() <= MostFieldsInSlots) {
        fillSlots();
        return;
    }
    for (std::size_t position = 0; position < _fields.size(); ++position) {
        auto& match = _matchesByName[_fields[position].name];
        match = {position, match.count + 1};
    }
}

std::size_t MSPCFields::slotOf(std::string_view name) {
    const auto at = [name](std::size_t index) -> std::size_t { return static_cast<unsigned char>(name[index]); };
    return name.empty() ? 0 : (name.size() * 3 + at(0) * 2 + at(name.size() / 2) + at(name.size() - 1)) % SlotCount;
}

void MSPCFields::fillSlots() {
    _firstInSlot.fill(EndOfSlot);
    for (auto position = _fields.size(); position > 0; --position) {
        auto& first = _firstInSlot[slotOf(_fields[position - 1].name)];
        _nextInSlot[position - 1] = first;
        first = static_cast<std::uint16_t>(position - 1);
    }
}

template <typename Visit>
void MSPCFields::visit(std::string_view name, const Visit& visit) const {
    if (_fields.size() > MostFieldsInSlots) {
        for (std::size_t position = 0; position < _fields.size(); ++position) {
            if (_fields[position].name == name) {
                visit(position);
            }
        }
        return;
    }
    for (auto position = _firstInSlot[slotOf(name)]; position != EndOfSlot; position = _nextInSlot[position]) {
        if (_fields[position].name == name) {
            visit(position);
        }
    }
}

MSPCFields::Match MSPCFields::matchOf(std::string_view name) const {
    if (_fields.size() > MostFieldsInSlots) {
        const auto found = _matchesByName.find(name);
        return found == _matchesByName.end() ? Match() : found->second;
    }
    Match match;
    visit(name, [&](std::size_t position) { match = {position, match.count + 1}; });
    return match;
}

MSPCXMLNode MSPCFields::singleObject(std::string_view name, Error* error) const {
    const auto match = matchOf(name);
    reportMatches(match.count, error);
    if (match.count == 0 && _missing != nullptr) {
        _missing->push_back(name);
    }
    return match.count == 0 ? MSPCXMLNode() : _fields[match.last].element;
}

std::size_t MSPCFields::lastPosition(std::string_view name) const {
    const auto match = matchOf(name);
    return match.count == 0 ? _fields.size() : match.last;
}

MSPCXMLLastChild MSPCFields::lastChild(std::string_view name) const {
    const auto match = matchOf(name);
    return {match.count == 0 ? MSPCXMLNode() : _fields[match.last].element, match.count};
}

MSPCNodeText MSPCFields::text(std::string_view name, Error* error) const {
    return MSPCNodeText(singleObject(name, error));
}

std::int64_t MSPCFields::intValue(std::string_view name, Error* error) const {
    return intValueOf(singleObject(name, error));
}

double MSPCFields::floatValue(std::string_view name, Error* error) const {
    return floatValueOf(singleObject(name, error));
}

bool MSPCFields::boolValue(std::string_view name, Error* error) const {
    return boolValueOf(singleObject(name, error));
}

std::vector<MSPCXMLNode> MSPCFields::nodes(std::string_view name) const {
    std::vector<MSPCXMLNode> nodes;
    visit(name, [&](std::size_t position) { nodes.push_back(_fields[position].element); });
    return nodes;
}
