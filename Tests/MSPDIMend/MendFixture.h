#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "MSPDIMend.h"
#include "ServicesInMemory.h"

// Mends plans of a few lines.
class MendTest : public testing::Test, protected ServicesInMemory {
protected:
    // A plan with a standard calendar; each of its children on a line of its own.
    static std::string planOf(const std::string& content, const std::string& calendars = standardCalendar()) {
        return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<Project xmlns=\"http://schemas.microsoft.com/project\">\n"
               "  <SaveVersion>14</SaveVersion>\n"
               "  <StartDate>2012-01-09T08:00:00</StartDate>\n" +
               calendars + content + "</Project>\n";
    }
    static std::string standardCalendar() {
        return "  <Calendars><Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar>"
               "</Calendars>\n";
    }
    static std::string tasks(const std::string& content) { return "  <Tasks>" + content + "</Tasks>\n"; }
    static std::string task(int uid, int level, const std::string& content = {}) {
        return "<Task><UID>" + std::to_string(uid) + "</UID><OutlineLevel>" + std::to_string(level) +
               "</OutlineLevel>" + content + "</Task>";
    }

    MSPDIMended mend(const std::string& plan, const MSPDIMendOptions& options = {}) const {
        return MSPDIMendPlan("Plan.xml", plan, services, options);
    }
    // "root-task 1, outline 3"
    static std::string stepsOf(const MSPDIMended& mended) {
        std::string text;
        for (const auto& done : mended.steps) {
            text += (text.empty() ? "" : ", ") + std::string(done.step) + " " + std::to_string(done.count);
        }
        return text;
    }
    // Expects that mending a plan changes those bytes, and nothing else, by those steps; and that this was all.
    void expectMended(const std::string& plan, const std::string& wanted, const std::string& steps) const {
        const auto mended = mend(plan);
        ASSERT_EQ(mended.verdict, MSPDIMendVerdict::Mended) << mended.obstacle;
        EXPECT_EQ(mended.bytes, wanted);
        EXPECT_EQ(stepsOf(mended), steps);
        EXPECT_TRUE(mended.refusal.has_value());
        EXPECT_FALSE(mended.isConverted || mended.isRepaired);
        EXPECT_EQ(mend(mended.bytes).verdict, MSPDIMendVerdict::ImportsAsIs);
    }
    // A text with one piece of it replaced.
    static std::string with(std::string text, const std::string& piece, const std::string& replacement) {
        const auto at = text.find(piece);
        EXPECT_NE(at, std::string::npos) << piece;
        return text.replace(at, piece.size(), replacement);
    }
};
