#include "KZDXWords.h"

#include <fmt/format.h>

#include <array>
#include <cmath>

#include "KZDXXMLFile.h"

namespace {

struct Unit {
    double seconds;
    std::string_view name;
};

constexpr std::array<Unit, 4> units = {{{86'400, "day"}, {3'600, "hour"}, {60, "minute"}, {1, "second"}}};

// From the largest unit on, those that are not 0.
std::string inUnits(double seconds, std::size_t largest, std::string_view none) {
    std::string text;
    auto rest = std::floor(std::fabs(seconds));
    for (auto unit = largest; unit < units.size(); ++unit) {
        const auto count = std::floor(rest / units[unit].seconds);
        rest -= count * units[unit].seconds;
        if (count > 0) {
            text +=
                fmt::format("{}{:.0f} {}{}", text.empty() ? "" : " ", count, units[unit].name, count == 1 ? "" : "s");
        }
    }
    return text.empty() ? std::string(none) : text;
}

}  // namespace

std::string KZDXShownDate(const KZDXDateTime& date, bool withYear) {
    constexpr std::array<std::string_view, 7> weekdays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr std::array<std::string_view, 12> months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto& fields = date.fields;
    const auto weekday =
        static_cast<std::size_t>(MSPCNumberOf(MSPCGregorianCalendar::utc().weekdayOf(date.wallClock)) - 1);
    auto text = fmt::format("{} {} {}", weekdays.at(weekday), fields.day,
                            months.at(static_cast<std::size_t>(fields.month - 1)));
    if (withYear) {
        text += fmt::format(" {}", fields.year);
    }
    text += fmt::format(" {:02}:{:02}", fields.hour, fields.minute);
    return fields.second == 0 ? text : text + fmt::format(":{:02}", fields.second);
}

std::string KZDXShownTime(double seconds) {
    return inUnits(seconds, 0, "0 minutes");
}

std::string KZDXShownWork(double seconds) {
    return inUnits(seconds, 1, "0 hours");
}

std::string KZDXShownPercentage(std::string_view fraction) {
    constexpr double percent = 100;
    const auto number = KZDXNumber(fraction);
    return number ? fmt::format("{:g}%", std::round(*number * percent * percent) / percent) : std::string(fraction);
}

std::string KZDXShortened(std::string_view text) {
    constexpr std::size_t most = 80;
    if (text.size() <= most) {
        return std::string(text);
    }
    auto end = most;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
        --end;
    }
    return fmt::format("{}...", text.substr(0, end));
}

std::string KZDXQuoted(std::string_view text) {
    return fmt::format("\"{}\"", KZDXShortened(text));
}

std::string KZDXNamed(std::string_view name, std::string_view id) {
    return fmt::format("{} ({})", name.empty() ? std::string("(no name)") : KZDXShortened(name), KZDXShortened(id));
}
