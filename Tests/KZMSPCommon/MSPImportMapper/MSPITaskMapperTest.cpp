#include "MSPITaskMapper.h"

#include "TaskMapping.h"

namespace {

const std::string milestone = "<type>milestone</type><schedule-type>asap</schedule-type><effort>0</effort>";
const std::string eightHours = "<Duration>PT8H0M0S</Duration>";
const std::string eightHourTask = "<type>task</type><schedule-type>asap</schedule-type><effort>28800</effort>";

// The target of a task with UID 7 and the given further content.
std::string taskOf(std::string_view content, const TaskMapping::Options& options = {}) {
    return TaskMapping("<UID>7</UID>" + std::string(content), options).content();
}

}  // namespace

TEST(MSPITaskMapper, writesItsChildrenInOrder) {
    TaskMapping mapping(
        "<PredecessorLink><Type>1</Type><PredecessorUID>1</PredecessorUID></PredecessorLink>"
        "<ExtendedAttribute><FieldID>188743731</FieldID><Value>x</Value></ExtendedAttribute>"
        "<Notes>Dry first</Notes><FixedCost>12.5</FixedCost><Type>1</Type>"
        "<ConstraintDate>2012-03-05T09:00:00</ConstraintDate><ConstraintType>4</ConstraintType>"
        "<PercentWorkComplete>50</PercentWorkComplete><PercentComplete>25</PercentComplete><Work>PT4H0M0S</Work>"
        "<Priority>500</Priority><Finish>2012-03-05T17:00:00</Finish><Start>2012-03-05T08:00:00</Start>" +
            eightHours + "<Name>Dig</Name><UID>7</UID>",
        {.projectStart = "2012-03-06T08:00:00",
         .saveVersion = 12,
         .restOfProject = "<ExtendedAttributes><ExtendedAttribute><FieldID>188743731</FieldID><CFType>0</CFType>"
                          "<FieldName>Text1</FieldName></ExtendedAttribute></ExtendedAttributes>",
         .otherTasks = "<Task><UID>1</UID></Task>"});
    EXPECT_EQ(mapping.markup(),
              "<task id=\"t7\"><title>Dig</title><type>task</type><schedule-type>asap</schedule-type>"
              "<leveled-start>2012-03-05T08:00:00+01:00</leveled-start><priority>500</priority><effort>14400</effort>"
              "<completion-percentage>0.25</completion-percentage><effort-done>7200</effort-done>"
              "<locked-start-date>2012-03-05T08:00:00+01:00</locked-start-date>"
              "<start-constraint-date>2012-03-05T09:00:00+01:00</start-constraint-date>"
              "<recalculate>effort</recalculate><static-cost>12.500000</static-cost>"
              "<start-date>2012-03-05T08:00:00+01:00</start-date><end-date>2012-03-05T17:00:00+01:00</end-date>"
              "<note><text><p><run><lit>Dry first</lit></run></p></text></note>"
              "<user-data><key>Text1</key><string>x</string></user-data>"
              "<prerequisite-task idref=\"t1\" kind=\"FS\"/></task>");
}

TEST(MSPITaskMapper, needsNothingButAUID) {
    EXPECT_EQ(TaskMapping("<UID>7</UID>").markup(), "<task id=\"t7\">" + milestone + "</task>");
}

TEST(MSPITaskMapper, logsUIDAndName) {
    TaskMapping named("<UID>007</UID><Name>Dig</Name>");
    static_cast<void>(named.mapper().newTaskFromMSPTask(MSPCFields(named.task())));
    EXPECT_EQ(named.fixture.log.takeLines(), std::vector<std::string>{"  Mapping Task UID='007' name='Dig' ..."});
    TaskMapping nameless("<UID>7</UID>");
    static_cast<void>(nameless.mapper().newTaskFromMSPTask(MSPCFields(nameless.task())));
    EXPECT_EQ(nameless.fixture.log.takeLines(), std::vector<std::string>{"  Mapping Task UID='7' name='' ..."});
}

