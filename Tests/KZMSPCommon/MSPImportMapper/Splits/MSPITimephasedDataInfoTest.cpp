#include "MSPITimephasedDataInfo.h"

#include <gtest/gtest.h>

namespace {

constexpr MSPCInstant morning{1330934400};  // 2012-03-05T08:00:00Z
constexpr MSPCInstant evening{1330966800};  // 2012-03-05T17:00:00Z

MSPITimephasedDataInfo spanOf(std::optional<MSPCInstant> start, std::optional<MSPCInstant> end) {
    return {"Dig", 1, start, end, 28800};
}

std::vector<std::int64_t> numbersOf(const std::vector<MSPCResourceUID>& uids) {
    std::vector<std::int64_t> numbers;
    for (const auto uid : uids) {
        numbers.push_back(MSPCNumberOf(uid));
    }
    return numbers;
}

}  // namespace

TEST(MSPITimephasedDataInfo, startsWithoutScaleAndResources) {
    const auto span = spanOf(morning, evening);
    EXPECT_EQ(span.taskName(), "Dig");
    EXPECT_EQ(span.type(), 1);
    EXPECT_EQ(span.startDate(), morning);
    EXPECT_EQ(span.endDate(), evening);
    EXPECT_EQ(span.duration(), 28800);
    EXPECT_EQ(span.workScale(), 0);
    EXPECT_TRUE(span.resourceUIDs().empty());
}

TEST(MSPITimephasedDataInfo, keepsWhatIsSet) {
    auto span = spanOf(std::nullopt, std::nullopt);
    span.setStartDate(morning);
    span.setEndDate(evening);
    span.setDuration(3600.5);
    span.setWorkScale(2);
    EXPECT_EQ(span.startDate(), morning);
    EXPECT_EQ(span.endDate(), evening);
    EXPECT_EQ(span.duration(), 3600.5);
    EXPECT_EQ(span.workScale(), 2);
}

TEST(MSPITimephasedDataInfo, keepsEachResourceOnceInTheOrderAdded) {
    auto span = spanOf(morning, evening);
    for (const auto uid : {3, 1, 3, 2, 1}) {
        span.addResourceUID(MSPCResourceUID{uid});
    }
    EXPECT_EQ(numbersOf(span.resourceUIDs()), (std::vector<std::int64_t>{3, 1, 2}));
    span.sortResourceUIDs();
    EXPECT_EQ(numbersOf(span.resourceUIDs()), (std::vector<std::int64_t>{1, 2, 3}));
}

TEST(MSPITimephasedDataInfo, equalsASpanWithTheSameDatesWhateverElseDiffers) {
    const auto span = spanOf(morning, evening);
    EXPECT_TRUE(span.isEqualTimeSpan(MSPITimephasedDataInfo("Fill", 2, morning, evening, 1)));
    EXPECT_FALSE(span.isEqualTimeSpan(spanOf(morning, morning)));
    EXPECT_FALSE(span.isEqualTimeSpan(spanOf(evening, evening)));
    EXPECT_FALSE(span.isEqualTimeSpan(spanOf(std::nullopt, evening)));
    EXPECT_TRUE(spanOf(std::nullopt, evening).isEqualTimeSpan(spanOf(std::nullopt, evening)));
}

TEST(MSPITimephasedDataInfo, describesItself) {
    auto span = spanOf(morning, std::nullopt);
    EXPECT_EQ(span.description(),
              "<MSPITimephasedDataInfo>:  type=1, startDate=2012-03-05 08:00:00 +0000, endDate=(null), "
              "duration=28800.00, resoureUIDS:");
    span.addResourceUID(MSPCResourceUID{7});
    span.addResourceUID(MSPCResourceUID{-2});
    span.setEndDate(evening);
    EXPECT_EQ(span.description(),
              "<MSPITimephasedDataInfo>:  type=1, startDate=2012-03-05 08:00:00 +0000, endDate=2012-03-05 17:00:00 "
              "+0000, duration=28800.00, resoureUIDS: 7, -2,");
}
