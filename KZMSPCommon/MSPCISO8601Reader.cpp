#include "MSPCISO8601Reader.h"

#include <algorithm>
#include <cstddef>

#include "MSPCRegex.h"
#include "MSPCTextScanner.h"

// The quick readers.

namespace {

constexpr bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

// Whether a text has the form of an example in which every "0" stands for a digit. A template, so that the example is
// spelled out at compile time.
template <std::size_t Size>
bool hasForm(std::string_view text, const char (&example)[Size]) {
    if (text.size() != Size - 1) {
        return false;
    }
    bool matches = true;
    for (std::size_t i = 0; i + 1 < Size; ++i) {
        matches = matches && (example[i] == '0' ? isDigit(text[i]) : text[i] == example[i]);
    }
    return matches;
}

// The value of digits that are known to be there.
std::int64_t digitsAt(std::string_view text, std::size_t position, std::size_t count) {
    std::int64_t value = 0;
    for (const char digit : text.substr(position, count)) {
        value = value * 10 + (digit - '0');
    }
    return value;
}

constexpr char LocalDateTime[] = "0000-00-00T00:00:00";
constexpr std::size_t LocalDateTimeSize = sizeof(LocalDateTime) - 1;

// Reads digits and the mark that ends them off the front of a text; none, when either is missing.
std::optional<std::int32_t> takeNumber(std::string_view& text, char mark) {
    const auto isNoDigit = [](char character) { return !isDigit(character); };
    const auto end = static_cast<std::size_t>(std::find_if(text.begin(), text.end(), isNoDigit) - text.begin());
    if (end == 0 || end == text.size() || text[end] != mark) {
        return std::nullopt;
    }
    const auto number =
        end < 9 ? static_cast<std::int32_t>(digitsAt(text, 0, end)) : scanInteger32(text.substr(0, end));
    text.remove_prefix(end + 1);
    return number;
}

}  // namespace

std::optional<MSPCUnitFlags> scanISODateTime(MSPCDateComponents& components, std::string_view text) {
    if (text.size() < LocalDateTimeSize) {
        return std::nullopt;
    }
    const auto zone = text.substr(LocalDateTimeSize);
    const bool isOffset = hasForm(zone, "+00:00") || hasForm(zone, "-00:00");
    if (!hasForm(text.substr(0, LocalDateTimeSize), LocalDateTime) || !(zone.empty() || zone == "Z" || isOffset)) {
        return std::nullopt;
    }
    components.year = digitsAt(text, 0, 4);
    components.month = digitsAt(text, 5, 2);
    components.day = digitsAt(text, 8, 2);
    components.hour = digitsAt(text, 11, 2);
    components.minute = digitsAt(text, 14, 2);
    components.second = digitsAt(text, 17, 2);
    if (zone == "Z") {
        components.timeZoneHour = 0;
        components.timeZoneMinute = 0;
        components.isUTC = true;
        return MSPCUnit::Date | MSPCUnit::Time | MSPCUnit::ZoneIsZ;
    }
    if (isOffset) {
        components.timeZoneHour = zone.front() == '-' ? -digitsAt(zone, 1, 2) : digitsAt(zone, 1, 2);
        components.timeZoneMinute = digitsAt(zone, 4, 2);
    }
    components.fixUTC();
    return MSPCUnit::Date | MSPCUnit::Time | (isOffset ? MSPCUnit::ZoneHour | MSPCUnit::ZoneMinute : 0);
}

std::optional<MSPCHoursMinutesSeconds> scanMSPDIDuration(std::string_view text) {
    if (!text.starts_with("PT")) {
        return std::nullopt;
    }
    text.remove_prefix(2);
    const auto hours = takeNumber(text, 'H');
    const auto minutes = hours ? takeNumber(text, 'M') : std::nullopt;
    const auto seconds = minutes ? takeNumber(text, 'S') : std::nullopt;
    if (!seconds || !text.empty()) {
        return std::nullopt;
    }
    return MSPCHoursMinutesSeconds{*hours, *minutes, *seconds};
}

// The full grammar.

