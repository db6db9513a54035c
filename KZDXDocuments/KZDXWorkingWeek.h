#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "MSPCInstant.h"
#include "MSPCXMLNode.h"

// A working time within a day, in seconds since midnight.
struct KZDXTimes {
    std::int64_t start = 0;
    std::int64_t end = 0;

    friend bool operator==(const KZDXTimes&, const KZDXTimes&) = default;
};

// The place of a day in a week, 0 for "sunday"; none for anything else.
[[nodiscard]] std::optional<std::size_t> KZDXWeekdayNamed(std::string_view name);
// The name of a day by its place.
[[nodiscard]] std::string_view KZDXNameOfWeekday(std::size_t day);

// The seconds of a day in an attribute of a `time-span`; none for anything else, or beyond a day.
[[nodiscard]] std::optional<std::int64_t> KZDXTimeOfDay(const MSPCXMLNode& span, std::string_view name);

// The working times of a resource's own schedule, day by day; none on the days that are not there.
class KZDXWorkingWeek {
public:
    explicit KZDXWorkingWeek(const MSPCXMLNode& resource);

    // In the order of the document; those that are no times are left out.
    [[nodiscard]] const std::vector<KZDXTimes>& timesOn(std::size_t day) const { return _days.at(day); }
    // Whether any working time lies between two times on the clock, whatever holidays say. True for a week and more.
    [[nodiscard]] bool holdsWorkBetween(MSPCInstant from, MSPCInstant to) const;

private:
    std::array<std::vector<KZDXTimes>, 7> _days;
    std::array<std::vector<KZDXTimes>, 7> _stretches;  // the same times in their order, without those that overlap
};
