#include "MSPCISO8601Scanner.h"

#include <algorithm>
#include <cstddef>

#include "MSPCTextScanner.h"

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
