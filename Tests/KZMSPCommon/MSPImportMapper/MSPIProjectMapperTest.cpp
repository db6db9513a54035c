#include "MSPIProjectMapper.h"

#include "ScenarioMapping.h"

namespace {

const std::string startDate = "<StartDate>2012-03-05T08:00:00</StartDate>";

const std::string weekday =
    "<time-span start-time=\"28800\" end-time=\"43200\"/>"
    "<time-span start-time=\"46800\" end-time=\"61200\"/></schedule-day>";
const std::string schedule =
    "<schedule><schedule-day day-of-week=\"sunday\"/><schedule-day day-of-week=\"monday\">" + weekday +
    "<schedule-day day-of-week=\"tuesday\">" + weekday + "<schedule-day day-of-week=\"wednesday\">" + weekday +
    "<schedule-day day-of-week=\"thursday\">" + weekday + "<schedule-day day-of-week=\"friday\">" + weekday +
    "<schedule-day day-of-week=\"saturday\"/></schedule>";

// A scenario from its first elements to the resources, and from the tasks to the end.
std::string scenarioOf(std::string_view dates, std::string_view childResources = "", std::string_view resources = "") {
    return fmt::format(
        "<scenario xmlns=\"urn:kadenza:document:2\"{}<!--  Resources  --><top-resource idref=\"r-1\"/>"
        "<resource id=\"r-1\"><type>Group</type><!--  Project Schedule  -->{}{}</resource>{}<!--  Tasks  -->"
        "<top-task idref=\"t-1\"/><task id=\"t-1\"><type>group</type></task><!--  Critical Path  --></scenario>",
        dates, schedule, childResources, resources);
}

const std::string plainDates = "><start-date>2012-03-05T08:00:00+01:00</start-date>";

}  // namespace

TEST(MSPIProjectMapper, buildsAScenarioOfAnEmptyProject) {
    ScenarioMapping mapping(startDate);
    EXPECT_EQ(mapping.markup(), scenarioOf(plainDates));
    EXPECT_EQ(mapping.fixture.log.takeLines(),
              (std::vector<std::string>{"  Mapping Calendar UID='1' name='Standard' ...", "Mapping 0 Resources ...",
                                        "Mapping 0 Tasks ..."}));
    EXPECT_FALSE(mapping.mapper.userDataChanged());
    EXPECT_EQ(mapping.taskMaxId, 0);
    EXPECT_EQ(mapping.resourceMaxId, 0);
}

TEST(MSPIProjectMapper, putsEverythingInItsOrder) {
    ScenarioMapping mapping(
        "<Title>House</Title><WorkFormat>2</WorkFormat>" + startDate +
            "<Assignments><Assignment><TaskUID>1</TaskUID><ResourceUID>2</ResourceUID></Assignment></Assignments>"
            "<Tasks><Task><UID>0</UID><Summary>1</Summary><Start>2012-03-05T08:00:00</Start>"
            "<Finish>2012-03-06T17:00:00</Finish></Task><Task><UID>1</UID><Name>Dig</Name>"
            "<OutlineLevel>1</OutlineLevel></Task></Tasks>"
            "<Resources><Resource><UID>0</UID></Resource><Resource><UID>2</UID><Name>Ann</Name></Resource></Resources>",
        9, standardCalendarXML,
        "<scenario xmlns='urn:x'><critical-path><a b='c'>d</a></critical-path><task/></scenario>");
    EXPECT_EQ(mapping.markup(),
              "<scenario xmlns=\"urn:x\"><start-date>2012-03-05T08:00:00+01:00</start-date>"
              "<granularity>hours</granularity><!--  Resources  --><top-resource idref=\"r-1\"/>"
              "<resource id=\"r-1\"><type>Group</type><!--  Project Schedule  -->" +
                  schedule +
                  "<child-resource idref=\"r2\"/></resource><resource id=\"r2\"><name>Ann</name><type>Staff</type>"
                  "<units-available>1.000000</units-available></resource><!--  Tasks  --><top-task idref=\"t-1\"/>"
                  "<task id=\"t-1\"><type>group</type><start-date>2012-03-05T08:00:00+01:00</start-date>"
                  "<end-date>2012-03-06T17:00:00+01:00</end-date><child-task idref=\"t1\"/></task>"
                  "<task id=\"t1\"><title>Dig</title><type>milestone</type><schedule-type>asap</schedule-type>"
                  "<effort>0</effort><assignment idref=\"r2\"/></task><!--  Critical Path  -->"
                  "<critical-path><a b=\"c\">d</a></critical-path></scenario>");
    EXPECT_EQ(
        mapping.fixture.log.takeLines(),
        (std::vector<std::string>{"  Mapping Calendar UID='1' name='Standard' ...", "Mapping 2 Resources ...",
                                  "  Mapping Resource UID=2  name='Ann' ...", "Mapping 2 Tasks ...",
                                  "  Mapping Task UID='0' name='' ...", "  Mapping Task UID='1' name='Dig' ..."}));
}

