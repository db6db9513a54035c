#include "KZDXWords.h"

#include <fmt/format.h>

#include <algorithm>
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

// "Mon 4 May", "Mon 4 May 2026"
std::string dayOf(const KZDXDateTime& date, bool withYear) {
    constexpr std::array<std::string_view, 7> weekdays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr std::array<std::string_view, 12> months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto& fields = date.fields;
    const auto weekday =
        static_cast<std::size_t>(MSPCNumberOf(MSPCGregorianCalendar::utc().weekdayOf(date.wallClock)) - 1);
    const auto text = fmt::format("{} {} {}", weekdays.at(weekday), fields.day,
                                  months.at(static_cast<std::size_t>(fields.month - 1)));
    return withYear ? fmt::format("{} {}", text, fields.year) : text;
}

constexpr std::size_t mostBytes = 80;

// The position itself, or that of the character that it is within.
std::size_t beginOfCharacter(std::string_view text, std::size_t position) {
    while (position > 0 && (static_cast<unsigned char>(text[position]) & 0xC0U) == 0x80U) {
        --position;
    }
    return position;
}

std::string withBackslashesDoubled(std::string text) {
    for (auto found = text.find('\\'); found != std::string::npos; found = text.find('\\', found + 2)) {
        text.insert(found, 1, '\\');
    }
    return text;
}

}  // namespace

std::string KZDXShownDate(const KZDXDateTime& date, bool withYear) {
    const auto& fields = date.fields;
    const auto text = fmt::format("{} {:02}:{:02}", dayOf(date, withYear), fields.hour, fields.minute);
    return fields.second == 0 ? text : text + fmt::format(":{:02}", fields.second);
}

std::string KZDXShownDay(const KZDXDateTime& date) {
    return dayOf(date, true);
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
    if (text.size() <= mostBytes) {
        return std::string(text);
    }
    return fmt::format("{}...", text.substr(0, beginOfCharacter(text, mostBytes)));
}

std::string KZDXQuoted(std::string_view text) {
    return fmt::format("\"{}\"", withBackslashesDoubled(KZDXShortened(text)));
}

std::string KZDXQuotedChange(std::string_view before, std::string_view after) {
    if (before.size() <= mostBytes && after.size() <= mostBytes) {
        return fmt::format("{} -> {}", KZDXQuoted(before), KZDXQuoted(after));
    }
    constexpr std::size_t context = 20;
    const auto differs = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const auto same = static_cast<std::size_t>(differs.first - before.begin());
    // Too little to be worth leaving out.
    const auto start = same <= 2 * context ? 0 : beginOfCharacter(before, same - context);
    const auto shown = [start](std::string_view text) {
        const auto piece = text.substr(start);
        return fmt::format("\"{}{}\"", start > 0 ? "..." : "", withBackslashesDoubled(KZDXShortened(piece)));
    };
    return fmt::format("{} -> {}", shown(before), shown(after));
}

std::string KZDXNamed(std::string_view name, std::string_view id) {
    return fmt::format("{} ({})", name.empty() ? std::string("(no name)") : KZDXShortened(name), KZDXShortened(id));
}
