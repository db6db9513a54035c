#include "MSPDIPlanPaths.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

TEST(MSPDIPlanPaths, comeBackAsTheyWere) {
    const std::vector<std::string> texts = {"/a/b.xml",
                                            "/a/b.xml",
                                            "/a/b",
                                            "",
                                            "/a/b\n\t\xFF.xml",
                                            std::string(1000, 'x'),
                                            std::string(1000, 'x') + "y",
                                            "/z",
                                            std::string("/z\0z", 4)};
    MSPDIPlanPaths paths;
    EXPECT_TRUE(paths.empty());
    for (const auto& text : texts) {
        paths.add(text);
    }
    EXPECT_EQ(paths.size(), texts.size());
    for (int time = 0; time < 2; ++time) {
        MSPDIPlanPaths::Walk walk(paths);
        for (const auto& text : texts) {
            const auto* const path = walk.next();
            ASSERT_NE(path, nullptr);
            EXPECT_EQ(*path, text);
        }
        EXPECT_EQ(walk.next(), nullptr);
    }
    EXPECT_EQ(MSPDIPlanPaths::Walk(MSPDIPlanPaths()).next(), nullptr);
}
