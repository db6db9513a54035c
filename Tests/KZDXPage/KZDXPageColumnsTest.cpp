#include "KZDXPageColumns.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace {

using JSON = KZDXPageJSON;

JSON column(const std::string& values) {
    return KZDXPageColumn(JSON::parse(values).get<std::vector<JSON>>());
}

std::optional<KZDXDateTime> date(const std::string& text) {
    return KZDXDateTimeFrom(text);
}

}  // namespace

TEST(KZDXPageColumnsTest, tellsTheValuesInAsFewBytesAsTheyAllow) {
    EXPECT_EQ(column("[]"), JSON(nullptr));
    EXPECT_EQ(column("[null, null]"), JSON(nullptr));
    EXPECT_EQ(column("[7, 7, 7]"), JSON::parse(R"({"all": 7})"));
    EXPECT_EQ(column("[1, 2, 3]"), JSON::parse("[1, 2, 3]"));
    EXPECT_EQ(column("[1, null, 3]"), JSON::parse("[1, null, 3]"));
    EXPECT_EQ(column(R"([null, null, null, null, null, null, null, null, "a"])"),
              JSON::parse(R"({"rows": [8], "values": ["a"]})"));
    EXPECT_EQ(column(R"(["a", "b", "a", "a", null, "b", "a", "a"])"),
              JSON::parse(R"({"values": ["a", "b"], "at": [0, 1, 0, 0, -1, 1, 0, 0]})"));
}

TEST(KZDXPageColumnsTest, tellsDatesInTheLargestUnitThatHoldsThemAll) {
    EXPECT_EQ(KZDXPageDateColumn({}), JSON(nullptr));
    EXPECT_EQ(KZDXPageDateColumn({std::nullopt}), JSON(nullptr));
    EXPECT_EQ(KZDXPageDateColumn({date("1970-01-02T10:00:00Z"), date("1970-01-02T08:00:00+01:00")}),
              JSON::parse(R"({"base": 115200, "unit": 3600, "at": [2, 0], "offset": [0, 3600]})"));
    EXPECT_EQ(KZDXPageDateColumn({date("1970-01-02T08:00:00Z"), date("1970-01-02T08:01:00Z")}),
              JSON::parse(R"({"base": 115200, "unit": 60, "at": [0, 1], "offset": {"all": 0}})"));
    EXPECT_EQ(KZDXPageDateColumn({date("1969-12-31T23:59:59Z"), date("1970-01-01T00:00:00Z")}),
              JSON::parse(R"({"base": -1, "unit": 1, "at": [0, 1], "offset": {"all": 0}})"));
}

TEST(KZDXPageColumnsTest, tellsOneDate) {
    EXPECT_EQ(KZDXPageDate(std::nullopt), JSON(nullptr));
    EXPECT_EQ(KZDXPageDate(date("1970-01-02T08:00:00-05:00")), JSON::parse("[115200, -18000]"));
}
