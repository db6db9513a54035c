#include "MSPIGrowthBounds.h"

#include <fmt/format.h>

#include "MSPCException.h"

void MSPIGrowthBounds::addScheduleElements(std::uint64_t count) {
    if (count > MostScheduleElements - _scheduleElements) {
        throw MSPCInternalInconsistency(
            fmt::format("Too many working times and calendar events in all schedules together: more than {}.",
                        MostScheduleElements));
    }
    _scheduleElements += count;
}

bool MSPIGrowthBounds::addEventsOfRange(const MSPCXMLNode& mspCalendar, std::uint64_t count) {
    if (count == 0) {
        return true;
    }
    auto& ofCalendar = _eventsOfRanges[mspCalendar];
    if (count > MostEventsOfRanges - ofCalendar) {
        return false;
    }
    ofCalendar += count;
    addScheduleElements(count);
    return true;
}

void MSPIGrowthBounds::addRepeatedText(std::uint64_t bytes) {
    if (bytes > MostRepeatedText - _repeatedText) {
        throw MSPCInternalInconsistency(
            fmt::format("Too much text in repeated names: more than {} bytes.", MostRepeatedText));
    }
    _repeatedText += bytes;
}

void MSPIGrowthBounds::addRepeatedName(std::uint64_t bytes) {
    if (bytes > LongestFreeName) {
        addRepeatedText(bytes);
    }
}

void MSPIGrowthBounds::addRepeatedPieces(std::uint64_t count) {
    if (count > MostRepeatedPieces - _repeatedPieces) {
        throw MSPCInternalInconsistency(
            fmt::format("Too many pieces of split tasks with the same UID: more than {}.", MostRepeatedPieces));
    }
    _repeatedPieces += count;
}

void MSPIGrowthBounds::addRepeatedLooks(std::uint64_t count) {
    if (count > MostRepeatedLooks - _repeatedLooks) {
        throw MSPCInternalInconsistency(
            fmt::format("Too much to look at in assignments of several tasks or resources: more than {} elements.",
                        MostRepeatedLooks));
    }
    _repeatedLooks += count;
}