TEST(MSPIProjectMapper, namesTheProjectByTitleElseNameElseFile) {
    const std::pair<const char*, const char*> table[] = {
        {"<Title>House</Title><Name>Plan.mpp</Name>", "House"},
        {"<Title/><Name>Plan.mpp</Name>", ""},
        {"<Name>Plan.mpp</Name>", "Plan"},
        {"<Name>Plan.v2.mpp</Name>", "Plan.v2"},
        {"<Name>Plan</Name>", "Plan"},
        {"<Name>Plan.</Name>", "Plan."},
        {"<Name>Release 1.5 final</Name>", "Release 1.5 final"},
        {"<Name>Release 1.5\tfinal</Name>", "Release 1.5\tfinal"},
        {"<Name>Release 1.5</Name>", "Release 1"},
        {"<Name/>", ""},
        {"<Title>A</Title><Title>B</Title>", "B"},
        {"", "Imported"},
    };
    for (const auto& [content, expected] : table) {
        ScenarioMapping mapping(startDate + content);
        mapping.map();
        EXPECT_EQ(mapping.mapper.mspProjectName(), expected) << content;
    }
}

TEST(MSPIProjectMapper, datesAProjectScheduledFromItsStart) {
    for (const auto* direction :
         {"<ScheduleFromStart>1</ScheduleFromStart>", "<ScheduleFromStart>true</ScheduleFromStart>"}) {
        ScenarioMapping mapping(direction + startDate + "<FinishDate>2012-05-01T17:00:00</FinishDate>");
        EXPECT_EQ(mapping.markup(), scenarioOf(plainDates));
        EXPECT_EQ(mapping.mapper.mspStartDate(), "2012-03-05T08:00:00");
        EXPECT_EQ(mapping.mapper.mspFinishDate(), "");
        EXPECT_TRUE(mapping.fixture.context.mspScheduleFromStart());
    }
}

TEST(MSPIProjectMapper, datesAProjectScheduledFromItsEnd) {
    ScenarioMapping mapping(
        "<ScheduleFromStart>0</ScheduleFromStart><StartDate>2012-03-05T08:00:00</StartDate>"
        "<FinishDate>2012-05-01T17:00:00</FinishDate>");
    EXPECT_EQ(mapping.markup(), scenarioOf(" fixed-end=\"yes\"><end-date>2012-05-01T17:00:00+02:00</end-date>"));
    EXPECT_EQ(mapping.mapper.mspStartDate(), "");
    EXPECT_EQ(mapping.mapper.mspFinishDate(), "2012-05-01T17:00:00");
    EXPECT_FALSE(mapping.fixture.context.mspScheduleFromStart());
}