namespace {

using Group = std::optional<std::string_view>;

// The pattern is optional as a whole, so it matches every text at its start, if only the empty piece there.
const MSPCRegex& datePattern() {
    static const MSPCRegex pattern("(-?([[:digit:]]*)-([[:digit:]]*)-([[:digit:]]*))?");
    return pattern;
}

// Deliberate: the point of the fraction stands for any character. "08:00:00x5" is a time with a fraction, and in
// "08:00:00Z" the "Z" is one.
const MSPCRegex& timePattern() {
    static const MSPCRegex pattern(
        "([[:digit:]]*):([[:digit:]]*):([[:digit:]]*)(.([[:digit:]]*))?(((\\+|-)([[:digit:]]*):([[:digit:]]*))|Z)?");
    return pattern;
}

const MSPCRegex& durationPattern() {
    static const MSPCRegex pattern(
        "P((([[:digit:]]*)Y)?(([[:digit:]]*)M)?(([[:digit:]]*)D)?)?T"
        "((([[:digit:]]*)H)?(([[:digit:]]*)M)?(([[:digit:]]*)S)?)?");
    return pattern;
}

const MSPCRegex& hoursMinutesSecondsPattern() {
    static const MSPCRegex pattern("PT([[:digit:]]*)H([[:digit:]]*)M([[:digit:]]*)S");
    return pattern;
}

constexpr std::string_view Digits = "0123456789";

// The text from the place on at which the time pattern matches first: where the digits begin that stand before two
// colons with nothing but digits between them. Empty where it matches nowhere. Left to itself, the library would try
// the pattern at every digit of a long number and walk the whole number each time.
std::string_view fromStartOfTime(std::string_view text) {
    for (auto colon = text.find(':'); colon != std::string_view::npos; colon = text.find(':', colon + 1)) {
        const auto next = text.find_first_not_of(Digits, colon + 1);
        if (next != std::string_view::npos && text[next] == ':') {
            const auto beforeDigits = text.substr(0, colon).find_last_not_of(Digits);
            return text.substr(beforeDigits == std::string_view::npos ? 0 : beforeDigits + 1);
        }
    }
    return {};
}

// Sets a field from the digits of a group. Gives the unit then, no unit for a group without digits.
MSPCUnitFlags setField(std::int64_t& field, const Group& group, MSPCUnitFlags unit) {
    const auto number = scanInteger32(group.value_or(std::string_view()));
    if (!number) {
        return 0;
    }
    field = *number;
    return unit;
}

MSPCUnitFlags setZone(MSPCDateComponents& components, const MSPCRegex::Groups& groups) {
    const Group& fraction = groups[4];
    const Group& zone = groups[6];
    if (fraction == "Z" || zone == "Z") {
        components.timeZoneHour = 0;
        components.timeZoneMinute = 0;
        components.isUTC = true;
        return MSPCUnit::ZoneIsZ;
    }
    if (fraction) {
        return 0;  // Deliberate: "08:00:00.000+02:00" has no zone, the offset behind a fraction is dropped.
    }
    auto units = setField(components.timeZoneHour, groups[9], MSPCUnit::ZoneHour);
    if (groups[8] == "-" && units != 0) {
        components.timeZoneHour = -components.timeZoneHour;
    }
    units |= setField(components.timeZoneMinute, groups[10], MSPCUnit::ZoneMinute);
    components.fixUTC();
    return units;
}

std::size_t endOf(const Group& group, std::string_view text) {
    return static_cast<std::size_t>(group->data() - text.data()) + group->size();
}

}  // namespace

std::optional<MSPCUnitFlags> matchISODateTime(MSPCDateComponents& components, std::string_view text) {
    text = text.substr(0, text.find('\0'));
    if (text.empty()) {
        return MSPCUnit::NotFound;
    }
    MSPCUnitFlags units = MSPCUnit::NotFound;
    std::size_t endOfDate = 0;
    if (const auto date = datePattern().firstMatch(text, 16)) {
        units = setField(components.year, (*date)[2], MSPCUnit::Year) |
                setField(components.month, (*date)[3], MSPCUnit::Month) |
                setField(components.day, (*date)[4], MSPCUnit::Day);
        endOfDate = endOf((*date)[0], text);
        if (endOfDate == text.size()) {
            return units;
        }
    }
    const auto textFromTime = fromStartOfTime(text);
    const auto time = textFromTime.empty() ? std::nullopt : timePattern().firstMatch(textFromTime, 16);
    if (!time) {
        return units;
    }
    const auto startOfTime = static_cast<std::size_t>((*time)[0]->data() - text.data());
    if (endOfDate != 0 && (text[endOfDate] != 'T' || startOfTime != endOfDate + 1)) {
        return std::nullopt;
    }
    units = units == MSPCUnit::NotFound ? 0 : units;
    units |= setField(components.hour, (*time)[1], MSPCUnit::Hour);
    units |= setField(components.minute, (*time)[2], MSPCUnit::Minute);
    units |= setField(components.second, (*time)[3], MSPCUnit::Second);
    return units | setZone(components, *time);
}

MSPCUnitFlags matchISODuration(MSPCDateComponents& components, std::string_view text) {
    const auto match = text.empty() ? std::nullopt : durationPattern().firstMatch(text, 15);
    if (!match) {
        return MSPCUnit::NotFound;
    }
    const auto& groups = *match;
    return setField(components.year, groups[3], MSPCUnit::Year) |
           setField(components.month, groups[5], MSPCUnit::Month) | setField(components.day, groups[7], MSPCUnit::Day) |
           setField(components.hour, groups[10], MSPCUnit::Hour) |
           setField(components.minute, groups[12], MSPCUnit::Minute) |
           setField(components.second, groups[14], MSPCUnit::Second);
}

std::optional<MSPCHoursMinutesSeconds> matchMSPDIDuration(std::string_view text) {
    const auto match = hoursMinutesSecondsPattern().firstMatch(text, 4);
    if (!match) {
        return std::nullopt;
    }
    const auto number = [&match](std::size_t group) {
        return scanInteger32((*match)[group].value_or(std::string_view())).value_or(0);
    };
    return MSPCHoursMinutesSeconds{number(1), number(2), number(3)};
}

// Both.

std::optional<MSPCUnitFlags> readISODateTime(MSPCDateComponents& components, std::string_view text) {
    const auto scanned = scanISODateTime(components, text);
    return scanned ? scanned : matchISODateTime(components, text);
}

MSPCUnitFlags readISODuration(MSPCDateComponents& components, std::string_view text) {
    const auto scanned = scanMSPDIDuration(text);
    if (!scanned) {
        return matchISODuration(components, text);
    }
    components.hour = scanned->hours;
    components.minute = scanned->minutes;
    components.second = scanned->seconds;
    return MSPCUnit::Time;
}

std::optional<MSPCHoursMinutesSeconds> readMSPDIDuration(std::string_view text) {
    const auto scanned = scanMSPDIDuration(text);
    return scanned ? scanned : matchMSPDIDuration(text);
}
