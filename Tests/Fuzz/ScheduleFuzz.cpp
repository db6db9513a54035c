// A working-time calendar: a line with two dates in seconds since 1970 and a duration, then the schedule's markup.
// Every question ends after steps that grow with the input's bytes and nothing else, working time is never negative,
// nor any before the first date, and both ways of computing, plain and with leaps, agree where the plain one ends soon.

#include <algorithm>
#include <array>
#include <cmath>

#include "CountedSteps.h"
#include "FuzzWorld.h"
#include "MSPCException.h"
#include "MSPCTextScanner.h"
#include "MSPCXMLLoader.h"
#include "MSPEScheduleCalendar.h"
#include "MSPEScheduleIterator.h"
#include "PlainWorkingTime.h"

namespace {

struct Question {
    MSPCInstant from;
    MSPCInstant to;
    MSPCTimeInterval duration = 0;
};

Question questionFrom(std::string_view line) {
    InputReader reader(line);
    const auto number = [&reader] { return scanDouble(reader.upTo(' ')).value_or(0); };
    const auto from = number();
    const auto to = number();
    return {{from}, {to}, number()};
}

// Zones whose clocks change at night, at midnight, by half an hour, and never: inputs of every size have another one.
const MSPCGregorianCalendar& gregorianFor(std::size_t size) {
    static const auto gregorianIn = [](const char* zone) {
        return MSPCGregorianCalendar(MSPCTimeZone::named(zone).value());
    };
    static const std::array calendars{gregorianIn("Europe/Berlin"), gregorianIn("Asia/Beirut"),
                                      gregorianIn("Australia/Lord_Howe"), gregorianIn("UTC")};
    return calendars[size % calendars.size()];
}

template <typename Operation>
void endsProperly(const Operation& operation) {
    try {
        static_cast<void>(operation());
    } catch (const MSPCException&) {
        // A failure that the system raises on purpose.
    }
}

void questionsOfDaysEnd(const MSPEScheduleCalendar& calendar, const Question& question) {
    for (std::int64_t number = 0; number <= 8; ++number) {
        const MSPCWeekday weekday{number};
        for (const auto direction : {MSPEDirection::Forward, MSPEDirection::Backward}) {
            endsProperly(
                [&] { return calendar.timePeriodFromDurationForwardWeekday(question.duration, direction, weekday); });
            endsProperly(
                [&] { return calendar.dayTimeFromDurationForwardWeekday(question.duration, direction, weekday); });
        }
        endsProperly([&] { return calendar.durationOfWeekday(weekday); });
        endsProperly([&] { return calendar.timePeriodWeekday(0, weekday); });
    }
    static_cast<void>(calendar.description());
}

void workingTimeIsSound(const MSPEScheduleCalendar& calendar, const Question& question) {
    const auto work = calendar.workingTimeFromDateToDate(question.from, question.to);
    require(work >= 0, "working time is not negative");
    require(question.from < question.to || work == 0, "no working time before the first date");
    if (question.to - question.from < 100 * PlainDay && std::abs(question.from.secondsSince1970) < 0x1p50) {
        require(work == plainCount(calendar, question.from, question.to), "working time is that of the iterator");
    }
}

// Sums of such durations are exact in any order.
bool addsUpExactly(const Question& question) {
    return question.duration >= 1 && question.duration < 0x1p40 && std::fmod(question.duration * 1024, 1) == 0 &&
           std::abs(question.from.secondsSince1970) < 0x1p40;
}

void advanceIsThatOfAPlainWalk(const MSPEScheduleCalendar& calendar, const Question& question, MSPEDirection direction,
                               MSPEEdgeTime edgeTime) {
    constexpr std::int64_t days = 60;
    const auto start = plainStart(calendar, question.from, direction);
    const auto isWalked = start && start->timePeriod >= 0 && std::abs(start->date.secondsSince1970) < 0x1p40;
    if (!addsUpExactly(question) || !isWalked) {
        return;
    }
    const auto plain = plainAdvance(calendar, question.from, question.duration, direction, edgeTime, days);
    if (plain.isUnfinished) {
        return;
    }
    auto hasRaised = false;
    std::optional<MSPCInstant> date;
    try {
        date =
            calendar.dateAdvanceByDurationForwardAllowEdgeTime(question.from, question.duration, direction, edgeTime);
    } catch (const MSPCException&) {
        hasRaised = true;
    }
    require(hasRaised == plain.hasRaised && date == plain.date, "an advance ends where a plain walk ends");
}

// Days and periods walked: at most those between the changes of the clocks in 400 years and all history, some times
// over.
void stepsGrowWithTheInput(std::uint64_t steps, std::uint64_t mostSteps, std::uint64_t stepsPerByte,
                           std::size_t bytes) {
    require(steps <= mostSteps + stepsPerByte * bytes, "steps grow with the input");
}

void advancesEnd(const MSPEScheduleCalendar& calendar, const Question& question) {
    for (const auto direction : {MSPEDirection::Forward, MSPEDirection::Backward}) {
        for (const auto edgeTime : {MSPEEdgeTime::Allowed, MSPEEdgeTime::NotAllowed}) {
            endsProperly([&] {
                return calendar.dateAdvanceByDurationForwardAllowEdgeTime(question.from, question.duration, direction,
                                                                          edgeTime);
            });
            advanceIsThatOfAPlainWalk(calendar, question, direction, edgeTime);
        }
        endsProperly([&] { return calendar.startDateForDateForward(question.to, direction); });
        MSPEScheduleIterator iterator(calendar, calendar.gregorian(), question.from, direction);
        for (int stops = 0; stops < 20 && iterator.nextTimePeriodTimePeriodIndexDateFlag(); ++stops) {
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const CountedSteps steps;
    InputReader reader(textOf(bytes, size));
    const auto question = questionFrom(reader.upTo('\n'));
    const MSPCXMLLoader loader(MSPCXMLContent::DataOnly, "schedule");
    const auto loaded = loader.loadBytes(std::string(reader.rest()));
    if (!loaded) {
        return 0;
    }
    const MSPEScheduleCalendar calendar(gregorianFor(size), loaded->document.root());
    questionsOfDaysEnd(calendar, question);
    workingTimeIsSound(calendar, question);
    stepsGrowWithTheInput(calendar.stepsTaken(), 50'000, 1, size);
    advancesEnd(calendar, question);
    stepsGrowWithTheInput(calendar.stepsTaken(), 2'000'000, 2'000, size);
    requireStepsThatGrowWith(size, steps.count(), {10'000'000, 5'000});
    return 0;
}
