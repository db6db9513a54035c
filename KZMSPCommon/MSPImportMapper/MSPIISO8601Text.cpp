#include "MSPIISO8601Text.h"

#include <fmt/format.h>

#include <cstdlib>

#include "MSPCException.h"
#include "MSPIISO8601Patterns.h"

namespace {

// None for a date that is followed by a time but not by "T" and the time.
std::optional<MSPCUnitFlags> unitsOrMalformed(MSPCDateComponents& components, std::string_view text) {
    const auto scanned = scanISODateTime(components, text);
    return scanned ? scanned : matchISODateTime(components, text);
}

// Appends a separator to a text that holds something already, so a year without month and day prints as "2012--".
void separate(fmt::memory_buffer& text, char separator) {
    if (text.size() > 0) {
        text.push_back(separator);
    }
}

void appendTwoDigits(fmt::memory_buffer& text, std::int64_t field) {
    const auto value = MSPCDefinedOrZero(field);
    if (value < 0 || value > 99) {
        fmt::format_to(fmt::appender(text), "{:02}", value);
        return;
    }
    // Six times per date: worth not going through the formatter.
    text.push_back(static_cast<char>('0' + value / 10));
    text.push_back(static_cast<char>('0' + value % 10));
}

void appendDate(fmt::memory_buffer& text, const MSPCDateComponents& components, MSPCUnitFlags units) {
    if (units & MSPCUnit::Year) {
        const fmt::format_int year(MSPCDefinedOrZero(components.year));
        text.append(year.data(), year.data() + year.size());
    }
    separate(text, '-');
    if (units & MSPCUnit::Month) {
        appendTwoDigits(text, components.month);
    }
    separate(text, '-');
    if (units & MSPCUnit::Day) {
        appendTwoDigits(text, components.day);
    }
}

void appendTime(fmt::memory_buffer& text, const MSPCDateComponents& components, MSPCUnitFlags units) {
    if (units & MSPCUnit::Hour) {
        appendTwoDigits(text, components.hour);
    }
    separate(text, ':');
    if (units & MSPCUnit::Minute) {
        appendTwoDigits(text, components.minute);
    }
    separate(text, ':');
    if (units & MSPCUnit::Second) {
        appendTwoDigits(text, components.second);
    }
}

// West of Greenwich hour and minute can both be negative, and the hour can be 0: the one sign belongs to both.
void appendZone(fmt::memory_buffer& text, const MSPCDateComponents& components, MSPCUnitFlags units) {
    if ((units & MSPCUnit::ZoneIsZ) && components.isUTC) {
        text.push_back('Z');
        return;
    }
    const auto hour = units & MSPCUnit::ZoneHour ? components.timeZoneHour : 0;
    const auto minute = units & MSPCUnit::ZoneMinute ? components.timeZoneMinute : 0;
    const char sign = hour < 0 || minute < 0 ? '-' : '+';
    text.push_back(sign);
    appendTwoDigits(text, std::abs(hour));
    text.push_back(':');
    appendTwoDigits(text, std::abs(minute));
}

}  // namespace

MSPCUnitFlags updateDateTimeComponentsFromISODateTime(MSPCDateComponents& components, std::string_view text) {
    const auto units = unitsOrMalformed(components, text);
    if (!units) {
        throw MSPCInternalInconsistency("");
    }
    return *units;
}

MSPCUnitFlags unitsOfISODateTime(std::string_view text) {
    MSPCDateComponents unread;
    return unitsOrMalformed(unread, text).value_or(MSPCUnit::NotFound);
}

MSPCUnitFlags updateDateTimeComponentsFromISODuration(MSPCDateComponents& components, std::string_view text) {
    const auto scanned = scanMSPDIDuration(text);
    if (!scanned) {
        return matchISODuration(components, text);
    }
    components.hour = scanned->hours;
    components.minute = scanned->minutes;
    components.second = scanned->seconds;
    return MSPCUnit::Time;
}

std::optional<MSPIHoursMinutesSeconds> hoursMinutesSecondsFromMSPDIDuration(std::string_view text) {
    const auto scanned = scanMSPDIDuration(text);
    return scanned ? scanned : matchMSPDIDuration(text);
}

std::optional<std::string> stringFromComponentsUnitFlags(const MSPCDateComponents& components, MSPCUnitFlags units) {
    if (units == MSPCUnit::NotFound) {
        return std::nullopt;
    }
    fmt::memory_buffer text;
    if (units & MSPCUnit::Date) {
        appendDate(text, components, units);
    }
    if (units & (MSPCUnit::Time | MSPCUnit::Zone)) {
        separate(text, 'T');
    }
    if (units & MSPCUnit::Time) {
        appendTime(text, components, units);
    }
    if (units & MSPCUnit::Zone) {
        appendZone(text, components, units);
    }
    return fmt::to_string(text);
}

std::optional<MSPCInstant> dateFromComponents(const MSPCDateComponents& components,
                                              const MSPCGregorianCalendar& gregorian) {
    return gregorian.instantFrom(components);
}
