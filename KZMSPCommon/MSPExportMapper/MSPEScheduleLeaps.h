#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "MSPCInstant.h"
#include "MSPEDayWalk.h"
#include "MSPEDirection.h"
#include "MSPEWorkingWeek.h"

// A part of an advance that need not be walked. Infinite days tell that the advance never comes to an end.
struct MSPELeap {
    double days = 0;
    MSPCTimeInterval work = 0;  // seconds worked off by it; negative where reversed periods add to what remains
};

// Tells an advance through working time how far it may leap because the days ahead repeat: by whole weeks as long as
// the clocks do not change, and by cycles of 400 years, of which one is walked and the others are like it. What is
// leapt over has no result, because more remains there than those days ever work off, or because they leave everything
// as it was. The week must outlive it.
class MSPEScheduleLeaps {
public:
    MSPEScheduleLeaps(const MSPEWorkingWeek& week, MSPEDirection direction);

    // Whether the week's times are such that sums of them are exact. Where they are not, nothing is leapt over.
    [[nodiscard]] bool isExact() const { return _isExact; }

    // The leap from the beginning of a working day on which so many seconds remain. No days when the walk must go on
    // step by step. To be asked on each working day, since what repeats is seen from one question to a later one.
    [[nodiscard]] MSPELeap leapFrom(const MSPEDayWalk& walk, MSPCTimeInterval remaining);

    // Whether a day on which so many seconds remain when it begins is worked off to its end without a result.
    [[nodiscard]] bool passesDay(MSPCWeekday weekday, MSPCTimeInterval remaining) const;

    // To be told when a result on an edge was given up: what remains is then not what the days have left over.
    void resultWasGivenUp() { _hasGivenUpInCycle = true; }

private:
    // The state of the walk on a day that later ones are compared with.
    struct Mark {
        MSPCInstant date;
        MSPCTimeInterval remaining = 0;
        std::int64_t steadySpan = 0;
        double patience = 0;  // the days after which a later mark takes its place

        [[nodiscard]] double daysUntil(const MSPEDayWalk& walk) const;
    };

    [[nodiscard]] MSPCWeekday nextWeekday(MSPCWeekday weekday) const;
    [[nodiscard]] bool periodsAreEnoughOnEachDay() const;
    void addUpWeeks();
    [[nodiscard]] MSPELeap leapOverWeeks(MSPCWeekday weekday, MSPCTimeInterval remaining, double mostDays) const;
    [[nodiscard]] MSPELeap leapOverEqualWeeks(const MSPEDayWalk& walk, MSPCTimeInterval remaining, double mostDays);
    [[nodiscard]] MSPELeap leapOverCycles(const MSPEDayWalk& walk, MSPCTimeInterval remaining);
    void noteMostOfCycle(MSPCWeekday weekday, MSPCTimeInterval remaining, const MSPELeap& leap);

    const MSPEWorkingWeek& _week;
    MSPEDirection _direction;
    bool _isExact = true;
    bool _mayLeap = false;
    MSPCTimeInterval _workOfWeek = 0;
    // The most that has been worked off at any place in a week that begins on a weekday.
    std::array<MSPCTimeInterval, 8> _mostOfWeekFrom{};
    std::optional<Mark> _weekMark;
    std::optional<Mark> _cycleMark;
    MSPCTimeInterval _mostOfCycle = 0;  // worked off at any place since the cycle's mark
    bool _hasGivenUpInCycle = false;
};
