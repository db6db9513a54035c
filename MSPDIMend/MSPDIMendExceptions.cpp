#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <optional>
#include <set>

#include "MSPCExtensions.h"
#include "MSPDICalendarEdits.h"
#include "MSPDIItemValues.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"
#include "MSPDIRecurrence.h"
#include "MSPISubject.h"

namespace {

using std::chrono::days;
using std::chrono::sys_days;

constexpr std::string_view exceptions2003 = "exceptions-2003";
constexpr std::string_view recurringExceptions = "recurring-exceptions";
constexpr std::string_view workWeeks = "work-weeks";

// Of all calendars together: a plan of decades that is written out day by day grows beyond all measure.
constexpr std::size_t mostDates = 20'000;

// From the earliest start of the project and its tasks to the latest finish; none for a plan without dates.
std::optional<MSPDIDays> spanOf(const MSPDIPatient& patient) {
    std::optional<MSPDIDays> span;
    const auto reach = [&](const MSPCXMLNode& owner, std::string_view name) {
        if (const auto day = MSPDIDayOf(MSPDITextIn(owner, name).value_or(""))) {
            span = span ? MSPDIDays{std::min(span->first, *day), std::max(span->last, *day)} : MSPDIDays{*day, *day};
        }
    };
    reach(patient.project(), "StartDate");
    reach(patient.project(), "FinishDate");
    for (const auto& task : MSPDITasksOf(patient)) {
        reach(task, "Start");
        reach(task, "Finish");
    }
    return span;
}

bool isTooLong(const std::optional<MSPDIDays>& span) {
    constexpr days aHundredYears(36'525);
    return span && span->last - span->first > aHundredYears;
}

std::string periodOfOneDay(sys_days date) {
    return fmt::format("<TimePeriod><FromDate>{0}T00:00:00</FromDate><ToDate>{0}T23:59:00</ToDate></TimePeriod>",
                       MSPDITextOfDay(date));
}

// The days that exceptions of a calendar already say something about.
class TakenDays {
public:
    explicit TakenDays(const MSPCXMLNode& calendar) {
        for (const auto& exception : nodesForXQuery(calendar, "Exceptions/Exception[Type=1]")) {
            if (const auto period = MSPDIPeriodOf(exception)) {
                _ranges.push_back(*period);
            }
        }
        std::sort(_ranges.begin(), _ranges.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
        for (std::size_t index = 1; index < _ranges.size(); ++index) {
            _ranges[index].last = std::max(_ranges[index].last, _ranges[index - 1].last);
        }
    }

    // Whether a day was free until now.
    bool take(sys_days date) {
        const auto behind = std::upper_bound(_ranges.begin(), _ranges.end(), date,
                                             [](sys_days wanted, const auto& range) { return wanted < range.first; });
        const bool isInRange = behind != _ranges.begin() && date <= (behind - 1)->last;
        return !isInRange && _dates.insert(date).second;
    }

private:
    std::vector<MSPDIDays> _ranges;  // by their first days; each ends no earlier than those before it
    std::set<sys_days> _dates;
};

// Whether what is worked arrives as it is: days off, or plain hours.
bool arrives(const MSPCXMLNode& dayOrException) {
    if (!MSPDITextIn(dayOrException, "DayWorking")) {
        return false;
    }
    const bool hasHours = !nodesForXQuery(dayOrException, "WorkingTimes/WorkingTime").empty();
    return !MSPDIIsTrueIn(dayOrException, "DayWorking") || (hasHours && MSPDIArrivesAsItIs(dayOrException));
}

// "1 08:00:00-12:00:00 13:00:00-17:00:00"
std::string hoursOf(const MSPCXMLNode& day) {
    std::string hours = MSPDIIsTrueIn(day, "DayWorking") ? "1" : "0";
    for (const auto& time : nodesForXQuery(day, "WorkingTimes/WorkingTime")) {
        hours +=
            fmt::format(" {}-{}", MSPDITextIn(time, "FromTime").value_or(""), MSPDITextIn(time, "ToTime").value_or(""));
    }
    return hours;
}

// By the day's number, 1 for Sunday.
std::map<std::int64_t, MSPCXMLNode> daysOfWeekIn(const MSPCXMLNode& owner) {
    std::map<std::int64_t, MSPCXMLNode> byNumber;
    for (const auto& day : nodesForXQuery(owner, "WeekDays/WeekDay")) {
        byNumber[MSPDIIntegerIn(day, "DayType").value_or(0)] = day;
    }
    return byNumber;
}

std::int64_t numberOfDay(sys_days date) {
    return std::chrono::weekday(date).c_encoding() + 1;
}

// Writes what a calendar says of stretches of time out as exceptions of single dates.
class DateWriter {
public:
    DateWriter(MSPDIPatient& patient, std::string_view step) : _patient(patient), _step(step) {}

    // Looked for in all tasks when it is asked for first: few plans have something to write out. None as well for a
    // plan of more than a hundred years.
    [[nodiscard]] const std::optional<MSPDIDays>& span() {
        if (!_isSpanKnown) {
            _span = spanOf(_patient);
            _isSpanTooLong = isTooLong(_span);
            _span = _isSpanTooLong ? std::nullopt : _span;
            _isSpanKnown = true;
        }
        return _span;
    }
    // Whether the elements can be written out; tells of those that cannot only because the plan is too long.
    [[nodiscard]] bool hasSpanFor(const std::vector<MSPCXMLNode>& elements) {
        const bool hasSpan = !elements.empty() && span();
        for (std::size_t count = elements.size(); count > 0 && _isSpanTooLong; --count) {
            _patient.leave(_step, "plans of more than a hundred years are not written out");
        }
        return hasSpan;
    }

    // Each date with what is worked on it. What was written out leaves the calendar, unless that grows too large.
    void write(const MSPCXMLNode& calendar, const MSPCXMLNode& element,
               const std::vector<std::pair<sys_days, std::string>>& dates) {
        if (_count + dates.size() > mostDates) {
            _patient.leave(_step, "at most 20,000 dates are written out");
            return;
        }
        _count += dates.size();
        _patient.note(_step, [&] {
            return fmt::format("{}: {} {}, {} dates", MSPISubjectOf("Calendar", calendar), element.name(),
                               MSPDITextIn(element, "Name").value_or(""), dates.size());
        });
        for (const auto& [date, work] : dates) {
            MSPDIAddException(_patient, calendar, periodOfOneDay(date), work);
        }
        _patient.remove(element);
    }

private:
    MSPDIPatient& _patient;
    std::string_view _step;
    bool _isSpanKnown = false;
    bool _isSpanTooLong = false;
    std::optional<MSPDIDays> _span;
    std::size_t _count = 0;
};

void writeOutRecurring(MSPDIPatient& patient, const MSPCXMLNode& calendar, DateWriter& writer) {
    const auto exceptions = nodesForXQuery(calendar, "Exceptions/Exception[Type!=1]");
    if (!writer.hasSpanFor(exceptions)) {
        return;
    }
    constexpr std::int64_t mondays = 7;
    const auto weekStart = MSPDIIntegerIn(patient.project(), "WeekStartDay").value_or(0);
    TakenDays taken(calendar);
    for (const auto& exception : exceptions) {
        const bool isStart = weekStart >= 0 && weekStart < mondays;
        const auto recurring =
            MSPDIDatesOfException(exception, *writer.span(), isStart ? static_cast<unsigned>(weekStart) : 0U);
        if (!recurring || !arrives(exception)) {
            continue;
        }
        std::vector<std::pair<sys_days, std::string>> dates;
        for (const auto date : *recurring) {
            if (taken.take(date)) {
                dates.emplace_back(date, MSPDIWorkOf(patient, exception));
            }
        }
        writer.write(calendar, exception, dates);
    }
}

// Exceptions count before work weeks, and work weeks before the usual week.
void writeOutWorkWeeks(MSPDIPatient& patient, const MSPCXMLNode& calendar, DateWriter& writer) {
    const auto weeks = nodesForXQuery(calendar, "WorkWeeks/WorkWeek");
    if (!writer.hasSpanFor(weeks)) {
        return;
    }
    const auto usual = daysOfWeekIn(calendar);
    TakenDays taken(calendar);
    for (const auto& week : weeks) {
        const auto period = MSPDIPeriodOf(week);
        const auto own = daysOfWeekIn(week);
        const bool isWritable =
            period && std::all_of(own.begin(), own.end(), [](const auto& day) { return arrives(day.second); });
        if (!isWritable) {
            continue;
        }
        std::vector<std::pair<sys_days, std::string>> dates;
        for (auto date = std::max(period->first, writer.span()->first);
             date <= std::min(period->last, writer.span()->last); date += days(1)) {
            const auto day = own.find(numberOfDay(date));
            const auto before = usual.find(numberOfDay(date));
            const bool isOther =
                day != own.end() && (before == usual.end() || hoursOf(before->second) != hoursOf(day->second));
            if (isOther && taken.take(date)) {
                dates.emplace_back(date, MSPDIWorkOf(patient, day->second));
            }
            if (dates.size() > mostDates) {
                break;
            }
        }
        writer.write(calendar, week, dates);
    }
}

}  // namespace

// Planning programs of later years write an exception in both forms.
void MSPDIMendExceptionsOf2003(MSPDIPatient& patient) {
    if (!patient.isAskedFor(exceptions2003)) {
        return;
    }
    for (const auto& calendar : MSPDIMappedCalendars(patient)) {
        std::set<std::string> known;
        for (const auto& exception : nodesForXQuery(calendar, "Exceptions/Exception[Type=1]")) {
            known.insert(MSPDIFirstDayOf(exception));
        }
        for (const auto& weekDay : nodesForXQuery(calendar, "WeekDays/WeekDay[DayType=0][TimePeriod]")) {
            if (known.contains(MSPDIFirstDayOf(weekDay)) || !arrives(weekDay)) {
                continue;
            }
            patient.note(exceptions2003, [&, &of = calendar, &day = weekDay] {
                return fmt::format("{}: {}", MSPISubjectOf("Calendar", of), MSPDIFirstDayOf(day));
            });
            MSPDIAddException(patient, calendar, patient.markupOf(weekDay.firstChildElement("TimePeriod")),
                              MSPDIWorkOf(patient, weekDay));
            patient.remove(weekDay);
        }
    }
}

void MSPDIMendRecurringExceptions(MSPDIPatient& patient) {
    if (!patient.isAskedFor(recurringExceptions)) {
        return;
    }
    DateWriter writer(patient, recurringExceptions);
    for (const auto& calendar : MSPDIMappedCalendars(patient)) {
        writeOutRecurring(patient, calendar, writer);
    }
}

void MSPDIMendWorkWeeks(MSPDIPatient& patient) {
    if (!patient.isAskedFor(workWeeks)) {
        return;
    }
    DateWriter writer(patient, workWeeks);
    for (const auto& calendar : MSPDIMappedCalendars(patient)) {
        writeOutWorkWeeks(patient, calendar, writer);
    }
}
