#include "MSPCTimeZone.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <map>
#include <utility>
#include <vector>

#include "MSPCLocalTimes.h"
#include "MSPCLog.h"
#include "MSPCYear.h"
#include "MSPCZoneStretches.h"

namespace {

constexpr std::int64_t FarthestOffset = 26 * 3600;
// Dates and weekdays of the Gregorian calendar, and with them the rules for changes of the clock, repeat in 400 years.
constexpr std::int64_t GregorianCycle = MSPCDaysPerCycle * MSPCSecondsPerDay;

// Older than the first change of any zone; what lies before has the same offset.
constexpr std::int64_t FirstLookup = MSPCSecondsAtStartOfYear(1700);
// From 2100 on every zone follows its final rule, by which the changes of a year depend on nothing but its first
// weekday and whether it is a leap year. The 28 years from 2101 on have them all and stand for the later ones, so that
// no more is asked of the zone database, however far ahead the dates of a plan lie.
constexpr int FirstYearOfRules = 2100;
constexpr int FirstYearOfPatterns = 2101;
constexpr int YearAfterPatterns = 2129;
constexpr std::int64_t EndOfLookups = MSPCSecondsAtStartOfYear(YearAfterPatterns);

constexpr bool haveSamePattern(int year, int other) {
    using std::chrono::year_month_day;
    const auto firstWeekday = [](int number) {
        return std::chrono::weekday(std::chrono::sys_days(std::chrono::year(number) / std::chrono::January / 1));
    };
    return std::chrono::year(year).is_leap() == std::chrono::year(other).is_leap() &&
           firstWeekday(year) == firstWeekday(other);
}

// For each year of a cycle the first one that has its pattern.
constexpr auto PatternYears = [] {
    std::array<int, 400> years{};
    for (int year = YearAfterPatterns; year < YearAfterPatterns + 400; ++year) {
        auto pattern = FirstYearOfPatterns;
        while (!haveSamePattern(year, pattern)) {
            ++pattern;
        }
        years[static_cast<std::size_t>(year - YearAfterPatterns)] = pattern;
    }
    return years;
}();

// The time in a year before the end of the look-ups that stands for another time: how far it is folded back, and the
// bounds within which it stands for it.
struct Folded {
    std::int64_t seconds;
    std::int64_t shift = 0;
    std::int64_t begin = std::numeric_limits<std::int64_t>::min();
    std::int64_t end = std::numeric_limits<std::int64_t>::max();
};

Folded folded(std::int64_t seconds) {
    if (seconds < EndOfLookups) {
        return {seconds};
    }
    const auto cycles = (seconds - EndOfLookups) / GregorianCycle * GregorianCycle;
    const auto year = MSPCYearOfSeconds(seconds - cycles);
    const auto pattern = PatternYears[static_cast<std::size_t>(year - YearAfterPatterns)];
    const auto shift = cycles + MSPCSecondsAtStartOfYear(year) - MSPCSecondsAtStartOfYear(pattern);
    return {seconds - shift, shift, MSPCSecondsAtStartOfYear(pattern), MSPCSecondsAtStartOfYear(pattern + 1)};
}

// What is asked of the zone database at once. A plan's dates lie close together.
constexpr std::int64_t PageLength = 8 * 366 * MSPCSecondsPerDay;

constexpr MSPCZoneStretch always(std::int64_t offset) {
    return {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max(), offset, 0};
}

}  // namespace

// A zone's name and the stretches looked up so far, in pages of some years, which are kept for the life of the zone.
// Not for use from several threads at once, apart from a zone of a fixed offset.
class MSPCTimeZone::Rules {
public:
    Rules(std::string name, std::string setting) : _name(std::move(name)), _setting(std::move(setting)) {}
    Rules(std::string name, std::int64_t fixedOffset)
        : _name(std::move(name)), _fixed(always(fixedOffset)), _latest(&_fixed) {}
    Rules(const Rules&) = delete;
    Rules& operator=(const Rules&) = delete;

    [[nodiscard]] const std::string& name() const { return _name; }

    // `seconds` lies before the end of the look-ups.
    [[nodiscard]] const MSPCZoneStretch& stretchAt(std::int64_t seconds) const {
        if (_latest != nullptr && _latest->contains(seconds)) {
            return *_latest;
        }
        // Questions about the present and about the dates of a plan take turns.
        std::swap(_latest, _latestBefore);
        if (_latest == nullptr || !_latest->contains(seconds)) {
            _latest = &lookUp(seconds);
        }
        return *_latest;
    }

private:
    using Page = std::vector<MSPCZoneStretch>;

    [[nodiscard]] const MSPCZoneStretch& lookUp(std::int64_t seconds) const {
        const auto number = (std::max(seconds, FirstLookup) - FirstLookup) / PageLength;
        auto& page = _pages[number];
        if (page.empty()) {
            const auto begin = FirstLookup + number * PageLength;
            page = MSPCZoneStretchesBetween(_setting, begin, begin + PageLength);
            if (number == 0) {
                page.front().start = std::numeric_limits<std::int64_t>::min();
            }
        }
        const auto startsLater = [](std::int64_t second, const MSPCZoneStretch& stretch) {
            return second < stretch.start;
        };
        return *std::prev(std::upper_bound(page.begin(), page.end(), seconds, startsLater));
    }

