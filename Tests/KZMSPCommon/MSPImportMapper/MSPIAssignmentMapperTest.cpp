#include "MSPIAssignmentMapper.h"

#include "ExpectRaises.h"
#include "MappingFixture.h"

namespace {

std::string assignmentOf(std::string_view content) {
    MappingFixture fixture("<Assignments><Assignment>" + std::string(content) + "</Assignment></Assignments>");
    return markupOf(
        MSPIAssignmentMapper(fixture.context).newAssignmentFromMSPAssignment(fixture.node("Assignments/Assignment")));
}

}  // namespace

TEST(MSPIAssignmentMapper, namesTheResourceAndNothingElse) {
    EXPECT_EQ(assignmentOf("<UID>1</UID><TaskUID>2</TaskUID><ResourceUID>3</ResourceUID><Units>0.5</Units>"
                           "<Work>PT8H0M0S</Work><Start>2012-03-05T08:00:00</Start>"),
              "<assignment idref=\"r3\"/>");
}

TEST(MSPIAssignmentMapper, takesTheResourcesUIDAsItIsWritten) {
    EXPECT_EQ(assignmentOf("<ResourceUID>003</ResourceUID>"), "<assignment idref=\"r003\"/>");
    EXPECT_EQ(assignmentOf("<ResourceUID>1</ResourceUID><ResourceUID>2</ResourceUID>"), "<assignment idref=\"r2\"/>");
    EXPECT_EQ(assignmentOf("<ResourceUID/>"), "<assignment idref=\"\"/>");
}

TEST(MSPIAssignmentMapper, writesABareAssignmentWithoutAResource) {
    EXPECT_EQ(assignmentOf("<TaskUID>2</TaskUID>"), "<assignment/>");
}

TEST(MSPIAssignmentMapper, refusesANegativeResource) {
    EXPECT_RAISES(assignmentOf("<ResourceUID>-65535</ResourceUID>"), MSPCInternalInconsistency,
                  "Invalid format of MSPDI Resource ID (can not be negative number): -65535");
}
