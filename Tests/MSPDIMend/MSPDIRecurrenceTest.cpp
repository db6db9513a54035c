#include "MSPDIRecurrence.h"

#include <gtest/gtest.h>

#include "MSPCXMLDocument.h"

namespace {

// The dates of 2012, or of another stretch, with blanks between them.
std::string datesOf(const std::string& content, const std::string& from = "2012-01-01",
                    const std::string& to = "2012-12-31", unsigned weekStart = 1) {
    const auto document = MSPCXMLDocument::read(
        "<Exception><TimePeriod><FromDate>2012-01-10T00:00:00</FromDate><ToDate>2013-06-30T23:59:00</ToDate>"
        "</TimePeriod>" +
        content + "</Exception>");
    const auto dates = MSPDIDatesOfException(document->root(), {*MSPDIDayOf(from), *MSPDIDayOf(to)}, weekStart);
    if (!dates) {
        return "none";
    }
    std::string text;
    for (const auto date : *dates) {
        text.append(text.empty() ? "" : " ").append(MSPDITextOfDay(date));
    }
    return text;
}

}  // namespace

TEST(MSPDIRecurrenceTest, readsTheDayOfADate) {
    EXPECT_EQ(MSPDITextOfDay(*MSPDIDayOf("2012-02-29T08:00:00")), "2012-02-29");
    EXPECT_EQ(MSPDITextOfDay(*MSPDIDayOf("0999-12-31")), "0999-12-31");
    for (const auto* odd :
         {"", "2012", "2011-02-29", "2012-13-01", "2012-1-10", "2012/01/10", "x012-01-10", "-012-01-10"}) {
        EXPECT_FALSE(MSPDIDayOf(odd).has_value()) << odd;
    }
}

TEST(MSPDIRecurrenceTest, recursYearlyOnADayOfAMonth) {
    EXPECT_EQ(datesOf("<Type>2</Type><Month>4</Month><MonthDay>1</MonthDay>", "2012-01-01", "2013-12-31"),
              "2012-05-01 2013-05-01");
    EXPECT_EQ(datesOf("<Type>2</Type><Month>0</Month><MonthDay>9</MonthDay>"), "");  // the day before it begins
}

// 2012-05-28 is the last Monday of May.
TEST(MSPDIRecurrenceTest, recursYearlyAtAPositionInAMonth) {
    EXPECT_EQ(datesOf("<Type>3</Type><Month>4</Month><MonthItem>4</MonthItem><MonthPosition>4</MonthPosition>"),
              "2012-05-28");
    EXPECT_EQ(datesOf("<Type>3</Type><Month>4</Month><MonthItem>4</MonthItem><MonthPosition>1</MonthPosition>"),
              "2012-05-14");
}

TEST(MSPDIRecurrenceTest, recursMonthly) {
    EXPECT_EQ(datesOf("<Type>4</Type><Period>3</Period><MonthDay>15</MonthDay>"),
              "2012-01-15 2012-04-15 2012-07-15 2012-10-15");
    EXPECT_EQ(datesOf("<Type>4</Type><Period>1</Period><MonthDay>31</MonthDay>", "2012-02-01", "2012-05-31"),
              "2012-03-31 2012-05-31");
    // The first weekend day, the last day, the third weekday.
    EXPECT_EQ(datesOf("<Type>5</Type><Period>2</Period><MonthItem>2</MonthItem><MonthPosition>0</MonthPosition>",
                      "2012-03-01", "2012-05-31"),
              "2012-03-03 2012-05-05");
    EXPECT_EQ(
        datesOf("<Type>5</Type><MonthItem>0</MonthItem><MonthPosition>4</MonthPosition>", "2012-02-01", "2012-03-31"),
        "2012-02-29 2012-03-31");
    EXPECT_EQ(
        datesOf("<Type>5</Type><MonthItem>1</MonthItem><MonthPosition>2</MonthPosition>", "2012-02-01", "2012-02-29"),
        "2012-02-03");
}

// Monday and Friday are the second and the sixth bit. 2012-01-10 is a Tuesday.
TEST(MSPDIRecurrenceTest, recursWeekly) {
    EXPECT_EQ(datesOf("<Type>6</Type><Period>1</Period><DaysOfWeek>34</DaysOfWeek>", "2012-01-01", "2012-01-21"),
              "2012-01-13 2012-01-16 2012-01-20");
    EXPECT_EQ(datesOf("<Type>6</Type><Period>2</Period><DaysOfWeek>34</DaysOfWeek>", "2012-01-01", "2012-01-31"),
              "2012-01-13 2012-01-23 2012-01-27");
    EXPECT_EQ(datesOf("<Type>6</Type><Period>2</Period><DaysOfWeek>1</DaysOfWeek>", "2012-01-01", "2012-01-31", 1),
              "2012-01-15 2012-01-29");
    EXPECT_EQ(datesOf("<Type>6</Type><Period>2</Period><DaysOfWeek>1</DaysOfWeek>", "2012-01-01", "2012-01-31", 0),
              "2012-01-22");
}

TEST(MSPDIRecurrenceTest, recursEverySoManyDaysOrWeekdays) {
    EXPECT_EQ(datesOf("<Type>7</Type><Period>5</Period>", "2012-01-01", "2012-01-25"),
              "2012-01-10 2012-01-15 2012-01-20 2012-01-25");
    EXPECT_EQ(datesOf("<Type>8</Type><Period>2</Period>", "2012-01-01", "2012-01-20"),
              "2012-01-10 2012-01-12 2012-01-16 2012-01-18 2012-01-20");
}

TEST(MSPDIRecurrenceTest, endsAfterItsOccurrencesWhereItIsEnteredByThem) {
    EXPECT_EQ(datesOf("<Type>7</Type><Period>10</Period><EnteredByOccurrences>1</EnteredByOccurrences>"
                      "<Occurrences>3</Occurrences>",
                      "2012-01-15", "2012-12-31"),
              "2012-01-20 2012-01-30");
    EXPECT_EQ(datesOf("<Type>7</Type><Period>10</Period><EnteredByOccurrences>0</EnteredByOccurrences>"
                      "<Occurrences>1</Occurrences>",
                      "2012-01-15", "2012-01-31"),
              "2012-01-20 2012-01-30");
}

TEST(MSPDIRecurrenceTest, takesOddNumbersForWhatTheyMayMean) {
    EXPECT_EQ(datesOf("<Type>7</Type><Period>0</Period>", "2012-01-10", "2012-01-11"), "2012-01-10 2012-01-11");
    EXPECT_EQ(datesOf("<Type>6</Type>"), "");
    EXPECT_EQ(datesOf("<Type>2</Type><Month>-1</Month><MonthDay>99</MonthDay>"), "");
    for (const auto* type : {"", "<Type>1</Type>", "<Type>9</Type>", "<Type>x</Type>"}) {
        EXPECT_EQ(datesOf(type), "none") << type;
    }
}
