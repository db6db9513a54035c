#pragma once

#include <cstdint>

#include "MSPCDay.h"
#include "MSPCGregorianCalendar.h"
#include "MSPEDirection.h"

// Steps from day to day by exactly 86,400 seconds, beginning at a midnight, and tells how many days ahead follow each
// other as the days of a week do, so that whole weeks of them need not be walked. The calendar must outlive it.
class MSPEDayWalk {
public:
    MSPEDayWalk(const MSPCGregorianCalendar& gregorian, MSPCInstant midnight, MSPEDirection direction);

    // The day's stepped midnight and the weekday of that instant.
    [[nodiscard]] MSPCInstant date() const { return _date; }
    [[nodiscard]] MSPCWeekday weekday() const { return _weekday; }

    // How many days can be stepped before the clocks change, or as far as is known that they do not; none of them lies
    // on the change. Infinite in zones of one offset.
    [[nodiscard]] double daysBeforeChange() const { return _daysBeforeChange; }
    // A number that is the same for two days as long as the clocks did not change between them.
    [[nodiscard]] std::int64_t steadySpan() const { return _steadySpan; }

    // 400 years in days, after which days and changes of the clocks repeat, and how many such cycles lie ahead of this
    // day in which they do: infinitely many forward from a certain year on, 0 before it.
    static constexpr double DaysOfCycle = MSPCDaysPerCycle;
    [[nodiscard]] double cyclesAhead() const;

    // How often the walk was moved.
    [[nodiscard]] std::uint64_t moves() const { return _moves; }

    void step();
    // Moves by whole days, no more than lie before the change, or by whole cycles, no more than lie ahead.
    void leap(double days);

private:
    void lookAtClocks();

    const MSPCGregorianCalendar& _gregorian;
    bool _isForward;
    MSPCInstant _date;
    MSPCWeekday _weekday{};
    double _daysBeforeChange = 0;
    std::int64_t _steadySpan = 0;
    std::uint64_t _moves = 0;
};
