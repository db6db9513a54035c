#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

class MSPDIElementTree;

[[noreturn]] void MSPDIRaiseTooManyLevels();

// Raises `MSPCInternalInconsistency` "Elements are nested too deeply to be told one by one." for an element with so
// many around it. Real plans have ten levels; the paths of those that have hundreds of thousands would take more than
// the square of the plan.
inline void MSPDIExpectFewLevels(std::size_t levels) {
    constexpr std::size_t most = 256;
    if (levels >= most) {
        MSPDIRaiseTooManyLevels();
    }
}

// "Name" of "x:Name".
[[nodiscard]] std::string_view MSPDIWithoutPrefix(std::string_view name);

// Counts the children of one element by their names, and then those of the next one: without memory of its own for each
// of the millions of elements of a plan.
class MSPDINameCounts {
public:
    // The number of a child among those of its name so far, from 1. The name outlives the count. What the table knows
    // by that name is counted without looking at the name; it is given for all of them, or for none.
    std::size_t next(std::string_view name, const MSPDIElementTree* known);
    // The same of what the table knows, by its ordinal there.
    std::size_t nextKnown(std::size_t ordinal) {
        if (ordinal >= _known.size()) {
            _known.resize(ordinal + 1);
        }
        auto& known = _known[ordinal];
        known = {known.round == _round ? known.count + 1 : 1, _round};
        return known.count;
    }
    // The number of a child by its name as written: those with a prefix count together with those without. `parent` and
    // `known` are what the table knows of its parent and of the child.
    std::size_t nextOf(std::string_view name, const MSPDIElementTree* parent, const MSPDIElementTree* known);
    // The children of another element follow.
    void clear();

private:
    struct Known {
        std::size_t count = 0;
        std::uint64_t round = 0;  // in which it was counted last
    };
    struct Slot {
        std::string_view name;
        std::size_t count = 0;
        std::uint64_t round = 0;  // in which it was taken; it is free in all others
    };

    std::size_t nextUnknown(std::string_view name);
    [[nodiscard]] Slot& slotOf(std::string_view name);
    void grow();

    std::vector<Known> _known;  // by ordinal
    std::vector<Slot> _slots;   // a power of two of them, at least twice as many as are taken
    std::size_t _takenCount = 0;
    std::uint64_t _round = 1;
};