TEST(MSPITaskMapper, keepsItsUIDAndRaisesTheCounterOnly) {
    const struct {
        const char* uid;
        std::int64_t counterBefore;
        std::int64_t readUID;
        std::int64_t counterAfter;
    } table[] = {
        {"40", 0, 40, 40}, {"40", 39, 40, 40}, {"40", 41, 40, 41}, {"0", 0, 0, 0}, {"0", 9, 0, 9},
        {"007", 0, 7, 7},  {"abc", 5, 0, 5},   {" 8x", 0, 8, 8},   {"", 5, 0, 5},
    };
    for (const auto& [uid, counterBefore, readUID, counterAfter] : table) {
        TaskMapping mapping("<UID>" + std::string(uid) + "</UID>");
        mapping.maxId = counterBefore;
        auto mapper = mapping.mapper();
        EXPECT_EQ(mapper.mspTaskUID(), MSPCTaskUID{-1});
        const auto task = mapper.newTaskFromMSPTask(MSPCFields(mapping.task()));
        EXPECT_EQ(mapper.mspTaskUID(), MSPCTaskUID{readUID}) << uid;
        EXPECT_EQ(mapping.maxId, counterAfter) << uid;
        EXPECT_EQ(task.node().attribute("id").stringValue(), *uid == '\0' ? "" : std::string("t").append(uid));
    }
}

TEST(MSPITaskMapper, takesTheLastOfSeveralUIDs) {
    EXPECT_EQ(TaskMapping("<UID>3</UID><UID>4</UID>").markup(), "<task id=\"t4\">" + milestone + "</task>");
}

TEST(MSPITaskMapper, refusesAMissingOrNegativeUID) {
    EXPECT_RAISES(TaskMapping("<Name>Dig</Name>").markup(), MSPCInternalInconsistency, "Failed to get UID from Task.");
    EXPECT_RAISES(TaskMapping("<UID>-5</UID>").markup(), MSPCInternalInconsistency,
                  "Invalid format of MSPDI Task ID (can not be negative number): -5");
}

TEST(MSPITaskMapper, copiesTextsAsTheyAreEmptyOnesIncluded) {
    EXPECT_EQ(taskOf("<Name/><Priority/><Notes/>"),
              "<title/><type>milestone</type><schedule-type>asap</schedule-type><priority/><effort>0</effort>"
              "<note><text/></note>");
    EXPECT_EQ(taskOf("<Name>A</Name><Name>B<!--x-->C</Name><Priority>very 1</Priority>"),
              "<title>BC</title><type>milestone</type><schedule-type>asap</schedule-type><priority>very 1</priority>"
              "<effort>0</effort>");
}

TEST(MSPITaskMapper, readsTheKindFromSummaryAndDuration) {
    const struct {
        std::string content;
        const char* type;
        const char* effort;
    } table[] = {
        {"", "milestone", "0"},
        {"<Duration>PT0H0M0S</Duration>", "milestone", "0"},
        {"<Duration>PT0H0M1S</Duration>", "task", "1"},
        {"<Duration>P1DT0H</Duration>", "milestone", "0"},
        {eightHours, "task", "28800"},
        {"<Duration/>", "task", "-1"},
        {"<Summary>0</Summary>" + eightHours, "task", "28800"},
        {"<Summary>1</Summary>" + eightHours, "group", "28800"},
        {"<Summary>1</Summary>", "group", "0"},
        {"<Summary>1</Summary><Summary>0</Summary>", "milestone", "0"},
        {"<Milestone>1</Milestone>" + eightHours, "task", "28800"},
    };
    for (const auto& [content, type, effort] : table) {
        EXPECT_EQ(taskOf(content), "<type>" + std::string(type) + "</type><schedule-type>asap</schedule-type><effort>" +
                                       effort + "</effort>")
            << content;
    }
}

TEST(MSPITaskMapper, takesItsEffortFromWorkElseFromTheDuration) {
    const struct {
        const char* content;
        const char* effort;
    } table[] = {
        {"<Duration>PT8H0M0S</Duration><Work>PT16H0M0S</Work>", "57600"},
        {"<Duration>PT8H0M0S</Duration><Work>PT1H30M</Work>", "5400"},
        {"<Duration>PT8H0M0S</Duration><Work>PT0H0M0S</Work>", "28800"},
        {"<Duration>PT8H0M0S</Duration><Work/>", "28800"},
        {"<Duration>PT8H0M0S</Duration><Work>P2DT0H</Work>", "28800"},
        {"<Duration>PT8H0M0S</Duration>", "28800"},
        {"<Duration>PT8H0M0S</Duration><Work>PT1H0M0S</Work><Work>PT2H0M0S</Work>", "7200"},
    };
    for (const auto& [content, effort] : table) {
        EXPECT_EQ(taskOf(content),
                  "<type>task</type><schedule-type>asap</schedule-type><effort>" + std::string(effort) + "</effort>")
            << content;
    }
    EXPECT_EQ(taskOf("<Work>PT2H0M0S</Work>"),
              "<type>milestone</type><schedule-type>asap</schedule-type><effort>7200</effort>");
}

