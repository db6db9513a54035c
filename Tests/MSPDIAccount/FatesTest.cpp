#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "ChangedPlan.h"
#include "MSPCTextScanner.h"

// What is said of each leaf is true: what is called lost, default or derived can be taken out of the plan and the
// document stays the same; what is called carried gives another document with another value. Plans of many programs are
// kept beside the checkout; without them these tests are skipped.

namespace fs = std::filesystem;

namespace {

constexpr unsigned seed = 20261121;
constexpr std::size_t leavesOfEachPlan = 60;

fs::path corpusFolder() {
    const char* named = std::getenv("KZMSP_CORPUS");
    return named != nullptr ? fs::path(named) : fs::path(KZMSP_SOURCE).parent_path() / "shared" / "corpus";
}

std::vector<std::string> corpusPlans() {
    std::vector<std::string> plans;
    if (fs::is_directory(corpusFolder())) {
        for (const auto& entry : fs::directory_iterator(corpusFolder())) {
            if (entry.path().extension() == ".xml") {
                plans.push_back(entry.path().filename().string());
            }
        }
    }
    std::sort(plans.begin(), plans.end());
    return plans;
}

std::string bytesOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

bool isDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Another value that a plan may have at that place.
std::string otherValue(const ChangedPlan& plan, const std::string& path, const std::string& value) {
    const auto element = withoutNumbers(path);
    const auto name = element.substr(element.rfind('/') + 1);
    const auto number = scanInteger64(value).value_or(0);
    const auto otherOf = [&](const std::string& at) {
        for (const auto& other : plan.valuesAt(at)) {
            if (other != value && isDigits(other)) {
                return other;
            }
        }
        return std::to_string(number + 1);
    };
    if (element == "Tasks/Task/PredecessorLink/PredecessorUID") {
        return otherOf("Tasks/Task/UID");
    }
    if (element == "Assignments/Assignment/ResourceUID") {
        return otherOf("Resources/Resource/UID");
    }
    if (element == "Tasks/Task/PredecessorLink/Type" || name == "CurrencySymbolPosition") {
        return std::to_string((number + 1) % 4);
    }
    if (name == "WorkFormat") {
        return "3";
    }
    if (name == "CurrencyDigits") {
        return std::to_string(number == 0 ? 2 : number - 1);
    }
    if (name.starts_with("Percent")) {
        return std::to_string(number == 100 ? 99 : number + 1);
    }
    if (value.size() > 10 && value[4] == '-' && value[10] == 'T') {
        return std::to_string(number + 1) + value.substr(4);  // a year later
    }
    if (value.starts_with("PT")) {
        const auto hours = scanInteger64(std::string_view(value).substr(2)).value_or(0);
        const auto rest = value.find('H');
        return "PT" + std::to_string(hours + 1) + (rest == std::string::npos ? "H0M0S" : value.substr(rest));
    }
    if (value.size() == 8 && value[2] == ':') {
        return value.substr(0, 3) + (value.substr(3, 2) == "17" ? "18" : "17") + value.substr(5);
    }
    if (isDigits(value)) {
        return std::to_string(number + 1);
    }
    if (scanDouble(value) && value.find_first_not_of("0123456789.") == std::string::npos) {
        return std::to_string(*scanDouble(value) + 1);
    }
    return value + "x";
}

bool isRemovable(MSPDIFate fate) {
    return fate == MSPDIFate::Default || fate == MSPDIFate::Derived || fate == MSPDIFate::Lost;
}

// Which of these leaves change the document when they are taken out, found by halves; at most a few.
void findCulprits(const ChangedPlan& plan, const std::vector<std::string>& paths, std::vector<std::string>& culprits) {
    if (culprits.size() >= 5 || paths.empty() || plan.isSameWithout(paths)) {
        return;
    }
    if (paths.size() == 1) {
        culprits.push_back(paths.front() + " = " + plan.textAt(paths.front()));
        return;
    }
    const auto middle = paths.begin() + static_cast<std::ptrdiff_t>(paths.size() / 2);
    findCulprits(plan, {paths.begin(), middle}, culprits);
    findCulprits(plan, {middle, paths.end()}, culprits);
}

class Fates : public testing::TestWithParam<std::string> {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Fates);

std::string nameOfTest(std::string name) {
    std::replace_if(
        name.begin(), name.end(), [](unsigned char character) { return std::isalnum(character) == 0; }, '_');
    return name;
}

}  // namespace

TEST(FatesFolder, isThere) {
    if (corpusPlans().empty()) {
        GTEST_SKIP() << "no plans in " << corpusFolder() << "; KZMSP_CORPUS names another folder";
    }
}

TEST_P(Fates, areTrue) {
    const ChangedPlan plan(bytesOf(corpusFolder() / GetParam()));
    const auto leaves = plan.leaves();
    ASSERT_EQ(plan.fates().size(), leaves.size());
    std::vector<std::string> removable;
    std::vector<std::string> carried;
    for (const auto& [path, fate] : plan.fates()) {
        EXPECT_TRUE(leaves.contains(path)) << path;
        if (isRemovable(fate)) {
            removable.push_back(path);
        } else if (fate == MSPDIFate::Carried) {
            carried.push_back(path);
        }
    }
    if (!plan.isImported()) {
        return;
    }
    std::vector<std::string> culprits;
    findCulprits(plan, removable, culprits);
    for (const auto& culprit : culprits) {
        ADD_FAILURE() << "another document without " << culprit;
    }
    std::mt19937 random(seed);
    std::shuffle(removable.begin(), removable.end(), random);
    std::shuffle(carried.begin(), carried.end(), random);
    removable.resize(std::min(removable.size(), leavesOfEachPlan / 4));
    carried.resize(std::min(carried.size(), leavesOfEachPlan - leavesOfEachPlan / 4));
    for (const auto& path : removable) {
        EXPECT_TRUE(plan.isSameWithout({path})) << path << " = " << plan.textAt(path);
    }
    for (const auto& path : carried) {
        const auto value = plan.textAt(path);
        const auto other = otherValue(plan, path, value);
        EXPECT_FALSE(plan.isSameWith(path, other)) << path << ": " << value << " -> " << other;
    }
}

INSTANTIATE_TEST_SUITE_P(Plans, Fates, testing::ValuesIn(corpusPlans()),
                         [](const auto& plan) { return nameOfTest(plan.param); });
