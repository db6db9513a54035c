#include "MSPCGregorianCalendar.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "MSPCWholeSeconds.h"

namespace {

constexpr std::int64_t SecondsPerDay = 86'400;
constexpr std::int64_t DaysPerCycle = 146'097;  // 400 years, after which dates and weekdays repeat
// Bounds of fields that keep every sum below within 64 bits; far beyond what 32-bit fields can hold.
constexpr std::int64_t FarthestYear = std::int64_t{1} << 33;
constexpr std::int64_t FarthestCount = std::int64_t{1} << 40;

constexpr std::int64_t floorDivide(std::int64_t value, std::int64_t divisor) {
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

constexpr std::int64_t floorModulo(std::int64_t value, std::int64_t divisor) {
    return value - floorDivide(value, divisor) * divisor;
}

struct CivilDate {
    std::int64_t year;
    std::int64_t month;
    std::int64_t day;
};

// Years are counted from 1 March, so that the leap day is a year's last and the lengths of months follow one pattern:
// (153 * month + 2) / 5 days before the month, March being 0. The standard library's calendar types end at year 32767.
constexpr std::int64_t MarchFirstOfYear0 = -719'468;  // days from 1970-01-01

constexpr std::int64_t daysFromCivil(std::int64_t year, std::int64_t month, std::int64_t day) {
    const auto yearFromMarch = month <= 2 ? year - 1 : year;
    const auto monthFromMarch = month <= 2 ? month + 9 : month - 3;
    const auto cycle = floorDivide(yearFromMarch, 400);
    const auto yearOfCycle = yearFromMarch - cycle * 400;
    const auto dayOfYear = (153 * monthFromMarch + 2) / 5 + day - 1;
    return MarchFirstOfYear0 + cycle * DaysPerCycle + yearOfCycle * 365 + yearOfCycle / 4 - yearOfCycle / 100 +
           dayOfYear;
}

constexpr CivilDate civilFromDays(std::int64_t days) {
    const auto daysFromMarch = days - MarchFirstOfYear0;
    const auto cycle = floorDivide(daysFromMarch, DaysPerCycle);
    const auto dayOfCycle = daysFromMarch - cycle * DaysPerCycle;
    // The leap days before the day are taken out, so that all years count 365 days.
    const auto yearOfCycle = (dayOfCycle - dayOfCycle / 1'460 + dayOfCycle / 36'524 - dayOfCycle / 146'096) / 365;
    const auto dayOfYear = dayOfCycle - (yearOfCycle * 365 + yearOfCycle / 4 - yearOfCycle / 100);
    const auto monthFromMarch = (5 * dayOfYear + 2) / 153;
    const auto day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
    const auto month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    return {cycle * 400 + yearOfCycle + (month <= 2 ? 1 : 0), month, day};
}

static_assert(daysFromCivil(1970, 1, 1) == 0 && daysFromCivil(2000, 3, 1) == 11'017);

std::int64_t weekdayOfDay(std::int64_t days) {
    return floorModulo(days + 4, 7) + 1;  // 1970-01-01 was a Thursday
}

std::int64_t clampedCount(std::int64_t field) {
    return std::clamp(field, -FarthestCount, FarthestCount);
}

std::int64_t wallClockOf(const MSPCTimeZone& zone, MSPCInstant instant) {
    return MSPCWholeSeconds(instant) + zone.secondsFromGMT(instant);
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
    const auto days = floorDivide(wallClock, SecondsPerDay);
    const auto timeOfDay = wallClock - days * SecondsPerDay;
    const auto date = civilFromDays(days);
    MSPCDateFields fields;
    fields.year = date.year;
    fields.month = date.month;
    fields.day = date.day;
    fields.hour = timeOfDay / 3600;
    fields.minute = timeOfDay / 60 % 60;
    fields.second = timeOfDay % 60;
    fields.weekday = weekdayOfDay(days);
    return fields;
}

std::optional<MSPCInstant> MSPCGregorianCalendar::instantFrom(const MSPCDateFields& fields) const {
    constexpr auto undefined = MSPCDateFields::Undefined;
    if (fields.year == undefined || fields.month == undefined || fields.day == undefined) {
        return std::nullopt;
    }
    const auto monthsFromJanuary = clampedCount(fields.month) - 1;
    const auto year = std::clamp(fields.year, -FarthestYear, FarthestYear) + floorDivide(monthsFromJanuary, 12);
    const auto firstOfMonth =
        daysFromCivil(std::clamp(year, -FarthestYear, FarthestYear), floorModulo(monthsFromJanuary, 12) + 1, 1);
    const auto days = firstOfMonth + clampedCount(fields.day) - 1;
    return _zone.instantFromWallClock(days * SecondsPerDay + clampedCount(MSPCDefinedOrZero(fields.hour)) * 3600 +
                                      clampedCount(MSPCDefinedOrZero(fields.minute)) * 60 +
                                      clampedCount(MSPCDefinedOrZero(fields.second)));
}

int MSPCGregorianCalendar::weekdayOf(MSPCInstant instant) const {
    return static_cast<int>(weekdayOfDay(floorDivide(wallClockOf(_zone, instant), SecondsPerDay)));
}

MSPCInstant MSPCGregorianCalendar::midnightOf(MSPCInstant instant) const {
    const auto wallClock = wallClockOf(_zone, instant);
    return _zone.instantFromWallClock(wallClock - floorModulo(wallClock, SecondsPerDay));
}

std::int64_t MSPCGregorianCalendar::timeOfDayOf(MSPCInstant instant) const {
    return floorModulo(wallClockOf(_zone, instant), SecondsPerDay);
}

std::int64_t MSPCGregorianCalendar::wholeDaysBetween(MSPCInstant from, MSPCInstant to) const {
    const auto offsetChange = static_cast<double>(_zone.secondsFromGMT(to) - _zone.secondsFromGMT(from));
    const MSPCInstant difference{to - from + offsetChange};
    return MSPCWholeSeconds({std::trunc(difference.secondsSince1970 / SecondsPerDay)});
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
