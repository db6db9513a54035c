#include "MSPCDateComponents.h"

#include <fmt/format.h>

#include "MSPCClock.h"

namespace {

MSPCGregorianCalendar calendarAtOffset(std::int64_t secondsFromGMT) {
    return MSPCGregorianCalendar(MSPCTimeZone::fixed(secondsFromGMT));
}

}  // namespace

void MSPCDateComponents::fixUTC() {
    isUTC = timeZoneHour == 0 && timeZoneMinute == 0;
}

MSPCUnitFlags MSPCDateComponents::forceSystemTimezoneforDate(std::optional<MSPCInstant> date, const MSPCTimeZone& zone,
                                                             const MSPCClock& clock) {
    if (!date) {
        date = MSPCGregorianCalendar(zone).instantFrom(*this);
    }
    // Deliberate: the offset in force now is taken, not the one at the date. A summer date gets the summer offset twice
    // when the import runs in summer: in Europe/Berlin a July date then ends in +03:00.
    const auto offset = zone.secondsFromGMT(clock.now()) + (date ? zone.daylightSavingOffset(*date) : 0);
    timeZoneMinute = offset / 60 % 60;
    timeZoneHour = offset / 60 / 60;
    fixUTC();
    return MSPCUnit::All;
}

MSPCUnitFlags MSPCDateComponents::convertToUTC() {
    return isUTC ? MSPCUnit::All : convertToTimeZoneForSecondsFromGMT(0);
}

MSPCUnitFlags MSPCDateComponents::convertToSystemTimezone(const MSPCTimeZone& zone) {
    // Deliberate: the clock fields are read in the zone although they belong to the components' own offset, so within
    // hours of a change of the clocks the offset can be that of the other side.
    const auto instant = MSPCGregorianCalendar(zone).instantFrom(*this);
    return instant ? convertToTimeZoneForSecondsFromGMT(zone.secondsFromGMT(*instant)) : MSPCUnit::NotFound;
}

MSPCUnitFlags MSPCDateComponents::convertToTimeZoneForSecondsFromGMT(std::int64_t seconds) {
    // Deliberate: the minute counts eastwards whatever the hour's sign, so "-05:30" is 4.5 hours west of Greenwich.
    const auto presentOffset = isUTC ? 0 : timeZoneHour * 3600 + timeZoneMinute * 60;
    const auto instant = calendarAtOffset(presentOffset).instantFrom(*this);
    if (!instant) {
        return MSPCUnit::NotFound;
    }
    const auto moved = calendarAtOffset(seconds).fieldsOf(*instant);
    year = moved.year;
    month = moved.month;
    day = moved.day;
    hour = moved.hour;
    minute = moved.minute;
    second = moved.second;
    timeZoneHour = seconds / 3600;
    timeZoneMinute = seconds / 60 % 60;
    fixUTC();
    return MSPCUnit::All;
}

std::string MSPCDateComponents::componentsDescription() const {
    return fmt::format("\n  isUTC={:d}\n  timeZoneHour={}\n  timeZoneMinute={}", isUTC, timeZoneHour, timeZoneMinute);
}

std::string MSPCDateComponents::description() const {
    return fmt::format("MSPCDateComponents:{}{}", ::componentsDescription(*this), componentsDescription());
}

std::string componentsDescription(const MSPCDateFields& fields) {
    return fmt::format(
        "\n  era={}\n  year={}\n  month={}\n  day={}\n  hour={}\n  minute={}\n  second={}\n  week={}\n  weekday={}"
        "\n  weekdayOrdinal={}\n  quarter={}",
        fields.era, fields.year, fields.month, fields.day, fields.hour, fields.minute, fields.second, fields.week,
        fields.weekday, fields.weekdayOrdinal, fields.quarter);
}

std::string description(const MSPCDateFields& fields) {
    return fmt::format("NSDateComponents:{}", componentsDescription(fields));
}
