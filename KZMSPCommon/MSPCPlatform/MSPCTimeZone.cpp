#include "MSPCTimeZone.h"

#include <fmt/format.h>
#include <unicode/basictz.h>
#include <unicode/timezone.h>
#include <unicode/tztrans.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <map>
#include <utility>

#include "MSPCLog.h"
#include "MSPCWholeSeconds.h"

namespace {

constexpr std::int64_t SecondsPerDay = 86'400;
// Dates and weekdays of the Gregorian calendar, and with them the rules for changes of the clock, repeat in 400 years.
constexpr std::int64_t GregorianCycle = 146'097 * SecondsPerDay;

constexpr std::int64_t secondsAtStartOf(int year) {
    using namespace std::chrono;
    return sys_seconds(sys_days(std::chrono::year(year) / January / 1)).time_since_epoch().count();
}

// Older than the first change of any zone; what lies before has the same offset.
constexpr std::int64_t FirstLookup = secondsAtStartOf(1700);
// Every zone follows its final rule for the 400 years before; what lies behind is answered by the cycle.
constexpr std::int64_t EndOfLookups = secondsAtStartOf(2500);

// How far a time is folded back by whole cycles to come before the end of the look-ups.
std::int64_t cyclesShift(std::int64_t seconds) {
    return seconds < EndOfLookups ? 0 : ((seconds - EndOfLookups) / GregorianCycle + 1) * GregorianCycle;
}

// A stretch of time between two changes of a zone: from `start` on, before `end`.
struct Interval {
    std::int64_t start = std::numeric_limits<std::int64_t>::min();
    std::int64_t end = std::numeric_limits<std::int64_t>::max();
    std::int64_t offset = 0;  // daylight saving included
    std::int64_t daylightSaving = 0;

    [[nodiscard]] bool contains(std::int64_t seconds) const { return start <= seconds && seconds < end; }
};

std::int64_t secondsOfMilliseconds(double milliseconds) {
    return static_cast<std::int64_t>(milliseconds / 1000);
}

Interval queryInterval(const icu::BasicTimeZone& zone, std::int64_t seconds) {
    const auto milliseconds = static_cast<double>(seconds) * 1000;
    std::int32_t standard = 0;
    std::int32_t daylightSaving = 0;
    UErrorCode status = U_ZERO_ERROR;
    zone.getOffset(milliseconds, false, standard, daylightSaving, status);

    Interval interval;
    interval.offset = secondsOfMilliseconds(standard + daylightSaving);
    interval.daylightSaving = secondsOfMilliseconds(daylightSaving);
    icu::TimeZoneTransition transition;
    if (zone.getPreviousTransition(milliseconds, true, transition)) {
        interval.start = secondsOfMilliseconds(transition.getTime());
    }
    if (zone.getNextTransition(milliseconds, false, transition)) {
        interval.end = secondsOfMilliseconds(transition.getTime());
    }
    return interval;
}

// The database's zone of that name. Only names that are listed there: the library would also take "GMT+5", which the C
// library reads the other way round.
std::unique_ptr<const icu::BasicTimeZone> databaseZone(std::string_view name) {
    const auto id = icu::UnicodeString::fromUTF8(icu::StringPiece(name.data(), static_cast<int32_t>(name.size())));
    icu::UnicodeString canonical;
    UBool isListed = false;
    UErrorCode status = U_ZERO_ERROR;
    icu::TimeZone::getCanonicalID(id, canonical, isListed, status);
    if (U_FAILURE(status) || !isListed || name == "Etc/Unknown") {
        return nullptr;
    }
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(id));
    if (dynamic_cast<const icu::BasicTimeZone*>(zone.get()) == nullptr) {
        return nullptr;
    }
    return std::unique_ptr<const icu::BasicTimeZone>(dynamic_cast<const icu::BasicTimeZone*>(zone.release()));
}

std::string hostZoneName() {
    const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
    icu::UnicodeString id;
    std::string name;
    zone->getID(id).toUTF8String(name);
    return name;
}

}  // namespace

// A zone's name and the stretches looked up so far. Each stretch costs one query of the database; there are some
// hundreds at most, so they are kept for the life of the zone. Not for use from several threads at once.
class MSPCTimeZone::Rules {
public:
    Rules(std::string name, std::unique_ptr<const icu::BasicTimeZone> zone)
        : _name(std::move(name)), _zone(std::move(zone)) {}
    Rules(std::string name, std::int64_t fixedOffset) : _name(std::move(name)) {
        Interval always;
        always.offset = fixedOffset;
        _intervals.emplace(always.start, always);
    }

    [[nodiscard]] const std::string& name() const { return _name; }

