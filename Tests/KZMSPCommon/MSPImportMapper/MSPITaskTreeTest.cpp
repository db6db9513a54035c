#include "MSPITaskTree.h"

#include <fmt/format.h>

#include <map>
#include <random>

#include "ExpectRaises.h"
#include "MSPCExtensions.h"
#include "MappingFixture.h"

namespace {

using Entry = MSPITaskTree::Entry;

// The search as it is meant: from the newest task but one back to the first, with level and kind of each candidate as
// the MSPDI task recorded last under its id has them.
class PlainTree {
public:
    explicit PlainTree(bool onlySummaryParents) : _onlySummaryParents(onlySummaryParents) {}

    void record(const std::string& id, const Entry& entry) {
        _byId[id] = entry;
        _tasks.emplace_back(id, entry.kdzxTask);
    }
    // The target task of the parent.
    MSPCXMLNode parentForLevel(std::int64_t outlineLevel) const {
        for (auto candidate = std::next(_tasks.rbegin()); candidate != _tasks.rend(); ++candidate) {
            const auto& known = _byId.at(candidate->first);
            if (known.outlineLevel < outlineLevel && (known.isSummary || !_onlySummaryParents)) {
                return candidate->second;
            }
        }
        return {};
    }

private:
    bool _onlySummaryParents;
    std::map<std::string, Entry> _byId;
    std::vector<std::pair<std::string, MSPCXMLNode>> _tasks;
};

// Tasks for a tree, with elements to tell them apart.
class TreeFixture {
public:
    Entry entry(std::int64_t outlineLevel, bool isSummary) {
        const auto task = addChildElementWithName(_document.root(), "task");
        return {task, task, {}, outlineLevel, isSummary};
    }
    // An entry whose target has the given type; none for an empty one.
    Entry typed(std::string_view type, bool isSummary) {
        auto result = entry(1, isSummary);
        if (!type.empty()) {
            result.kdzxType = addChildElementWithNameStringValue(result.kdzxTask, "type", type);
        }
        return result;
    }

private:
    MSPCXMLDocument _document = documentFromXML("<tasks/>");
};

void expectSameAsPlainTree(unsigned seed, bool onlySummaryParents) {
    SCOPED_TRACE(fmt::format("seed {}, only Summary tasks: {}", seed, onlySummaryParents));
    std::mt19937 random(seed);
    TreeFixture fixture;
    const auto count = 1 + random() % 70;
    const auto ids = 1 + random() % 80;  // few ids: many doubles
    const auto levels = 2 + random() % 6;
    const auto oneSummaryIn = 1 + random() % 4;
    MSPITaskTree tree(count, onlySummaryParents);
    PlainTree plainTree(onlySummaryParents);
    for (std::size_t i = 0; i < count; ++i) {
        const auto id = fmt::format("t{}", random() % ids);
        const auto level = static_cast<std::int64_t>(random() % levels);
        const auto entry = fixture.entry(level, random() % oneSummaryIn == 0);
        tree.record(id, entry);
        plainTree.record(id, entry);
        const auto parent = tree.parentForLevel(level);
        ASSERT_EQ(parent ? parent->kdzxTask : MSPCXMLNode(), plainTree.parentForLevel(level)) << i;
    }
}

}  // namespace

TEST(MSPITaskTree, findsTheParentThatTheWalkBackwardsFinds) {
    constexpr unsigned lists = 2000;
    for (unsigned seed = 0; seed < lists && !testing::Test::HasFailure(); ++seed) {
        expectSameAsPlainTree(seed, false);
        expectSameAsPlainTree(seed, true);
    }
}

TEST(MSPITaskTree, takesTheNewestTaskOfALowerLevel) {
    TreeFixture fixture;
    const auto first = fixture.entry(1, false);
    const auto second = fixture.entry(2, false);
    MSPITaskTree tree(4, false);
    tree.record("t1", first);
    tree.record("t2", second);
    tree.record("t3", fixture.entry(3, false));
    EXPECT_EQ(tree.parentForLevel(3)->kdzxTask, second.kdzxTask);
    tree.record("t4", fixture.entry(2, false));
    EXPECT_EQ(tree.parentForLevel(2)->kdzxTask, first.kdzxTask);
    EXPECT_FALSE(tree.parentForLevel(1));
    EXPECT_FALSE(tree.parentForLevel(0));
}