TEST(MSPITaskMapper, writesTheCompletedFraction) {
    const std::pair<const char*, const char*> table[] = {{"50", "0.50"}, {"100", "1.00"},  {"250", "1.00"},
                                                         {"1", "0.01"},  {"99.9", "0.99"}, {" 7 ", "0.07"}};
    for (const auto& [percent, expected] : table) {
        EXPECT_EQ(taskOf("<PercentComplete>" + std::string(percent) + "</PercentComplete>"),
                  milestone + "<completion-percentage>" + expected + "</completion-percentage>");
    }
    for (const auto* none : {"<PercentComplete>0</PercentComplete>", "<PercentComplete>-5</PercentComplete>",
                             "<PercentComplete>5</PercentComplete><PercentComplete>5</PercentComplete>"}) {
        EXPECT_EQ(taskOf(none), milestone) << none;
    }
}

TEST(MSPITaskMapper, writesTheEffortDoneInWholeSeconds) {
    const struct {
        std::string content;
        const char* effort;
        const char* done;
    } table[] = {
        {"<Duration>PT1H0M0S</Duration><Work>PT8H0M0S</Work><PercentWorkComplete>50</PercentWorkComplete>", "28800",
         "14400"},
        {"<Duration>PT1H0M0S</Duration><PercentWorkComplete>50</PercentWorkComplete>", "3600", "1800"},
        {"<Duration>PT0H0M100S</Duration><PercentWorkComplete>29</PercentWorkComplete>", "100", "29"},
        {"<Duration>PT0H0M10S</Duration><PercentWorkComplete>99</PercentWorkComplete>", "10", "9"},
        {"<Duration>PT0H0M10S</Duration><PercentWorkComplete>250</PercentWorkComplete>", "10", "10"},
        {"<Duration/><PercentWorkComplete>50</PercentWorkComplete>", "-1", "0"},
        {"<Duration/><PercentWorkComplete>100</PercentWorkComplete>", "-1", "-1"},
    };
    for (const auto& [content, effort, done] : table) {
        EXPECT_EQ(taskOf(content), "<type>task</type><schedule-type>asap</schedule-type><effort>" +
                                       std::string(effort) + "</effort><effort-done>" + done + "</effort-done>")
            << content;
    }
    EXPECT_EQ(taskOf("<PercentWorkComplete>50</PercentWorkComplete>"), milestone + "<effort-done>0</effort-done>");
    for (const auto* none :
         {"<PercentWorkComplete>0</PercentWorkComplete>", "<PercentWorkComplete>-5</PercentWorkComplete>",
          "<PercentWorkComplete>5</PercentWorkComplete><PercentWorkComplete>5</PercentWorkComplete>"}) {
        EXPECT_EQ(taskOf(eightHours + none), eightHourTask) << none;
    }
}

TEST(MSPITaskMapper, recalculatesByTaskType) {
    EXPECT_EQ(taskOf("<Type>0</Type>"), milestone + "<recalculate>duration</recalculate>");
    EXPECT_EQ(taskOf("<Type>1</Type>"), milestone + "<recalculate>effort</recalculate>");
    EXPECT_EQ(taskOf("<Type>2</Type>"), milestone + "<recalculate>duration</recalculate>");
    EXPECT_EQ(taskOf("<Type>3</Type><Type>3</Type>"), milestone);
    EXPECT_RAISES(taskOf("<Type>3</Type>"), MSPCInternalInconsistency, "Unexpected MSPDI Task Type: 3");
    EXPECT_RAISES(taskOf("<Type>-1</Type>"), MSPCInternalInconsistency, "Unexpected MSPDI Task Type: -1");
}

