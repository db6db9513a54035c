#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "MSPCDateComponents.h"
#include "MSPCGregorianCalendar.h"
#include "MSPCServices.h"
#include "MSPEDirection.h"
#include "MSPEScheduleCalendar.h"

// The conversions between the three forms of a value. Made once per import; keeps no state but the zone whose
// wall-clock times MSPDI dates are. A missing text is passed as an empty one and gives none, unless stated otherwise.
//
//            date-time                          duration                 lag
//   Mspdi    "2012-01-05T08:00:00", wall clock  "PT8H0M0S"               tenths of a minute, or percent
//   Kdzx     the same with "Z" or "+01:00"      seconds: "28800"         seconds, or a fraction of 1
//   Mpp      an instant                         seconds, with fractions  seconds, with fractions
//
// Conversions raise `MSPCInternalInconsistency`. "Failed to make MSPCDateComponents from MSPDI date-time: '<text>'."
// (or "KDZX") means a text that cannot be read at all; conversions of date-times raise with an empty reason for a date
// that is followed by a time but not by "T" and the time. The recognisers, `componentsFromISODateTime` and the
// questions to the calendar answer such texts quietly, as they answer an empty one.
class MSPIUtilities {
public:
    explicit MSPIUtilities(const MSPCServices& services);

    // The calendar of the machine's zone.
    [[nodiscard]] const MSPCGregorianCalendar& gregorian() const { return _gregorian; }
    // Monday to Friday 8 to 12 and 13 to 17 o'clock in that zone.
    [[nodiscard]] const MSPEScheduleCalendar& standardCalendar() const { return _standardCalendar; }

    // Whether a text is a date, a time or both: of any kind, with a zone, without one. They never raise; an empty text,
    // and one without any of the fields, is none of them.
    [[nodiscard]] bool isIsoiDateTime(std::string_view text) const;
    [[nodiscard]] bool isKdzxDateTime(std::string_view text) const;
    [[nodiscard]] bool isMspdiDateTime(std::string_view text) const;
    // Whether a text holds an ISO 8601 duration with "P" and "T". An empty text does not.
    [[nodiscard]] bool isMspdiDuration(std::string_view text) const;

    // The date with the zone's offset now plus its daylight-saving part at the date: in Europe/Berlin
    // "2012-07-05T08:00:00" gives "2012-07-05T08:00:00+02:00" in an import run in winter, "+03:00" in one run in
    // summer. A zone that the text names is kept. A missing time is 00:00:00; a text without year, month or day raises
    // as one that cannot be read.
    [[nodiscard]] std::optional<std::string> mspdiToKdzxDateTime(std::string_view mspdi) const;
    // Seconds since midnight of the time in the text: "2012-03-05T08:30:00" gives "30600". Raises "Failed to get time
    // only value from MSPDI date-time: '<text>'.".
    [[nodiscard]] std::optional<std::string> mspdiToKdzxTimeOnly(std::string_view mspdi) const;
    // The date for the eye, as the zone's clocks show it, with the zone's offset there: in Europe/Berlin
    // "2012-03-05T08:00:00" gives "2012-03-05 08:00:00 +0100", in summer "+0200" whenever the import runs. A time that
    // a change of the clocks skips is shown as the time it becomes. None without year, month or day.
    [[nodiscard]] std::optional<std::string> mspdiDateTimeToString(std::string_view mspdi) const;
    // The instant at which the zone's clocks show the date. None without year, month or day. A text with a zone, or
    // without any field, raises "Not a valid MSPDI date-time: '<text>' (time zone?).".
    [[nodiscard]] std::optional<MSPCInstant> mspdiToMppDateTime(std::string_view mspdi) const;
    // Year to second and weekday of the date as it is written, whether or not the zone's clocks show it; what exceeds
    // its range is carried over ("2012-01-32" is 1 February). None, and failures, as for `mspdiToMppDateTime`.
    [[nodiscard]] std::optional<MSPCDateFields> mspdiToDateFields(std::string_view mspdi) const;
    // Hour, minute and second that a clock shows at the time in the text ("24:00:00" is 0:0:0), 0 where it has none;
    // all undefined for an empty text. The other fields are undefined. Raises as `mspdiToMppDateTime` does.
    [[nodiscard]] MSPCDateFields mspdiToTimeOfDay(std::string_view mspdi) const;
    // The instant of the date in the zone it names, in the machine's zone where it names none. None without year, month
    // or day. Deliberate: the offset's minute counts eastwards even when its hour is negative.
    [[nodiscard]] std::optional<MSPCInstant> kdzxToMppDateTime(std::string_view kdzx) const;
    // The date on the zone's wall clock, printed with the given units (0: date and time), never with a zone. A date
    // without zone counts as UTC. A text without year, month or day raises as one that cannot be read.
    [[nodiscard]] std::optional<std::string> kdzxToMspdiDateTimeCalendarUnits(std::string_view kdzx,
                                                                              MSPCUnitFlags units) const;
    // The same: "2012-03-05T08:00:00", "2012-03-05", and that date with T00:00:00 or T23:59:59.
    [[nodiscard]] std::optional<std::string> kdzxToMspdiDateTime(std::string_view kdzx) const;
    [[nodiscard]] std::optional<std::string> kdzxToMspdiDateOnly(std::string_view kdzx) const;
    [[nodiscard]] std::optional<std::string> kdzxToMspdiDateStartTime(std::string_view kdzx) const;
    [[nodiscard]] std::optional<std::string> kdzxToMspdiDateEndTime(std::string_view kdzx) const;
    // The wall-clock time of an instant, fractions dropped, with the offset as in `mspdiToKdzxDateTime`.
    [[nodiscard]] std::optional<std::string> mppToKdzxDateTime(std::optional<MSPCInstant> mpp) const;
    // The instant's Kdzx text converted back by `kdzxToMspdiDateTime`.
    [[nodiscard]] std::optional<std::string> mppToMspdiDateTime(std::optional<MSPCInstant> mpp) const;
    // What a date-time text holds; fields that it does not hold are undefined. None for a text that cannot be read.
    [[nodiscard]] std::optional<MSPCDateComponents> componentsFromISODateTime(std::string_view text) const;
    // -1, 0 or 1: whether the first date is earlier, the same or later. Empty texts, and texts without year, month or
    // day, come before every other.
    [[nodiscard]] int compareMspdiDateTimeToMspdiDateTime(std::string_view first, std::string_view second) const;

