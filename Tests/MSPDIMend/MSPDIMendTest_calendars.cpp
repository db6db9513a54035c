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

TEST_F(MendTest, numbersNoCalendarThatIsNotInTheWay) {
    const std::string unnumbered = "<Calendar><Name>Bob</Name><IsBaseCalendar>0</IsBaseCalendar></Calendar>";
    const auto plan =
        planOf(tasks(task(-1, 1)), "  <Calendars>" + unnumbered + calendar("3", "Standard", true) + "</Calendars>\n");
    expectMended(plan, with(plan, "<UID>-1<", "<UID>1<"), "missing-uid 1");
    // Asked for, it gets one that makes it not the project's.
    const auto mended = mend(plan, {.only = {"missing-uid"}});
    EXPECT_THAT(mended.bytes, testing::HasSubstr("<Calendar><UID>4</UID><Name>Bob<"));
    const auto alone = with(plan, "<UID>3</UID>", "");
    EXPECT_THAT(mend(alone, {.only = {"missing-uid"}}).bytes,
                testing::HasSubstr("<Calendar><UID>2</UID><Name>Bob</Name><IsBaseCalendar>0</IsBaseCalendar></Calendar>"
                                   "<Calendar><UID>3</UID><Name>Standard<"));
}

TEST_F(MendTest, makesNoPersonsCalendarTheProjects) {
    const std::string resources =
        "  <Resources><Resource><UID>1</UID><CalendarUID>1</CalendarUID></Resource></Resources>\n";
    const auto plan = planOf(resources, "  <Calendars>" + calendar("1", "Bob", false) + "</Calendars>\n");
    const auto mended = mend(plan);
    ASSERT_EQ(mended.verdict, MSPDIMendVerdict::Mended) << mended.obstacle;
    EXPECT_EQ(stepsOf(mended), "calendar-order 1, standard-calendar 1");
    EXPECT_THAT(mended.steps[0].where, testing::ElementsAre("Calendar UID='1' name='Bob' gets UID 2"));
    EXPECT_THAT(mended.bytes, testing::HasSubstr(calendar("2", "Bob", false)));
    EXPECT_THAT(mended.bytes, testing::HasSubstr("<UID>1</UID><CalendarUID>2</CalendarUID>"));
    EXPECT_EQ(stepsOf(mend(plan, {.only = {"standard-calendar"}})), "standard-calendar 2");
}

TEST_F(MendTest, prefersTheBaseCalendarOfTwoWithOneUID) {
    const std::string resources =
        "  <Resources><Resource><UID>1</UID><CalendarUID>1</CalendarUID></Resource></Resources>\n";
    const auto plan = planOf(
        resources, with(calendars(calendar("1", "Early", true) + calendar("1", "Bob", false)), "UID>3", "UID>1"));
    expectMended(plan,
                 with(with(plan, "<UID>1</UID><Name>Bob", "<UID>2</UID><Name>Bob"), "<UID>1</UID><CalendarUID>1<",
                      "<UID>1</UID><CalendarUID>2<"),
                 "calendar-order 1");
}

TEST_F(MendTest, comparesTheNumbersOfCalendarsAsNumbers) {
    const std::string resources =
        "  <Resources><Resource><UID>1</UID><CalendarUID>1</CalendarUID></Resource></Resources>\n";
    const auto plan = planOf(resources, calendars(calendar("01", "Anna", false) + calendar("03", "Early", true)));
    const auto wanted =
        planOf(with(resources, "<CalendarUID>1", "<CalendarUID>3"),
               with(calendars(calendar("3", "Anna", false) + calendar("1", "Early", true)), "UID>3<", "UID>1<"));
    expectMended(plan, wanted, "calendar-order 1");
}

TEST_F(MendTest, tellsWhichCalendarsExchangeTheirUIDs) {
    const auto place = [&](const std::string& of) {
        const auto mended = mend(planOf("", calendars(of)), {.only = {"project-calendar"}});
        return mended.steps.empty() ? std::string() : mended.steps[0].where[0];
    };
    EXPECT_EQ(place(calendar("1", "Anna", true) + calendar("3", "Own", true)),
              "Calendar UID='3' name='Own' exchanges its UID with Calendar UID='1' name='Anna'");
    EXPECT_EQ(place(calendar("2", "Standard", true) + calendar("3", "Own", true)),
              "Calendar UID='3' name='Own' gets UID 1");
}

TEST_F(MendTest, tellsWhatBecomesOfTheProjectsCalendar) {
    const auto place = [&](const std::string& plan) { return mend(plan).steps.at(0).where.at(0); };
    EXPECT_EQ(place(planOf("", calendars(calendar("3", "Early", false)))),
              "Calendar UID='3' name='Early': a base calendar, named Standard");
    EXPECT_EQ(place(planOf("", with(calendars(calendar("1", "Early", false)), "UID>3", "UID>1"))),
              "Calendar UID='1' name='Early': a base calendar");
}
