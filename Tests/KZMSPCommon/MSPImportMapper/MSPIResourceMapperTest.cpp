#include "MSPIResourceMapper.h"

#include "ExpectRaises.h"
#include "MappingFixture.h"

namespace {

constexpr std::int64_t savedBy2003 = 9;
constexpr std::int64_t savedBy2007 = 12;

// One resource of a project and what its mapping leaves behind.
class ResourceMapping {
public:
    explicit ResourceMapping(std::string_view resourceContent, std::string_view restOfProject = "",
                             std::int64_t saveVersion = savedBy2003)
        : fixture("<Resources><Resource>" + std::string(resourceContent) + "</Resource></Resources>" +
                  std::string(restOfProject)) {
        fixture.context.setMspSaveVersion(saveVersion);
    }

    ResourceMapping(const ResourceMapping&) = delete;
    ResourceMapping& operator=(const ResourceMapping&) = delete;
    ~ResourceMapping() { fixture.log.ignoreLines(); }  // one test looks at the log

    std::string markup() { return markupOf(mapper().newResourceFromMSPResource(MSPCFields(resource()))); }
    MSPIResourceMapper mapper() { return {fixture.context, userDataTOCElements, maxId}; }
    MSPCXMLNode resource() { return fixture.node("Resources/Resource"); }

    MappingFixture fixture;
    MSPIUserDataTOCElements userDataTOCElements;
    std::int64_t maxId = 0;
};

// The target of a resource with UID 3 and the given further content.
std::string resourceOf(std::string_view content, std::int64_t saveVersion = savedBy2003,
                       std::string_view restOfProject = "") {
    return ResourceMapping("<UID>3</UID>" + std::string(content), restOfProject, saveVersion).markup();
}

const std::string staffStart = "<resource id=\"r3\"><type>Staff</type>";
const std::string materialStart = "<resource id=\"r3\"><type>Material</type>";
const std::string oneUnit = "<units-available>1.000000</units-available>";
const std::string noUnits = "<units-available>0.000000</units-available>";
const std::string bareStaff = staffStart + oneUnit + "</resource>";
const std::string bareMaterial = materialStart + noUnits + "</resource>";

}  // namespace

TEST(MSPIResourceMapper, writesItsChildrenInOrder) {
    const auto rest =
        "<Calendars><Calendar><UID>5</UID><IsBaseCalendar>0</IsBaseCalendar></Calendar></Calendars>"
        "<ExtendedAttributes><ExtendedAttribute><FieldID>188744000</FieldID><FieldName>Text1</FieldName>"
        "</ExtendedAttribute></ExtendedAttributes>";
    const auto markup = resourceOf(
        "<EmailAddress>ann@example.org</EmailAddress><CalendarUID>5</CalendarUID><MaxUnits>0.5</MaxUnits>"
        "<StandardRate>40</StandardRate><CostPerUse>1250</CostPerUse>"
        "<ExtendedAttribute><FieldID>188744000</FieldID><Value>x</Value></ExtendedAttribute>"
        "<Notes>Mason</Notes><Type>1</Type><Name>Ann</Name>",
        savedBy2003, rest);
    EXPECT_EQ(markup,
              "<resource id=\"r3\"><name>Ann</name><type>Staff</type>"
              "<note><text><p><run><lit>Mason</lit></run></p></text></note>"
              "<user-data><key>Text1</key><string>x</string></user-data>"
              "<cost-per-use>12.50</cost-per-use><cost-per-hour>40</cost-per-hour>"
              "<units-available>0.500000</units-available>"
              "<!--  Resource Schedule  --><schedule/>"
              "<email-address>ann@example.org</email-address></resource>");
}

TEST(MSPIResourceMapper, needsNothingButAUID) {
    EXPECT_EQ(resourceOf(""), bareStaff);
}

TEST(MSPIResourceMapper, logsUIDAndName) {
    ResourceMapping named("<UID>3</UID><Name>Ann</Name>");
    static_cast<void>(named.mapper().newResourceFromMSPResource(MSPCFields(named.resource())));
    EXPECT_EQ(named.fixture.log.takeLines(), std::vector<std::string>{"  Mapping Resource UID=3  name='Ann' ..."});
    ResourceMapping nameless("<UID>003</UID>");
    static_cast<void>(nameless.mapper().newResourceFromMSPResource(MSPCFields(nameless.resource())));
    EXPECT_EQ(nameless.fixture.log.takeLines(), std::vector<std::string>{"  Mapping Resource UID=003  name='' ..."});
}