// Deliberate: it schedules from the start itself, while the others are told what the missing element reads as.
TEST(MSPIProjectMapper, takesAMissingOrAmbiguousDirectionAsFromTheStart) {
    const std::pair<const char*, bool> table[] = {
        {"", false},
        {"<ScheduleFromStart>0</ScheduleFromStart><ScheduleFromStart>0</ScheduleFromStart>", false},
        {"<ScheduleFromStart>0</ScheduleFromStart><ScheduleFromStart>1</ScheduleFromStart>", true},
    };
    for (const auto& [content, toldOthers] : table) {
        ScenarioMapping mapping(startDate + content + "<Tasks>" + mspTask(1, 1) + "</Tasks>");
        const auto scenario = mapping.map();
        EXPECT_FALSE(scenario.attribute("fixed-end"));
        EXPECT_EQ(scenario.nodesForXPath("task[@id='t1']/schedule-type")->front().stringValue(), "asap");
        EXPECT_EQ(mapping.fixture.context.mspScheduleFromStart(), toldOthers) << content;
    }
}

// The clock stands at noon of 10 January 2012.
TEST(MSPIProjectMapper, startsOrEndsAProjectWithoutDatesToday) {
    ScenarioMapping fromStart("<FinishDate>2012-05-01T17:00:00</FinishDate>");
    EXPECT_EQ(fromStart.markup(), scenarioOf("><start-date>2012-01-10T00:00:00+01:00</start-date>"));
    EXPECT_EQ(fromStart.mapper.mspStartDate(), "2012-01-10T00:00:00");
    ScenarioMapping fromEnd("<ScheduleFromStart>0</ScheduleFromStart>" + startDate);
    EXPECT_EQ(fromEnd.markup(), scenarioOf(" fixed-end=\"yes\"><end-date>2012-01-10T23:59:59+01:00</end-date>"));
    EXPECT_EQ(fromEnd.mapper.mspFinishDate(), "2012-01-10T23:59:59");
}

TEST(MSPIProjectMapper, takesTodayInItsOwnZone) {
    ScenarioMapping mapping("");
    mapping.fixture.clock = FixedClock{MSPCInstant{1326236400}};  // 2012-01-10T23:00:00Z, 11 January in Berlin
    mapping.map();
    EXPECT_EQ(mapping.mapper.mspStartDate(), "2012-01-11T00:00:00");
}

// The offset that summer dates get twice in summer belongs to the document; today stays today.
TEST(MSPIProjectMapper, startsOrEndsAProjectWithoutDatesTodayInSummerToo) {
    const auto mapInJuly = [](ScenarioMapping& mapping) {
        mapping.fixture.clock = FixedClock{MSPCInstant{1341914400}};  // 2012-07-10T10:00:00Z
        return mapping.markup();
    };
    ScenarioMapping fromStart("");
    EXPECT_EQ(mapInJuly(fromStart), scenarioOf("><start-date>2012-07-10T00:00:00+03:00</start-date>"));
    EXPECT_EQ(fromStart.mapper.mspStartDate(), "2012-07-10T00:00:00");
    ScenarioMapping fromEnd("<ScheduleFromStart>0</ScheduleFromStart>");
    EXPECT_EQ(mapInJuly(fromEnd), scenarioOf(" fixed-end=\"yes\"><end-date>2012-07-10T23:59:59+03:00</end-date>"));
    EXPECT_EQ(fromEnd.mapper.mspFinishDate(), "2012-07-10T23:59:59");
}

TEST(MSPIProjectMapper, refusesEmptyOrUnreadableProjectDates) {
    EXPECT_RAISES(ScenarioMapping("<StartDate/>").map(), MSPCInternalInconsistency,
                  "Failed to find start date for the project scheduled from start.");
    EXPECT_RAISES(ScenarioMapping("<ScheduleFromStart>0</ScheduleFromStart><FinishDate/>").map(),
                  MSPCInternalInconsistency, "Failed to find finish date for the project scheduled from end.");
    EXPECT_RAISES(ScenarioMapping("<StartDate>today</StartDate>").map(), MSPCInternalInconsistency,
                  "Failed to make MSPCDateComponents from MSPDI date-time: 'today'.");
    EXPECT_RAISES(ScenarioMapping("<ScheduleFromStart/>" + startDate).map(), MSPCInternalInconsistency,
                  "Failed to get boolean value from XML node: <ScheduleFromStart/>");
}

