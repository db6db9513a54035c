#include "MSPITimephasedDataMapper.h"

#include <fmt/format.h>

#include "ExpectRaises.h"
#include "MSPCExtensions.h"
#include "MappingFixture.h"

namespace {

// 5 March 2012 is a Monday; all days are winter days of Berlin.
std::string record(std::string_view start, std::string_view finish, std::string_view value,
                   std::string_view type = "1") {
    return fmt::format(
        "<TimephasedData><Type>{}</Type><Start>2012-03-{}:00</Start><Finish>2012-03-{}:00</Finish><Unit>2</Unit>"
        "<Value>{}</Value></TimephasedData>",
        type, start, finish, value);
}

const std::string eightHours = "PT8H0M0S";

// A whole working day of March.
std::string day(int number, std::string_view type = "1") {
    return record(fmt::format("{:02}T08:00", number), fmt::format("{:02}T17:00", number), eightHours, type);
}

std::string assignment(const std::string& content) {
    return "<Assignment><TaskUID>7</TaskUID>" + content + "</Assignment>";
}

// One task with UID 7 and its assignments.
class SplitMapping {
public:
    explicit SplitMapping(const std::string& assignments, const std::string& task = "<UID>7</UID><Name>Dig</Name>")
        : fixture("<Tasks><Task>" + task + "</Task></Tasks><Assignments>" + assignments + "</Assignments>"),
          mapper(fixture.context) {}

    std::vector<std::string> pieces() {
        std::vector<std::string> markup;
        for (auto& piece : mapper.newSplitTasksFromMspdiTask(MSPCFields(fixture.node("Tasks/Task")))) {
            markup.push_back(markupOf(std::move(piece)));
        }
        return markup;
    }

    MappingFixture fixture;
    MSPITimephasedDataMapper mapper;
};

std::vector<std::string> piecesOf(const std::string& assignments) {
    return SplitMapping(assignments).pieces();
}

std::string piece(int number, std::string_view effort, std::string_view start, std::string_view end,
                  std::string_view duration, std::string_view title = "<title>Dig</title>") {
    return fmt::format(
        "<task id=\"split-{}\">{}<effort>{}</effort><start-constraint-date>2012-03-{}:00+01:00</start-constraint-date>"
        "<start-date>2012-03-{}:00+01:00</start-date><end-date>2012-03-{}:00+01:00</end-date>"
        "<duration>{}</duration></task>",
        number, title, effort, start, start, end, duration);
}

// The piece of one whole working day.
std::string dayPiece(int number, int dayOfMarch) {
    return piece(number, "28800.00", fmt::format("{:02}T08:00", dayOfMarch), fmt::format("{:02}T17:00", dayOfMarch),
                 "28800.00");
}

using Pieces = std::vector<std::string>;

}  // namespace

TEST(MSPITimephasedDataMapper, makesOnePieceOfEveryStretchOfWork) {
    EXPECT_EQ(piecesOf(assignment(day(5) + day(7))), (Pieces{dayPiece(1, 5), dayPiece(2, 7)}));
}

TEST(MSPITimephasedDataMapper, leavesATaskWithOneStretchAlone) {
    EXPECT_EQ(piecesOf(""), Pieces{});
    EXPECT_EQ(piecesOf(assignment("")), Pieces{});
    EXPECT_EQ(piecesOf(assignment(day(5))), Pieces{});
    EXPECT_EQ(piecesOf(assignment(day(5) + day(6))), Pieces{});  // the night between them is not worked
}

TEST(MSPITimephasedDataMapper, joinsOverAWeekend) {
    EXPECT_EQ(piecesOf(assignment(day(9) + day(12))), Pieces{});
    EXPECT_EQ(piecesOf(assignment(day(9) + day(12) + day(14))),
              (Pieces{piece(1, "57600.00", "09T08:00", "12T17:00", "57600.00"), dayPiece(2, 14)}));
}

TEST(MSPITimephasedDataMapper, joinsOverTheNoonBreak) {
    const auto twoHalves =
        record("05T08:00", "05T12:00", "PT4H0M0S") + record("05T13:00", "05T17:00", "PT4H0M0S") + day(7);
    EXPECT_EQ(piecesOf(assignment(twoHalves)), (Pieces{dayPiece(1, 5), dayPiece(2, 7)}));
}

TEST(MSPITimephasedDataMapper, sortsTheRecordsOfAllAssignments) {
    EXPECT_EQ(piecesOf(assignment(day(14)) + assignment(day(7) + day(5))),
              (Pieces{dayPiece(1, 5), dayPiece(2, 7), dayPiece(3, 14)}));
}

