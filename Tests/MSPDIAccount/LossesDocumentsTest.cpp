// The documents say what the table says.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
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

// The lines that the table has for an element name, whatever stands above it.
std::vector<const MSPDIElement*> linesFor(const std::string& name) {
    std::vector<const MSPDIElement*> lines;
    for (const auto& element : MSPDIElements()) {
        std::istringstream names{std::string(element.names)};
        for (std::string one; names >> one;) {
            if (one == name) {
                lines.push_back(&element);
            }
        }
    }
    return lines;
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

// What the list of the README says to be nothing never arrives, all else may.
TEST(LossesDocumentsTest, theListOfWhatIsCarriedOverAgreesWithTheTable) {
    const auto readme = sourceFile("README.md");
    const auto start = readme.find("## What is carried over");
    std::istringstream list(readme.substr(start, readme.find("\nWhat looks odd", start) - start));
    int count = 0;
    for (std::string line; std::getline(list, line);) {
        const auto bar = line.find(" | ");
        if (!line.starts_with("| ") || bar == std::string::npos) {
            continue;
        }
        const auto left = line.substr(0, bar);
        const auto right = line.substr(bar + 3);
        const bool isNothing =
            right.starts_with("nothing") || right.starts_with("not asked") || right.starts_with("not resolved");
        for (const auto& name : namesIn(left)) {
            const auto lines = linesFor(name);
            ASSERT_FALSE(lines.empty()) << name;
            ++count;
            bool mayArrive = isContainer(name);  // then what is in it
            bool mayBeLost = false;
            for (const auto* element : lines) {
                mayArrive = mayArrive || MSPDIMayArrive(*element);
                mayBeLost = mayBeLost || !MSPDIMayArrive(*element);
            }
            EXPECT_TRUE(isNothing ? mayBeLost : mayArrive) << line;
        }
    }
    EXPECT_GT(count, 60);
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