// A task on the same level or above that is no Summary task does not close the group before it.
TEST(MSPITaskTree, keepsASummaryTaskAsCandidateBehindOtherTasks) {
    TreeFixture fixture;
    const auto summary = fixture.entry(1, true);
    MSPITaskTree tree(3, true);
    tree.record("t1", summary);
    tree.record("t2", fixture.entry(1, false));
    tree.record("t3", fixture.entry(2, false));
    EXPECT_EQ(tree.parentForLevel(2)->kdzxTask, summary.kdzxTask);
}

TEST(MSPITaskTree, readsLevelAndKindOfTheLaterOfTwoTasksWithOneId) {
    TreeFixture fixture;
    const auto outer = fixture.entry(1, true);
    MSPITaskTree tree(4, false);
    tree.record("t1", outer);
    tree.record("t2", fixture.entry(2, true));
    tree.record("t3", fixture.entry(5, true));
    tree.record("t2", fixture.entry(3, true));  // its level is now that of both
    EXPECT_EQ(tree.parentForLevel(3)->kdzxTask, outer.kdzxTask);
}

TEST(MSPITaskTree, makesAnOlderFilesParentAGroup) {
    TreeFixture fixture;
    for (const auto* type : {"task", "milestone", "group"}) {
        const auto parent = fixture.typed(type, false);
        EXPECT_EQ(MSPITaskTree(1, false).groupOfParent(parent), parent.kdzxTask);
        EXPECT_EQ(stringValueForXQuery(parent.kdzxTask, "type"), "group");
    }
    const auto group = fixture.typed("group", true);
    EXPECT_EQ(MSPITaskTree(1, true).groupOfParent(group), group.kdzxTask);
}

TEST(MSPITaskTree, refusesParentsThatCannotBeGroups) {
    TreeFixture fixture;
    const MSPITaskTree older(1, false);
    const MSPITaskTree newer(1, true);
    for (const auto* tree : {&older, &newer}) {
        EXPECT_RAISES(tree->groupOfParent(fixture.typed("", true)), MSPCInternalInconsistency,
                      "Parent task was not assigned a type.");
        auto unknown = fixture.typed("group", true);
        unknown.mspTask = {};
        EXPECT_RAISES(tree->groupOfParent(unknown), MSPCInternalInconsistency,
                      "Failed to find msp 'Task' for given kdzx 'Task' in dictionary.");
    }
    EXPECT_RAISES(newer.groupOfParent(fixture.typed("group", false)), MSPCInternalInconsistency,
                  "Candidate for parent group must be a Summary Task in MSPDI.");
    EXPECT_RAISES(newer.groupOfParent(fixture.typed("task", true)), MSPCInternalInconsistency,
                  "Candidate for parent group must be a Group Task in KDZX.");
}

TEST(MSPITaskTree, wantsGroupsFromSummaryTasksAndOnlyFromThem) {
    TreeFixture fixture;
    for (const auto& [type, isSummary] : {std::pair("group", true), {"task", false}, {"", false}}) {
        const auto task = fixture.typed(type, isSummary);
        EXPECT_NO_THROW(MSPITaskTree::checkType(task.kdzxType, isSummary));
    }
    const struct {
        const char* type;
        bool isSummary;
    } mismatches[] = {{"group", false}, {"task", true}, {"milestone", true}, {"Group", true}, {"", true}};
    for (const auto& [type, isSummary] : mismatches) {
        EXPECT_RAISES(MSPITaskTree::checkType(fixture.typed(type, isSummary).kdzxType, isSummary),
                      MSPCInternalInconsistency, "MSPDI Summary Task must be mapped to KDZX Group Task.");
    }
}
