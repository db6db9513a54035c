// The documents say what the table says.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <vector>

#include "MSPDIElementTable.h"
#include "MSPDIKinds.h"

namespace {

std::string sourceFile(const std::string& path) {
    std::ifstream file(std::string(KZMSP_SOURCE) + "/" + path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void replaceAll(std::string& text, const std::string& piece, const std::string& replacement) {
    for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + replacement.size())) {
        text.replace(at, piece.size(), replacement);
    }
}

// The element names in a text: what stands between backquotes.
std::vector<std::string> namesIn(const std::string& text) {
    std::vector<std::string> names;
    for (auto start = text.find('`'); start != std::string::npos; start = text.find('`', start)) {
        const auto end = text.find('`', start + 1);
        names.push_back(text.substr(start + 1, end - start - 1));
        start = end + 1;
    }
    return names;
}

// Where the elements stand that a part of the list is about, by its title: "**Task** `UID`, ...". Empty without a
// title.
std::string ownerTitledIn(const std::string& line) {
    static const std::map<std::string, std::string> owners = {{"Project", ""},
                                                              {"Calendar", "Calendars/Calendar"},
                                                              {"Task", "Tasks/Task"},
                                                              {"PredecessorLink", "Tasks/Task/PredecessorLink"},
                                                              {"Resource", "Resources/Resource"},
                                                              {"Assignment", "Assignments/Assignment"},
                                                              {"Notes", "Tasks/Task"},
                                                              {"ExtendedAttribute", "ExtendedAttributes"},
                                                              {"Baseline", "Tasks/Task/Baseline"}};
    const auto end = line.find("** ");
    return owners.at(line.substr(4, end - 4));
}

bool isAtOrBelow(std::string_view parent, const std::string& owner) {
    return parent == owner || (!owner.empty() && parent.starts_with(owner + "/"));
}

// The lines that the table has for an element name below an owner; all that it has where there is none below it.
std::vector<const MSPDIElement*> linesFor(const std::string& name, const std::string& owner) {
    std::vector<const MSPDIElement*> lines;
    std::vector<const MSPDIElement*> linesBelow;
    for (const auto& element : MSPDIElements()) {
        std::istringstream names{std::string(element.names)};
        for (std::string one; names >> one;) {
            if (one == name) {
                lines.push_back(&element);
                if (isAtOrBelow(element.parent, owner)) {
                    linesBelow.push_back(&element);
                }
            }
        }
    }
    return linesBelow.empty() ? lines : linesBelow;
}

// What stands in parentheses says which ones are meant.
std::string withoutParentheses(std::string text) {
    for (auto start = text.find(" ("); start != std::string::npos; start = text.find(" (", start)) {
        text.erase(start, text.find(')', start) + 1 - start);
    }
    return text;
}

std::string listOfWhatIsCarriedOver() {
    const auto document = sourceFile("docs/mapping.md");
    return document.substr(0, document.find("\nWhat looks odd"));
}

// Whether elements of that name hold others.
bool isContainer(const std::string& name) {
    for (const auto& element : MSPDIElements()) {
        if ((std::string(element.parent) + "/").find("/" + name + "/") != std::string::npos) {
            return true;
        }
    }
    return false;
}

}  // namespace

// What the list of fields says to be nothing never arrives, all else may.
TEST(LossesDocumentsTest, theListOfWhatIsCarriedOverAgreesWithTheTable) {
    std::istringstream list(listOfWhatIsCarriedOver());
    std::string owner;
    int count = 0;
    for (std::string line; std::getline(list, line);) {
        const auto bar = line.find(" | ");
        if (!line.starts_with("| ") || bar == std::string::npos) {
            continue;
        }
        owner = line.starts_with("| **") ? ownerTitledIn(line) : owner;
        const auto left = line.substr(0, bar);
        const auto right = line.substr(bar + 3);
        const bool isNothing =
            right.starts_with("nothing") || right.starts_with("not asked") || right.starts_with("not resolved");
        for (const auto& name : namesIn(isNothing ? withoutParentheses(left) : left)) {
            const auto lines = linesFor(name, owner);
            ASSERT_FALSE(lines.empty()) << name;
            ++count;
            const bool mayArrive =
                std::any_of(lines.begin(), lines.end(), [](const auto* element) { return MSPDIMayArrive(*element); });
            EXPECT_TRUE(isNothing ? !mayArrive : mayArrive || isContainer(name)) << name << ": " << line;
        }
    }
    EXPECT_GT(count, 60);
}

// And whatever may arrive of a project, a task or a resource stands in the list.
TEST(LossesDocumentsTest, theListOfWhatIsCarriedOverLeavesNothingOut) {
    const auto list = listOfWhatIsCarriedOver();
    for (const auto& element : MSPDIElements()) {
        const bool isDirect =
            element.parent.empty() || element.parent == "Tasks/Task" || element.parent == "Resources/Resource";
        std::istringstream names{std::string(element.names)};
        for (std::string name; isDirect && MSPDIMayArrive(element) && names >> name;) {
            EXPECT_NE(list.find(name), std::string::npos) << element.parent << '/' << name;
        }
    }
}

TEST(LossesDocumentsTest, theManPageListsTheKindsInTheirOrder) {
    auto page = sourceFile("docs/mspdi-losses.1");
    replaceAll(page, "\\-", "-");
    replaceAll(page, "\\(dq", "\"");
    replaceAll(page, "\\(aq", "'");
    std::string expected;
    for (const auto& kind : MSPDIKinds()) {
        auto what = std::string(kind.what);
        what[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(what[0])));
        expected += ".TP\n.B " + std::string(kind.name) + "\n" + what + "\n";
    }
    const auto start = page.find(".TP", page.find(".SH KINDS"));
    EXPECT_EQ(page.substr(start, page.find(".SH EXIT STATUS") - start), expected);
}
