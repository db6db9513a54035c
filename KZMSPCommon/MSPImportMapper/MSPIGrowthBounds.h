#pragma once

#include <cstdint>

class MSPEScheduleCalendar;

// Bounds for what a small plan could make a scenario grow to: a name that thousands of elements refer to, a calendar of
// thousands of years that each resource has. Far above what plans hold, far below what fills a machine. What a scenario
// takes over from the plan once is not counted.
class MSPIGrowthBounds {
public:
    // Elements of schedules (days, working times, events). Raises `MSPCInternalInconsistency` "Too many working times
    // and calendar events in all schedules together: more than 1000000." above that number.
    void addScheduleElements(std::uint64_t count);
    // Bytes of a text that is copied once more. Raises `MSPCInternalInconsistency` "Too much text in repeated names: more
    // than 1073741824 bytes." above that number.
    void addRepeatedText(std::uint64_t bytes);

    // Pieces of split tasks that bear the UID of a task before them. Raises `MSPCInternalInconsistency` "Too many
    // pieces of split tasks with the same UID: more than 1000000." above that number.
    void addRepeatedPieces(std::uint64_t count);

    // Working times of the project's own week, all of which count for every stretch of split work. Raises
    // `MSPCInternalInconsistency` "Too many working times in the project's week: more than 10080." above one per minute.
    static void checkWorkingTimesOfWeek(const MSPEScheduleCalendar& calendar);

    static constexpr std::uint64_t MostScheduleElements = 1'000'000;
    static constexpr std::uint64_t MostRepeatedText = std::uint64_t{1} << 30U;
    static constexpr std::uint64_t MostRepeatedPieces = 1'000'000;
    static constexpr std::int64_t MostWorkingTimesOfWeek = 10'080;

private:
    std::uint64_t _scheduleElements = 0;
    std::uint64_t _repeatedText = 0;
    std::uint64_t _repeatedPieces = 0;
};