TEST(MSPIProjectMapper, readsTheGranularityFromTheWorkFormat) {
    const std::pair<const char*, const char*> table[] = {
        {"<WorkFormat>0</WorkFormat>", ""},
        {"<WorkFormat>1</WorkFormat>", ""},
        {"<WorkFormat>2</WorkFormat>", "<granularity>hours</granularity>"},
        {"<WorkFormat>3</WorkFormat>", "<granularity>days</granularity>"},
        {"<WorkFormat>4</WorkFormat>", "<granularity>days</granularity>"},
        {"<WorkFormat>5</WorkFormat>", "<granularity>days</granularity>"},
        {"<WorkFormat>6</WorkFormat>", ""},
        {"<WorkFormat>-3</WorkFormat>", ""},
        {"<WorkFormat>2</WorkFormat><WorkFormat>2</WorkFormat>", ""},
        {"", ""},
    };
    for (const auto& [content, expected] : table) {
        EXPECT_EQ(ScenarioMapping(startDate + content).markup(), scenarioOf(plainDates + expected)) << content;
    }
    EXPECT_RAISES(ScenarioMapping(startDate + "<WorkFormat/>").map(), MSPCInternalInconsistency,
                  "Failed to get int value from XML node: <WorkFormat/>");
}

TEST(MSPIProjectMapper, refusesATemplateOfAnotherKindBeforeAnythingIsMapped) {
    ScenarioMapping mapping("", 9, "", "<document/>");
    EXPECT_RAISES(mapping.map(), MSPCInternalInconsistency,
                  "*** ERROR: Invalid root element of template: 'document'. Must be 'scenario'.");
    EXPECT_EQ(mapping.fixture.log.takeLines(), std::vector<std::string>{});
    EXPECT_EQ(mapping.mapper.mspProjectName(), "");
}

TEST(MSPIProjectMapper, usesTheTemplatesNamespaceAndItsOwnWhereThatHasNone) {
    const std::pair<const char*, const char*> table[] = {
        {"<scenario xmlns='urn:x' xmlns:y='urn:y'/>", "urn:x"},
        {"<scenario xmlns:y='urn:y'/>", "urn:kadenza:document:2"},
        {"<scenario/>", "urn:kadenza:document:2"},
    };
    for (const auto& [templateXML, expected] : table) {
        ScenarioMapping mapping(startDate, 9, standardCalendarXML, templateXML);
        EXPECT_EQ(mapping.map().attribute("xmlns").stringValue(), expected) << templateXML;
    }
}

TEST(MSPIProjectMapper, copiesEveryCriticalPathOfTheTemplate) {
    const auto templateXML =
        "<scenario><critical-path><enabled/></critical-path><task><critical-path/></task>"
        "<critical-path a=\"b\"><!--c--></critical-path></scenario>";
    ScenarioMapping mapping(startDate, 9, standardCalendarXML, templateXML);
    const auto markup = mapping.markup();
    const std::string comment = "<!--  Critical Path  -->";
    EXPECT_EQ(markup.substr(markup.find(comment) + comment.size()),
              "<critical-path><enabled/></critical-path><critical-path a=\"b\"><!--c--></critical-path></scenario>");
    EXPECT_EQ(markupOf(mapping.templateDocument.root().newCopyOf(mapping.templateDocument.root())), templateXML);
}

