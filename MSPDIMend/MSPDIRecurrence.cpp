#include "MSPDIRecurrence.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "MSPCTextScanner.h"
#include "MSPDIItemValues.h"

namespace {

using std::chrono::day;
using std::chrono::days;
using std::chrono::month;
using std::chrono::months;
using std::chrono::sys_days;
using std::chrono::weekday;
using std::chrono::year;
using std::chrono::year_month_day;

enum Type { YearlyByDay = 2, YearlyByPosition, MonthlyByDay, MonthlyByPosition, Weekly, EveryDays, EveryWeekdays };

bool isWorkday(sys_days date) {
    const auto number = weekday(date).c_encoding();
    return number != 0 && number != 6;
}

// Whether a date counts for a position in a month: any day, Monday to Friday, the weekend, or a day of the week.
bool isOfItem(sys_days date, std::int64_t item) {
    constexpr std::int64_t sunday = 3;
    switch (item) {
        case 0:
            return true;
        case 1:
            return isWorkday(date);
        case 2:
            return !isWorkday(date);
        default:
            return weekday(date).c_encoding() == item - sunday;
    }
}

// Whether it is the first (0), ..., fourth (3) or last (4) such day of its month.
bool isAtPosition(sys_days date, std::int64_t item, std::int64_t position) {
    constexpr std::int64_t last = 4;
    if (!isOfItem(date, item)) {
        return false;
    }
    const auto ymd = year_month_day(date);
    const bool isFromEnd = position == last;
    const sys_days end =
        isFromEnd ? sys_days(ymd.year() / ymd.month() / std::chrono::last) : sys_days(ymd.year() / ymd.month() / 1);
    std::int64_t others = 0;
    for (auto other = date; other != end;) {
        other += days(isFromEnd ? 1 : -1);
        others += isOfItem(other, item) ? 1 : 0;
    }
    return others == (isFromEnd ? 0 : position);
}

class Pattern {
public:
    Pattern(const MSPCXMLNode& exception, sys_days first, unsigned weekStart)
        : _type(MSPDIIntegerIn(exception, "Type").value_or(0)),
          _period(std::max<std::int64_t>(MSPDIIntegerIn(exception, "Period").value_or(1), 1)),
          _daysOfWeek(MSPDIIntegerIn(exception, "DaysOfWeek").value_or(0)),
          _month(MSPDIIntegerIn(exception, "Month").value_or(0)),
          _monthDay(MSPDIIntegerIn(exception, "MonthDay").value_or(0)),
          _item(MSPDIIntegerIn(exception, "MonthItem").value_or(0)),
          _position(MSPDIIntegerIn(exception, "MonthPosition").value_or(0)),
          _first(first),
          _firstWeek(first - (weekday(first) - weekday(weekStart))) {}

    [[nodiscard]] bool isKnown() const { return _type >= YearlyByDay && _type <= EveryWeekdays; }

    // To be asked of all dates in order.
    bool holds(sys_days date) {
        const auto ymd = year_month_day(date);
        const bool isOnDay = static_cast<unsigned>(ymd.day()) == _monthDay;
        const bool isInMonth = static_cast<unsigned>(ymd.month()) == _month + 1;
        switch (_type) {
            case YearlyByDay:
                return isInMonth && isOnDay;
            case YearlyByPosition:
                return isInMonth && isAtPosition(date, _item, _position);
            case MonthlyByDay:
                return isDue(monthsTo(ymd)) && isOnDay;
            case MonthlyByPosition:
                return isDue(monthsTo(ymd)) && isAtPosition(date, _item, _position);
            case Weekly:
                return isDue((date - _firstWeek).count() / 7) && (_daysOfWeek >> weekday(date).c_encoding()) % 2 == 1;
            case EveryDays:
                return isDue((date - _first).count());
            default:
                return isWorkday(date) && isDue(_workdays++);
        }
    }

private:
    [[nodiscard]] bool isDue(std::int64_t count) const { return count % _period == 0; }
    [[nodiscard]] std::int64_t monthsTo(const year_month_day& ymd) const {
        const year_month_day first(_first);
        return (ymd.year() / ymd.month() - first.year() / first.month()).count();
    }

    std::int64_t _type;
    std::int64_t _period;
    std::int64_t _daysOfWeek;
    std::int64_t _month;
    std::int64_t _monthDay;
    std::int64_t _item;
    std::int64_t _position;
    sys_days _first;
    sys_days _firstWeek;
    std::int64_t _workdays = 0;
};

}  // namespace

std::optional<sys_days> MSPDIDayOf(std::string_view date) {
    const auto number = [date](std::size_t at, std::size_t size) -> std::optional<int> {
        const auto digits = date.substr(std::min(at, date.size()), size);
        const bool isNumber = digits.size() == size && digits.find_first_not_of("0123456789") == digits.npos;
        return isNumber ? std::optional(static_cast<int>(scanInteger64(digits).value_or(0))) : std::nullopt;
    };
    const auto ofYear = number(0, 4);
    const auto ofMonth = number(5, 2);
    const auto ofDay = number(8, 2);
    if (!ofYear || !ofMonth || !ofDay || date[4] != '-' || date[7] != '-') {
        return std::nullopt;
    }
    const auto ymd = year(*ofYear) / month(static_cast<unsigned>(*ofMonth)) / day(static_cast<unsigned>(*ofDay));
    return ymd.ok() ? std::optional(sys_days(ymd)) : std::nullopt;
}

std::string MSPDITextOfDay(sys_days date) {
    const year_month_day ymd(date);
    return fmt::format("{:04}-{:02}-{:02}", static_cast<int>(ymd.year()), static_cast<unsigned>(ymd.month()),
                       static_cast<unsigned>(ymd.day()));
}

std::optional<MSPDIDays> MSPDIPeriodOf(const MSPCXMLNode& owner) {
    const auto period = owner.lastChildElement("TimePeriod").element;
    const auto first = MSPDIDayOf(MSPDITextIn(period, "FromDate").value_or(""));
    const auto last = MSPDIDayOf(MSPDITextIn(period, "ToDate").value_or(""));
    return first && last ? std::optional(MSPDIDays{*first, *last}) : std::nullopt;
}

std::optional<std::vector<sys_days>> MSPDIDatesOfException(const MSPCXMLNode& exception, const MSPDIDays& within,
                                                           unsigned weekStart) {
    constexpr days aHundredYears(36'525);
    const auto period = MSPDIPeriodOf(exception);
    if (!period || period->last - period->first > aHundredYears) {
        return std::nullopt;
    }
    Pattern pattern(exception, period->first, weekStart);
    if (!pattern.isKnown()) {
        return std::nullopt;
    }
    const bool isCounted = MSPDIIsTrueIn(exception, "EnteredByOccurrences");
    auto left =
        isCounted ? MSPDIIntegerIn(exception, "Occurrences").value_or(0) : std::numeric_limits<std::int64_t>::max();
    std::vector<sys_days> dates;
    for (auto date = period->first; date <= std::min(period->last, within.last) && left > 0; date += days(1)) {
        if (pattern.holds(date)) {
            --left;
            if (date >= within.first) {
                dates.push_back(date);
            }
        }
    }
    return dates;
}
