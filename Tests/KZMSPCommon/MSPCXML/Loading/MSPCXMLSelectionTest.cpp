#include "MSPCXMLSelection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

const MSPCXMLSelection* at(const MSPCXMLSelection& selection, std::initializer_list<std::string_view> path) {
    const auto* found = &selection;
    for (const auto name : path) {
        found = found == nullptr ? nullptr : found->child(name);
    }
    return found;
}

}  // namespace

TEST(MSPCXMLSelection, namesOnlyTheRootsOfADocumentAtItsTop) {
    const auto selection = MSPCXMLSelection::fromText("Plan(Title)");
    EXPECT_FALSE(selection.isWhole());
    EXPECT_THAT(selection.childNames(), UnorderedElementsAre("Plan"));
    EXPECT_EQ(selection.child("Title"), nullptr);
}

TEST(MSPCXMLSelection, keepsAnElementWithoutBracketsWholeAndOneWithBracketsInPart) {
    const auto selection = MSPCXMLSelection::fromText("Plan(Title Task(UID Link(To)) None())");
    EXPECT_TRUE(at(selection, {"Plan", "Title"})->isWhole());
    EXPECT_FALSE(at(selection, {"Plan", "Task"})->isWhole());
    EXPECT_FALSE(at(selection, {"Plan", "None"})->isWhole());
    EXPECT_THAT(at(selection, {"Plan"})->childNames(), UnorderedElementsAre("Title", "Task", "None"));
    EXPECT_THAT(at(selection, {"Plan", "Task"})->childNames(), UnorderedElementsAre("UID", "Link"));
    EXPECT_TRUE(at(selection, {"Plan", "Task", "Link", "To"})->isWhole());
    EXPECT_THAT(at(selection, {"Plan", "None"})->childNames(), IsEmpty());
}

TEST(MSPCXMLSelection, readsBlanksAndLineEndsBetweenNames) {
    const auto selection = MSPCXMLSelection::fromText("\n  Plan(\n  Title\n\n  Task(\n UID ) )\n");
    EXPECT_THAT(selection.childNames(), UnorderedElementsAre("Plan"));
    EXPECT_THAT(at(selection, {"Plan"})->childNames(), UnorderedElementsAre("Title", "Task"));
    EXPECT_THAT(at(selection, {"Plan", "Task"})->childNames(), UnorderedElementsAre("UID"));
}

TEST(MSPCXMLSelection, tellsNamesThatOnlyLookAlikeApart) {
    const std::string longName(33, 'a');  // its length falls together with that of one letter
    const auto selection = MSPCXMLSelection::fromText("Plan(a " + longName + " Name Nome)");
    const auto* plan = selection.child("Plan");
    EXPECT_NE(plan->child("a"), nullptr);
    EXPECT_NE(plan->child(longName), nullptr);
    EXPECT_NE(plan->child("a"), plan->child(longName));
    EXPECT_NE(plan->child("Name"), plan->child("Nome"));
    for (const auto& name : {std::string(), std::string("b"), std::string("Nam"), std::string("Names"),
                             std::string("name"), std::string("Nime"), std::string(33, 'b')}) {
        EXPECT_EQ(plan->child(name), nullptr) << name;
    }
}

TEST(MSPCXMLSelection, keepsChildrenWithTheNamesOfSiblingsWholeBelowAStarredName) {
    const auto selection = MSPCXMLSelection::fromText("Task(UID Data(Type) *Baseline(Number Data(Value)) Work)");
    const auto* baseline = at(selection, {"Task", "Baseline"});
    EXPECT_FALSE(baseline->isWhole());
    EXPECT_THAT(baseline->childNames(), UnorderedElementsAre("Number", "UID", "Data", "Work", "Baseline"));
    EXPECT_TRUE(baseline->child("Work")->isWhole());
    EXPECT_TRUE(baseline->child("Baseline")->isWhole());
    // What is said about a name goes before what follows from the star.
    EXPECT_THAT(baseline->child("Data")->childNames(), UnorderedElementsAre("Value"));
    EXPECT_THAT(at(selection, {"Task", "Data"})->childNames(), UnorderedElementsAre("Type"));
}

TEST(MSPCXMLSelection, defersElementsOfANameWithATilde) {
    const auto selection = MSPCXMLSelection::fromText("Plan(Tasks(Task(UID ~*Baseline(Number) ~Note)) ~Log)");
    EXPECT_TRUE(at(selection, {"Plan", "Tasks", "Task", "Baseline"})->isDeferred());
    EXPECT_THAT(at(selection, {"Plan", "Tasks", "Task", "Baseline"})->childNames(),
                UnorderedElementsAre("Number", "UID", "Note", "Baseline"));
    EXPECT_FALSE(at(selection, {"Plan", "Tasks", "Task", "Baseline", "Note"})->isDeferred());
    EXPECT_TRUE(at(selection, {"Plan", "Tasks", "Task", "Note"})->isDeferred());
    EXPECT_TRUE(at(selection, {"Plan", "Log"})->isDeferred());
    EXPECT_FALSE(at(selection, {"Plan", "Tasks", "Task", "UID"})->isDeferred());
    EXPECT_TRUE(at(selection, {"Plan", "Tasks", "Task"})->defersChildren());
    EXPECT_TRUE(at(selection, {"Plan"})->defersChildren());
    EXPECT_FALSE(at(selection, {"Plan", "Tasks"})->defersChildren());
}

TEST(MSPCXMLSelection, knowsThePathOfANameFromBelowTheRoot) {
    const auto selection = MSPCXMLSelection::fromText("Plan(Tasks(Task(UID)))");
    EXPECT_EQ(at(selection, {"Plan"})->path(), "");
    EXPECT_EQ(at(selection, {"Plan", "Tasks"})->path(), "Tasks");
    EXPECT_EQ(at(selection, {"Plan", "Tasks", "Task", "UID"})->path(), "Tasks/Task/UID");
}
