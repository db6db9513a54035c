#include "MSPDIRun.h"

#include <gtest/gtest.h>

#include <sstream>

#include "ServicesInMemory.h"

TEST(MSPDIRunTest, tellsInOneLineWhatItCouldNotLookAt) {
    ServicesInMemory world;
    std::ostringstream out;
    std::ostringstream err;
    MSPDIRun run{world.services, out, err};
    run.couldNotLook("a\nplan\x1B[31m.xml", "no\r\nreason");
    EXPECT_EQ(err.str(), "mspdi: a\\nplan\\x1b[31m.xml: no\\r\\nreason\n");
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(run.status, MSPDIStatus::CouldNotLook);
}

TEST(MSPDIRunTest, emphasizesOnlyWhereColourIsWanted) {
    ServicesInMemory world;
    std::ostringstream out;
    MSPDIRun run{world.services, out, out};
    EXPECT_EQ(run.emphasized("3 deadlines"), "3 deadlines");
    run.isColored = true;
    EXPECT_EQ(run.emphasized("3 deadlines"), "\x1B[1m3 deadlines\x1B[0m");
}
