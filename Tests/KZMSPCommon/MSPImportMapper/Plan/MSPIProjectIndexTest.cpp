#include "MSPIProjectIndex.h"

#include <fmt/format.h>

#include <array>
#include <random>

#include "MSPCExtensions.h"
#include "MappingFixture.h"

namespace {

// Texts for a number from 0 to 9: as XPath reads numbers (the first half) and as it does not.
std::string numberText(std::mt19937& random) {
    const int digit = static_cast<int>(random() % 10);
    switch (random() % 16) {
        case 0:
            return fmt::format(" {} ", digit);
        case 1:
            return fmt::format("00{}", digit);
        case 2:
            return fmt::format("{}.0", digit);
        case 3:
            return fmt::format("\n\t{}.", digit);
        case 4:
            return fmt::format("-{}", digit);
        case 5:
            return fmt::format("{}.5", digit);
        case 6:
            return fmt::format("+{}", digit);
        case 7:
            return fmt::format("{}x", digit);
        case 8:
            return fmt::format("- {}", digit);
        case 9:
            return fmt::format("{}e0", digit);
        case 10:
            return "";
        case 11:
            return fmt::format("1{}<!-- -->", digit);
        case 12:
            return fmt::format("<![CDATA[{}]]>", digit);
        default:
            return fmt::format("{}", digit);
    }
}

std::string elementList(std::mt19937& random, std::string_view list, std::string_view element, std::string_view key) {
    auto xml = fmt::format("<{}>", list);
    for (auto count = random() % 12; count > 0; --count) {
        xml += fmt::format("<{}>{}", element, random() % 2 == 0 ? "<TimephasedData/>" : "");
        for (auto keys = std::array{0u, 1u, 1u, 1u, 1u, 1u, 2u, 3u}[random() % 8]; keys > 0; --keys) {
            xml += fmt::format("<{0}>{1}</{0}><Other>{1}</Other>", key, numberText(random));
        }
        xml += fmt::format("</{}>", element);
    }
    return xml + fmt::format("</{}>", list);
}

// Each list up to three times, among others.
std::string projectContent(std::mt19937& random) {
    constexpr std::array<std::array<std::string_view, 3>, 5> lists = {{
        {"Tasks", "Task", "UID"},
        {"Calendars", "Calendar", "UID"},
        {"Assignments", "Assignment", "TaskUID"},
        {"Assignments", "Assignment", "ResourceUID"},
        {"ExtendedAttributes", "ExtendedAttribute", "FieldID"},
    }};
    std::string xml;
    for (int i = 0; i < 12; ++i) {
        const auto& [list, element, key] = lists[random() % lists.size()];
        xml += elementList(random, list, element, key);
    }
    return xml;
}

// A UID of another kind finds nothing even where the number is the same: it is no question at all.
template <typename Index, typename UID>
concept looksUp = requires(const Index& index, UID uid) {
    index.nodesWithKey(uid);
    index.singleNodeWithKey(uid);
};
static_assert(looksUp<MSPIUIDIndex<MSPCTaskUID>, MSPCTaskUID>);
static_assert(!looksUp<MSPIUIDIndex<MSPCTaskUID>, MSPCResourceUID>);
static_assert(!looksUp<MSPIUIDIndex<MSPCTaskUID>, std::int64_t>);
static_assert(looksUp<MSPIUIDIndex<MSPCCalendarUID>, MSPCCalendarUID>);
static_assert(!looksUp<MSPIUIDIndex<MSPCCalendarUID>, MSPCTaskUID>);

// Expects an index to give what the query gives, all nodes and the single one with its error.
void expectSameAsQuery(const MSPINumberIndex& index, const MSPCXMLNode& project, std::string_view format,
                       std::int64_t number) {
    const auto query = fmt::format(fmt::runtime(format), number);
    const auto nodes = index.nodesWithKey(number);
    EXPECT_EQ(std::vector<MSPCXMLNode>(nodes.begin(), nodes.end()), *project.nodesForXPath(query)) << query;
    Error indexError;
    Error queryError;
    EXPECT_EQ(index.singleNodeWithKey(number, &indexError), singleObjectForXQuery(project, query, &queryError))
        << query;
    EXPECT_EQ(indexError.code, queryError.code) << query;
    EXPECT_EQ(indexError.domain, queryError.domain) << query;
}

}  // namespace

