#include "KZDXScenario.h"

#include <gtest/gtest.h>

#include <random>

#include "KZDXXMLFile.h"
#include "SoundBundle.h"

namespace {

KZDXXMLFile fileOf(const std::string& bytes) {
    KZDXXMLError error;
    auto file = KZDXXMLFile::read("Actual.xml", bytes, error);
    EXPECT_TRUE(file) << error.reason;
    return std::move(*file);
}

}  // namespace

TEST(KZDXScenario, indexesWhatTasksSayAboutEachOther) {
    const auto file = fileOf(soundBundle()["Actual.xml"]);
    const KZDXScenario scenario(file.root());
    ASSERT_EQ(scenario.tasks().size(), 7U);
    EXPECT_EQ(scenario.tasks()[2].id, "t2");
    ASSERT_EQ(scenario.resources().size(), 3U);
    EXPECT_EQ(scenario.topTask(), 0U);
    EXPECT_EQ(scenario.topResource(), 0U);
    ASSERT_EQ(scenario.links().size(), 2U);
    EXPECT_EQ(scenario.links()[0].from, 3U);  // t3 waits for t2
    EXPECT_EQ(scenario.links()[0].to, 2U);
    ASSERT_EQ(scenario.assignments().size(), 2U);
    EXPECT_EQ(scenario.assignments()[1].from, 3U);
    EXPECT_EQ(scenario.assignments()[1].to, 2U);  // r2
    EXPECT_EQ(scenario.childTasks().size(), 6U);
    EXPECT_EQ(scenario.childResources().size(), 2U);
    EXPECT_EQ(KZDXStarts(scenario.childTasks(), 7), (std::vector<std::size_t>{0, 2, 4, 4, 6, 6, 6, 6}));
}

// Ids that repeat, that are missing, and that nobody has.
TEST(KZDXScenario, findsWhatAPlainSearchFinds) {
    std::mt19937 random(20261121);
    for (int round = 0; round < 50; ++round) {
        std::string text = "<scenario>";
        for (int i = 0; i < 40; ++i) {
            const auto id = std::to_string(random() % 30);
            text += random() % 8 == 0 ? std::string("<task/>") : std::string("<task id='t").append(id).append("'/>");
        }
        const auto file = fileOf(text + "</scenario>");
        const KZDXScenario scenario(file.root());
        for (int number = 0; number < 32; ++number) {
            auto id = number == 31 ? std::string() : std::string("t");
            id += number == 31 ? std::string() : std::to_string(number);
            std::optional<std::size_t> expected;
            for (std::size_t i = scenario.tasks().size(); i-- > 0;) {
                if (!id.empty() && KZDXAttribute(scenario.tasks()[i].element, "id") == id) {
                    expected = i;
                }
            }
            EXPECT_EQ(scenario.tasks().find(id), expected) << id;
        }
    }
}
