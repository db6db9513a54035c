#include "MSPITimephasedSpans.h"

#include <limits>

#include "ExpectRaises.h"

namespace {

// Hours on a line without nights: [start, end) with its duration in hours.
struct Hours {
    double start;
    double end;
    double duration;
    friend bool operator==(const Hours&, const Hours&) = default;
};

std::ostream& operator<<(std::ostream& out, const Hours& hours) {
    return out << hours.start << "-" << hours.end << " (" << hours.duration << ")";
}

MSPITimephasedSpans spansOf(const std::vector<Hours>& hours) {
    MSPITimephasedSpans spans;
    for (const auto& [start, end, duration] : hours) {
        spans.emplace_back("", 1, MSPCInstant{start}, MSPCInstant{end}, duration);
    }
    return spans;
}

std::vector<Hours> hoursOf(const MSPITimephasedSpans& spans) {
    std::vector<Hours> hours;
    for (const auto& span : spans) {
        hours.push_back({span.startDate()->secondsSince1970, span.endDate()->secondsSince1970, span.duration()});
    }
    return hours;
}

std::vector<Hours> sorted(const std::vector<Hours>& hours) {
    auto spans = spansOf(hours);
    sortSpans(spans);
    return hoursOf(spans);
}

// Every hour is worked, except those from 10 to 20.
MSPCTimeInterval workedHours(MSPCInstant from, MSPCInstant to) {
    const auto before = [](double hour) { return hour <= 10 ? hour : std::max(hour, 20.0) - 10; };
    return before(to.secondsSince1970) - before(from.secondsSince1970);
}

std::vector<Hours> merged(const std::vector<Hours>& hours) {
    return hoursOf(mergedSpans(spansOf(hours), workedHours));
}

std::vector<Hours> joined(const std::vector<Hours>& hours) {
    return hoursOf(joinedStretches(spansOf(hours), workedHours));
}

using List = std::vector<Hours>;

}  // namespace

TEST(MSPITimephasedSpans, areSortedByStartAndForEqualStartsTheLaterEndFirst) {
    EXPECT_EQ(sorted({{5, 6, 1}, {1, 2, 2}, {1, 4, 3}, {1, 3, 4}}), (List{{1, 4, 3}, {1, 3, 4}, {1, 2, 2}, {5, 6, 1}}));
}

TEST(MSPITimephasedSpans, withTheSameDatesKeepTheirOrder) {
    List many;
    List expected;
    for (int i = 0; i < 100; ++i) {
        many.push_back({5, 6, static_cast<double>(i)});
        many.push_back({1, 2, static_cast<double>(i)});
    }
    for (int i = 0; i < 200; ++i) {
        expected.push_back({i < 100 ? 1.0 : 5.0, i < 100 ? 2.0 : 6.0, static_cast<double>(i % 100)});
    }
    EXPECT_EQ(sorted(many), expected);
}

TEST(MSPITimephasedSpans, thatAreApartStayAsTheyAre) {
    EXPECT_EQ(merged({{1, 2, 1}, {3, 4, 0.5}}), (List{{1, 2, 1}, {3, 4, 0.5}}));
    EXPECT_EQ(merged({}), List{});
}

TEST(MSPITimephasedSpans, thatTouchAddTheirDurations) {
    EXPECT_EQ(merged({{1, 2, 0.25}, {2, 4, 0.5}, {4, 5, 1}}), (List{{1, 5, 1.75}}));
}

TEST(MSPITimephasedSpans, thatOverlapTakeTheWorkingTimeOfTheirUnion) {
    EXPECT_EQ(merged({{1, 3, 0.25}, {2, 5, 0.25}}), (List{{1, 5, 4}}));
    EXPECT_EQ(merged({{8, 12, 1}, {11, 22, 1}}), (List{{8, 22, 4}}));
    EXPECT_EQ(merged({{1, 3, 2}, {1, 3, 2}}), (List{{1, 3, 2}}));
}

TEST(MSPITimephasedSpans, thatTouchAfterAnOverlapAddTheirDurations) {
    EXPECT_EQ(merged({{1, 3, 9}, {2, 5, 9}, {5, 6, 0.5}, {6, 7, 0.25}}), (List{{1, 7, 4.75}}));
    // What touched before an overlap is part of the union.
    EXPECT_EQ(merged({{1, 3, 9}, {3, 5, 9}, {4, 6, 9}}), (List{{1, 6, 5}}));
    EXPECT_EQ(merged({{1, 3, 9}, {2, 5, 9}, {5, 6, 9}, {5.5, 8, 9}, {8, 9, 0.5}}), (List{{1, 9, 7.5}}));
}