TEST(MSPIResourceMapper, keepsItsUIDAndRaisesTheCounterOnly) {
    const struct {
        const char* uid;
        std::int64_t counterBefore;
        std::int64_t readUID;
        std::int64_t counterAfter;
    } table[] = {
        {"40", 0, 40, 40}, {"40", 39, 40, 40}, {"40", 41, 40, 41}, {"0", 0, 0, 0},
        {"007", 0, 7, 7},  {"abc", 5, 0, 5},   {" 8 ", 0, 8, 8},   {"", 5, 0, 5},
    };
    for (const auto& [uid, counterBefore, readUID, counterAfter] : table) {
        ResourceMapping mapping("<UID>" + std::string(uid) + "</UID>");
        mapping.maxId = counterBefore;
        auto mapper = mapping.mapper();
        EXPECT_EQ(mapper.mspResourceUID(), MSPCResourceUID{-1});
        static_cast<void>(mapper.newResourceFromMSPResource(MSPCFields(mapping.resource())));
        EXPECT_EQ(mapper.mspResourceUID(), MSPCResourceUID{readUID}) << uid;
        EXPECT_EQ(mapping.maxId, counterAfter) << uid;
    }
}

TEST(MSPIResourceMapper, refusesAMissingOrNegativeUID) {
    EXPECT_RAISES(ResourceMapping("<Name>Ann</Name>").markup(), MSPCInternalInconsistency,
                  "Failed to get UID from Resource.");
    EXPECT_RAISES(ResourceMapping("<UID>-1</UID>").markup(), MSPCInternalInconsistency,
                  "Invalid format of MSPDI Resource ID (can not be negative number): -1");
}

TEST(MSPIResourceMapper, readsTheKindFromTypeAndTheCostFlag) {
    const struct {
        const char* content;
        std::int64_t saveVersion;
        std::string expected;
    } table[] = {
        {"<Type>0</Type>", savedBy2003, bareMaterial},
        {"<Type>1</Type>", savedBy2003, bareStaff},
        {"", savedBy2003, bareStaff},
        {"<Type>0</Type><Type>0</Type>", savedBy2003, bareStaff},  // ambiguous counts as 1
        {"<Type>7</Type><Type>7</Type>", savedBy2003, bareStaff},
        {"<Type>1</Type><IsCostResource>1</IsCostResource>", savedBy2007, bareMaterial},
        {"<IsCostResource>true</IsCostResource>", 14, bareMaterial},
        {"<Type>1</Type><IsCostResource>0</IsCostResource>", savedBy2007, bareStaff},
        {"<Type>0</Type><IsCostResource>0</IsCostResource>", savedBy2007, bareMaterial},
        {"<Type>1</Type><IsCostResource>1</IsCostResource>", 11, bareStaff},
        {"<Type>1</Type><IsCostResource>1</IsCostResource><IsCostResource>1</IsCostResource>", savedBy2007, bareStaff},
        {"<Type>1</Type><IsCostResource>maybe</IsCostResource>", 11, bareStaff},  // not read before 2007
    };
    for (const auto& [content, saveVersion, expected] : table) {
        EXPECT_EQ(resourceOf(content, saveVersion), expected) << content << " " << saveVersion;
    }
}

TEST(MSPIResourceMapper, refusesOtherTypesInEverySaveVersion) {
    for (const auto saveVersion : {savedBy2003, savedBy2007}) {
        EXPECT_RAISES(resourceOf("<Type>2</Type><IsCostResource>1</IsCostResource>", saveVersion),
                      MSPCInternalInconsistency, "Invalid value of 'Type' in 'Resource': '2'.");
        EXPECT_RAISES(resourceOf("<Type>-1</Type>", saveVersion), MSPCInternalInconsistency,
                      "Invalid value of 'Type' in 'Resource': '-1'.");
    }
}

