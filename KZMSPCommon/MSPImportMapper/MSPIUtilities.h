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

// The conversions between the three forms of a value: Mspdi (input text), Kdzx (target text) and Mpp (in memory). Made
// once per import with the zone whose wall-clock times MSPDI dates are; keeps no other state. A missing text is passed as
// an empty one.
class MSPIUtilities {
public:
    explicit MSPIUtilities(const MSPCServices& services);

    [[nodiscard]] const MSPCGregorianCalendar& gregorian() const { return _gregorian; }
    [[nodiscard]] const MSPEScheduleCalendar& standardCalendar() const { return _standardCalendar; }

    [[nodiscard]] bool isIsoiDateTime(std::string_view text) const;
    [[nodiscard]] bool isKdzxDateTime(std::string_view text) const;
    [[nodiscard]] bool isMspdiDateTime(std::string_view text) const;
    [[nodiscard]] bool isMspdiDuration(std::string_view text) const;

    [[nodiscard]] std::optional<std::string> mspdiToKdzxDateTime(std::string_view mspdi) const;
    [[nodiscard]] std::optional<std::string> mspdiToKdzxTimeOnly(std::string_view mspdi) const;
    [[nodiscard]] std::optional<std::string> mspdiDateTimeToString(std::string_view mspdi) const;
    [[nodiscard]] std::optional<MSPCInstant> mspdiToMppDateTime(std::string_view mspdi) const;
    // The wall-clock hour, minute and second of an MSPDI date-time or time text; raises as mspdiToMppDateTime does.
    [[nodiscard]] MSPCDateFields mspdiToTimeOfDay(std::string_view mspdi) const;
    [[nodiscard]] std::optional<MSPCInstant> kdzxToMppDateTime(std::string_view kdzx) const;
    [[nodiscard]] std::optional<std::string> kdzxToMspdiDateTimeCalendarUnits(std::string_view kdzx,
                                                                              MSPCUnitFlags units) const;
    [[nodiscard]] std::optional<std::string> kdzxToMspdiDateTime(std::string_view kdzx) const;
    [[nodiscard]] std::optional<std::string> kdzxToMspdiDateOnly(std::string_view kdzx) const;
    [[nodiscard]] std::optional<std::string> kdzxToMspdiDateStartTime(std::string_view kdzx) const;
    [[nodiscard]] std::optional<std::string> kdzxToMspdiDateEndTime(std::string_view kdzx) const;
    [[nodiscard]] std::optional<std::string> mppToKdzxDateTime(std::optional<MSPCInstant> mpp) const;
    [[nodiscard]] std::optional<std::string> mppToMspdiDateTime(std::optional<MSPCInstant> mpp) const;
    [[nodiscard]] std::optional<MSPCDateComponents> componentsFromISODateTime(std::string_view text) const;
    // -1, 0 or 1.
    [[nodiscard]] int compareMspdiDateTimeToMspdiDateTime(std::string_view first, std::string_view second) const;

    [[nodiscard]] std::optional<std::string> isoDateTimeAdvanceByDurationForwardCalendar(
        std::string_view text, MSPCTimeInterval seconds, MSPEDirection direction,
        const MSPEScheduleCalendar* calendar) const;
    [[nodiscard]] std::optional<std::string> isoDateTimeAdvanceByKdzxDurationForwardCalendar(
        std::string_view text, std::string_view kdzxDuration, MSPEDirection direction,
        const MSPEScheduleCalendar* calendar) const;
    [[nodiscard]] bool isWorkingDayCalendar(std::string_view text, const MSPEScheduleCalendar* calendar) const;
    [[nodiscard]] MSPCTimeInterval durationFromIsoDateTimeStartToIsoDateTimeFinishCalendar(
        std::string_view start, std::string_view finish, const MSPEScheduleCalendar* calendar) const;

    [[nodiscard]] static std::int64_t mspdiDurationInSecs(std::string_view mspdi);
    [[nodiscard]] static std::optional<std::string> mspdiToKdzxDuration(std::string_view mspdi);
    [[nodiscard]] static MSPCTimeInterval mspdiToMppDuration(std::string_view mspdi);
    [[nodiscard]] static std::string mppToKdzxDuration(MSPCTimeInterval seconds);
    [[nodiscard]] static std::string mppToMspdiDuration(MSPCTimeInterval seconds);
    [[nodiscard]] static std::optional<std::string> kdzxToMspdiDuration(std::string_view kdzx);
    [[nodiscard]] static std::string hourMinSecFromDuration(MSPCTimeInterval seconds);

    [[nodiscard]] static MSPCTimeInterval mspdiToMppLinkLag(std::string_view mspdi);
    [[nodiscard]] static std::string mppToMspdiLeadTimeIsPercentage(double value, bool isPercentage);
    [[nodiscard]] static std::optional<std::string> kdzxToMspdiLeadTimeIsPercentage(std::string_view kdzx,
                                                                                    bool isPercentage);

private:
    MSPCGregorianCalendar _gregorian;
    const MSPCClock& _clock;
    MSPCLog& _log;
    MSPEScheduleCalendar _standardCalendar;
};
