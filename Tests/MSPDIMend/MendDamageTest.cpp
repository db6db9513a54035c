// Damaged plans are mended, or it is told what stands in the way.
#include <gtest/gtest.h>

#include "CorpusPlans.h"
#include "DamagedPlan.h"
#include "MSPDIMemoryImport.h"
#include "MSPDIMend.h"
#include "ServicesInMemory.h"

namespace {

class MendDamageTest : public testing::Test, protected ServicesInMemory {
protected:
    // The small ones among the examples, and those beside the checkout.
    static std::vector<std::string> smallPlans() {
        std::vector<std::string> plans;
        constexpr std::size_t largest = 120'000;
        for (const auto& file : corpusPlans(KZMSP_SOURCE)) {
            if (std::filesystem::file_size(file) < largest) {
                plans.push_back(corpusBytes(file));
            }
        }
        for (const auto& entry : std::filesystem::directory_iterator(KZMSP_SOURCE "/examples")) {
            if (entry.path().extension() == ".xml" && entry.file_size() < largest) {
                plans.push_back(corpusBytes(entry.path()));
            }
        }
        return plans;
    }
    [[nodiscard]] bool imports(const std::string& bytes) const {
        return MSPDIImportBytesInMemory("Plan.xml", bytes, services, MSPDIMemoryKeeping::Names).isImported();
    }
};

}  // namespace

TEST_F(MendDamageTest, importsAfterwardsOrTellsWhy) {
    std::mt19937 random(20260101);
    auto plans = smallPlans();
    std::erase_if(plans, [&](const auto& plan) { return !imports(plan); });
    ASSERT_FALSE(plans.empty());
    constexpr std::size_t count = 2000;
    std::size_t mendedCount = 0;
    std::size_t notMendable = 0;
    for (std::size_t number = 0; number < count; ++number) {
        const auto damaged = damagedPlan(plans[number % plans.size()], random);
        const auto kept = damaged;
        const auto mended = MSPDIMendPlan("Plan.xml", damaged, services);
        ASSERT_EQ(damaged, kept);
        EXPECT_EQ(mended.obstacle.empty(), mended.verdict != MSPDIMendVerdict::NotMendable);
        if (mended.verdict == MSPDIMendVerdict::Mended) {
            ++mendedCount;
            EXPECT_TRUE(imports(mended.bytes)) << number;
        } else if (mended.verdict == MSPDIMendVerdict::NotMendable) {
            ++notMendable;
            std::cout << number << ": " << mended.obstacle << '\n';
        } else {
            EXPECT_TRUE(imports(damaged)) << number;
        }
    }
    std::cout << mendedCount << " mended, " << notMendable << " not mendable\n";
    EXPECT_GT(mendedCount, 500U);
    EXPECT_LE(notMendable, count / 100);
}
