#include "TaskMapping.h"

namespace {

const std::string march5 = "2012-03-05T08:00:00";
const std::string march5Target = "2012-03-05T08:00:00+01:00";

// The target of an eight-hour task with UID 7 and the given further content, without type and effort.
std::string datesOf(std::string_view content, const TaskMapping::Options& options = {}) {
    auto all = TaskMapping("<UID>7</UID><Duration>PT8H0M0S</Duration>" + std::string(content), options).content();
    for (const std::string plain : {"<type>task</type>", "<type>group</type>", "<effort>28800</effort>"}) {
        if (const auto at = all.find(plain); at != std::string::npos) {
            all.erase(at, plain.size());
        }
    }
    return all;
}

std::string element(const std::string& name, const std::string& text) {
    return "<" + name + ">" + text + "</" + name + ">";
}

// MSPDI content of a task on 5 March with a constraint.
std::string constrained(const std::string& type, const std::string& constraintDate = "2012-03-06T08:00:00") {
    return element("Start", "2012-03-05T08:00:00") + element("Finish", "2012-03-05T17:00:00") +
           element("ConstraintType", type) + element("ConstraintDate", constraintDate);
}

const std::string startAndEnd =
    "<start-date>2012-03-05T08:00:00+01:00</start-date>"
    "<end-date>2012-03-05T17:00:00+01:00</end-date>";
const std::string leveled = "<leveled-start>2012-03-05T08:00:00+01:00</leveled-start>";
const std::string asap = "<schedule-type>asap</schedule-type>";
const std::string alap = "<schedule-type>alap</schedule-type>";

const TaskMapping::Options fromStart{.projectStart = "2012-03-01T08:00:00"};
const TaskMapping::Options fromEnd{.fromStart = false, .projectFinish = "2012-04-01T08:00:00"};

}  // namespace

TEST(MSPITaskMapperDates, followTheConstraintType) {
    const std::string constraintDate = "2012-03-06T08:00:00+01:00";
    const struct {
        std::string type;
        std::string fromStart;
        std::string fromEnd;
        std::string dateElement;
        bool isLeveled;
    } table[] = {
        {"0", asap, asap, "", false},
        {"1", alap, alap, "", false},
        {"2", asap, alap, "locked-start-date", true},
        {"3", asap, alap, "locked-end-date", true},
        {"4", asap, alap, "start-constraint-date", true},
        {"5", asap, alap, "", true},
        {"6", alap, alap, "end-constraint-date", true},
        {"7", asap, alap, "end-constraint-date", true},
        {"8", asap, alap, "", true},
        {"-1", asap, alap, "", false},
    };
    for (const auto& row : table) {
        const auto rest = (row.isLeveled ? leveled : "") +
                          (row.dateElement.empty() ? "" : element(row.dateElement, constraintDate)) + startAndEnd;
        EXPECT_EQ(datesOf(constrained(row.type), fromStart), row.fromStart + rest) << row.type;
        EXPECT_EQ(datesOf(constrained(row.type), fromEnd), row.fromEnd + rest) << row.type;
    }
}

TEST(MSPITaskMapperDates, ofAMissingOrAmbiguousConstraintTypeAreUnconstrained) {
    const auto dates = element("Start", march5) + element("ConstraintDate", "2012-03-06T08:00:00");
    for (const auto* type : {"", "<ConstraintType>4</ConstraintType><ConstraintType>4</ConstraintType>"}) {
        EXPECT_EQ(datesOf(dates + type, fromStart), asap + element("start-date", march5Target)) << type;
        EXPECT_EQ(datesOf(dates + type, fromEnd), alap + element("start-date", march5Target)) << type;
    }
}

// A date that could not be converted would end the import if it were read.
TEST(MSPITaskMapperDates, ofUnconstrainedTasksIgnoreTheConstraintDate) {
    for (const auto* type : {"0", "1", "-1"}) {
        const auto all = datesOf(element("ConstraintType", type) + element("ConstraintDate", "never"), fromStart);
        EXPECT_EQ(all, std::string(type) == "1" ? alap : asap);
    }
}

TEST(MSPITaskMapperDates, withoutAConstraintDateAreOnlyLeveled) {
    for (const auto* date : {"", "<ConstraintDate/>"}) {
        EXPECT_EQ(datesOf(element("Start", march5) + "<ConstraintType>4</ConstraintType>" + date, fromStart),
                  asap + leveled + element("start-date", march5Target));
    }
}

