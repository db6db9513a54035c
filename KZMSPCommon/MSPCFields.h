#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory_resource>
#include <span>
#include <string_view>
#include <vector>

#include "MSPCError.h"
#include "MSPCNodeValues.h"
#include "MSPCXMLNode.h"

// The child elements of one element, seen in one walk: for reading many of them without walking again for each, where
// the queries of `MSPCExtensions` read one or two. Answers as the queries of `MSPCExtensions` do for a plain child
// name: the last child of that name, `MSPCXQueryNoMatch` and `MSPCXQueryMoreThanOneMatch` through `error`, and the same
// failures for texts that hold no number or boolean. Children that are added or removed later are not seen; the element
// must live as long as this object.
class MSPCFields {
public:
    // Raises what a query on an empty handle raises. Costs a walk over all children: what is read from one element is
    // read through one of these, that is handed on.
    explicit MSPCFields(const MSPCXMLNode& element);
    MSPCFields(const MSPCFields&) = delete;
    MSPCFields& operator=(const MSPCFields&) = delete;

    [[nodiscard]] MSPCXMLNode singleObject(std::string_view name, Error* error = nullptr) const;
    [[nodiscard]] MSPCNodeText text(std::string_view name, Error* error = nullptr) const;
    [[nodiscard]] std::int64_t intValue(std::string_view name, Error* error = nullptr) const;
    [[nodiscard]] double floatValue(std::string_view name, Error* error = nullptr) const;
    [[nodiscard]] bool boolValue(std::string_view name, Error* error = nullptr) const;
    // The position among `elements` of the last field of that name; `elements().size()` where there is none.
    [[nodiscard]] std::size_t lastPosition(std::string_view name) const;
    // The last field of that name, and their number.
    [[nodiscard]] MSPCXMLLastChild lastChild(std::string_view name) const;
    // All of them, in order. Valid as long as this object.
    [[nodiscard]] std::span<const MSPCXMLNamedElement> elements() const { return _fields; }
    // All children of that name, in order.
    [[nodiscard]] std::vector<MSPCXMLNode> nodes(std::string_view name) const;

    // From now on the names of single fields that are asked for and are not there are added to these, each time again.
    // `missing` and the names that are asked for outlive this object.
    void tellMissing(std::vector<std::string_view>& missing) { _missing = &missing; }

private:
    struct Match {
        std::size_t last = 0;  // position in _fields, where there is one
        std::size_t count = 0;
    };

    // Fields whose names look alike hang together in one of a few slots, which tells the fields of real elements apart.
    // Elements of a hostile plan have millions, or names that all look alike.
    static constexpr std::size_t SlotCount = 64;
    static constexpr std::size_t MostFieldsInSlots = 256;
    static constexpr std::uint16_t EndOfSlot = MostFieldsInSlots;

    [[nodiscard]] static std::size_t slotOf(std::string_view name);
    void fillSlots();
    [[nodiscard]] Match matchOf(std::string_view name) const;
    template <typename Visit>
    void visit(std::string_view name, const Visit& visit) const;  // positions of all fields of that name, in order

    // Room for the fields of any real task, so that none is asked of the heap for each.
    static constexpr std::size_t RoomSize = 4096;

    std::array<std::byte, RoomSize> _room;
    std::pmr::monotonic_buffer_resource _memory{_room.data(), _room.size()};
    std::pmr::vector<MSPCXMLNamedElement> _fields;
    std::array<std::uint16_t, SlotCount> _firstInSlot;         // positions in _fields, in order
    std::array<std::uint16_t, MostFieldsInSlots> _nextInSlot;  // by position in _fields
    // Filled instead where the fields are too many. Names can be chosen so that hashes of them are all equal.
    std::map<std::string_view, Match> _matchesByName;
    std::vector<std::string_view>* _missing = nullptr;
};
