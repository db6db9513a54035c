#include <gtest/gtest.h>

#include "DamagedBundle.h"
#include "KZDXCheck.h"
#include "KZDXDiff.h"
#include "SoundBundle.h"

// Whatever happened to a document, looking at it ends with an answer.

namespace {

constexpr unsigned seed = 20261121;
constexpr int damages = 2'000;

}  // namespace

TEST(KZDXDamages, endACheckWithAnAnswer) {
    std::mt19937 random(seed);
    int found = 0;
    for (int i = 0; i < damages; ++i) {
        const auto check = KZDXCheckBundle(*KZDXFilesInMemory(damagedBundle(soundBundle(), random)));
        found += check.obstacle || !check.findings.empty() ? 1 : 0;
        for (const auto& finding : check.findings) {
            EXPECT_FALSE(finding.file.empty());
            EXPECT_FALSE(finding.text.empty());
            EXPECT_GE(finding.line, 0);
        }
    }
    EXPECT_GT(found, damages / 2);  // some damages hit what nobody looks at
}

TEST(KZDXDamages, endAComparisonWithAnAnswer) {
    std::mt19937 random(seed);
    int compared = 0;
    for (int i = 0; i < damages; ++i) {
        const auto soundFiles = KZDXFilesInMemory(soundBundle());
        const auto damagedFiles = KZDXFilesInMemory(damagedBundle(soundBundle(), random));
        std::string failure;
        const auto sound = KZDXOpenDocument::open(*soundFiles, "", failure);
        const auto damaged = KZDXOpenDocument::open(*damagedFiles, "", failure);
        ASSERT_TRUE(sound);
        if (!damaged) {
            EXPECT_FALSE(failure.empty());
            continue;
        }
        ++compared;
        for (const auto& difference : KZDXDiff(*sound, *damaged)) {
            EXPECT_FALSE(difference.what.empty());
        }
        static_cast<void>(KZDXDiff(*damaged, *sound));
        EXPECT_TRUE(KZDXDiff(*damaged, *damaged).empty());
    }
    EXPECT_GT(compared, damages / 4);
}
