#include "MSPIAssignmentPool.h"

#include <fmt/format.h>

#include <random>

#include "ExpectRaises.h"
#include "MSPCExtensions.h"
#include "MappingFixture.h"

namespace {

// The search as it is meant: every task walks over what earlier ones left.
class PlainPool {
public:
    explicit PlainPool(std::vector<MSPCXMLNode> assignments) : _remaining(std::move(assignments)) {}

    bool isEmpty() const { return _remaining.empty(); }
    std::vector<MSPCXMLNode> takeAssignmentsOfTask(MSPCTaskUID taskUID, bool isReportingErrors) {
        std::vector<MSPCXMLNode> taken;
        std::vector<MSPCXMLNode> left;
        for (const auto& assignment : _remaining) {
            (matches(assignment, taskUID, isReportingErrors) ? taken : left).push_back(assignment);
        }
        _remaining = std::move(left);
        return taken;
    }

private:
    static bool matches(const MSPCXMLNode& assignment, MSPCTaskUID taskUID, bool isReportingErrors) {
        Error taskError;
        Error resourceError;
        const bool isOfTask = intValueForXQuery(assignment, "TaskUID", &taskError) == MSPCNumberOf(taskUID);
        const bool hasResource = intValueForXQuery(assignment, "ResourceUID", &resourceError) >= 0;
        return isOfTask && hasResource && !(isReportingErrors && (taskError || resourceError));
    }
    std::vector<MSPCXMLNode> _remaining;
};

// A child that is there once, mostly; else not at all or twice.
std::string child(std::mt19937& random, std::string_view name, std::initializer_list<int> values) {
    std::string xml;
    for (auto count = std::array{0u, 1u, 1u, 1u, 1u, 2u}[random() % 6]; count > 0; --count) {
        xml += fmt::format("<{0}>{1}</{0}>", name, values.begin()[random() % values.size()]);
    }
    return xml;
}

std::string assignments(std::mt19937& random) {
    std::string xml = "<Assignments>";
    for (auto count = random() % 40; count > 0; --count) {
        xml += "<Assignment>" + child(random, "TaskUID", {0, 1, 2, 3, 4, 5, 6}) +
               child(random, "ResourceUID", {0, 1, 2, -1, -65535}) + "</Assignment>";
    }
    return xml + "</Assignments>";
}

std::vector<MSPCXMLNode> assignmentsOf(MappingFixture& fixture) {
    return *fixture.plan.root().nodesForXPath("Assignments/Assignment");
}

// The positions of assignments among those of the project.
std::vector<std::size_t> positionsOf(const std::vector<MSPCXMLNode>& taken, const std::vector<MSPCXMLNode>& all) {
    std::vector<std::size_t> positions;
    for (const auto& assignment : taken) {
        positions.push_back(static_cast<std::size_t>(std::find(all.begin(), all.end(), assignment) - all.begin()));
    }
    return positions;
}

MSPIAssignmentPool poolOf(std::vector<MSPCXMLNode> assignments) {
    return MSPIAssignmentPool(std::make_shared<MSPIAssignmentKeys>(std::move(assignments)));
}

using Positions = std::vector<std::size_t>;

}  // namespace

TEST(MSPIAssignmentPool, givesEveryTaskWhatTheWalkOverTheRestGives) {
    constexpr unsigned lists = 2000;
    for (unsigned seed = 0; seed < lists && !testing::Test::HasFailure(); ++seed) {
        std::mt19937 random(seed);
        const auto xml = assignments(random);
        SCOPED_TRACE(fmt::format("seed {}: {}", seed, xml));
        MappingFixture fixture(xml);
        const auto all = assignmentsOf(fixture);
        auto pool = poolOf(all);
        PlainPool plainPool(all);
        const auto tasks = 1 + random() % 20;
        const auto firstNestedTask = random() % (tasks + 1);
        for (std::size_t task = 0; task < tasks; ++task) {
            const MSPCTaskUID taskUID{static_cast<std::int64_t>(random() % 8)};
            const bool isReportingErrors = task < firstNestedTask;
            ASSERT_EQ(pool.isEmpty(), plainPool.isEmpty()) << task;
            ASSERT_EQ(positionsOf(pool.takeAssignmentsOfTask(taskUID, isReportingErrors), all),
                      positionsOf(plainPool.takeAssignmentsOfTask(taskUID, isReportingErrors), all))
                << task;
        }
    }
}

TEST(MSPIAssignmentPool, givesEachAssignmentOnceToTheTaskThatAsksFirst) {
    MappingFixture fixture(
        "<Assignments><Assignment><TaskUID>1</TaskUID><ResourceUID>1</ResourceUID></Assignment>"
        "<Assignment><TaskUID>2</TaskUID><ResourceUID>1</ResourceUID></Assignment>"
        "<Assignment><TaskUID> 01</TaskUID><ResourceUID>0</ResourceUID></Assignment></Assignments>");
    const auto all = assignmentsOf(fixture);
    auto pool = poolOf(all);
    EXPECT_EQ(positionsOf(pool.takeAssignmentsOfTask(MSPCTaskUID{1}, true), all), (Positions{0, 2}));
    EXPECT_EQ(positionsOf(pool.takeAssignmentsOfTask(MSPCTaskUID{1}, true), all), Positions{});
    EXPECT_FALSE(pool.isEmpty());
    EXPECT_EQ(positionsOf(pool.takeAssignmentsOfTask(MSPCTaskUID{2}, true), all), Positions{1});
    EXPECT_TRUE(pool.isEmpty());
}