TEST(MSPIResourceMapper, refusesTextsThatShouldBeNumbers) {
    const struct {
        const char* content;
        const char* reason;
    } table[] = {
        {"<Type/>", "Failed to get int value from XML node: <Type/>"},
        {"<Type>work</Type>", "Failed to get int value from XML node: <Type>work</Type>"},
        {"<IsCostResource>maybe</IsCostResource>",
         "Failed to get boolean value from XML node: <IsCostResource>maybe</IsCostResource>"},
        {"<CostPerUse/>", "Failed to get float value from XML node: <CostPerUse/>"},
        {"<MaxUnits>all</MaxUnits>", "Failed to get float value from XML node: <MaxUnits>all</MaxUnits>"},
        {"<CalendarUID/>", "Failed to get int value from XML node: <CalendarUID/>"},
    };
    for (const auto& [content, reason] : table) {
        EXPECT_RAISES(resourceOf(content, savedBy2007), MSPCInternalInconsistency, reason);
    }
}

TEST(MSPIResourceMapper, copiesTextsAsTheyAreEmptyOnesIncluded) {
    EXPECT_EQ(resourceOf("<Name/><Notes/><StandardRate/><EmailAddress/>"),
              "<resource id=\"r3\"><name/><type>Staff</type><note><text/></note><cost-per-hour/>" + oneUnit +
                  "<email-address/></resource>");
    EXPECT_EQ(resourceOf("<Name>A</Name><Name>B</Name><StandardRate>1,5 EUR</StandardRate>"
                         "<EmailAddress>a</EmailAddress><EmailAddress>b</EmailAddress>"),
              "<resource id=\"r3\"><name>B</name><type>Staff</type><cost-per-hour>1,5 EUR</cost-per-hour>" + oneUnit +
                  "<email-address>b</email-address></resource>");
}

TEST(MSPIResourceMapper, readsCostPerUseInHundredths) {
    const std::pair<const char*, const char*> table[] = {
        {"1250", "12.50"}, {"0", "0.00"}, {"-100", "-1.00"}, {"0.4", "0.00"}, {"1e4", "100.00"}, {" 99.9 x", "1.00"},
    };
    for (const auto& [cost, expected] : table) {
        EXPECT_EQ(resourceOf("<CostPerUse>" + std::string(cost) + "</CostPerUse>"),
                  staffStart + "<cost-per-use>" + expected + "</cost-per-use>" + oneUnit + "</resource>");
    }
    EXPECT_EQ(resourceOf("<CostPerUse>1</CostPerUse><CostPerUse>2</CostPerUse>"), bareStaff);
}

TEST(MSPIResourceMapper, givesStaffItsMaximumUnitsAndAtLeastSome) {
    const std::pair<const char*, const char*> table[] = {
        {"<MaxUnits>0.5</MaxUnits>", "0.500000"},
        {"<MaxUnits>0</MaxUnits>", "1.000000"},
        {"<MaxUnits>0.00</MaxUnits>", "1.000000"},
        {"", "1.000000"},
        {"<MaxUnits>-2</MaxUnits>", "-2.000000"},
        {"<MaxUnits>1</MaxUnits><MaxUnits>2.5</MaxUnits>", "2.500000"},
        {"<MaxUnits>1</MaxUnits><MaxUnits>0</MaxUnits>", "1.000000"},
    };
    for (const auto& [content, expected] : table) {
        EXPECT_EQ(resourceOf(content), staffStart + "<units-available>" + expected + "</units-available></resource>")
            << content;
    }
}

TEST(MSPIResourceMapper, givesMaterialTheUnitsOfAllItsAssignments) {
    const auto assignments =
        "<Assignments>"
        "<Assignment><ResourceUID>3</ResourceUID><Units>2</Units></Assignment>"
        "<Assignment><ResourceUID>4</ResourceUID><Units>100</Units></Assignment>"
        "<Assignment><ResourceUID> 03 </ResourceUID><Units>3</Units></Assignment>"
        "</Assignments>";
    EXPECT_EQ(resourceOf("<Type>0</Type><MaxUnits>9</MaxUnits>", savedBy2003, assignments),
              materialStart + "<units-available>5.000000</units-available></resource>");
}

