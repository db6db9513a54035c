#include "MSPCZoneStretches.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

#include "MSPCLocalTimes.h"
#include "MSPCZoneChanges.h"

namespace {

constexpr std::int64_t Day = 86'400;
constexpr std::int64_t Step = 3 * Day;
constexpr std::int64_t Margin = 2 * 366 * Day;
constexpr std::int64_t LongestSummer = 9 * 31 * Day;
constexpr std::int64_t LargestSaving = 2 * 3600;
constexpr std::int64_t UsualSaving = 3600;

// A stretch as the zone database has it.
struct Stretch {
    std::int64_t start;
    std::int64_t end;
    MSPCLocalOffset local;
};
using Stretches = std::vector<Stretch>;

// The seconds at which to ask for an offset, after `from` and up to `before`: where the clocks may change, or, in a
// zone of which nobody tells that, every three days.
std::vector<std::int64_t> secondsToAsk(const std::string& setting, std::int64_t from, std::int64_t before) {
    auto seconds = MSPCZoneChangesBetween(setting, from + 1, before);
    if (!seconds) {
        seconds.emplace();
        for (auto second = from + Step; second < before; second += Step) {
            seconds->push_back(second);
        }
    }
    seconds->push_back(before);
    return *std::move(seconds);
}

// The first second in the step with another offset than at its begin, which is not that at its end: the end, where that
// is a change.
std::int64_t changeWithin(const MSPCLocalTimes& times, std::int64_t begin, std::int64_t end) {
    const auto local = times.offsetAt(begin);
    if (times.offsetAt(end - 1) == local) {
        return end;
    }
    while (end - begin > 1) {
        const auto middle = begin + (end - begin) / 2;
        (times.offsetAt(middle) == local ? begin : end) = middle;
    }
    return end;
}

Stretches stretchesBetween(const MSPCLocalTimes& times, const std::string& setting, std::int64_t from,
                           std::int64_t before) {
    Stretches stretches{{from, before, times.offsetAt(from)}};
    auto second = from;
    for (const auto next : secondsToAsk(setting, from, before)) {
        while (times.offsetAt(next) != stretches.back().local) {
            second = changeWithin(times, second, next);
            if (second == before) {
                break;  // a change that is no longer asked for
            }
            stretches.back().end = second;
            stretches.push_back({second, before, times.offsetAt(second)});
        }
        second = next;
    }
    return stretches;
}

// How far a stretch of daylight-saving time is ahead of the standard time nearest to it. Standard time can change
// together with it, as in Samoa at the end of 2011: what makes a usual difference counts then.
std::int64_t aheadOfStandardTime(const Stretches& stretches, std::size_t index) {
    const auto isStandard = [](const Stretch& stretch) { return !stretch.local.isDaylightSaving; };
    const auto stretch = stretches.begin() + static_cast<std::ptrdiff_t>(index);
    const auto standardBefore = std::find_if(std::make_reverse_iterator(stretch), stretches.rend(), isStandard);
    const auto standardAfter = std::find_if(stretch, stretches.end(), isStandard);

    const auto offset = stretch->local.seconds;
    const auto fromBefore = standardBefore == stretches.rend() ? 0 : offset - standardBefore->local.seconds;
    const auto fromAfter = standardAfter == stretches.end() ? 0 : offset - standardAfter->local.seconds;
    for (const auto difference : {fromBefore, fromAfter}) {
        if (difference > 0 && difference <= LargestSaving) {
            return difference;
        }
    }
    for (const auto difference : {fromBefore, fromAfter}) {
        if (difference < 0 && difference >= -LargestSaving) {
            return difference;
        }
    }
    return UsualSaving;
}

bool isBehind(const Stretch& stretch, const Stretch& standard) {
    return stretch.local.isDaylightSaving && stretch.local.seconds < standard.local.seconds;
}

// Whether standard time stands between two winters that are behind it, as in Ireland.
bool isSummerBetweenWinters(const Stretches& stretches, std::size_t index) {
    if (index == 0 || index + 1 >= stretches.size() || stretches[index].local.isDaylightSaving) {
        return false;
    }
    const auto& summer = stretches[index];
    return summer.end - summer.start <= LongestSummer && isBehind(stretches[index - 1], summer) &&
           isBehind(stretches[index + 1], summer);
}

bool isBesideSuchASummer(const Stretches& stretches, std::size_t index) {
    return (index > 0 && isSummerBetweenWinters(stretches, index - 1)) || isSummerBetweenWinters(stretches, index + 1);
}

// `standardOffset` is that of a zone which has one for all times.
std::int64_t daylightSavingOf(const Stretches& stretches, std::size_t index,
                              const std::optional<std::int64_t>& standardOffset) {
    if (isSummerBetweenWinters(stretches, index)) {
        return stretches[index].local.seconds - stretches[index - 1].local.seconds;
    }
    if (!stretches[index].local.isDaylightSaving || isBesideSuchASummer(stretches, index)) {
        return 0;
    }
    return standardOffset ? stretches[index].local.seconds - *standardOffset : aheadOfStandardTime(stretches, index);
}

}  // namespace

std::vector<MSPCZoneStretch> MSPCZoneStretchesBetween(const std::string& setting, std::int64_t from,
                                                      std::int64_t before) {
    const MSPCLocalTimes times(setting);
    const auto all = stretchesBetween(times, setting, from - Margin, before + Margin);
    std::vector<MSPCZoneStretch> covering;
    for (std::size_t index = 0; index < all.size(); ++index) {
        const auto& stretch = all[index];
        if (stretch.end > from && stretch.start < before) {
            const auto daylightSaving = daylightSavingOf(all, index, times.standardOffset());
            covering.push_back({stretch.start, stretch.end, stretch.local.seconds, daylightSaving});
        }
    }
    return covering;
}
