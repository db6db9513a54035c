// A working-time calendar: a line with two dates in seconds since 1970 and a duration, then the schedule's markup. Every
// question ends, and working time is never negative, nor any before the first date.

#include <algorithm>
#include <cmath>

#include "FuzzWorld.h"
#include "MSPCException.h"
#include "MSPCTextScanner.h"
#include "MSPCXMLDocument.h"
#include "MSPEScheduleCalendar.h"
#include "MSPEScheduleIterator.h"

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

template <typename Operation>
void endsProperly(const Operation& operation) {
    try {
        static_cast<void>(operation());
    } catch (const MSPCException&) {
        // A failure that the system raises on purpose.
    }
}

void questionsOfDaysEnd(const MSPEScheduleCalendar& calendar, const Question& question) {
    for (std::int64_t weekday = 0; weekday <= 8; ++weekday) {
        for (const auto direction : {MSPEDirection::Forward, MSPEDirection::Backward}) {
            endsProperly([&] {
                return calendar.timePeriodFromDurationForwardWeekday(question.duration, direction, weekday);
            });
            endsProperly([&] {
                return calendar.dayTimeFromDurationForwardWeekday(question.duration, direction, weekday);
            });
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
}

void advancesEnd(const MSPEScheduleCalendar& calendar, const Question& question) {
    for (const auto direction : {MSPEDirection::Forward, MSPEDirection::Backward}) {
        for (const auto edgeTime : {MSPEEdgeTime::Allowed, MSPEEdgeTime::NotAllowed}) {
            endsProperly([&] {
                return calendar.dateAdvanceByDurationForwardAllowEdgeTime(question.from, question.duration, direction,
                                                                          edgeTime);
            });
        }
        endsProperly([&] { return calendar.startDateForDateForward(question.to, direction); });
        MSPEScheduleIterator iterator(calendar, question.from, direction);
        for (int stops = 0; stops < 20 && iterator.nextTimePeriodTimePeriodIndexDateFlag(); ++stops) {
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    InputReader reader(textOf(bytes, size));
    const auto question = questionFrom(reader.upTo('\n'));
    const auto document = MSPCXMLDocument::read(std::string(reader.rest()), MSPCXMLContent::DataOnly, "schedule");
    if (!document) {
        return 0;
    }
    const FuzzWorld world;
    const MSPCGregorianCalendar gregorian(world.services.timeZone);
    const MSPEScheduleCalendar calendar(gregorian, document->root());
    questionsOfDaysEnd(calendar, question);
    workingTimeIsSound(calendar, question);
    advancesEnd(calendar, question);
    return 0;
}
