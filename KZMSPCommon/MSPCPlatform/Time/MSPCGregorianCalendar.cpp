#include "MSPCGregorianCalendar.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "MSPCDay.h"

namespace {

// Bounds of fields that keep every sum below within 64 bits; far beyond what 32-bit fields can hold.
constexpr std::int64_t FarthestYear = std::int64_t{1} << 33;
constexpr std::int64_t FarthestCount = std::int64_t{1} << 40;

std::int64_t clampedCount(std::int64_t field) {
    return std::clamp(field, -FarthestCount, FarthestCount);
}

std::int64_t wallClockOf(const MSPCTimeZone& zone, MSPCInstant instant) {
    return MSPCWholeSeconds(instant) + zone.secondsFromGMT(instant);
}

MSPCDay dayOf(std::int64_t wallClock) {
    return {MSPCFloorDivide(wallClock, MSPCSecondsPerDay)};
}

}  // namespace

MSPCGregorianCalendar::MSPCGregorianCalendar(MSPCTimeZone zone) : _zone(std::move(zone)) {
}

const MSPCGregorianCalendar& MSPCGregorianCalendar::utc() {
    static const MSPCGregorianCalendar calendar(MSPCTimeZone::fixed(0));
    return calendar;
}

MSPCDateFields MSPCGregorianCalendar::fieldsOf(MSPCInstant instant) const {
    const auto wallClock = wallClockOf(_zone, instant);
    const auto day = dayOf(wallClock);
    const auto timeOfDay = wallClock - day.since1970 * MSPCSecondsPerDay;
    const auto date = MSPCDateOf(day);
    MSPCDateFields fields;
    fields.year = date.year;
    fields.month = date.month;
    fields.day = date.day;
    fields.hour = timeOfDay / 3600;
    fields.minute = timeOfDay / 60 % 60;
    fields.second = timeOfDay % 60;
    fields.weekday = MSPCNumberOf(MSPCWeekdayOf(day));
    return fields;
}

std::optional<MSPCInstant> MSPCGregorianCalendar::instantFrom(const MSPCDateFields& fields) const {
    constexpr auto undefined = MSPCDateFields::Undefined;
    if (fields.year == undefined || fields.month == undefined || fields.day == undefined) {
        return std::nullopt;
    }
    const auto monthsFromJanuary = clampedCount(fields.month) - 1;
    const auto year = std::clamp(fields.year, -FarthestYear, FarthestYear) + MSPCFloorDivide(monthsFromJanuary, 12);
    const auto firstOfMonth =
        MSPCDayOf({std::clamp(year, -FarthestYear, FarthestYear), MSPCFloorModulo(monthsFromJanuary, 12) + 1, 1});
    const auto day = firstOfMonth + (clampedCount(fields.day) - 1);
    return _zone.instantFromWallClock(
        day.since1970 * MSPCSecondsPerDay + clampedCount(MSPCDefinedOrZero(fields.hour)) * 3600 +
        clampedCount(MSPCDefinedOrZero(fields.minute)) * 60 + clampedCount(MSPCDefinedOrZero(fields.second)));
}

MSPCWeekday MSPCGregorianCalendar::weekdayOf(MSPCInstant instant) const {
    return MSPCWeekdayOf(dayOf(wallClockOf(_zone, instant)));
}

MSPCInstant MSPCGregorianCalendar::midnightOf(MSPCInstant instant) const {
    const auto wallClock = wallClockOf(_zone, instant);
    return _zone.instantFromWallClock(wallClock - MSPCFloorModulo(wallClock, MSPCSecondsPerDay));
}

MSPCTimeOfDay MSPCGregorianCalendar::timeOfDayOf(MSPCInstant instant) const {
    return {static_cast<double>(MSPCFloorModulo(wallClockOf(_zone, instant), MSPCSecondsPerDay))};
}

std::int64_t MSPCGregorianCalendar::wholeDaysBetween(MSPCInstant from, MSPCInstant to) const {
    const auto offsetChange = static_cast<double>(_zone.secondsFromGMT(to) - _zone.secondsFromGMT(from));
    const MSPCInstant difference{to - from + offsetChange};
    return MSPCWholeSeconds({std::trunc(difference.secondsSince1970 / MSPCSecondsPerDay)});
}

MSPCInstant MSPCGregorianCalendar::instantByAddingDays(MSPCInstant instant, std::int64_t days) const {
    return instantByAddingWallClock(instant, clampedCount(days) * 24, 0, 0);
}

MSPCInstant MSPCGregorianCalendar::instantByAddingWallClock(MSPCInstant instant, std::int64_t hours,
                                                            std::int64_t minutes, std::int64_t seconds) const {
    const auto added = clampedCount(hours) * 3600 + clampedCount(minutes) * 60 + clampedCount(seconds);
    if (added == 0) {
        return instant;  // stays the earlier one of a time that occurs twice
    }
    const auto whole = MSPCWholeSeconds(instant);
    const auto fraction = instant - MSPCInstant{static_cast<double>(whole)};
    return _zone.instantFromWallClock(whole + _zone.secondsFromGMT(instant) + added) + fraction;
}

std::string MSPCGregorianCalendar::displayText(MSPCInstant instant) const {
    const auto fields = fieldsOf(instant);
    const auto offset = _zone.secondsFromGMT(instant);
    const auto minutes = std::abs(offset) / 60;
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02} {}{:02}{:02}", fields.year, fields.month, fields.day,
                       fields.hour, fields.minute, fields.second, offset < 0 ? '-' : '+', minutes / 60, minutes % 60);
}