    std::string _name;
    std::string _setting;
    MSPCZoneStretch _fixed;
    mutable std::map<std::int64_t, Page> _pages;
    mutable const MSPCZoneStretch* _latest = nullptr;
    mutable const MSPCZoneStretch* _latestBefore = nullptr;
};

MSPCTimeZone::MSPCTimeZone(std::shared_ptr<const Rules> rules) : _rules(std::move(rules)) {
}

std::optional<MSPCTimeZone> MSPCTimeZone::named(std::string_view name, const MSPCZoneFiles& files) {
    auto setting = MSPCZoneSettingNamed(name, files);
    if (!setting) {
        return std::nullopt;
    }
    return MSPCTimeZone(std::make_shared<const Rules>(std::string(name), *std::move(setting)));
}

MSPCTimeZone MSPCTimeZone::fixed(std::int64_t secondsFromGMT) {
    constexpr std::int64_t limit = std::numeric_limits<std::int32_t>::max() * std::int64_t{3661};
    const auto offset = std::clamp(secondsFromGMT, -limit, limit);
    const auto minutes = std::abs(offset) / 60;
    auto name = offset == 0 ? std::string("GMT")
                            : fmt::format("GMT{}{:02}:{:02}", offset < 0 ? '-' : '+', minutes / 60, minutes % 60);
    return MSPCTimeZone(std::make_shared<const Rules>(std::move(name), offset));
}

MSPCTimeZone MSPCTimeZone::fromEnvironment(const char* tz, MSPCLog& log, const MSPCZoneFiles& files) {
    return ofSetting(MSPCZoneSettingOf(tz, files), tz, log, files);
}

MSPCTimeZone MSPCTimeZone::ofProcess(MSPCLog& log) {
    const char* const inEnvironment = std::getenv("TZ");
    const auto value = inEnvironment == nullptr ? std::nullopt : std::optional<std::string>(inEnvironment);
    const char* const tz = value ? value->c_str() : nullptr;
    const auto files = MSPCZoneFiles::fromEnvironment(std::getenv("TZDIR"));
    auto setting = MSPCZoneSettingOf(tz, files);
    // Before the first line of the log, whose time stamps ask the C library: what cannot be had could keep it waiting.
    MSPCLocalTimes::setProcessZone(setting.value_or("UTC0"));
    return ofSetting(std::move(setting), tz, log, files);
}

MSPCTimeZone MSPCTimeZone::ofSetting(std::optional<std::string> setting, const char* tz, MSPCLog& log,
                                     const MSPCZoneFiles& files) {
    if (!setting) {
        if (tz == nullptr) {
            log.log("WARNING: No time zone in '{}'. UTC is used instead.", files.machineZone);
        } else {
            log.log("WARNING: Unknown time zone in TZ: '{}'. UTC is used instead.", tz);
        }
        return MSPCTimeZone(std::make_shared<const Rules>("UTC", 0));
    }
    std::string name = tz == nullptr ? files.machineZone : tz + (*tz == ':' ? 1 : 0);
    return MSPCTimeZone(std::make_shared<const Rules>(name.empty() ? "UTC" : std::move(name), *std::move(setting)));
}

const std::string& MSPCTimeZone::name() const {
    return _rules->name();
}

std::int64_t MSPCTimeZone::secondsFromGMT(MSPCInstant instant) const {
    const auto seconds = MSPCWholeSeconds(instant);
    return _rules->stretchAt(folded(seconds).seconds).offset;
}

std::int64_t MSPCTimeZone::daylightSavingOffset(MSPCInstant instant) const {
    const auto seconds = MSPCWholeSeconds(instant);
    return _rules->stretchAt(folded(seconds).seconds).daylightSaving;
}

MSPCTimeSpan MSPCTimeZone::steadySpanAt(MSPCInstant instant) const {
    constexpr auto unbounded = std::numeric_limits<double>::infinity();
    const auto time = folded(MSPCWholeSeconds(instant));
    const auto& stretch = _rules->stretchAt(time.seconds);
    const auto unfolded = [&time](std::int64_t bound) {
        return static_cast<double>(bound) + static_cast<double>(time.shift);
    };
    return {{stretch.start == std::numeric_limits<std::int64_t>::min() ? -unbounded
                                                                       : unfolded(std::max(stretch.start, time.begin))},
            {stretch.end == std::numeric_limits<std::int64_t>::max() ? unbounded
                                                                     : unfolded(std::min(stretch.end, time.end))}};
}

MSPCInstant MSPCTimeZone::startOfCycles() {
    return {static_cast<double>(MSPCSecondsAtStartOfYear(FirstYearOfRules))};
}

MSPCInstant MSPCTimeZone::instantFromWallClock(std::int64_t wallClockSeconds) const {
    const auto reachable = std::clamp(wallClockSeconds, -MSPCFarthestSecond, MSPCFarthestSecond);
    const auto [wallClock, shift, begin, end] = folded(reachable);
    // Offsets are not larger, so this stretch, or one before it, is the last that can show the time. The later of two
    // stretches that show it is met first; a time that none shows lies behind the end of the one returned.
    const MSPCZoneStretch* stretch = &_rules->stretchAt(wallClock + FarthestOffset);
    while (wallClock - stretch->offset < stretch->start) {
        stretch = &_rules->stretchAt(stretch->start - 1);
    }
    return {static_cast<double>(wallClock - stretch->offset + shift)};
}