TEST(MSPITimephasedDataMapper, countsWorkingTimeAnewWhereAssignmentsOverlap) {
    // Monday 08:00 to 12:00 and 10:00 to 17:00: eight working hours in all.
    const auto monday = assignment(record("05T08:00", "05T12:00", "PT4H0M0S") + day(7)) +
                        assignment(record("05T10:00", "05T17:00", "PT6H0M0S"));
    EXPECT_EQ(piecesOf(monday), (Pieces{dayPiece(1, 5), dayPiece(2, 7)}));
}

TEST(MSPITimephasedDataMapper, addsTheDurationsOfRecordsThatTouch) {
    const auto monday = record("05T08:00", "05T10:00", "PT1H0M0S") + record("05T10:00", "05T12:00", "PT0H30M0S");
    EXPECT_EQ(piecesOf(assignment(monday + day(7))),
              (Pieces{piece(1, "5400.00", "05T08:00", "05T12:00", "5400.00"), dayPiece(2, 7)}));
}

TEST(MSPITimephasedDataMapper, skipsRecordsWithoutAValueOrWithNone) {
    const auto without =
        "<TimephasedData><Type>1</Type><Start>2012-03-06T08:00:00</Start>"
        "<Finish>2012-03-06T17:00:00</Finish></TimephasedData>";
    EXPECT_EQ(piecesOf(assignment(day(5) + without)), Pieces{});
    const auto tuesday = [](std::string_view value) { return record("06T08:00", "06T17:00", value); };
    for (const auto* none : {"", "PT0H0M0S", "PT8H", "8"}) {
        EXPECT_EQ(piecesOf(assignment(day(5) + tuesday(none) + day(7))), (Pieces{dayPiece(1, 5), dayPiece(2, 7)}))
            << none;
    }
}

TEST(MSPITimephasedDataMapper, takesTheRecordsOfItsScenario) {
    const std::int64_t typesOfBaselines[] = {4, 16, 22, 28, 34, 40, 46, 52, 58, 64, 70};
    for (std::int64_t type = 0; type <= 80; ++type) {
        for (std::int32_t baseline = -1; baseline <= 11; ++baseline) {
            const bool isTaken = baseline < 0    ? type >= 1 && type <= 3
                                 : baseline > 10 ? false
                                                 : type == typesOfBaselines[baseline];
            SplitMapping mapping(assignment(day(5, std::to_string(type)) + day(7, std::to_string(type))));
            mapping.fixture.context.setBaselineNumber(baseline);
            EXPECT_EQ(mapping.pieces().size(), isTaken ? 2u : 0u) << "type " << type << ", baseline " << baseline;
        }
    }
}

TEST(MSPITimephasedDataMapper, takesRecordsWithoutATypeOrWithSeveralInEveryScenario) {
    auto untyped = day(7);
    untyped.erase(untyped.find("<Type>"), std::string_view("<Type>1</Type>").size());
    auto twoTypes = day(14);
    twoTypes.insert(twoTypes.find("<Type>"), "<Type>99</Type>");
    for (const std::int32_t baseline : {-1, 0, 10}) {
        SplitMapping mapping(assignment(day(9, "98") + untyped + twoTypes));
        mapping.fixture.context.setBaselineNumber(baseline);
        EXPECT_EQ(mapping.pieces(), (Pieces{dayPiece(1, 7), dayPiece(2, 14)})) << baseline;
    }
}

TEST(MSPITimephasedDataMapper, scalesTheEffortButNotTheDurationToTheAssignedWork) {
    const auto halfDays = record("05T08:00", "05T12:00", "PT4H0M0S") + record("07T08:00", "07T12:00", "PT4H0M0S");
    EXPECT_EQ(piecesOf(assignment("<Work>PT16H0M0S</Work>" + halfDays)),
              (Pieces{piece(1, "28800.00", "05T08:00", "05T12:00", "14400.00"),
                      piece(2, "28800.00", "07T08:00", "07T12:00", "14400.00")}));
    const auto unscaled = Pieces{piece(1, "14400.00", "05T08:00", "05T12:00", "14400.00"),
                                 piece(2, "14400.00", "07T08:00", "07T12:00", "14400.00")};
    for (const auto* work : {"", "<Work>PT8H0M0S</Work>", "<Work>PT0H0M0S</Work>", "<Work/>", "<Work>PT16H</Work>"}) {
        EXPECT_EQ(piecesOf(assignment(work + halfDays)), unscaled) << work;
    }
}

