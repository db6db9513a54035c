#include "DamagedPlan.h"

#include <array>
#include <cstddef>
#include <initializer_list>
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

struct Element {
    std::string name;
    std::size_t begin;
    std::size_t end;
};

// All elements but the root, each whole.
std::vector<Element> elementsOf(const std::string& plan) {
    std::vector<Element> elements;
    std::vector<std::size_t> open;
    for (auto tag = plan.find('<'); tag != std::string::npos; tag = plan.find('<', tag + 1)) {
        const auto end = plan.find('>', tag) + 1;
        if (end == 0 || plan[tag + 1] == '?' || plan[tag + 1] == '!') {
            continue;
        }
        if (plan[tag + 1] == '/') {
            if (!open.empty()) {
                elements[open.back()].end = end;
                open.pop_back();
            }
            continue;
        }
        const auto nameEnd = plan.find_first_of(" \t\r\n/>", tag);
        elements.push_back({plan.substr(tag + 1, nameEnd - tag - 1), tag, end});
        if (plan[end - 2] != '/') {
            open.push_back(elements.size() - 1);
        }
    }
    elements.erase(elements.begin());
    return elements;
}

const Element* anyElement(const std::vector<Element>& elements, std::string_view name, std::mt19937& random) {
    std::vector<const Element*> found;
    for (const auto& element : elements) {
        if (name.empty() || element.name == name) {
            found.push_back(&element);
        }
    }
    return found.empty() ? nullptr : found[below(found.size(), random)];
}

std::string_view anyOf(std::initializer_list<std::string_view> texts, std::mt19937& random) {
    return texts.begin()[below(texts.size(), random)];
}

void setLeaf(std::string& plan, std::string_view name, std::string_view text, std::mt19937& random) {
    const auto leaves = leavesOf(plan, name);
    if (!leaves.empty()) {
        const auto& leaf = leaves[below(leaves.size(), random)];
        plan.replace(leaf.begin, leaf.size, text);
    }
}

// None for all kinds.
std::string_view anyKind(std::mt19937& random) {
    return anyOf({"", "Task", "Calendar", "Resource", "Calendars", "UID", "Assignment", "OutlineLevel", "WeekDay",
                  "Summary", "Type", "Baseline"},
                 random);
}

void doubleElement(std::string& plan, std::mt19937& random) {
    const auto elements = elementsOf(plan);
    if (const auto* element = anyElement(elements, anyKind(random), random)) {
        plan.insert(element->end, plan.substr(element->begin, element->end - element->begin));
    }
}

void removeElement(std::string& plan, std::mt19937& random) {
    const auto elements = elementsOf(plan);
    if (const auto* element = anyElement(elements, anyKind(random), random)) {
        plan.erase(element->begin, element->end - element->begin);
    }
}

// Two of one name change places.
void swapElements(std::string& plan, std::mt19937& random) {
    const auto elements = elementsOf(plan);
    const auto* first = anyElement(elements, anyKind(random), random);
    const auto* second = first == nullptr ? nullptr : anyElement(elements, first->name, random);
    if (second == nullptr || first->end > second->begin) {
        return;
    }
    const auto later = plan.substr(second->begin, second->end - second->begin);
    const auto earlier = plan.substr(first->begin, first->end - first->begin);
    plan.replace(second->begin, later.size(), earlier);
    plan.replace(first->begin, earlier.size(), later);
}

void shuffleLevels(std::string& plan, std::mt19937& random) {
    for (auto count = below(5, random) + 1; count > 0; --count) {
        setLeaf(plan, "OutlineLevel", std::to_string(static_cast<int>(below(9, random)) - 1), random);
    }
}

void shakeOnce(std::string& plan, std::mt19937& random) {
    switch (below(8, random)) {
        case 0:
            return doubleElement(plan, random);
        case 1:
            return removeElement(plan, random);
        case 2:
            return swapElements(plan, random);
        case 3:
            return shuffleLevels(plan, random);
        case 4:
            return setLeaf(plan,
                           anyOf({"Summary", "IsNull", "IsBaseCalendar", "Milestone", "DayWorking", "ScheduleFromStart",
                                  "IsCostResource", "Pinned"},
                                 random),
                           anyOf({"maybe", "", "2", "-1", "TRUE", " 1 "}, random), random);
        case 5:
            return setLeaf(plan, anyOf({"TaskUID", "ResourceUID", "PredecessorUID", "CalendarUID"}, random),
                           anyOf({"987654", "-1", "0", "", "99999999999999999999"}, random), random);
        case 6:
            return setLeaf(plan, "",
                           anyOf({"9223372036854775807", "-9223372036854775808", "1e308", "PT9999999999999H0M0S",
                                  "9999-12-31T23:59:59", "0001-01-01T00:00:00", "4294967296", "-0"},
                                 random),
                           random);
        default:
            return setLeaf(plan, anyOf({"Name", "Value", "FieldID", "Number", "SaveVersion", "DayType"}, random),
                           anyOf({"Standard", "standard", "", "1", "7", "-1"}, random), random);
    }
}

}  // namespace

std::string shakenPlan(std::string plan, std::mt19937& random) {
    for (auto count = below(4, random) + 1; count > 0; --count) {
        shakeOnce(plan, random);
    }
    return plan;
}

std::string damagedPlan(std::string plan, std::mt19937& random) {
    for (auto count = below(4, random) + 1; count > 0; --count) {
        damageOnce(plan, random);
    }
    return plan;
}