TEST(MSPIProjectMapper, declaresThePrefixesThatACriticalPathTakesFromTheTemplatesRoot) {
    const auto templateXML =
        "<scenario xmlns='urn:x' xmlns:a='urn:a' xmlns:b='urn:b&amp;' xmlns:c='urn:c' xmlns:d='urn:d' xmlns:e='urn:e'>"
        "<critical-path xml:lang='en'><p b:q='1'><a:r/></p></critical-path>"
        "<critical-path xmlns:c='urn:own' c:s=''><t xmlns:d='urn:deep'><d:u/></t><d:v/></critical-path>"
        "<critical-path><w>e:text</w></critical-path></scenario>";
    ScenarioMapping mapping(startDate, 9, standardCalendarXML, templateXML);
    const auto markup = mapping.markup();
    const std::string comment = "<!--  Critical Path  -->";
    EXPECT_EQ(markup.substr(markup.find(comment) + comment.size()),
              "<critical-path xml:lang=\"en\" xmlns:a=\"urn:a\" xmlns:b=\"urn:b&amp;\"><p b:q=\"1\"><a:r/></p>"
              "</critical-path><critical-path xmlns:c=\"urn:own\" c:s=\"\" xmlns:d=\"urn:d\"><t xmlns:d=\"urn:deep\">"
              "<d:u/></t><d:v/></critical-path><critical-path><w>e:text</w></critical-path></scenario>");
    EXPECT_TRUE(markup.starts_with("<scenario xmlns=\"urn:x\"><start-date>"));
}

TEST(MSPIProjectMapper, takesTheCalendarWithUID1ElseTheOneNamedStandard) {
    const auto base = [](std::string_view content) {
        return fmt::format("<Calendar>{}<IsBaseCalendar>1</IsBaseCalendar></Calendar>", content);
    };
    const struct {
        std::string calendars;
        const char* loggedUID;
        std::int64_t standardCalendarUID;
    } table[] = {
        {base("<UID>3</UID><Name>Standard</Name>") + base("<UID>1</UID><Name>Night</Name>"), "1", 1},
        {base("<UID>2</UID><Name>standard</Name>") + base("<UID>3</UID><Name>Standard</Name>"), "3", 3},
        {base("<UID> 01</UID>"), " 01", 1},
        {base("<UID>4</UID><Name>Standard</Name>") + base("<UID>5</UID><Name>Standard</Name>"), "5", 5},
        {base("<Name>Standard</Name>"), "", -1},
        {base("<UID>1</UID><UID>6</UID>"), "6", -1},
    };
    for (const auto& [calendars, loggedUID, standardCalendarUID] : table) {
        ScenarioMapping mapping(startDate, 9, "<Calendars>" + calendars + "</Calendars>");
        mapping.map();
        EXPECT_EQ(mapping.fixture.context.mspStandardCalendarUID(), MSPCCalendarUID{standardCalendarUID}) << calendars;
        const auto lines = mapping.fixture.log.takeLines();
        EXPECT_TRUE(lines.at(0).starts_with(fmt::format("  Mapping Calendar UID='{}'", loggedUID))) << lines.at(0);
    }
}

TEST(MSPIProjectMapper, refusesAProjectWithoutAStandardBaseCalendar) {
    EXPECT_RAISES(ScenarioMapping(startDate, 9, "").map(), MSPCInternalInconsistency,
                  "MS Project 'Standard' Calendar not found.");
    EXPECT_RAISES(ScenarioMapping(startDate, 9, "<Calendars><Calendar><UID>2</UID></Calendar></Calendars>").map(),
                  MSPCInternalInconsistency, "MS Project 'Standard' Calendar not found.");
    for (const auto* flag : {"", "<IsBaseCalendar>0</IsBaseCalendar>", "<IsBaseCalendar>false</IsBaseCalendar>"}) {
        EXPECT_RAISES(ScenarioMapping(startDate, 9,
                                      fmt::format("<Calendars><Calendar><UID>1</UID>{}</Calendar></Calendars>", flag))
                          .map(),
                      MSPCInternalInconsistency, "MSPDI 'Standard' Calendar is not a base calendar.");
    }
}

