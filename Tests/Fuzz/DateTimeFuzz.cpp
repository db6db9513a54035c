// Date-time texts, two to an input with a line feed between them: every conversion answers or raises its own failure,
// and the quick reader reads what the full grammar reads.

#include "CountedSteps.h"
#include "FuzzWorld.h"
#include "MSPCException.h"
#include "MSPCISO8601Reader.h"
#include "MSPCISO8601Text.h"
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
    MSPCDateComponents quick;
    MSPCDateComponents full;
    if (const auto units = scanISODateTime(quick, text)) {
        require(matchISODateTime(full, text) == units && full == quick, "both readers agree on a date-time");
    }
}

void conversionsEnd(const MSPIUtilities& conversions, std::string_view text, MSPCTimeInterval seconds) {
    static_cast<void>(conversions.isIsoiDateTime(text));
    static_cast<void>(conversions.isKdzxDateTime(text));
    static_cast<void>(conversions.isMspdiDateTime(text));
    endsProperly([&] { return conversions.mspdiToKdzxDateTime(text); });
    endsProperly([&] { return conversions.mspdiToKdzxTimeOnly(text); });
    endsProperly([&] { return conversions.mspdiDateTimeToString(text); });
    endsProperly([&] { return conversions.mspdiToTimeOfDay(text).hour; });
    endsProperly([&] { return conversions.mppToKdzxDateTime(conversions.mspdiToMppDateTime(text)); });
    endsProperly([&] { return conversions.mppToMspdiDateTime(conversions.kdzxToMppDateTime(text)); });
    endsProperly([&] { return conversions.kdzxToMspdiDateTime(text); });
    endsProperly([&] { return conversions.kdzxToMspdiDateOnly(text); });
    endsProperly([&] { return conversions.kdzxToMspdiDateEndTime(text); });
    endsProperly([&] { return conversions.isWorkingDayCalendar(text, nullptr); });
    endsProperly([&] { return conversions.componentsFromISODateTime(text)->description(); });
    for (const auto direction : {MSPEDirection::Forward, MSPEDirection::Backward}) {
        endsProperly(
            [&] { return conversions.isoDateTimeAdvanceByDurationForwardCalendar(text, seconds, direction, nullptr); });
    }
}

void orderIsAntisymmetric(const MSPIUtilities& conversions, std::string_view first, std::string_view second) {
    endsProperly([&] {
        const auto order = conversions.compareMspdiDateTimeToMspdiDateTime(first, second);
        require(order == -conversions.compareMspdiDateTimeToMspdiDateTime(second, first),
                "the order of dates turns round");
        return order;
    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const CountedSteps steps;
    const FuzzWorld world;
    const MSPIUtilities conversions(world.services);
    InputReader reader(textOf(bytes, size));
    const auto first = reader.upTo('\n');
    const auto second = reader.upTo('\n');
    for (const auto text : {first, second}) {
        bothReadersAgree(text);
        conversionsEnd(conversions, text, MSPIUtilities::mspdiToMppDuration(reader.rest()));
    }
    orderIsAntisymmetric(conversions, first, second);
    requireStepsThatGrowWith(size, steps.count(), {1'000'000, 500});
    return 0;
}
