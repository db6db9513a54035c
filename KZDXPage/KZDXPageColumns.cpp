#include "KZDXPageColumns.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace {

using JSON = KZDXPageJSON;

constexpr std::size_t mostDistinct = 24;

// The different values of a column in the order of their first rows; none where there are many.
std::optional<std::vector<JSON>> distinctOf(const std::vector<JSON>& values) {
    std::vector<JSON> distinct;
    for (const auto& value : values) {
        if (value.is_null() || std::find(distinct.begin(), distinct.end(), value) != distinct.end()) {
            continue;
        }
        if (distinct.size() == mostDistinct) {
            return std::nullopt;
        }
        distinct.push_back(value);
    }
    return distinct;
}

JSON coded(const std::vector<JSON>& values, const std::vector<JSON>& distinct) {
    auto at = JSON::array();
    for (const auto& value : values) {
        const auto found = std::find(distinct.begin(), distinct.end(), value);
        at.push_back(found == distinct.end() ? -1 : static_cast<int>(found - distinct.begin()));
    }
    return {{"values", distinct}, {"at", std::move(at)}};
}

JSON sparse(const std::vector<JSON>& values) {
    auto rows = JSON::array();
    auto present = JSON::array();
    for (std::size_t row = 0; row < values.size(); ++row) {
        if (!values[row].is_null()) {
            rows.push_back(row);
            present.push_back(values[row]);
        }
    }
    return {{"rows", std::move(rows)}, {"values", std::move(present)}};
}

std::int64_t wallSeconds(const KZDXDateTime& date) {
    return MSPCWholeSeconds(date.wallClock);
}

// The largest of an hour, a minute and a second that all times are whole numbers of.
std::int64_t unitOf(const std::vector<std::optional<KZDXDateTime>>& dates, std::int64_t base) {
    for (const std::int64_t unit : {3'600, 60}) {
        if (std::all_of(dates.begin(), dates.end(),
                        [unit, base](const auto& date) { return !date || (wallSeconds(*date) - base) % unit == 0; })) {
            return unit;
        }
    }
    return 1;
}

}  // namespace

JSON KZDXPageColumn(const std::vector<JSON>& values) {
    const auto present = static_cast<std::size_t>(
        std::count_if(values.begin(), values.end(), [](const JSON& value) { return !value.is_null(); }));
    if (present == 0) {
        return nullptr;
    }
    const auto distinct = distinctOf(values);
    if (distinct && distinct->size() == 1 && present == values.size()) {
        return {{"all", distinct->front()}};
    }
    if (present < values.size() / 4) {
        return sparse(values);
    }
    if (distinct && distinct->size() < present / 2) {
        return coded(values, *distinct);
    }
    return values;
}

JSON KZDXPageDateColumn(const std::vector<std::optional<KZDXDateTime>>& dates) {
    const auto first = std::find_if(dates.begin(), dates.end(), [](const auto& date) { return date.has_value(); });
    if (first == dates.end()) {
        return nullptr;
    }
    auto base = wallSeconds(**first);
    for (const auto& date : dates) {
        base = date ? std::min(base, wallSeconds(*date)) : base;
    }
    const auto unit = unitOf(dates, base);
    std::vector<JSON> at;
    std::vector<JSON> offsets;
    for (const auto& date : dates) {
        at.push_back(date ? JSON((wallSeconds(*date) - base) / unit) : JSON(nullptr));
        offsets.push_back(date ? JSON(date->secondsFromGreenwich) : JSON(nullptr));
    }
    const bool isDense = std::none_of(at.begin(), at.end(), [](const JSON& value) { return value.is_null(); });
    return {{"base", base},
            {"unit", unit},
            {"at", isDense ? JSON(at) : KZDXPageColumn(at)},
            {"offset", KZDXPageColumn(offsets)}};
}

JSON KZDXPageDate(const std::optional<KZDXDateTime>& date) {
    return date ? JSON::array({wallSeconds(*date), date->secondsFromGreenwich}) : JSON(nullptr);
}
