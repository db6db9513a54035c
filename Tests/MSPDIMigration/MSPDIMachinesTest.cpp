#include "MSPDIMachines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::Optional;

TEST(Machines, haveNamesWithCommasBetweenThem) {
    EXPECT_THAT(MSPDIMachines::namesIn(":"), Optional(ElementsAre(":")));
    EXPECT_THAT(MSPDIMachines::namesIn("anna@a,b,:"), Optional(ElementsAre("anna@a", "b", ":")));
    EXPECT_THAT(MSPDIMachines::namesIn("ssh -p 22 a,b:2222"), Optional(ElementsAre("ssh -p 22 a", "b:2222")));
}

TEST(Machines, areAskedOnceEachWhateverProcessorsAreGivenThem) {
    EXPECT_THAT(MSPDIMachines::namesIn("a,4/b,a,b,12/:,1//usr/bin/ssh c,4"),
                Optional(ElementsAre("a", "b", ":", "/usr/bin/ssh c", "4")));
}

TEST(Machines, areNoOptionsAndNoNothing) {
    for (const auto* const list :
         {"", ",", "a,", ",a", "a,,b", "-a", "a,-oProxyCommand=x", "4/-a", "4/", " a", "a\nb", "a\x1b", "a\x7f"}) {
        EXPECT_EQ(MSPDIMachines::namesIn(list), std::nullopt) << list;
    }
}
