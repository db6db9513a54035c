// Duration, lag and number texts: every conversion answers or raises its own failure, and the quick reader reads what
// the full grammar reads.

#include <cmath>

#include "CountedSteps.h"
#include "FuzzWorld.h"
#include "MSPCException.h"
#include "MSPCISO8601Reader.h"
#include "MSPCISO8601Text.h"
#include "MSPCTextScanner.h"
#include "MSPIUtilities.h"

namespace {

template <typename Operation>
void endsProperly(const Operation& operation) {
    try {
        static_cast<void>(operation());
    } catch (const MSPCException&) {
        // A failure that the system raises on purpose.
    }
}

void bothReadersAgree(std::string_view text) {
    if (const auto quick = scanMSPDIDuration(text)) {
        require(matchMSPDIDuration(text) == quick, "both readers agree on a duration");
    }
    MSPCDateComponents components;
    static_cast<void>(updateDateTimeComponentsFromISODuration(components, text));
}

void numberConversionsEnd(double number) {
    static_cast<void>(MSPIUtilities::mppToKdzxDuration(number));
    static_cast<void>(MSPIUtilities::mppToMspdiDuration(number));
    static_cast<void>(MSPIUtilities::hourMinSecFromDuration(number));
    endsProperly([&] { return MSPIUtilities::mppToMspdiLeadTimeIsPercentage(number, true); });
    endsProperly([&] { return MSPIUtilities::mppToMspdiLeadTimeIsPercentage(number, false); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const CountedSteps steps;
    const FuzzWorld world;
    const MSPIUtilities conversions(world.services);
    const auto text = textOf(bytes, size);
    bothReadersAgree(text);
    static_cast<void>(conversions.isMspdiDuration(text));
    endsProperly([&] { return MSPIUtilities::mspdiDurationInSecs(text); });
    endsProperly([&] { return MSPIUtilities::mspdiToKdzxDuration(text); });
    endsProperly([&] { return MSPIUtilities::kdzxToMspdiDuration(text); });
    endsProperly([&] { return MSPIUtilities::kdzxToMspdiLeadTimeIsPercentage(text, true); });
    endsProperly([&] { return MSPIUtilities::kdzxToMspdiLeadTimeIsPercentage(text, false); });
    const auto seconds = MSPIUtilities::mspdiToMppDuration(text);
    require(std::abs(seconds) <= 0x1p31, "a duration in memory is of 32 bits");
    numberConversionsEnd(seconds);
    numberConversionsEnd(MSPIUtilities::mspdiToMppLinkLag(text));
    numberConversionsEnd(scanDouble(text).value_or(0));
    static_cast<void>(scanInteger64(text));
    static_cast<void>(scanInteger32(text));
    requireStepsThatGrowWith(size, steps.count(), {10'000'000, 200});
    return 0;
}
