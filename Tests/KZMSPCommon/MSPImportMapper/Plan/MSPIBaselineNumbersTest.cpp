#include "MSPIBaselineNumbers.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>

#include "XMLText.h"

namespace {

std::optional<std::size_t> numberOf(const std::string& numbers) {
    const auto document = xmlDocument(fmt::format("<Baseline>{}</Baseline>", numbers));
    return MSPIBaselineNumber(document.root());
}

// "0=a 3=b": the values of the baselines that count.
std::string countingOf(const std::string& content) {
    const auto document = xmlDocument(fmt::format("<Task>{}</Task>", content));
    std::string shown;
    std::size_t number = 0;
    for (const auto& baseline : MSPILastBaselines(document.root().firstChildElement("Baseline"))) {
        if (baseline) {
            shown += fmt::format("{}{}={}", shown.empty() ? "" : " ", number,
                                 baseline.firstChildElement("Work").stringValue());
        }
        ++number;
    }
    return shown;
}

std::string baseline(const std::string& numbers, const std::string& work) {
    return fmt::format("<Baseline>{}<Work>{}</Work></Baseline>", numbers, work);
}

}  // namespace

TEST(MSPIBaselineNumbers, areReadAsXPathReadsNumbers) {
    EXPECT_EQ(numberOf("<Number>0</Number>"), 0U);
    EXPECT_EQ(numberOf("<Number> 010 </Number>"), 10U);
    EXPECT_EQ(numberOf("<Number>-0</Number>"), 0U);
    EXPECT_EQ(numberOf("<Number>3.0</Number>"), 3U);
    for (const auto* text : {"", "11", "-1", "1.5", "10.5", "0.5", "3h", "1e0", "+1", "99999999999999999999"}) {
        EXPECT_EQ(numberOf(fmt::format("<Number>{}</Number>", text)), std::nullopt) << text;
    }
    EXPECT_EQ(numberOf(""), std::nullopt);
    EXPECT_EQ(MSPIBaselineNumber({}), std::nullopt);
}

TEST(MSPIBaselineNumbers, aBaselineGoesByItsLastOneThatIsImported) {
    EXPECT_EQ(numberOf("<Number>2</Number><Number>7</Number><Number>11</Number>"), 7U);
}

TEST(MSPIBaselineNumbers, theLastOfSeveralBaselinesCounts) {
    EXPECT_EQ(countingOf(baseline("<Number>3</Number>", "a") + baseline("<Number>0</Number>", "b") +
                         baseline("<Number>3</Number>", "c")),
              "0=b 3=c");
}

TEST(MSPIBaselineNumbers, aBaselineCountsForEachOfItsNumbers) {
    EXPECT_EQ(countingOf(baseline("<Number>1</Number><Number>2</Number>", "a") + baseline("<Number>2</Number>", "b") +
                         baseline("<Number>12</Number><Number>10</Number>", "c")),
              "1=a 2=b 10=c");
}

TEST(MSPIBaselineNumbers, otherElementsStandBetween) {
    EXPECT_EQ(
        countingOf("<Number>4</Number>" + baseline("<Number>1</Number>", "a") + "<Name>x</Name>" + baseline("", "b")),
        "1=a");
    EXPECT_EQ(countingOf("<Name>x</Name>"), "");
}
