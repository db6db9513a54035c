#include <algorithm>
#include <utility>

#include "MSPCTextScanner.h"
#include "MSPEScheduleCalendar.h"
#include "MSPEWeekday.h"

// How a calendar is read from the target format.

namespace {

MSPEHourMinuteSecond splitSeconds(std::int64_t seconds) {
    const auto hour = seconds / 3600;
    const auto minute = (seconds - 3600 * hour) / 60;
    return {hour, minute, seconds - 3600 * hour - 60 * minute};
}

// The truncated number of seconds as far as 64 bits hold it.
std::int64_t wholeSeconds(double seconds) {
    constexpr double limit = 9.2e18;
    return static_cast<std::int64_t>(std::clamp(seconds, -limit, limit));
}

// Midnight for a missing attribute, none for a text that is no number.
std::optional<MSPEHourMinuteSecond> timeInAttribute(const MSPCXMLNode& timeSpan, std::string_view name) {
    const auto attribute = timeSpan.attribute(name);
    if (!attribute) {
        return MSPEHourMinuteSecond{};
    }
    const auto seconds = scanDouble(attribute.stringValue());
    return seconds ? std::optional(splitSeconds(wholeSeconds(*seconds))) : std::nullopt;
}

}  // namespace

MSPEScheduleCalendar::MSPEScheduleCalendar(MSPCGregorianCalendar gregorian, const MSPCXMLNode& kdzxSchedule)
    : _gregorian(std::move(gregorian)) {
    constexpr std::string_view name = "schedule-day";
    for (auto day = kdzxSchedule.firstChildElement(name); day; day = day.nextSiblingElement(name)) {
        addScheduleDay(day);
    }
}

void MSPEScheduleCalendar::addScheduleDay(const MSPCXMLNode& scheduleDay) {
    const auto weekday = MSPEWeekdayNamed(scheduleDay.attribute("day-of-week").stringValue());
    if (!weekday) {
        return;
    }
    constexpr std::string_view name = "time-span";
    for (auto span = scheduleDay.firstChildElement(name); span; span = span.nextSiblingElement(name)) {
        const auto from = timeInAttribute(span, "start-time");
        const auto to = timeInAttribute(span, "end-time");
        if (from && to) {
            addWorkingTimePeriodWeekday({from->hour, from->minute, from->second, to->hour, to->minute, to->second},
                                        *weekday);
        }
    }
}