TEST(MSPIProjectMapper, givesTheProjectsScheduleToTheOthers) {
    ScenarioMapping mapping(startDate, 9,
                            "<Calendars><Calendar><UID>1</UID><IsBaseCalendar>1</IsBaseCalendar><WeekDays><WeekDay>"
                            "<DayType>7</DayType><DayWorking>1</DayWorking><WorkingTimes><WorkingTime>"
                            "<FromTime>08:00:00</FromTime><ToTime>10:00:00</ToTime></WorkingTime></WorkingTimes>"
                            "</WeekDay></WeekDays></Calendar></Calendars>");
    EXPECT_EQ(mapping.fixture.context.scheduleCalendar(), nullptr);
    mapping.map();
    const auto* calendar = mapping.fixture.context.scheduleCalendar();
    ASSERT_NE(calendar, nullptr);
    const MSPCInstant monday{1330902000};  // 2012-03-05T00:00:00 in Berlin
    EXPECT_EQ(calendar->workingTimeFromDateToDate(monday, monday + 7 * 86400.0), 7200);
}

TEST(MSPIProjectMapper, mapsTheResourcesThatHaveAUID) {
    const auto resource = [](std::string_view uids) { return fmt::format("<Resource>{}</Resource>", uids); };
    ScenarioMapping mapping(startDate + "<Resources>" + resource("<UID>9</UID>") + resource("<UID>0</UID>") +
                            resource("") + resource("<UID>4</UID><UID>5</UID>") + resource("<UID>007</UID>") +
                            "</Resources><Resources>" + resource("<UID>2</UID>") + "</Resources>");
    const auto staff = [](std::string_view id) {
        return fmt::format(
            "<resource id=\"{}\"><type>Staff</type><units-available>1.000000</units-available></resource>", id);
    };
    EXPECT_EQ(mapping.markup(),
              scenarioOf(plainDates,
                         "<child-resource idref=\"r9\"/><child-resource idref=\"r007\"/><child-resource idref=\"r2\"/>",
                         staff("r9") + staff("r007") + staff("r2")));
    EXPECT_EQ(mapping.resourceMaxId, 9);
    const auto lines = mapping.fixture.log.takeLines();
    EXPECT_NE(std::find(lines.begin(), lines.end(), "Mapping 6 Resources ..."), lines.end());
}

TEST(MSPIProjectMapper, refusesAResourceWhoseUIDIsNoNumberOrNegative) {
    const auto project = [](std::string_view uid) {
        return startDate + fmt::format("<Resources><Resource><UID>{}</UID></Resource></Resources>", uid);
    };
    EXPECT_RAISES(ScenarioMapping(project("x")).map(), MSPCInternalInconsistency,
                  "Failed to get int value from XML node: <UID>x</UID>");
    EXPECT_RAISES(ScenarioMapping(project("-1")).map(), MSPCInternalInconsistency,
                  "Invalid format of MSPDI Resource ID (can not be negative number): -1");
}

TEST(MSPIProjectMapper, tellsWhetherAnyTaskOrResourceRecordedUserData) {
    const std::string definition =
        "<ExtendedAttributes><ExtendedAttribute><FieldID>1</FieldID><FieldName>Text1</FieldName></ExtendedAttribute>"
        "</ExtendedAttributes>" +
        startDate;
    const std::string value = "<ExtendedAttribute><FieldID>1</FieldID><Value>x</Value></ExtendedAttribute>";
    const std::pair<std::string, bool> table[] = {
        {"<Resources><Resource><UID>1</UID>" + value + "</Resource><Resource><UID>2</UID></Resource></Resources>",
         true},
        {"<Tasks>" + mspTask(1, 1, value) + mspTask(2, 1) + "</Tasks>", true},
        {"<Tasks>" + mspTask(1, 1) + "</Tasks>", false},
    };
    for (const auto& [content, expected] : table) {
        ScenarioMapping mapping(definition + content);
        mapping.map();
        EXPECT_EQ(mapping.mapper.userDataChanged(), expected) << content;
    }
}
