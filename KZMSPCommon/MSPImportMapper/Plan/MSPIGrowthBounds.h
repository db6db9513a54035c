#pragma once

#include <cstdint>
#include <map>

#include "MSPCXMLNode.h"

// Bounds for what a small plan could make a document grow to: a name that thousands of elements refer to, a calendar
// that each resource has, a day off of thousands of years. Far above what plans hold, far below what fills a machine.
// What the plan itself holds is not counted, however much it is; only what is made of it once more is, in all scenarios
// of a plan together.
class MSPIGrowthBounds {
public:
    // Elements of schedules (days, working times, events) beyond those that a plan holds. Raises
    // `MSPCInternalInconsistency` "Too many working times and calendar events in all schedules together: more than
    // 10000000." above that number.
    void addScheduleElements(std::uint64_t count);
    // Events that a range of days of that calendar makes beyond its first one; they are elements of schedules too.
    // Answers false, and counts nothing, where the ranges of this one calendar would come to more than a million.
    [[nodiscard]] bool addEventsOfRange(const MSPCXMLNode& mspCalendar, std::uint64_t count);
    // Bytes of a text that is copied once more. Raises `MSPCInternalInconsistency` "Too much text in repeated names:
    // more than 1073741824 bytes." above that number.
    void addRepeatedText(std::uint64_t bytes);
    // The same of a name, unless it is so short that the element that asks for it is hardly shorter: that multiplies
    // nothing.
    void addRepeatedName(std::uint64_t bytes);

    // Pieces of split tasks that are those of a task before them. Raises `MSPCInternalInconsistency` "Too many pieces
    // of split tasks with the same UID: more than 1000000." above that number.
    void addRepeatedPieces(std::uint64_t count);

    // Children of assignments that are looked at once more, for another task or resource. Raises
    // `MSPCInternalInconsistency` "Too much to look at in assignments of several tasks or resources: more than 10000
    // elements." above that number.
    void addRepeatedLooks(std::uint64_t count);

    static constexpr std::uint64_t MostScheduleElements = 10'000'000;
    static constexpr std::uint64_t MostEventsOfRanges = 1'000'000;
    static constexpr std::uint64_t LongestFreeName = 256;
    static constexpr std::uint64_t MostRepeatedText = std::uint64_t{1} << 30U;
    static constexpr std::uint64_t MostRepeatedPieces = 1'000'000;
    static constexpr std::uint64_t MostRepeatedLooks = 10'000;

private:
    std::uint64_t _scheduleElements = 0;
    std::map<MSPCXMLNode, std::uint64_t> _eventsOfRanges;  // by calendar
    std::uint64_t _repeatedText = 0;
    std::uint64_t _repeatedPieces = 0;
    std::uint64_t _repeatedLooks = 0;
};
