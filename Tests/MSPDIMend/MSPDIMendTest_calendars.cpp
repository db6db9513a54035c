#include "MendFixture.h"

namespace {

std::string calendar(const std::string& uid, const std::string& name, bool isBase) {
    return "<Calendar><UID>" + uid + "</UID><Name>" + name + "</Name><IsBaseCalendar>" + (isBase ? "1" : "0") +
           "</IsBaseCalendar></Calendar>";
}

std::string calendars(const std::string& content) {
    return "  <CalendarUID>3</CalendarUID>\n  <Calendars>" + content + "</Calendars>\n";
}

}  // namespace

TEST_F(MendTest, namesTheProjectsCalendarStandard) {
    const auto plan = planOf("", calendars(calendar("2", "Late", true) + calendar("3", "Early", true)));
    expectMended(plan, with(plan, "Early", "Standard"), "standard-calendar 1");
}

TEST_F(MendTest, makesTheProjectsCalendarABaseCalendar) {
    const auto plan = planOf("", calendars(calendar("3", "Early", false)));
    expectMended(plan, planOf("", calendars(calendar("3", "Standard", true))), "standard-calendar 1");
    const auto first = planOf("", with(calendars(calendar("1", "Early", false)), "UID>3", "UID>1"));
    expectMended(first, with(first, "<IsBaseCalendar>0", "<IsBaseCalendar>1"), "standard-calendar 1");
}

TEST_F(MendTest, takesABaseCalendarWhereTheProjectNamesNone) {
    const auto plan = planOf("", calendars(calendar("7", "Own", false) + calendar("8", "Early", true)));
    expectMended(plan, with(plan, "Early", "Standard"), "standard-calendar 1");
}

TEST_F(MendTest, inventsACalendarWhereThereIsNone) {
    for (const auto& [before, behind] : {std::pair<std::string, std::string>{"", ""}, {"  <Calendars/>\n", ""}}) {
        const auto mended = mend(planOf(tasks(task(1, 1)), before));
        ASSERT_EQ(mended.verdict, MSPDIMendVerdict::Mended) << mended.obstacle;
        EXPECT_EQ(stepsOf(mended), "standard-calendar 1");
        EXPECT_EQ(mended.bytes.find("<Calendars>") < mended.bytes.find("<Tasks>"), true);
        std::size_t days = 0;
        for (auto at = mended.bytes.find("<WeekDay>"); at != std::string::npos;
             at = mended.bytes.find("<WeekDay>", at + 1)) {
            ++days;
        }
        EXPECT_EQ(days, 7U);
        EXPECT_EQ(mend(mended.bytes).verdict, MSPDIMendVerdict::ImportsAsIs);
    }
}

TEST_F(MendTest, putsAnInventedCalendarOnLinesOfItsOwn) {
    const auto mended = mend(planOf(tasks(task(1, 1)), ""));
    EXPECT_THAT(mended.bytes, testing::HasSubstr("  <StartDate>2012-01-09T08:00:00</StartDate>\n"
                                                 "  <Calendars>\n"
                                                 "    <Calendar>\n"
                                                 "      <UID>1</UID>\n"
                                                 "      <Name>Standard</Name>\n"));
    EXPECT_THAT(mended.bytes, testing::HasSubstr("    </Calendar>\n  </Calendars>\n  <Tasks>"));
}

TEST_F(MendTest, exchangesACalendarThatIsNoBaseWithTheProjects) {
    const std::string resources =
        "  <Resources><Resource><UID>1</UID><CalendarUID>1</CalendarUID></Resource></Resources>\n";
    const auto plan = planOf(resources, calendars(calendar("1", "Anna", false) + calendar("3", "Early", true)));
    const auto wanted =
        planOf(with(resources, "<CalendarUID>1", "<CalendarUID>3"),
               with(calendars(calendar("3", "Anna", false) + calendar("1", "Early", true)), "UID>3<", "UID>1<"));
    expectMended(plan, wanted, "calendar-order 1");
}

TEST_F(MendTest, takesTheProjectsCalendarBeforeAPersonsWhenAsked) {
    const auto plan = planOf("", calendars(calendar("1", "Anna", true) + calendar("3", "Early", true)));
    EXPECT_EQ(mend(plan).verdict, MSPDIMendVerdict::ImportsAsIs);
    EXPECT_EQ(mend(plan, {.only = {"calendar-order"}}).verdict, MSPDIMendVerdict::ImportsAsIs);
    const auto mended = mend(plan, {.only = {"project-calendar"}});
    EXPECT_EQ(mended.bytes, planOf("", with(calendars(calendar("3", "Anna", true) + calendar("1", "Early", true)),
                                            "UID>3<", "UID>1<")));
}
