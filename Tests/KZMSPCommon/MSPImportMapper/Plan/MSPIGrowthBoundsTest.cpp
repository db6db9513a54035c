#include "MSPIGrowthBounds.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "ExpectRaises.h"
#include "MSPCException.h"
#include "MappingFixture.h"

namespace {

constexpr const char* tooManyElements =
    "Too many working times and calendar events in all schedules together: more than 10000000.";
constexpr const char* tooManyPieces = "Too many pieces of split tasks with the same UID: more than 1000000.";
constexpr const char* tooMuchText = "Too much text in repeated names: more than 1073741824 bytes.";

}  // namespace

TEST(MSPIGrowthBounds, tenMillionScheduleElementsAreAllowedOneMoreIsNot) {
    MSPIGrowthBounds bounds;
    bounds.addScheduleElements(9'999'999);
    bounds.addScheduleElements(1);
    bounds.addScheduleElements(0);
    EXPECT_RAISES(bounds.addScheduleElements(1), MSPCInternalInconsistency, tooManyElements);
}

TEST(MSPIGrowthBounds, aGigabyteOfRepeatedTextIsAllowedOneByteMoreIsNot) {
    MSPIGrowthBounds bounds;
    bounds.addRepeatedText(1'073'741'823);
    bounds.addRepeatedText(1);
    EXPECT_RAISES(bounds.addRepeatedText(1), MSPCInternalInconsistency, tooMuchText);
}

TEST(MSPIGrowthBounds, aMillionEventsOfTheRangesOfOneCalendarAreAllowedOneMoreIsNot) {
    const auto plan = documentFromXML("<Calendars><Calendar/><Calendar/></Calendars>");
    const auto calendar = plan.root().firstChild();
    MSPIGrowthBounds bounds;
    EXPECT_TRUE(bounds.addEventsOfRange(calendar, 999'999));
    EXPECT_TRUE(bounds.addEventsOfRange(calendar, 1));
    EXPECT_TRUE(bounds.addEventsOfRange(calendar, 0));
    EXPECT_FALSE(bounds.addEventsOfRange(calendar, 1));
    EXPECT_TRUE(bounds.addEventsOfRange(calendar.nextSibling(), 1'000'000));
    EXPECT_FALSE(bounds.addEventsOfRange(calendar.nextSibling(), std::numeric_limits<std::uint64_t>::max()));
}

TEST(MSPIGrowthBounds, eventsOfRangesAreElementsOfSchedules) {
    MSPIGrowthBounds bounds;
    EXPECT_TRUE(bounds.addEventsOfRange({}, 1'000'000));
    bounds.addScheduleElements(9'000'000);
    EXPECT_RAISES(bounds.addScheduleElements(1), MSPCInternalInconsistency, tooManyElements);
}

TEST(MSPIGrowthBounds, namesCountAsTextOnceTheyAreLongerThanWhatAsksForThem) {
    MSPIGrowthBounds bounds;
    bounds.addRepeatedText(1'073'741'824 - 257);
    bounds.addRepeatedName(256);
    bounds.addRepeatedName(256);
    bounds.addRepeatedName(257);
    bounds.addRepeatedName(256);
    EXPECT_RAISES(bounds.addRepeatedName(257), MSPCInternalInconsistency, tooMuchText);
}

TEST(MSPIGrowthBounds, tenThousandRepeatedLooksAreAllowedOneMoreIsNot) {
    MSPIGrowthBounds bounds;
    bounds.addRepeatedLooks(9'999);
    bounds.addRepeatedLooks(1);
    EXPECT_RAISES(bounds.addRepeatedLooks(1), MSPCInternalInconsistency,
                  "Too much to look at in assignments of several tasks or resources: more than 10000 elements.");
}

TEST(MSPIGrowthBounds, aMillionRepeatedPiecesAreAllowedOneMoreIsNot) {
    MSPIGrowthBounds bounds;
    bounds.addRepeatedPieces(999'999);
    bounds.addRepeatedPieces(1);
    EXPECT_RAISES(bounds.addRepeatedPieces(1), MSPCInternalInconsistency, tooManyPieces);
}

TEST(MSPIGrowthBounds, theBoundsAreCountedApart) {
    MSPIGrowthBounds bounds;
    bounds.addScheduleElements(10'000'000);
    bounds.addRepeatedText(1'073'741'824);
    bounds.addRepeatedPieces(1'000'000);
    EXPECT_RAISES(bounds.addRepeatedPieces(1), MSPCInternalInconsistency, tooManyPieces);
    EXPECT_RAISES(bounds.addScheduleElements(1), MSPCInternalInconsistency, tooManyElements);
    EXPECT_RAISES(bounds.addRepeatedText(1), MSPCInternalInconsistency, tooMuchText);
}

TEST(MSPIGrowthBounds, noNumberIsTooLargeToBeRefused) {
    constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
    MSPIGrowthBounds bounds;
    bounds.addScheduleElements(1);
    bounds.addRepeatedText(1);
    EXPECT_RAISES(bounds.addScheduleElements(largest), MSPCInternalInconsistency, tooManyElements);
    EXPECT_RAISES(bounds.addRepeatedText(largest), MSPCInternalInconsistency, tooMuchText);
    bounds.addRepeatedPieces(1);
    EXPECT_RAISES(bounds.addRepeatedPieces(largest), MSPCInternalInconsistency, tooManyPieces);
}
