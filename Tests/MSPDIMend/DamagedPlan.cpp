#include "DamagedPlan.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace {

struct Text {
    std::size_t begin;
    std::size_t size;
};

std::size_t below(std::size_t bound, std::mt19937& random) {
    return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random);
}

// The texts of all leaves, or of those with a name.
std::vector<Text> leavesOf(const std::string& plan, std::string_view name) {
    std::vector<Text> leaves;
    for (auto end = plan.find("</"); end != std::string::npos; end = plan.find("</", end + 2)) {
        const auto begin = plan.rfind('>', end) + 1;
        const auto tag = plan.rfind('<', begin);
        const auto tagName = std::string_view(plan).substr(tag + 1, begin - tag - 2);
        const bool isLeaf = begin > 1 && plan[tag + 1] != '/' && plan[begin - 2] != '/';
        if (isLeaf && (name.empty() || tagName == name)) {
            leaves.push_back({begin, end - begin});
        }
    }
    return leaves;
}

void damageOnce(std::string& plan, std::mt19937& random) {
    constexpr std::array<std::string_view, 9> names = {"",    "",    "",        "Name",          "OutlineLevel",
                                                       "UID", "UID", "Summary", "IsBaseCalendar"};
    constexpr std::array<std::string_view, 16> texts = {"",
                                                        "x",
                                                        "0",
                                                        "1",
                                                        "2",
                                                        "-1",
                                                        "-7",
                                                        "9",
                                                        "PT",
                                                        "tomorrow",
                                                        "2012-01-05X08:00:00",
                                                        "99999999999999999999",
                                                        "P1D",
                                                        "yes",
                                                        "Standard",
                                                        "&#65;"};
    const auto leaves = leavesOf(plan, names[below(names.size(), random)]);
    if (leaves.empty()) {
        return;
    }
    const auto& leaf = leaves[below(leaves.size(), random)];
    const auto& other = leaves[below(leaves.size(), random)];
    const auto copied = plan.substr(other.begin, other.size);
    const bool isCopy = below(3, random) == 0;
    plan.replace(leaf.begin, leaf.size, isCopy ? copied : std::string(texts[below(texts.size(), random)]));
}

}  // namespace

std::string damagedPlan(std::string plan, std::mt19937& random) {
    for (auto count = below(4, random) + 1; count > 0; --count) {
        damageOnce(plan, random);
    }
    return plan;
}
