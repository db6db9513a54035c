#include "MSPCISO8601Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "MSPCException.h"

namespace {

// A date-time on its way to its text. Two of them are written for each task, so no formatter is asked for the usual
// fields.
class DateTimeText {
public:
    // Goes between two fields, so a year without month and day prints as "2012--"; not to the front.
    void separate(char separator) {
        if (_size > 0) {
            append(separator);
        }
    }

    void append(char character) { _text[_size++] = character; }

    void appendNumber(std::int64_t number) {
        const fmt::format_int digits(number);
        std::copy_n(digits.data(), digits.size(), &_text[_size]);
        _size += digits.size();
    }

    void appendTwoDigits(std::int64_t number) {
        if (number >= 0 && number <= 99) {
            append(static_cast<char>('0' + number / 10));
            append(static_cast<char>('0' + number % 10));
            return;
        }
        appendNumber(number);
    }

    [[nodiscard]] std::string text() const { return {_text.data(), _size}; }

private:
    static constexpr std::size_t MostFields = 8;
    static constexpr std::size_t LongestField = 22;  // 20 digits and signs, with what stands before and behind

    std::array<char, MostFields * LongestField> _text;
    std::size_t _size = 0;
};

void appendDate(DateTimeText& text, const MSPCDateComponents& components, MSPCUnitFlags units) {
    if (units & MSPCUnit::Year) {
        text.appendNumber(MSPCDefinedOrZero(components.year));
    }
    text.separate('-');
    if (units & MSPCUnit::Month) {
        text.appendTwoDigits(MSPCDefinedOrZero(components.month));
    }
    text.separate('-');
    if (units & MSPCUnit::Day) {
        text.appendTwoDigits(MSPCDefinedOrZero(components.day));
    }
}

void appendTime(DateTimeText& text, const MSPCDateComponents& components, MSPCUnitFlags units) {
    if (units & MSPCUnit::Hour) {
        text.appendTwoDigits(MSPCDefinedOrZero(components.hour));
    }
    text.separate(':');
    if (units & MSPCUnit::Minute) {
        text.appendTwoDigits(MSPCDefinedOrZero(components.minute));
    }
    text.separate(':');
    if (units & MSPCUnit::Second) {
        text.appendTwoDigits(MSPCDefinedOrZero(components.second));
    }
}

// West of Greenwich hour and minute can both be negative, and the hour can be 0: the one sign belongs to both.
void appendZone(DateTimeText& text, const MSPCDateComponents& components, MSPCUnitFlags units) {
    if ((units & MSPCUnit::ZoneIsZ) && components.isUTC) {
        text.append('Z');
        return;
    }
    const auto hour = units & MSPCUnit::ZoneHour ? MSPCDefinedOrZero(components.timeZoneHour) : 0;
    const auto minute = units & MSPCUnit::ZoneMinute ? MSPCDefinedOrZero(components.timeZoneMinute) : 0;
    text.append(hour < 0 || minute < 0 ? '-' : '+');
    text.appendTwoDigits(std::abs(hour));
    text.append(':');
    text.appendTwoDigits(std::abs(minute));
}

}  // namespace

MSPCUnitFlags updateDateTimeComponentsFromISODateTime(MSPCDateComponents& components, std::string_view text) {
    const auto units = readISODateTime(components, text);
    if (!units) {
        throw MSPCInternalInconsistency("");
    }
    return *units;
}

MSPCUnitFlags unitsOfISODateTime(std::string_view text) {
    MSPCDateComponents unread;
    return readISODateTime(unread, text).value_or(MSPCUnit::NotFound);
}

MSPCUnitFlags updateDateTimeComponentsFromISODuration(MSPCDateComponents& components, std::string_view text) {
    return readISODuration(components, text);
}

std::optional<MSPCHoursMinutesSeconds> hoursMinutesSecondsFromMSPDIDuration(std::string_view text) {
    return readMSPDIDuration(text);
}

std::optional<std::string> stringFromComponentsUnitFlags(const MSPCDateComponents& components, MSPCUnitFlags units) {
    if (units == MSPCUnit::NotFound) {
        return std::nullopt;
    }
    DateTimeText text;
    if (units & MSPCUnit::Date) {
        appendDate(text, components, units);
    }
    if (units & (MSPCUnit::Time | MSPCUnit::Zone)) {
        text.separate('T');
    }
    if (units & MSPCUnit::Time) {
        appendTime(text, components, units);
    }
    if (units & MSPCUnit::Zone) {
        appendZone(text, components, units);
    }
    return text.text();
}

std::optional<MSPCInstant> dateFromComponents(const MSPCDateComponents& components,
                                              const MSPCGregorianCalendar& gregorian) {
    return gregorian.instantFrom(components);
}