// Counted anew for each span, long stretches would cost as many counts as they have spans.
TEST(MSPITimephasedSpans, countTheWorkingTimeOfAStretchOnce) {
    std::vector<Hours> hours;
    for (int i = 0; i < 1'000; ++i) {
        hours.push_back({i / 500 * 10'000.0 + i, i / 500 * 10'000.0 + i + 2, 1});
    }
    int counts = 0;
    const auto stretches = mergedSpans(spansOf(hours), [&counts](MSPCInstant from, MSPCInstant to) {
        ++counts;
        return to - from;
    });
    EXPECT_EQ(hoursOf(stretches), (List{{0, 501, 501}, {10'500, 11'001, 501}}));
    EXPECT_EQ(counts, 2);
}

TEST(MSPITimephasedSpans, endWhereTheOneMergedLastEnds) {
    EXPECT_EQ(merged({{1, 9, 8}, {2, 3, 1}}), (List{{1, 3, 2}}));
    EXPECT_EQ(merged({{1, 9, 8}, {2, 3, 1}, {4, 5, 1}}), (List{{1, 3, 2}, {4, 5, 1}}));
}

TEST(MSPITimephasedSpans, withoutDurationAreLeftOutEvenWhereTheyWouldOverlap) {
    EXPECT_EQ(merged({{1, 2, 0}, {3, 4, 1}, {3.5, 9, 0}, {5, 6, 1}}), (List{{3, 4, 1}, {5, 6, 1}}));
}

TEST(MSPITimephasedSpans, withANegativeDurationStartNothingButMergeLikeOthers) {
    EXPECT_EQ(merged({{1, 2, -1}, {3, 4, 1}}), (List{{3, 4, 1}}));
    EXPECT_EQ(merged({{1, 2, 3}, {2, 4, -1}}), (List{{1, 4, 2}}));
}

TEST(MSPITimephasedSpans, outOfOrderAreRefusedWhenMerged) {
    EXPECT_RAISES(merged({{3, 4, 1}, {1, 2, 1}}), MSPCInternalInconsistency,
                  "Unexpected order of time span start dates.");
}

TEST(MSPITimephasedSpans, whoseEndIsNeitherBeforeNorAfterAreRefusedWhenMerged) {
    EXPECT_RAISES(merged({{1, std::numeric_limits<double>::quiet_NaN(), 1}, {3, 4, 1}}), MSPCInternalInconsistency,
                  "Unexpected order of time span dates.");
}

TEST(MSPITimephasedSpans, joinOverTimeThatIsNotWorked) {
    EXPECT_EQ(joined({{8, 10, 2}, {20, 22, 1.5}}), (List{{8, 22, 3.5}}));
    EXPECT_EQ(joined({{1, 10, 1}, {15, 20, 2}, {21, 22, 3}, {23, 24, 4}}),
              (List{{1, 20, 3}, {21, 22, 3}, {23, 24, 4}}));
    EXPECT_EQ(joined({}), List{});
}

TEST(MSPITimephasedSpans, startANewStretchAfterWorkingTime) {
    EXPECT_EQ(joined({{1, 2, 1}, {3, 4, 1}}), (List{{1, 2, 1}, {3, 4, 1}}));
    EXPECT_EQ(joined({{8, 9.5, 2}, {20, 22, 1.5}}), (List{{8, 9.5, 2}, {20, 22, 1.5}}));
}

TEST(MSPITimephasedSpans, withoutWorkingTimeAreRefusedWithoutAWord) {
    EXPECT_RAISES(joined({{1, 2, 0}, {3, 4, 1}}), MSPCInternalInconsistency, "");
    EXPECT_RAISES(joined({{1, 2, 1}, {3, 4, -1}}), MSPCInternalInconsistency, "");
}

TEST(MSPITimephasedSpans, thatTouchOrOverlapAreRefusedWhenJoined) {
    EXPECT_RAISES(joined({{1, 3, 1}, {3, 4, 1}}), MSPCInternalInconsistency, "Unexpected order of time chunk dates.");
    EXPECT_RAISES(joined({{1, 3, 1}, {2, 4, 1}}), MSPCInternalInconsistency, "Unexpected order of time chunk dates.");
}

TEST(MSPITimephasedSpans, refuseACalendarThatCountsNegativeTime) {
    const auto negative = [](MSPCInstant, MSPCInstant) { return -1.0; };
    EXPECT_RAISES(joinedStretches(spansOf({{1, 2, 1}, {3, 4, 1}}), negative), MSPCInternalInconsistency,
                  "Negative working time got for the time chunk.");
}