TEST(MSPIResourceMapper, countsEveryUnitsElementOnceAndTextsThatAreNoNumbersAsNothing) {
    const auto assignments =
        "<Assignments>"
        "<Assignment><ResourceUID>3</ResourceUID><ResourceUID>3</ResourceUID><Units>2</Units><Units>0.5</Units>"
        "</Assignment>"
        "<Assignment><ResourceUID>7</ResourceUID><ResourceUID>3</ResourceUID><Units>4</Units></Assignment>"
        "<Assignment><ResourceUID>3</ResourceUID><Units>many</Units></Assignment>"
        "<Assignment><ResourceUID>3</ResourceUID><Units/></Assignment>"
        "<Assignment><ResourceUID>3</ResourceUID></Assignment>"
        "<Assignment><ResourceUID>+3</ResourceUID><Units>8</Units></Assignment>"
        "<Assignment><ResourceUID>3x</ResourceUID><Units>16</Units></Assignment>"
        "<Assignment><ResourceUID/><Units>32</Units></Assignment>"
        "</Assignments><Assignments><Assignment><ResourceUID>3.0</ResourceUID><Units>0.25</Units></Assignment>"
        "</Assignments>";
    EXPECT_EQ(resourceOf("<Type>0</Type>", savedBy2003, assignments),
              materialStart + "<units-available>6.750000</units-available></resource>");
}

TEST(MSPIResourceMapper, givesCostResourcesTheUnitsOfTheirAssignmentsToo) {
    const auto assignments =
        "<Assignments><Assignment><ResourceUID>3</ResourceUID><Units>2</Units></Assignment></Assignments>";
    EXPECT_EQ(
        resourceOf("<Type>1</Type><IsCostResource>1</IsCostResource><MaxUnits>5</MaxUnits>", savedBy2007, assignments),
        materialStart + "<units-available>2.000000</units-available></resource>");
}

TEST(MSPIResourceMapper, leavesMaterialWithSeveralUIDsWithoutUnits) {
    EXPECT_EQ(ResourceMapping("<UID>2</UID><UID>3</UID><Type>0</Type>").markup(), materialStart + "</resource>");
}

TEST(MSPIResourceMapper, writesNoScheduleWithoutACalendarOfItsOwn) {
    const auto calendars = "<Calendars><Calendar><UID>5</UID></Calendar></Calendars>";
    for (const auto* content : {"<CalendarUID>-1</CalendarUID>", "<CalendarUID>6</CalendarUID>", "",
                                "<CalendarUID>5</CalendarUID><CalendarUID>5</CalendarUID>"}) {
        EXPECT_EQ(resourceOf(content, savedBy2003, calendars), bareStaff) << content;
    }
}

TEST(MSPIResourceMapper, takesTheLastOfSeveralCalendarsWithItsUID) {
    const auto calendars =
        "<Calendars><Calendar><UID>5</UID></Calendar>"
        "<Calendar><UID>5</UID><WeekDays><WeekDay><DayType>2</DayType><DayWorking>1</DayWorking><WorkingTimes>"
        "<WorkingTime><FromTime>08:00:00</FromTime><ToTime>12:00:00</ToTime></WorkingTime></WorkingTimes></WeekDay>"
        "</WeekDays></Calendar></Calendars>";
    EXPECT_EQ(resourceOf("<CalendarUID>5</CalendarUID>", savedBy2003, calendars),
              staffStart + oneUnit +
                  "<!--  Resource Schedule  --><schedule><schedule-day day-of-week=\"monday\">"
                  "<time-span start-time=\"28800\" end-time=\"43200\"/></schedule-day></schedule></resource>");
}

TEST(MSPIResourceMapper, recordsTheKeysOfItsUserData) {
    const auto definitions =
        "<ExtendedAttributes><ExtendedAttribute><FieldID>1</FieldID><FieldName>Text1</FieldName></ExtendedAttribute>"
        "</ExtendedAttributes>";
    ResourceMapping with("<UID>3</UID><ExtendedAttribute><FieldID>1</FieldID><Value>x</Value></ExtendedAttribute>",
                         definitions);
    auto mapper = with.mapper();
    static_cast<void>(mapper.newResourceFromMSPResource(MSPCFields(with.resource())));
    EXPECT_TRUE(mapper.userDataChanged());
    ASSERT_EQ(with.userDataTOCElements.size(), 1u);
    EXPECT_EQ(with.userDataTOCElements.begin()->first, "resource-user-data-keys");

    ResourceMapping without("<UID>3</UID>", definitions);
    auto otherMapper = without.mapper();
    static_cast<void>(otherMapper.newResourceFromMSPResource(MSPCFields(without.resource())));
    EXPECT_FALSE(otherMapper.userDataChanged());
    EXPECT_TRUE(without.userDataTOCElements.empty());
}