TEST(MSPITaskMapperDates, ofSummaryTasksAreConstrainedButNeverLockedByTheProjectsBounds) {
    const TaskMapping::Options laterProject{.projectStart = "2012-06-02T08:00:00"};
    EXPECT_EQ(datesOf("<Summary>1</Summary>" + constrained("2"), laterProject),
              asap + leveled + element("locked-start-date", "2012-03-06T08:00:00+01:00") + startAndEnd);
    const TaskMapping::Options earlierProject{.fromStart = false, .projectFinish = "2012-02-02T08:00:00"};
    EXPECT_EQ(datesOf("<Summary>1</Summary>" + constrained("3"), earlierProject),
              alap + leveled + element("locked-end-date", "2012-03-06T08:00:00+01:00") + startAndEnd);
    EXPECT_EQ(datesOf("<Summary>1</Summary>" + constrained("0"), laterProject), asap + startAndEnd);
}

TEST(MSPITaskMapperDates, beforeTheProjectsStartAreLocked) {
    const TaskMapping::Options june2{.projectStart = "2012-06-02T08:00:00"};
    EXPECT_EQ(datesOf(element("Start", "2012-06-01T08:00:00") + element("ConstraintType", "0"), june2),
              asap + element("locked-start-date", "2012-06-01T08:00:00+02:00") +
                  element("start-date", "2012-06-01T08:00:00+02:00"));
}

TEST(MSPITaskMapperDates, onOrAfterTheProjectsStartAreNotLocked) {
    for (const auto* projectStart : {"2012-03-05T08:00:00", "2012-03-05T07:59:59"}) {
        EXPECT_EQ(datesOf(element("Start", march5), {.projectStart = projectStart}),
                  asap + element("start-date", march5Target));
    }
    EXPECT_EQ(datesOf(element("Start", march5), {.projectStart = "2012-03-05T08:00:01"}),
              asap + element("locked-start-date", march5Target) + element("start-date", march5Target));
}

TEST(MSPITaskMapperDates, beforeTheProjectsStartAreLockedToAStillEarlierMustStartOn) {
    const TaskMapping::Options later{.projectStart = "2012-03-06T08:00:00"};
    EXPECT_EQ(datesOf(constrained("2", "2012-03-04T08:00:00"), later),
              asap + leveled + element("locked-start-date", "2012-03-04T08:00:00+01:00") + startAndEnd);
    // A constraint date that is not earlier than the task's start leaves the start locked, and is not written beside
    // it.
    for (const auto* date : {"2012-03-05T08:00:00", "2012-03-05T12:00:00"}) {
        EXPECT_EQ(datesOf(constrained("2", date), later),
                  asap + leveled + element("locked-start-date", march5Target) + startAndEnd);
    }
    // Other constraint types have no say, and keep their own element.
    EXPECT_EQ(datesOf(constrained("4", "2012-03-04T08:00:00"), later),
              asap + leveled + element("locked-start-date", march5Target) +
                  element("start-constraint-date", "2012-03-04T08:00:00+01:00") + startAndEnd);
    EXPECT_EQ(datesOf(constrained("3", "2012-03-04T08:00:00"), later),
              asap + leveled + element("locked-start-date", march5Target) +
                  element("locked-end-date", "2012-03-04T08:00:00+01:00") + startAndEnd);
}

TEST(MSPITaskMapperDates, afterTheProjectsFinishAreLocked) {
    const std::string march5End = "2012-03-05T17:00:00+01:00";
    const TaskMapping::Options earlier{.fromStart = false, .projectFinish = "2012-03-05T16:59:59"};
    EXPECT_EQ(datesOf(constrained("0"), earlier), asap + element("locked-end-date", march5End) + startAndEnd);
    EXPECT_EQ(datesOf(constrained("0"), {.fromStart = false, .projectFinish = "2012-03-05T17:00:00"}),
              asap + startAndEnd);
    EXPECT_EQ(datesOf(constrained("3", "2012-03-06T08:00:00"), earlier),
              alap + leveled + element("locked-end-date", "2012-03-06T08:00:00+01:00") + startAndEnd);
    EXPECT_EQ(datesOf(constrained("3", "2012-03-05T17:00:00"), earlier),
              alap + leveled + element("locked-end-date", march5End) + startAndEnd);
    EXPECT_EQ(datesOf(constrained("3", "2012-03-05T09:00:00"), earlier),
              alap + leveled + element("locked-end-date", march5End) + startAndEnd);
    EXPECT_EQ(datesOf(constrained("7", "2012-03-06T08:00:00"), earlier),
              alap + leveled + element("locked-end-date", march5End) +
                  element("end-constraint-date", "2012-03-06T08:00:00+01:00") + startAndEnd);
    EXPECT_EQ(datesOf(constrained("2", "2012-03-06T08:00:00"), earlier),
              alap + leveled + element("locked-end-date", march5End) +
                  element("locked-start-date", "2012-03-06T08:00:00+01:00") + startAndEnd);
}