TEST(MSPIProjectIndex, findsWhatTheQueriesFind) {
    constexpr int projects = 300;
    for (unsigned seed = 0; seed < projects && !testing::Test::HasFailure(); ++seed) {
        std::mt19937 random(seed);
        const auto xml = projectContent(random);
        SCOPED_TRACE(fmt::format("seed {}: {}", seed, xml));
        MappingFixture fixture(xml);
        const auto project = fixture.plan.root();
        MSPIProjectIndex index(project);
        for (const std::int64_t number : {-9, -3, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 12, 15, 19, 20}) {
            expectSameAsQuery(index.tasksByUID(), project, "Tasks/Task[UID={}]", number);
            expectSameAsQuery(index.calendarsByUID(), project, "Calendars/Calendar[UID={}]", number);
            expectSameAsQuery(index.assignmentsByTaskUID(), project, "Assignments/Assignment[TaskUID={}]", number);
            expectSameAsQuery(index.timephasedAssignmentsByTaskUID(), project,
                              "Assignments/Assignment[TimephasedData][TaskUID={}]", number);
            expectSameAsQuery(index.assignmentsByResourceUID(), project, "Assignments/Assignment[ResourceUID={}]",
                              number);
        }
        for (int i = 0; i < 30; ++i) {
            // The text of an element written in a query may hold neither markup nor quotes.
            const auto text = documentFromXML("<a>" + numberText(random) + "</a>").root().stringValue();
            const auto query = "ExtendedAttributes/ExtendedAttribute[FieldID='" + text + "']";
            Error indexError;
            Error queryError;
            EXPECT_EQ(index.definitionsByFieldID().singleNodeWithKey(text, &indexError),
                      singleObjectForXQuery(project, query, &queryError))
                << query;
            EXPECT_EQ(indexError.code, queryError.code) << query;
        }
    }
}

TEST(MSPIProjectIndex, comparesLargeNumbersAsTheQueriesDo) {
    MappingFixture fixture(
        "<Tasks><Task><UID>9007199254740993</UID></Task><Task><UID>9223372036854775807</UID></Task>"
        "<Task><UID>-9223372036854775808</UID></Task><Task><UID>4294967299</UID></Task></Tasks>");
    const auto project = fixture.plan.root();
    MSPIProjectIndex index(project);
    for (const std::int64_t number :
         {std::int64_t{9007199254740992}, std::int64_t{9007199254740993}, std::int64_t{9007199254740994},
          std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min(), std::int64_t{3},
          std::int64_t{4294967299}}) {
        expectSameAsQuery(index.tasksByUID(), project, "Tasks/Task[UID={}]", number);
    }
    EXPECT_TRUE(index.tasksByUID().singleNodeWithKey(MSPCTaskUID{4294967299}));
    EXPECT_FALSE(index.tasksByUID().singleNodeWithKey(MSPCTaskUID{3}));
}

TEST(MSPIProjectIndex, findsATextWithQuotesButNoneWithAnApostropheWhichWouldEndTheQuery) {
    MappingFixture fixture(
        "<ExtendedAttributes><ExtendedAttribute><FieldID>a\"b</FieldID></ExtendedAttribute>"
        "<ExtendedAttribute><FieldID>a'b</FieldID></ExtendedAttribute></ExtendedAttributes>");
    MSPIProjectIndex index(fixture.plan.root());
    EXPECT_TRUE(index.definitionsByFieldID().singleNodeWithKey("a\"b"));
    Error error;
    EXPECT_FALSE(index.definitionsByFieldID().singleNodeWithKey("a'b", &error));
    EXPECT_EQ(error.code, MSPCXQueryNoMatch);
}

TEST(MSPIProjectIndex, ofAProjectWithoutListsFindsNothing) {
    MappingFixture fixture("<UID>1</UID><FieldID>1</FieldID>");
    MSPIProjectIndex index(fixture.plan.root());
    Error error;
    EXPECT_FALSE(index.tasksByUID().singleNodeWithKey(MSPCTaskUID{1}, &error));
    EXPECT_EQ(error.code, MSPCXQueryNoMatch);
    EXPECT_FALSE(index.definitionsByFieldID().singleNodeWithKey("1"));
    EXPECT_TRUE(index.assignmentsByTaskUID().nodesWithKey(MSPCTaskUID{1}).empty());
}

TEST(MSPIProjectIndex, needsNoErrorToReportTo) {
    MappingFixture fixture("<Tasks><Task><UID>1</UID></Task><Task><UID>1</UID><Name>last</Name></Task></Tasks>");
    MSPIProjectIndex index(fixture.plan.root());
    EXPECT_TRUE(index.tasksByUID().singleNodeWithKey(MSPCTaskUID{1}).firstChildElement("Name"));
    EXPECT_FALSE(index.tasksByUID().singleNodeWithKey(MSPCTaskUID{2}));
}
