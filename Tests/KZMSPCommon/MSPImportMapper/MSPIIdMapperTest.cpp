#include "MSPIIdMapper.h"

#include "ExpectRaises.h"

TEST(MSPIIdMapper, putsALetterBeforeTheUnchangedUID) {
    const MSPIIdMapper mapper;
    const struct {
        const char* uid;
        const char* taskId;
        const char* resourceId;
    } table[] = {
        {"12", "t12", "r12"},    {"0", "t0", "r0"},    {"007", "t007", "r007"},
        {" 3 ", "t 3 ", "r 3 "}, {"+4", "t+4", "r+4"}, {"x-1", "tx-1", "rx-1"},
    };
    for (const auto& [uid, taskId, resourceId] : table) {
        EXPECT_EQ(mapper.taskIdFromMspdiUID(uid), taskId);
        EXPECT_EQ(mapper.resourceIdFromMspdiUID(uid), resourceId);
    }
}

TEST(MSPIIdMapper, writesNumbersInDecimal) {
    EXPECT_EQ(MSPIIdMapper().taskIdFromMspdiUID(MSPCTaskUID{12}), "t12");
    EXPECT_EQ(MSPIIdMapper().resourceIdFromMspdiUID(MSPCResourceUID{9223372036854775807}), "r9223372036854775807");
    EXPECT_RAISES(MSPIIdMapper().taskIdFromMspdiUID(MSPCTaskUID{-5}), MSPCInternalInconsistency,
                  "Invalid format of MSPDI Task ID (can not be negative number): -5");
    EXPECT_RAISES(MSPIIdMapper().resourceIdFromMspdiUID(MSPCResourceUID{-1}), MSPCInternalInconsistency,
                  "Invalid format of MSPDI Resource ID (can not be negative number): -1");
}

TEST(MSPIIdMapper, givesAnEmptyIdForAnEmptyUID) {
    EXPECT_EQ(MSPIIdMapper().taskIdFromMspdiUID(""), "");
    EXPECT_EQ(MSPIIdMapper().resourceIdFromMspdiUID(""), "");
}

TEST(MSPIIdMapper, refusesNegativeUIDs) {
    EXPECT_RAISES(MSPIIdMapper().taskIdFromMspdiUID("-5"), MSPCInternalInconsistency,
                  "Invalid format of MSPDI Task ID (can not be negative number): -5");
    EXPECT_RAISES(MSPIIdMapper().resourceIdFromMspdiUID("-65535"), MSPCInternalInconsistency,
                  "Invalid format of MSPDI Resource ID (can not be negative number): -65535");
    EXPECT_RAISES(MSPIIdMapper().taskIdFromMspdiUID("-0"), MSPCInternalInconsistency,
                  "Invalid format of MSPDI Task ID (can not be negative number): -0");
}
