// Durations, lags and lead times: the conversions that depend neither on the zone nor on the clock.

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "MSPCException.h"
#include "MSPCISO8601Text.h"
#include "MSPCTextScanner.h"
#include "MSPIUtilities.h"

namespace {

constexpr std::int64_t SecondsPerLagUnit = 6;  // a tenth of a minute

// The integer nearest to zero, kept within the type; 0 for what is no number.
template <class Integer>
Integer truncated(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    if (value >= static_cast<double>(std::numeric_limits<Integer>::max())) {
        return std::numeric_limits<Integer>::max();
    }
    if (value <= static_cast<double>(std::numeric_limits<Integer>::min())) {
        return std::numeric_limits<Integer>::min();
    }
    return static_cast<Integer>(value);
}

// Every part carries the sign: -90 seconds are "PT0H-1M-30S".
std::string mspdiDurationText(std::int64_t totalSeconds) {
    const auto totalMinutes = totalSeconds / 60;
    return fmt::format("PT{}H{}M{}S", totalMinutes / 60, totalMinutes % 60, totalSeconds % 60);
}

std::int64_t integerIn(std::string_view text) {
    return scanInteger64(text).value_or(0);
}

std::string percentText(double fraction) {
    if (!(fraction >= 0 && fraction <= 1)) {
        throw MSPCInternalInconsistency(fmt::format("Expected lead time in range [0...1]. Got {:f}", fraction));
    }
    return fmt::to_string(truncated<std::int32_t>(fraction * 100));
}

}  // namespace

bool MSPIUtilities::isMspdiDuration(std::string_view text) const {
    MSPCDateComponents unread;
    return updateDateTimeComponentsFromISODuration(unread, text) != MSPCUnit::NotFound;
}

std::int64_t MSPIUtilities::mspdiDurationInSecs(std::string_view mspdi) {
    if (mspdi.empty()) {
        return -1;
    }
    MSPCDateComponents duration;
    if (updateDateTimeComponentsFromISODuration(duration, mspdi) == MSPCUnit::NotFound) {
        throw MSPCInternalInconsistency(fmt::format("Failed to convert MSPDI duration: '{}'.", mspdi));
    }
    // Deliberate: years, months and days do not count; MSPDI writes durations in hours.
    return MSPCDefinedOrZero(duration.hour) * 3600 + MSPCDefinedOrZero(duration.minute) * 60 +
           MSPCDefinedOrZero(duration.second);
}

std::optional<std::string> MSPIUtilities::mspdiToKdzxDuration(std::string_view mspdi) {
    const auto seconds = mspdiDurationInSecs(mspdi);
    return seconds < 0 ? std::nullopt : std::optional(fmt::to_string(seconds));
}

MSPCTimeInterval MSPIUtilities::mspdiToMppDuration(std::string_view mspdi) {
    const auto duration = hoursMinutesSecondsFromMSPDIDuration(mspdi);
    if (!duration) {
        return 0;
    }
    // Deliberate: the sum is one of 32 bits and starts again at the other end when it is too large: "PT1000000H0M0S" is
    // -694967296 seconds. Unsigned, because signed numbers may not overflow.
    const auto sum = static_cast<std::uint32_t>(duration->hours) * 3600U +
                     static_cast<std::uint32_t>(duration->minutes) * 60U +
                     static_cast<std::uint32_t>(duration->seconds);
    return static_cast<std::int32_t>(sum);
}

std::string MSPIUtilities::mppToKdzxDuration(MSPCTimeInterval seconds) {
    return fmt::format("{:.2f}", seconds);
}

std::string MSPIUtilities::mppToMspdiDuration(MSPCTimeInterval seconds) {
    return mspdiDurationText(truncated<std::int32_t>(seconds));
}

std::optional<std::string> MSPIUtilities::kdzxToMspdiDuration(std::string_view kdzx) {
    return kdzx.empty() ? std::nullopt : std::optional(mspdiDurationText(integerIn(kdzx)));
}

std::string MSPIUtilities::hourMinSecFromDuration(MSPCTimeInterval seconds) {
    const auto total = truncated<std::int64_t>(seconds);
    return fmt::format("{:02}:{:02}:{:02}", total / 3600, total % 3600 / 60, total % 60);
}

MSPCTimeInterval MSPIUtilities::mspdiToMppLinkLag(std::string_view mspdi) {
    return static_cast<double>(integerIn(mspdi)) * SecondsPerLagUnit;
}

std::string MSPIUtilities::mppToMspdiLeadTimeIsPercentage(double value, bool isPercentage) {
    return isPercentage ? percentText(value) : fmt::to_string(truncated<std::int64_t>(value) / SecondsPerLagUnit);
}

std::optional<std::string> MSPIUtilities::kdzxToMspdiLeadTimeIsPercentage(std::string_view kdzx, bool isPercentage) {
    if (kdzx.empty()) {
        return std::nullopt;
    }
    return isPercentage ? percentText(scanDouble(kdzx).value_or(0))
                        : fmt::to_string(integerIn(kdzx) / SecondsPerLagUnit);
}
