#include "KZDXDateTime.h"

#include <array>
#include <charconv>
#include <cstdlib>

namespace {

// Reads a date-time from its front.
class Scanner {
public:
    explicit Scanner(std::string_view text) : _rest(text) {}

    // A number of exactly that many digits, or of one to nine when `count` is 0.
    bool number(std::size_t count, std::int64_t& result) {
        constexpr std::size_t most = 9;
        const auto end = std::min(_rest.find_first_not_of("0123456789"), _rest.size());
        if (end == 0 || end > most || (count > 0 && end != count)) {
            return false;
        }
        std::from_chars(_rest.data(), _rest.data() + end, result);
        _rest.remove_prefix(end);
        return true;
    }
    bool character(char expected) {
        const bool isThere = _rest.starts_with(expected);
        _rest.remove_prefix(isThere ? 1 : 0);
        return isThere;
    }
    [[nodiscard]] bool isAtEnd() const { return _rest.empty(); }

private:
    std::string_view _rest;
};

bool scanZone(Scanner& scanner, int& seconds) {
    constexpr std::int64_t farthestHours = 26;  // the date line, and a summer that was counted twice
    if (scanner.character('Z')) {
        seconds = 0;
        return true;
    }
    const bool isWest = scanner.character('-');
    std::int64_t hours = 0;
    std::int64_t minutes = 0;
    if (!(isWest || scanner.character('+')) || !scanner.number(2, hours) || !scanner.character(':') ||
        !scanner.number(2, minutes) || hours > farthestHours || minutes > 59) {
        return false;
    }
    seconds = static_cast<int>((isWest ? -1 : 1) * (hours * 60 + minutes) * 60);
    return true;
}

bool scanFields(Scanner& scanner, MSPCDateFields& fields) {
    const bool isBeforeYear0 = scanner.character('-');
    if (!scanner.number(0, fields.year)) {
        return false;
    }
    fields.year *= isBeforeYear0 ? -1 : 1;
    return scanner.character('-') && scanner.number(2, fields.month) && scanner.character('-') &&
           scanner.number(2, fields.day) && scanner.character('T') && scanner.number(2, fields.hour) &&
           scanner.character(':') && scanner.number(2, fields.minute) && scanner.character(':') &&
           scanner.number(2, fields.second);
}

bool isInCalendar(const MSPCDateFields& fields) {
    constexpr std::array<std::int64_t, 12> daysOfMonths = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const auto year = fields.year;
    const bool isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return fields.month >= 1 && fields.month <= 12 && fields.day >= 1 &&
           fields.day <= daysOfMonths[static_cast<std::size_t>(fields.month - 1)] &&
           (fields.month != 2 || fields.day <= 28 || isLeap) && fields.hour <= 23 && fields.minute <= 59 &&
           fields.second <= 59;
}

}  // namespace

MSPCInstant KZDXDateTime::instant() const {
    return wallClock - secondsFromGreenwich;
}

bool KZDXDateTime::mayBeOfOneZone(const KZDXDateTime& other) const {
    constexpr int mostOfASummer = 2 * 3600;
    return std::abs(secondsFromGreenwich - other.secondsFromGreenwich) <= mostOfASummer;
}

bool KZDXDateTime::isBehind(const KZDXDateTime& other) const {
    return instant() > other.instant() && (wallClock > other.wallClock || !mayBeOfOneZone(other));
}

std::optional<KZDXDateTime> KZDXDateTimeFrom(std::string_view text) {
    KZDXDateTime date;
    Scanner scanner(text);
    if (!scanFields(scanner, date.fields) || !scanZone(scanner, date.secondsFromGreenwich) || !scanner.isAtEnd() ||
        !isInCalendar(date.fields)) {
        return std::nullopt;
    }
    const auto wallClock = MSPCGregorianCalendar::utc().instantFrom(date.fields);
    date.wallClock = wallClock.value_or(MSPCInstant{});
    return wallClock ? std::optional(date) : std::nullopt;
}
