#include "KZDXWorkingWeek.h"

#include <algorithm>
#include <cmath>

#include "KZDXXMLFile.h"

namespace {

constexpr std::array<std::string_view, 7> names = {"sunday",   "monday", "tuesday", "wednesday",
                                                   "thursday", "friday", "saturday"};

std::vector<KZDXTimes> stretchesOf(std::vector<KZDXTimes> times) {
    std::sort(times.begin(), times.end(),
              [](const KZDXTimes& left, const KZDXTimes& right) { return left.start < right.start; });
    std::vector<KZDXTimes> stretches;
    for (const auto& span : times) {
        if (span.start >= span.end) {
            continue;
        }
        if (stretches.empty() || stretches.back().end < span.start) {
            stretches.push_back(span);
        } else {
            stretches.back().end = std::max(stretches.back().end, span.end);
        }
    }
    return stretches;
}

}  // namespace

std::optional<std::size_t> KZDXWeekdayNamed(std::string_view name) {
    const auto* const found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? std::nullopt : std::optional<std::size_t>(found - names.begin());
}

std::string_view KZDXNameOfWeekday(std::size_t day) {
    return names.at(day);
}

std::optional<std::int64_t> KZDXTimeOfDay(const MSPCXMLNode& span, std::string_view name) {
    const auto text = KZDXAttribute(span, name);
    const auto seconds = text ? KZDXInteger(*text) : std::nullopt;
    return seconds && *seconds >= 0 && *seconds <= MSPCSecondsPerDay ? seconds : std::nullopt;
}

KZDXWorkingWeek::KZDXWorkingWeek(const MSPCXMLNode& resource) {
    const auto schedule = resource.firstChildElement("schedule");
    for (auto day = schedule.firstChildElement("schedule-day"); day; day = day.nextSiblingElement("schedule-day")) {
        const auto place = KZDXWeekdayNamed(KZDXAttribute(day, "day-of-week").value_or(""));
        for (auto span = day.firstChildElement("time-span"); place && span;
             span = span.nextSiblingElement("time-span")) {
            const auto start = KZDXTimeOfDay(span, "start-time");
            const auto end = KZDXTimeOfDay(span, "end-time");
            if (start && end) {
                _days[*place].push_back({*start, *end});
            }
        }
    }
    std::transform(_days.begin(), _days.end(), _stretches.begin(), stretchesOf);
}

bool KZDXWorkingWeek::holdsWorkBetween(MSPCInstant from, MSPCInstant to) const {
    constexpr auto day = static_cast<double>(MSPCSecondsPerDay);
    constexpr std::size_t thursday = 4;  // the first day of 1970
    constexpr double daysOfWeek = 7;
    if (to - from >= daysOfWeek * day) {
        return true;
    }
    for (auto number = std::floor(from.secondsSince1970 / day); number * day < to.secondsSince1970; ++number) {
        const auto weekday =
            static_cast<std::size_t>(std::fmod(std::fmod(number, daysOfWeek) + daysOfWeek + thursday, daysOfWeek));
        const auto first = from.secondsSince1970 - number * day;
        const auto last = to.secondsSince1970 - number * day;
        const auto& stretches = _stretches[weekday];
        const auto next = std::partition_point(stretches.begin(), stretches.end(), [&](const KZDXTimes& stretch) {
            return static_cast<double>(stretch.end) <= first;
        });
        if (next != stretches.end() &&
            std::max(static_cast<double>(next->start), first) < std::min(static_cast<double>(next->end), last)) {
            return true;
        }
    }
    return false;
}