TEST(MSPIAssignmentPool, keepsWorkThatIsAssignedToNobody) {
    MappingFixture fixture(
        "<Assignments><Assignment><TaskUID>1</TaskUID><ResourceUID>-65535</ResourceUID></Assignment></Assignments>");
    auto pool = poolOf(assignmentsOf(fixture));
    for (const bool isReportingErrors : {true, false}) {
        EXPECT_TRUE(pool.takeAssignmentsOfTask(MSPCTaskUID{1}, isReportingErrors).empty());
        EXPECT_FALSE(pool.isEmpty());
    }
}

TEST(MSPIAssignmentPool, givesWhatIsIncompleteOrAmbiguousOnlyWhenErrorsDoNotCount) {
    MappingFixture fixture(
        "<Assignments><Assignment><TaskUID>1</TaskUID></Assignment>"
        "<Assignment><TaskUID>2</TaskUID><TaskUID>1</TaskUID><ResourceUID>1</ResourceUID></Assignment>"
        "<Assignment><TaskUID>1</TaskUID><ResourceUID>-1</ResourceUID><ResourceUID>1</ResourceUID></Assignment>"
        "<Assignment><TaskUID>1</TaskUID><ResourceUID>1</ResourceUID><ResourceUID>-1</ResourceUID></Assignment>"
        "<Assignment><ResourceUID>1</ResourceUID></Assignment></Assignments>");
    const auto all = assignmentsOf(fixture);
    auto pool = poolOf(all);
    EXPECT_EQ(positionsOf(pool.takeAssignmentsOfTask(MSPCTaskUID{1}, true), all), Positions{});
    EXPECT_EQ(positionsOf(pool.takeAssignmentsOfTask(MSPCTaskUID{1}, false), all), (Positions{0, 1, 2}));
    EXPECT_EQ(positionsOf(pool.takeAssignmentsOfTask(MSPCTaskUID{0}, false), all), Positions{4});
    EXPECT_FALSE(pool.isEmpty());
}

TEST(MSPIAssignmentPool, takesNothingFromAnotherPoolOfTheSameKeys) {
    MappingFixture fixture(
        "<Assignments><Assignment><TaskUID>2</TaskUID><ResourceUID>1</ResourceUID></Assignment>"
        "<Assignment><TaskUID>1</TaskUID></Assignment></Assignments>");
    const auto all = assignmentsOf(fixture);
    const auto keys = std::make_shared<MSPIAssignmentKeys>(all);
    for (int scenario = 0; scenario < 3; ++scenario) {
        MSPIAssignmentPool pool(keys);
        EXPECT_EQ(positionsOf(pool.takeAssignmentsOfTask(MSPCTaskUID{1}, true), all), Positions{});
        EXPECT_EQ(positionsOf(pool.takeAssignmentsOfTask(MSPCTaskUID{2}, true), all), Positions{0});
        EXPECT_EQ(positionsOf(pool.takeAssignmentsOfTask(MSPCTaskUID{1}, false), all), Positions{1});
        EXPECT_TRUE(pool.isEmpty());
    }
}

// Walking over them again for each task of the same UID would take longer than a test may.
TEST(MSPIAssignmentPool, examinesManyAssignmentsOfManyTasksOfOneUIDOnce) {
    std::string xml = "<Assignments>";
    for (int i = 0; i < 300'000; ++i) {
        xml += "<Assignment><TaskUID>1</TaskUID></Assignment>";
    }
    MappingFixture fixture(xml + "</Assignments>");
    auto pool = poolOf(assignmentsOf(fixture));
    for (int task = 0; task < 300'000; ++task) {
        ASSERT_TRUE(pool.takeAssignmentsOfTask(MSPCTaskUID{1}, true).empty());
    }
    EXPECT_EQ(pool.takeAssignmentsOfTask(MSPCTaskUID{1}, false).size(), 300'000U);
    for (int task = 0; task < 300'000; ++task) {
        ASSERT_TRUE(pool.takeAssignmentsOfTask(MSPCTaskUID{1}, false).empty());
    }
}

TEST(MSPIAssignmentPool, ofNothingIsEmpty) {
    auto pool = poolOf({});
    EXPECT_TRUE(pool.isEmpty());
    EXPECT_TRUE(pool.takeAssignmentsOfTask(MSPCTaskUID{1}, false).empty());
}

TEST(MSPIAssignmentPool, refusesWhatIsNoNodeOrNoNumber) {
    EXPECT_RAISES(poolOf({MSPCXMLNode()}).takeAssignmentsOfTask(MSPCTaskUID{1}, true), MSPCInternalInconsistency,
                  "Expected NSXMLNodeProxy as a Assignment object.");
    MappingFixture task("<Assignments><Assignment><TaskUID>abc</TaskUID></Assignment></Assignments>");
    EXPECT_RAISES(poolOf(assignmentsOf(task)).takeAssignmentsOfTask(MSPCTaskUID{1}, true), MSPCInternalInconsistency,
                  "Failed to get int value from XML node: <TaskUID>abc</TaskUID>");
    MappingFixture resource("<Assignments><Assignment><TaskUID>1</TaskUID><ResourceUID/></Assignment></Assignments>");
    EXPECT_RAISES(poolOf(assignmentsOf(resource)).takeAssignmentsOfTask(MSPCTaskUID{1}, true),
                  MSPCInternalInconsistency, "Failed to get int value from XML node: <ResourceUID/>");
}