TEST(MSPITimephasedDataMapper, scalesByTheWorkOfAllAssignmentsThoseWithoutResourceOrRecordsIncluded) {
    const auto thirtyTwoHours = assignment("<ResourceUID>-65535</ResourceUID><Work>PT16H0M0S</Work>") +
                                assignment("<Work>PT16H0M0S</Work>" + day(5) + day(7)) +
                                "<Assignment><TaskUID>8</TaskUID><Work>PT99H0M0S</Work></Assignment>";
    EXPECT_EQ(piecesOf(thirtyTwoHours), (Pieces{piece(1, "57600.00", "05T08:00", "05T17:00", "28800.00"),
                                                piece(2, "57600.00", "07T08:00", "07T17:00", "28800.00")}));
}

TEST(MSPITimephasedDataMapper, countsRecordsWithoutDatesInTheTotalOnly) {
    const std::string noFinish =
        "<TimephasedData><Type>1</Type><Start>2012-03-14T08:00:00</Start>"
        "<Value>PT8H0M0S</Value></TimephasedData>";
    const std::string noStart =
        "<TimephasedData><Type>1</Type><Finish>2012-03-14T08:00:00</Finish>"
        "<Value>PT8H0M0S</Value></TimephasedData>";
    // 16 hours of work against 32 hours of records.
    EXPECT_EQ(piecesOf(assignment("<Work>PT16H0M0S</Work>" + noFinish + day(5) + noStart + day(7))),
              (Pieces{piece(1, "14400.00", "05T08:00", "05T17:00", "28800.00"),
                      piece(2, "14400.00", "07T08:00", "07T17:00", "28800.00")}));
    EXPECT_EQ(piecesOf(assignment(noFinish + day(5))), Pieces{});
}

TEST(MSPITimephasedDataMapper, movesAStartToTheNextWorkingInstant) {
    const auto early = record("05T06:00", "05T17:00", eightHours);
    const auto saturday = record("10T00:00", "12T12:00", "PT4H0M0S");
    EXPECT_EQ(piecesOf(assignment(early + day(7) + saturday)),
              (Pieces{dayPiece(1, 5), dayPiece(2, 7), piece(3, "14400.00", "12T08:00", "12T12:00", "14400.00")}));
}

TEST(MSPITimephasedDataMapper, usesTheProjectsCalendar) {
    // Tuesdays are free: Monday and Wednesday are one stretch.
    SplitMapping mapping(assignment(day(5) + day(7)));
    const auto document = documentFromXML(
        "<schedule><schedule-day day-of-week='monday'><time-span start-time='28800' end-time='61200'/></schedule-day>"
        "<schedule-day day-of-week='wednesday'><time-span start-time='28800' end-time='61200'/></schedule-day>"
        "</schedule>");
    mapping.fixture.context.setScheduleCalendar(
        MSPEScheduleCalendar(mapping.fixture.context.conversions().gregorian(), document.root()));
    EXPECT_EQ(mapping.pieces(), Pieces{});
}

TEST(MSPITimephasedDataMapper, knowsTheLatestEndOfItsPieces) {
    SplitMapping mapping(assignment(day(5) + day(14) + day(7)));
    EXPECT_EQ(mapping.mapper.taskEndDate(), std::nullopt);
    EXPECT_EQ(mapping.pieces().size(), 3u);
    EXPECT_EQ(mapping.mapper.taskEndDate(), MSPCInstant{1331740800});  // 2012-03-14T16:00:00Z
    // Not reset by a task that is not split, nor by one that ends earlier.
    const auto others = documentFromXML("<Task><UID>8</UID></Task>");
    EXPECT_TRUE(mapping.mapper.newSplitTasksFromMspdiTask(MSPCFields(others.root())).empty());
    EXPECT_EQ(mapping.mapper.taskEndDate(), MSPCInstant{1331740800});

    SplitMapping unsplit(assignment(day(5)));
    EXPECT_EQ(unsplit.pieces(), Pieces{});
    EXPECT_EQ(unsplit.mapper.taskEndDate(), std::nullopt);
}

TEST(MSPITimephasedDataMapper, countsProvisionalIdsOverAllTasksOfAScenario) {
    SplitMapping mapping(assignment(day(5) + day(7)));
    EXPECT_EQ(mapping.pieces().size(), 2u);
    EXPECT_EQ(mapping.pieces(), (Pieces{dayPiece(3, 5), dayPiece(4, 7)}));
}