    // `seconds` lies before the end of the look-ups.
    [[nodiscard]] const Interval& intervalAt(std::int64_t seconds) const {
        if (_latest != nullptr && _latest->contains(seconds)) {
            return *_latest;
        }
        // Questions about the present and about the dates of a plan take turns.
        std::swap(_latest, _latestBefore);
        if (_latest != nullptr && _latest->contains(seconds)) {
            return *_latest;
        }
        const auto next = _intervals.upper_bound(seconds);
        if (next != _intervals.begin() && std::prev(next)->second.contains(seconds)) {
            _latest = &std::prev(next)->second;
        } else {
            const Interval interval = queryInterval(*_zone, std::max(seconds, FirstLookup));
            _latest = &_intervals.emplace_hint(next, interval.start, interval)->second;
        }
        return *_latest;
    }

private:
    std::string _name;
    std::unique_ptr<const icu::BasicTimeZone> _zone;
    mutable std::map<std::int64_t, Interval> _intervals;
    mutable const Interval* _latest = nullptr;
    mutable const Interval* _latestBefore = nullptr;
};

MSPCTimeZone::MSPCTimeZone(std::shared_ptr<const Rules> rules) : _rules(std::move(rules)) {
}

std::optional<MSPCTimeZone> MSPCTimeZone::named(std::string_view name) {
    auto zone = databaseZone(name);
    if (!zone) {
        return std::nullopt;
    }
    return MSPCTimeZone(std::make_shared<const Rules>(std::string(name), std::move(zone)));
}

MSPCTimeZone MSPCTimeZone::fixed(std::int64_t secondsFromGMT) {
    constexpr std::int64_t limit = std::numeric_limits<std::int32_t>::max() * std::int64_t{3661};
    const auto offset = std::clamp(secondsFromGMT, -limit, limit);
    const auto minutes = std::abs(offset) / 60;
    auto name = offset == 0 ? std::string("GMT")
                            : fmt::format("GMT{}{:02}:{:02}", offset < 0 ? '-' : '+', minutes / 60, minutes % 60);
    return MSPCTimeZone(std::make_shared<const Rules>(std::move(name), offset));
}

MSPCTimeZone MSPCTimeZone::fromEnvironment(const char* tz, MSPCLog& log) {
    const std::string_view value = tz == nullptr ? std::string_view() : std::string_view(tz);
    const auto name = tz == nullptr ? hostZoneName() : std::string(value.substr(value.starts_with(':') ? 1 : 0));
    if (auto zone = named(name)) {
        return *std::move(zone);
    }
    if (tz != nullptr) {
        log.log("WARNING: Unknown time zone in TZ: '{}'. UTC is used instead.", value);
    }
    return MSPCTimeZone(std::make_shared<const Rules>("UTC", 0));
}

const std::string& MSPCTimeZone::name() const {
    return _rules->name();
}

std::int64_t MSPCTimeZone::secondsFromGMT(MSPCInstant instant) const {
    const auto seconds = MSPCWholeSeconds(instant);
    return _rules->intervalAt(seconds - cyclesShift(seconds)).offset;
}

std::int64_t MSPCTimeZone::daylightSavingOffset(MSPCInstant instant) const {
    const auto seconds = MSPCWholeSeconds(instant);
    return _rules->intervalAt(seconds - cyclesShift(seconds)).daylightSaving;
}

MSPCTimeSpan MSPCTimeZone::steadySpanAt(MSPCInstant instant) const {
    constexpr auto unbounded = std::numeric_limits<double>::infinity();
    const auto seconds = MSPCWholeSeconds(instant);
    const auto shift = cyclesShift(seconds);
    const auto& interval = _rules->intervalAt(seconds - shift);
    const auto shifted = [shift](std::int64_t bound) {
        return static_cast<double>(bound) + static_cast<double>(shift);
    };
    return {{interval.start == std::numeric_limits<std::int64_t>::min() ? -unbounded : shifted(interval.start)},
            {interval.end == std::numeric_limits<std::int64_t>::max() ? unbounded : shifted(interval.end)}};
}

MSPCInstant MSPCTimeZone::startOfCycles() {
    return {static_cast<double>(EndOfLookups - ::GregorianCycle)};
}

MSPCInstant MSPCTimeZone::instantFromWallClock(std::int64_t wallClockSeconds) const {
    const auto reachable = std::clamp(wallClockSeconds, -MSPCFarthestSecond, MSPCFarthestSecond);
    const auto shift = cyclesShift(reachable);
    const auto wallClock = reachable - shift;
    // Offsets are less than a day, so this stretch, or one before it, is the last that can show the time. The later
    // of two stretches that show it is met first; a time that none shows lies behind the end of the one returned.
    const Interval* interval = &_rules->intervalAt(wallClock + SecondsPerDay);
    while (wallClock - interval->offset < interval->start) {
        interval = &_rules->intervalAt(interval->start - 1);
    }
    return {static_cast<double>(wallClock - interval->offset + shift)};
}