    // The date that lies a working duration in seconds after or before the date in the text, in the standard calendar,
    // as Kdzx text with the offset as in `mspdiToKdzxDateTime`. None without year, month or day; the date itself where
    // the calendar gives none. A calendar is refused with a line on the log. Raises as `MSPEScheduleCalendar` does.
    [[nodiscard]] std::optional<std::string> isoDateTimeAdvanceByDurationForwardCalendar(
        std::string_view text, MSPCTimeInterval seconds, MSPEDirection direction,
        const MSPEScheduleCalendar* calendar) const;
    // The same with whole seconds in a text, 0 where it is no number.
    [[nodiscard]] std::optional<std::string> isoDateTimeAdvanceByKdzxDurationForwardCalendar(
        std::string_view text, std::string_view kdzxDuration, MSPEDirection direction,
        const MSPEScheduleCalendar* calendar) const;
    // Whether the date's weekday is worked in the standard calendar; false without year, month or day. A calendar is
    // refused with a line on the log.
    [[nodiscard]] bool isWorkingDayCalendar(std::string_view text, const MSPEScheduleCalendar* calendar) const;
    // Deliberate: always 0; ask the calendar for the working time between two dates.
    [[nodiscard]] MSPCTimeInterval durationFromIsoDateTimeStartToIsoDateTimeFinishCalendar(
        std::string_view start, std::string_view finish, const MSPEScheduleCalendar* calendar) const;

    // Seconds of hours, minutes and seconds in an ISO 8601 duration ("PT1H30M" is 5400); years, months and days do not
    // count. -1 for an empty text. Raises "Failed to convert MSPDI duration: '<text>'.".
    [[nodiscard]] static std::int64_t mspdiDurationInSecs(std::string_view mspdi);
    // The same as text: "PT8H0M0S" gives "28800".
    [[nodiscard]] static std::optional<std::string> mspdiToKdzxDuration(std::string_view mspdi);
    // Seconds of the first "PTnHnMnS" in the text, 0 where there is none ("PT1H30M" is 0). A sum that 32 bits do not
    // hold starts again at the other end. Never raises.
    [[nodiscard]] static MSPCTimeInterval mspdiToMppDuration(std::string_view mspdi);
    // With two decimals: "28800.00".
    [[nodiscard]] static std::string mppToKdzxDuration(MSPCTimeInterval seconds);
    // "PT8H0M0S", truncated to whole seconds of 32 bits; every part of a negative duration has its sign.
    [[nodiscard]] static std::string mppToMspdiDuration(MSPCTimeInterval seconds);
    // The same from whole seconds of 64 bits in a text, 0 where it is no number.
    [[nodiscard]] static std::optional<std::string> kdzxToMspdiDuration(std::string_view kdzx);
    // "01:02:05", truncated to whole seconds; as many hours as there are.
    [[nodiscard]] static std::string hourMinSecFromDuration(MSPCTimeInterval seconds);

    // Seconds of a lag in tenths of a minute; 0 for an empty text and where it is no number.
    [[nodiscard]] static MSPCTimeInterval mspdiToMppLinkLag(std::string_view mspdi);
    // Whole percent of a fraction, or whole tenths of a minute of seconds, both truncated towards zero. A fraction
    // outside 0 to 1 raises "Expected lead time in range [0...1]. Got <value with six decimals>".
    [[nodiscard]] static std::string mppToMspdiLeadTimeIsPercentage(double value, bool isPercentage);
    // The same from a text, 0 where it is no number.
    [[nodiscard]] static std::optional<std::string> kdzxToMspdiLeadTimeIsPercentage(std::string_view kdzx,
                                                                                    bool isPercentage);

private:
    MSPCGregorianCalendar _gregorian;
    const MSPCClock& _seasonClock;
    MSPCLog& _log;
    MSPEScheduleCalendar _standardCalendar;
};