TEST(MSPITimephasedDataMapper, givesEachOfSeveralTasksOfOneUIDTheSamePiecesUnderItsOwnName) {
    SplitMapping mapping(assignment(day(5) + day(7)));
    int number = 1;
    for (const std::string name : {"Dig", "Dig deeper", "Dig", "Dig on"}) {
        const auto task = documentFromXML("<Task><UID>7</UID><Name>" + name + "</Name></Task>");
        MSPITimephasedDataMapper mapper(mapping.fixture.context);
        Pieces pieces;
        for (auto& piece : mapper.newSplitTasksFromMspdiTask(MSPCFields(task.root()))) {
            pieces.push_back(markupOf(std::move(piece)));
        }
        const auto title = "<title>" + name + "</title>";
        const auto pieceOf = [&](int dayOfMarch) {
            return piece(number++, "28800.00", fmt::format("{:02}T08:00", dayOfMarch),
                         fmt::format("{:02}T17:00", dayOfMarch), "28800.00", title);
        };
        const auto first = pieceOf(5);
        EXPECT_EQ(pieces, (Pieces{first, pieceOf(7)}));
        EXPECT_EQ(mapper.taskEndDate(),
                  mapping.fixture.context.conversions().mspdiToMppDateTime("2012-03-07T17:00:00"));
    }
}

// Finding the stretches of each of them again would take minutes.
TEST(MSPITimephasedDataMapper, findsTheStretchesOfManyTasksOfOneUIDOnce) {
    std::string records;
    for (int i = 0; i < 20'000; ++i) {
        records += assignment(day(5 + i % 3));
    }
    SplitMapping mapping(records);
    for (int task = 0; task < 20'000; ++task) {
        ASSERT_EQ(mapping.mapper.newSplitTasksFromMspdiTask(MSPCFields(mapping.fixture.node("Tasks/Task"))).size(), 0U);
    }
}

TEST(MSPITimephasedDataMapper, refusesPiecesWithoutNumberForManyTasksOfOneUID) {
    SplitMapping mapping(assignment(day(5) + day(7)));
    EXPECT_EQ(mapping.pieces().size(), 2U);
    EXPECT_EQ(mapping.pieces().size(), 2U);
    mapping.fixture.context.growthBounds().addRepeatedPieces(999'998);
    EXPECT_EQ(mapping.pieces().size(), 2U);
    EXPECT_RAISES(mapping.pieces(), MSPCInternalInconsistency,
                  "Too many pieces of split tasks with the same UID: more than 1000000.");
}

TEST(MSPITimephasedDataMapper, givesPiecesOfANamelessTaskAnEmptyTitle) {
    const auto pieces = SplitMapping(assignment(day(5) + day(7)), "<UID>7</UID>").pieces();
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[0], piece(1, "28800.00", "05T08:00", "05T17:00", "28800.00", "<title/>"));
}

TEST(MSPITimephasedDataMapper, leavesATaskWithoutOrWithSeveralUIDsAlone) {
    const auto split = assignment(day(5) + day(7));
    EXPECT_EQ(SplitMapping(split, "<Name>Dig</Name>").pieces(), Pieces{});
    EXPECT_EQ(SplitMapping(split, "<UID>7</UID><UID>7</UID>").pieces(), Pieces{});
}

TEST(MSPITimephasedDataMapper, findsAssignmentsByNumber) {
    const auto split = "<Assignment><TaskUID> 007 </TaskUID>" + day(5) + day(7) + "</Assignment>";
    EXPECT_EQ(piecesOf(split), (Pieces{dayPiece(1, 5), dayPiece(2, 7)}));
    EXPECT_EQ(piecesOf("<Assignment><TaskUID>7x</TaskUID>" + day(5) + day(7) + "</Assignment>"), Pieces{});
}

TEST(MSPITimephasedDataMapper, refusesAMergedSpanWithoutWorkingTime) {
    // Two overlapping records on a Saturday: their union holds no working time.
    const auto saturday = record("10T08:00", "10T12:00", "PT4H0M0S") + record("10T10:00", "10T14:00", "PT4H0M0S");
    EXPECT_RAISES(piecesOf(assignment(saturday + day(14))), MSPCInternalInconsistency, "");
}

TEST(MSPITimephasedDataMapper, refusesTextsThatShouldBeNumbersOrDates) {
    EXPECT_RAISES(piecesOf(assignment("<TimephasedData><Type>work</Type></TimephasedData>")), MSPCInternalInconsistency,
                  "Failed to get int value from XML node: <Type>work</Type>");
    EXPECT_RAISES(piecesOf(assignment("<TimephasedData><Start>2012-03-05T08:00:00Z</Start></TimephasedData>")),
                  MSPCInternalInconsistency, "Not a valid MSPDI date-time: '2012-03-05T08:00:00Z' (time zone?).");
}