TEST(MSPITaskMapper, writesTheFixedCostOfFilesOf2007AndLater) {
    const TaskMapping::Options of2007{.saveVersion = 12};
    EXPECT_EQ(taskOf("<FixedCost>1500.5</FixedCost>", of2007), milestone + "<static-cost>1500.500000</static-cost>");
    EXPECT_EQ(taskOf("<FixedCost>0</FixedCost>", of2007), milestone + "<static-cost>0.000000</static-cost>");
    EXPECT_EQ(taskOf("<FixedCost>-1e3</FixedCost>", {.saveVersion = 14}),
              milestone + "<static-cost>-1000.000000</static-cost>");
    EXPECT_EQ(taskOf("", of2007), milestone);
    EXPECT_EQ(taskOf("<FixedCost>1</FixedCost><FixedCost>2</FixedCost>", of2007), milestone);
    EXPECT_EQ(taskOf("<FixedCost>1500.5</FixedCost>", {.saveVersion = 11}), milestone);
}

TEST(MSPITaskMapper, refusesTextsThatShouldBeNumbersBooleansOrDates) {
    const struct {
        const char* content;
        const char* reason;
    } table[] = {
        {"<Summary/>", "Failed to get boolean value from XML node: <Summary/>"},
        {"<Summary>maybe</Summary>", "Failed to get boolean value from XML node: <Summary>maybe</Summary>"},
        {"<ConstraintType>x</ConstraintType>",
         "Failed to get int value from XML node: <ConstraintType>x</ConstraintType>"},
        {"<PreLeveledStart/><Pinned>?</Pinned>", "Failed to get boolean value from XML node: <Pinned>?</Pinned>"},
        {"<PercentComplete/>", "Failed to get int value from XML node: <PercentComplete/>"},
        {"<PercentWorkComplete>half</PercentWorkComplete>",
         "Failed to get int value from XML node: <PercentWorkComplete>half</PercentWorkComplete>"},
        {"<Type>fixed</Type>", "Failed to get int value from XML node: <Type>fixed</Type>"},
        {"<FixedCost/>", "Failed to get float value from XML node: <FixedCost/>"},
        {"<PredecessorLink><PredecessorUID/></PredecessorLink>",
         "Failed to get int value from XML node: <PredecessorUID/>"},
        {"<PredecessorLink><PredecessorUID>7</PredecessorUID><Type>FS</Type></PredecessorLink>",
         "Failed to get int value from XML node: <Type>FS</Type>"},
        {"<Duration>8h</Duration>", "Failed to convert MSPDI duration: '8h'."},
        {"<Work>abc</Work>", "Failed to convert MSPDI duration: 'abc'."},
        {"<Start>tomorrow</Start>", "Failed to make MSPCDateComponents from MSPDI date-time: 'tomorrow'."},
        {"<Finish>tomorrow</Finish>", "Failed to make MSPCDateComponents from MSPDI date-time: 'tomorrow'."},
        {"<ConstraintType>5</ConstraintType><ConstraintDate>soon</ConstraintDate>",
         "Failed to make MSPCDateComponents from MSPDI date-time: 'soon'."},
    };
    for (const auto& [content, reason] : table) {
        EXPECT_RAISES(taskOf(content, {.saveVersion = 12}), MSPCInternalInconsistency, reason);
    }
}

TEST(MSPITaskMapper, recordsTheKeysOfItsUserData) {
    const TaskMapping::Options options{
        .restOfProject =
            "<ExtendedAttributes><ExtendedAttribute><FieldID>1</FieldID><FieldName>Text1</FieldName>"
            "</ExtendedAttribute></ExtendedAttributes>"};
    // The attribute without a value has a key but nothing to write.
    TaskMapping with("<UID>7</UID><ExtendedAttribute><FieldID>1</FieldID></ExtendedAttribute>", options);
    auto mapper = with.mapper();
    EXPECT_EQ(markupOf(mapper.newTaskFromMSPTask(MSPCFields(with.task()))), "<task id=\"t7\">" + milestone + "</task>");
    EXPECT_TRUE(mapper.userDataChanged());
    ASSERT_EQ(with.userDataTOCElements.size(), 1u);
    EXPECT_EQ(with.userDataTOCElements.begin()->first, "task-user-data-keys");

    TaskMapping without("<UID>7</UID><ExtendedAttribute><FieldID>2</FieldID></ExtendedAttribute>", options);
    auto otherMapper = without.mapper();
    EXPECT_EQ(markupOf(otherMapper.newTaskFromMSPTask(MSPCFields(without.task()))),
              "<task id=\"t7\">" + milestone + "</task>");
    EXPECT_FALSE(otherMapper.userDataChanged());
    EXPECT_TRUE(without.userDataTOCElements.empty());
}
