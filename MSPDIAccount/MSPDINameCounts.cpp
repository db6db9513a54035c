#include "MSPDINameCounts.h"

#include <functional>
#include <utility>

#include "MSPCException.h"
#include "MSPDIElementTree.h"

void MSPDIRaiseTooManyLevels() {
    throw MSPCInternalInconsistency("Elements are nested too deeply to be told one by one.");
}

std::string_view MSPDIWithoutPrefix(std::string_view name) {
    const auto colon = name.rfind(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

std::size_t MSPDINameCounts::next(std::string_view name, const MSPDIElementTree* known) {
    return known == nullptr ? nextUnknown(name) : nextKnown(known->ordinal());
}

// The names of the table have no prefixes.
std::size_t MSPDINameCounts::nextOf(std::string_view name, const MSPDIElementTree* parent,
                                    const MSPDIElementTree* known) {
    if (known != nullptr) {
        return next(name, known);
    }
    const auto bare = MSPDIWithoutPrefix(name);
    const bool hasPrefix = bare.size() < name.size();
    return next(bare, hasPrefix && parent != nullptr ? parent->child(bare) : nullptr);
}

std::size_t MSPDINameCounts::nextUnknown(std::string_view name) {
    if (2 * _takenCount >= _slots.size()) {
        grow();
    }
    auto& slot = slotOf(name);
    if (slot.round != _round) {
        slot = {name, 0, _round};
        ++_takenCount;
    }
    return ++slot.count;
}

void MSPDINameCounts::clear() {
    ++_round;
    _takenCount = 0;
}

// That of the name, or the free one that it is to take.
MSPDINameCounts::Slot& MSPDINameCounts::slotOf(std::string_view name) {
    const auto last = _slots.size() - 1;
    auto index = std::hash<std::string_view>()(name) & last;
    while (_slots[index].round == _round && _slots[index].name != name) {
        index = (index + 1) & last;
    }
    return _slots[index];
}

void MSPDINameCounts::grow() {
    constexpr std::size_t fewest = 64;
    const auto before = std::exchange(_slots, std::vector<Slot>(_slots.empty() ? fewest : 2 * _slots.size()));
    for (const auto& slot : before) {
        if (slot.round == _round) {
            slotOf(slot.name) = slot;
        }
    }
}
