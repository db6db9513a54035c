#include "KZDXDateTime.h"

#include <gtest/gtest.h>

TEST(KZDXDateTime, readsClockAndOffset) {
    const auto date = KZDXDateTimeFrom("2026-05-04T08:30:15+02:00");
    ASSERT_TRUE(date);
    EXPECT_EQ(date->fields.year, 2026);
    EXPECT_EQ(date->fields.month, 5);
    EXPECT_EQ(date->fields.day, 4);
    EXPECT_EQ(date->fields.hour, 8);
    EXPECT_EQ(date->fields.minute, 30);
    EXPECT_EQ(date->fields.second, 15);
    EXPECT_EQ(date->secondsFromGreenwich, 7200);
    EXPECT_EQ(date->wallClock - date->instant(), 7200);
}

TEST(KZDXDateTime, countsFromGreenwich) {
    EXPECT_EQ(KZDXDateTimeFrom("1970-01-02T00:00:00Z")->instant().secondsSince1970, 86400);
    EXPECT_EQ(KZDXDateTimeFrom("1970-01-01T00:00:00-09:30")->instant().secondsSince1970, 34200);
    EXPECT_EQ(KZDXDateTimeFrom("1970-01-01T05:45:00+05:45")->instant().secondsSince1970, 0);
}

TEST(KZDXDateTime, takesYearsOfAnyLength) {
    EXPECT_TRUE(KZDXDateTimeFrom("1-01-01T00:00:00Z"));
    EXPECT_TRUE(KZDXDateTimeFrom("-44-03-15T00:00:00Z"));
    EXPECT_TRUE(KZDXDateTimeFrom("123456789-12-31T23:59:59Z"));
}

TEST(KZDXDateTime, refusesAllElse) {
    for (const auto* const wrong : {"",
                                    "2026",
                                    "2026-05-04",
                                    "2026-05-04T08:00:00",
                                    "2026-05-04 08:00:00Z",
                                    "2026-5-4T08:00:00Z",
                                    "2026-13-01T08:00:00Z",
                                    "2026-00-01T08:00:00Z",
                                    "2026-05-32T08:00:00Z",
                                    "2026-02-29T08:00:00Z",
                                    "1900-02-29T08:00:00Z",
                                    "2026-05-00T08:00:00Z",
                                    "2026-05-04T24:00:00Z",
                                    "2026-05-04T08:60:00Z",
                                    "2026-05-04T08:00:60Z",
                                    "2026-05-04T08:00:00.5Z",
                                    "2026-05-04T08:00:00+2",
                                    "2026-05-04T08:00:00+02:60",
                                    "2026-05-04T08:00:00+27:00",
                                    "2026-05-04T08:00:00ZZ",
                                    " 2026-05-04T08:00:00Z",
                                    "2026-05-04T08:00:00Z ",
                                    "1234567890-05-04T08:00:00Z"}) {
        EXPECT_FALSE(KZDXDateTimeFrom(wrong)) << wrong;
    }
    EXPECT_TRUE(KZDXDateTimeFrom("2000-02-29T08:00:00Z"));
    EXPECT_TRUE(KZDXDateTimeFrom("2028-02-29T08:00:00Z"));
}