TEST(MSPITaskMapperDates, areNotLockedWithoutTheProjectsOrTheTasksDate) {
    EXPECT_EQ(datesOf(constrained("0"), {.projectFinish = "2012-01-01T08:00:00"}), asap + startAndEnd);
    EXPECT_EQ(datesOf(constrained("0"), {.fromStart = false, .projectStart = "2012-06-01T08:00:00"}),
              asap + startAndEnd);
    const TaskMapping::Options later{.projectStart = "2012-06-02T08:00:00"};
    EXPECT_EQ(datesOf(element("Finish", march5), later), asap + element("end-date", march5Target));
    EXPECT_EQ(datesOf("<Start/><Finish/>", later), asap);
    EXPECT_EQ(datesOf(element("Start", march5), {.fromStart = false, .projectFinish = "2012-01-01T08:00:00"}),
              alap + element("start-date", march5Target));
}

TEST(MSPITaskMapperDates, withAZoneCannotBeComparedWithTheProjects) {
    EXPECT_RAISES(datesOf(element("Start", march5 + "Z"), fromStart), MSPCInternalInconsistency,
                  "Not a valid MSPDI date-time: '2012-03-05T08:00:00Z' (time zone?).");
    EXPECT_EQ(datesOf(element("Start", march5 + "Z"), {}), asap + element("start-date", march5 + "Z"));
}

TEST(MSPITaskMapperDates, ofLeveledTasksAreTheStartOrThePinnedStart) {
    const auto start = element("Start", march5);
    const auto pinnedStart = element("PinnedStart", "2012-03-07T08:00:00");
    const auto pinned = element("leveled-start", "2012-03-07T08:00:00+01:00");
    const auto startDate = element("start-date", march5Target);
    const struct {
        std::string content;
        std::string expected;
    } table[] = {
        {"<PreLeveledStart/>" + start, leveled},
        {"<PreLeveledFinish>2012-01-01T08:00:00</PreLeveledFinish>" + start, leveled},
        {"<PreLeveledStart/><PreLeveledStart/>" + start, leveled},
        {"<PreLeveledStart/><Pinned>1</Pinned>" + start + pinnedStart, pinned},
        {"<PreLeveledStart/><Pinned>0</Pinned>" + start + pinnedStart, leveled},
        {"<PreLeveledStart/>" + start + pinnedStart, leveled},
        {"<PreLeveledStart/><Pinned>1</Pinned>" + start, ""},
        {"<PreLeveledStart/><Pinned>1</Pinned><PinnedStart/>" + start, ""},
        {"<Pinned>1</Pinned>" + start + pinnedStart, ""},
        {start, ""},
        // Where the pinned start gives nothing, a dated constraint falls back on the start.
        {"<PreLeveledStart/><Pinned>1</Pinned><ConstraintType>5</ConstraintType>" + start, leveled},
        {"<PreLeveledStart/><Pinned>1</Pinned><ConstraintType>5</ConstraintType>" + start + pinnedStart, pinned},
    };
    for (const auto& [content, expected] : table) {
        EXPECT_EQ(datesOf(content), asap + expected + startDate) << content;
    }
}

TEST(MSPITaskMapperDates, areCopiedForEveryKindOfTask) {
    EXPECT_EQ(TaskMapping("<UID>7</UID>" + constrained("0")).content(),
              "<type>milestone</type>" + asap + "<effort>0</effort>" + startAndEnd);
    EXPECT_EQ(datesOf("<Summary>1</Summary>" + constrained("0")), asap + startAndEnd);
    EXPECT_EQ(datesOf(element("Start", "2012-01-01T08:00:00") + element("Start", march5)),
              asap + element("start-date", march5Target));
}

TEST(MSPITaskMapperDates, lockedDateIsThatFurtherOut) {
    const MSPCInstant early{100};
    const MSPCInstant late{200};
    EXPECT_TRUE(MSPITaskMapper::isBeyondProject(true, early, late));
    EXPECT_FALSE(MSPITaskMapper::isBeyondProject(true, early, early));
    EXPECT_FALSE(MSPITaskMapper::isBeyondProject(true, late, early));
    EXPECT_TRUE(MSPITaskMapper::isBeyondProject(false, late, early));
    EXPECT_FALSE(MSPITaskMapper::isBeyondProject(false, early, late));
    EXPECT_EQ(MSPITaskMapper::lockedDate(true, late, early), early);
    EXPECT_EQ(MSPITaskMapper::lockedDate(true, early, late), early);
    EXPECT_EQ(MSPITaskMapper::lockedDate(false, early, late), late);
    EXPECT_EQ(MSPITaskMapper::lockedDate(false, late, early), late);
    EXPECT_EQ(MSPITaskMapper::lockedDate(true, late, std::nullopt), late);
}
