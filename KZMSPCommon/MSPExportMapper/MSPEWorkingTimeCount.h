#pragma once

#include <array>
#include <cstddef>

#include "MSPCInstant.h"
#include "MSPEDayWalk.h"
#include "MSPEWorkingWeek.h"
#include "MSPEWorksOfCycle.h"

// Counts the working time of a week between two dates, all weeks at once between two changes of the clocks, and all
// cycles of 400 years at once, of which one is walked. Made for one question; what it is given must outlive it.
//
// It meets the days that `MSPEScheduleIterator` meets: it ends early where seven days in a row are not worked.
class MSPEWorkingTimeCount {
public:
    // `from` is earlier than `to`. What has been walked of the week in this calendar is remembered in `worksOfCycle`.
    MSPEWorkingTimeCount(const MSPEWorkingWeek& week, const MSPCGregorianCalendar& gregorian,
                         MSPEWorksOfCycle& worksOfCycle, MSPCInstant from, MSPCInstant to);

    // In seconds, 0 or more. To be asked once.
    [[nodiscard]] MSPCTimeInterval total();

private:
    // The last working day among some days that begin with a working day, and the work of those before it.
    struct LastWorkingDay {
        int day = 0;
        MSPCTimeInterval workBefore = 0;
    };

    void addUpWeeks();
    void countFirstDay();
    void countDaysBefore(MSPCInstant limit);
    void countCycles();
    void leapToLastDayOf(double days);
    void stepToWorkingDay();
    [[nodiscard]] bool isWorkingDay() const { return _week.isWorkingDayWeekday(_walk.weekday()); }
    [[nodiscard]] const MSPEWorkingDayIndex& day() const { return _week.workingDayIndex(_walk.weekday()); }

    const MSPEWorkingWeek& _week;
    MSPEWorksOfCycle& _worksOfCycle;
    MSPCInstant _fromDay;
    MSPCInstant _toDay;
    MSPCTimeOfDay _fromTime;
    MSPCTimeOfDay _toTime;
    MSPEDayWalk _walk;  // stands on a working day that is not counted yet, unless it has ended
    bool _hasEnded = false;
    MSPCTimeInterval _workOfWeek = 0;
    // By the weekday of the first day and the number of days behind it, 0 to 6.
    std::array<std::array<LastWorkingDay, 7>, 8> _lastWorkingDays{};
    MSPCTimeInterval _total = 0;
};
