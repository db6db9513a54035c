#include "MSPIAssignedUnits.h"

#include <gtest/gtest.h>

#include <string>

#include "ExpectRaises.h"
#include "MSPCException.h"
#include "MappingFixture.h"

namespace {

std::string assignment(const std::string& content) {
    return "<Assignment>" + content + "</Assignment>";
}

double unitsOf(const std::string& assignments, std::int64_t uid) {
    MappingFixture fixture("<Assignments>" + assignments + "</Assignments>");
    return fixture.context.assignedUnitsOfResource(MSPCResourceUID{uid});
}

TEST(MSPIAssignedUnits, AreThoseOfAllAssignmentsOfTheResource) {
    const auto assignments = assignment("<ResourceUID>5</ResourceUID><Units>2</Units><Units>0.5</Units>") +
                             assignment("<ResourceUID>6</ResourceUID><Units>7</Units>") +
                             assignment("<ResourceUID> 05 </ResourceUID><Units>x</Units>") +
                             assignment("<ResourceUID>5</ResourceUID><Units>3</Units>");
    EXPECT_EQ(unitsOf(assignments, 5), 5.5);
    EXPECT_EQ(unitsOf(assignments, 6), 7);
    EXPECT_EQ(unitsOf(assignments, 7), 0);
    EXPECT_EQ(unitsOf("", 5), 0);
}

TEST(MSPIAssignedUnits, CountForEachResourceThatAnAssignmentNames) {
    const auto assignments = assignment("<ResourceUID>5</ResourceUID><ResourceUID>6</ResourceUID><Units>2</Units>");
    EXPECT_EQ(unitsOf(assignments, 5), 2);
    EXPECT_EQ(unitsOf(assignments, 6), 2);
}

TEST(MSPIAssignedUnits, AreSummedUpOnceForAllResourcesOfAUID) {
    MappingFixture fixture("<Assignments>" + assignment("<ResourceUID>5</ResourceUID><Units>2</Units>") +
                           "</Assignments>");
    EXPECT_EQ(fixture.context.assignedUnitsOfResource(MSPCResourceUID{5}), 2);
    fixture.node("Assignments/Assignment/Units").setStringValue("3");
    EXPECT_EQ(fixture.context.assignedUnitsOfResource(MSPCResourceUID{5}), 2);
}

// One assignment of 101 resources with 100 units has 201 children; all but the first of the resources count them, so
// the bound of 10,000 is passed by the 51st.
TEST(MSPIAssignedUnits, OfAnAssignmentOfManyResourcesRaise) {
    std::string content;
    for (int uid = 1; uid <= 101; ++uid) {
        content += "<ResourceUID>" + std::to_string(uid) + "</ResourceUID>";
    }
    for (int i = 0; i < 100; ++i) {
        content += "<Units>1</Units>";
    }
    MappingFixture fixture("<Assignments>" + assignment(content) + "</Assignments>");
    for (int uid = 1; uid <= 50; ++uid) {
        EXPECT_EQ(fixture.context.assignedUnitsOfResource(MSPCResourceUID{uid}), 100);
    }
    EXPECT_RAISES(static_cast<void>(fixture.context.assignedUnitsOfResource(MSPCResourceUID{51})),
                  MSPCInternalInconsistency,
                  "Too much to look at in assignments of several tasks or resources: more than 10000 elements.");
}

}  // namespace
