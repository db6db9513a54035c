#include "MSPCZoneRule.h"

#include <algorithm>
#include <charconv>
#include <chrono>

#include "MSPCYear.h"

namespace {

constexpr std::int64_t Minute = 60;
constexpr std::int64_t Hour = 3600;
constexpr std::int64_t Day = 86'400;

}  // namespace

// Reads a rule from left to right. Each operation answers none, and the whole rule is none, where something else
// stands.
class MSPCZoneRule::Parser {
public:
    explicit Parser(std::string_view text) : _rest(text) {}

    std::optional<MSPCZoneRule> rule() {
        const auto standard = name() ? west() : std::nullopt;
        if (!standard) {
            return std::nullopt;
        }
        if (_rest.empty()) {
            return MSPCZoneRule();
        }
        if (!name()) {
            return std::nullopt;
        }
        const auto summer = _rest.starts_with(',') ? std::optional(*standard - Hour) : west();
        auto begin = summer ? change(*standard) : std::nullopt;
        auto end = begin ? change(*summer) : std::nullopt;
        if (!end || !_rest.empty()) {
            return std::nullopt;
        }
        MSPCZoneRule rule;
        rule._changes = {*begin, *end};
        return rule;
    }

private:
    bool name() {
        const auto isQuoted = take('<');
        const auto end = isQuoted ? _rest.find('>') : _rest.find_first_of("+-,0123456789");
        if (end == std::string_view::npos || end == 0) {
            return false;
        }
        _rest.remove_prefix(end + (isQuoted ? 1 : 0));
        return true;
    }

    std::optional<std::int64_t> west() { return signedTime(24); }

    // "[+-]hours[:minutes[:seconds]]" in seconds.
    std::optional<std::int64_t> signedTime(int mostHours) {
        const auto isNegative = take('-');
        if (!isNegative) {
            take('+');
        }
        const auto hours = number(mostHours);
        const auto minutes = hours && take(':') ? number(59) : std::optional(0);
        const auto seconds = minutes && take(':') ? number(59) : std::optional(0);
        if (!hours || !minutes || !seconds) {
            return std::nullopt;
        }
        const auto time = *hours * Hour + *minutes * Minute + *seconds;
        return isNegative ? -time : time;
    }

    std::optional<Change> change(std::int64_t westBefore) {
        auto change = take(',') ? day() : std::nullopt;
        if (!change) {
            return std::nullopt;
        }
        const auto time = take('/') ? signedTime(999) : std::optional(2 * Hour);
        if (!time) {
            return std::nullopt;
        }
        change->time = *time;
        change->westBefore = westBefore;
        return change;
    }

    std::optional<Change> day() {
        using Kind = Change::Kind;
        constexpr int lastDay = 365;
        if (take('M')) {
            const auto month = number(12);
            const auto week = month && take('.') ? number(5) : std::nullopt;
            const auto weekday = week && take('.') ? number(6) : std::nullopt;
            return weekday && *month > 0 && *week > 0
                       ? std::optional(Change{Kind::WeekdayOfMonth, *month, *week, *weekday})
                       : std::nullopt;
        }
        const auto kind = take('J') ? Kind::DayOfCommonYear : Kind::DayOfYear;
        const auto day = number(lastDay);
        const auto isDay = day && (*day > 0 || kind == Kind::DayOfYear);
        return isDay ? std::optional(Change{kind, 0, 0, *day}) : std::nullopt;
    }

    bool take(char character) {
        const bool isNext = _rest.starts_with(character);
        _rest.remove_prefix(isNext ? 1 : 0);
        return isNext;
    }

    std::optional<int> number(int most) {
        int value = -1;
        const auto [end, error] = std::from_chars(_rest.data(), _rest.data() + _rest.size(), value);
        if (error != std::errc() || value < 0 || value > most) {
            return std::nullopt;
        }
        _rest.remove_prefix(static_cast<std::size_t>(end - _rest.data()));
        return value;
    }

    std::string_view _rest;
};

std::optional<MSPCZoneRule> MSPCZoneRule::parsed(std::string_view text) {
    return Parser(text).rule();
}

std::int64_t MSPCZoneRule::Change::secondIn(int year) const {
    using namespace std::chrono;
    const std::chrono::year inYear(year);
    std::int64_t dayOfYear = day;
    if (kind == Kind::DayOfCommonYear) {
        constexpr int march = 60;
        dayOfYear = day - (day >= march && inYear.is_leap() ? 0 : 1);
    } else if (kind == Kind::WeekdayOfMonth) {
        const auto inMonth = inYear / std::chrono::month(static_cast<unsigned>(month));
        const std::chrono::weekday onDay(static_cast<unsigned>(day));
        constexpr int lastWeek = 5;
        const sys_days found = week == lastWeek ? sys_days(inMonth / onDay[std::chrono::last])
                                                : sys_days(inMonth / onDay[static_cast<unsigned>(week)]);
        dayOfYear = (found - sys_days(inYear / January / 1)).count();
    }
    return MSPCSecondsAtStartOfYear(year) + dayOfYear * Day + time + westBefore;
}

void MSPCZoneRule::addChangesBetween(std::int64_t from, std::int64_t before, std::vector<std::int64_t>& seconds) const {
    if (!_changes) {
        return;
    }
    for (auto year = MSPCYearOfSeconds(from); MSPCSecondsAtStartOfYear(year) < before; ++year) {
        const auto begin = MSPCSecondsAtStartOfYear(year);
        seconds.push_back(begin);
        for (const auto& change : *_changes) {
            seconds.push_back(std::clamp(change.secondIn(year), begin, MSPCSecondsAtStartOfYear(year + 1)));
        }
    }
}
