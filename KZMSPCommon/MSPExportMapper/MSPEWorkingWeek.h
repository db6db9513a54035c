#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "MSPCWeekday.h"
#include "MSPETimePeriod.h"
#include "MSPEWorkingDayIndex.h"

// What a week knows about one weekday.
struct MSPEWorkingDay {
    bool isWorkingDay = false;
    std::vector<MSPETimePeriod> timePeriods;  // in the order in which they were added
};

// A week of working time: for each weekday whether it is worked and in which periods. Periods are walked in the order
// in which they were added, so they must be added in ascending order of time.
//
// A week is filled when it is made and not changed by any question; copies are independent. It remembers what it added
// up and what that cost, so it is not for several threads at once.
//
// Operations that take a weekday and say nothing else raise `MSPCInternalInconsistency` "Incorrect value of weekdey
// (<number>). Should be from 1 to 7." for any other number.
class MSPEWorkingWeek {
public:
    // One per weekday, by its number; the first one is not used.
    using WorkingDays = std::array<MSPEWorkingDay, 8>;

    // No day is worked.
    MSPEWorkingWeek() = default;
    // The days as they are given.
    explicit MSPEWorkingWeek(WorkingDays workingDays);
    // The week of who says nothing else: Monday to Friday 08:00:00-12:00:00 and 13:00:00-17:00:00.
    [[nodiscard]] static const MSPEWorkingWeek& standardWeek();

    // Appends a period to a weekday and makes it a working day.
    void addWorkingTimePeriodWeekday(const MSPETimePeriod& period, MSPCWeekday weekday);

    [[nodiscard]] bool isWorkingDayWeekday(MSPCWeekday weekday) const { return workingDay(weekday).isWorkingDay; }
    // The weekday's slot, valid as long as the week is not changed.
    [[nodiscard]] const MSPEWorkingDay& workingDay(MSPCWeekday weekday) const { return _workingDays[slotOf(weekday)]; }
    // What the weekday's periods answer together, made when it is first asked for; valid as the slot is.
    [[nodiscard]] const MSPEWorkingDayIndex& workingDayIndex(MSPCWeekday weekday) const;
    // The number of the weekday's periods.
    [[nodiscard]] std::int64_t timePeriodsInWeekday(MSPCWeekday weekday) const {
        return static_cast<std::int64_t>(workingDay(weekday).timePeriods.size());
    }

    // A period, and its start, end and duration in seconds. None, or -1, for a period or weekday that does not exist.
    [[nodiscard]] std::optional<MSPETimePeriod> timePeriodWeekday(std::int64_t timePeriod, MSPCWeekday weekday) const;
    [[nodiscard]] MSPCTimeOfDay startTimeForTimePeriodWeekday(std::int64_t timePeriod, MSPCWeekday weekday) const;
    [[nodiscard]] MSPCTimeOfDay endTimeForTimePeriodWeekday(std::int64_t timePeriod, MSPCWeekday weekday) const;
    [[nodiscard]] MSPCTimeInterval durationOfTimePeriodWeekday(std::int64_t timePeriod, MSPCWeekday weekday) const;

    // A line per slot 0 to 7, each behind a line feed: "  2: 'monday' isWorkingDay=YES timePeriods=1:
    // 8:00:00-12:00:00"; the slot without a weekday is named '(null)'.
    [[nodiscard]] std::string descriptionOfDays() const;

    // What the answers about this week cost so far, in days and periods walked and periods indexed: a measure that is
    // the same on every machine. It grows with the week's periods and, for one answer, not beyond all measure with the
    // dates.
    [[nodiscard]] std::uint64_t stepsTaken() const { return _stepsTaken; }
    void addStepsTaken(std::uint64_t steps) const { _stepsTaken += steps; }

private:
    // Asked some times for each working time that is counted, and therefore here.
    [[nodiscard]] static std::size_t slotOf(MSPCWeekday weekday) {
        if (!MSPCIsWeekday(weekday)) {
            raiseNoWeekday(weekday);
        }
        return static_cast<std::size_t>(weekday);
    }
    [[noreturn]] static void raiseNoWeekday(MSPCWeekday weekday);
    [[nodiscard]] const MSPETimePeriod* findTimePeriod(std::int64_t timePeriod, MSPCWeekday weekday) const;

    WorkingDays _workingDays;
    mutable std::array<std::optional<MSPEWorkingDayIndex>, 8> _indexes;
    mutable std::uint64_t _stepsTaken = 0;
};
