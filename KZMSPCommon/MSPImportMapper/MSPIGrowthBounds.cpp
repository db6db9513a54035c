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

void MSPIGrowthBounds::addRepeatedText(std::uint64_t bytes) {
    if (bytes > MostRepeatedText - _repeatedText) {
        throw MSPCInternalInconsistency(
            fmt::format("Too much text in repeated names: more than {} bytes.", MostRepeatedText));
    }
    _repeatedText += bytes;
}
