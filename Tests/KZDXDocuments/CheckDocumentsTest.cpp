#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "KZDXDifference.h"
#include "KZDXRules.h"

// The man pages tell every rule and every kind of difference of the program, and no other.

namespace {

// A section of the page as "<name>: <words>" for each entry, sorted.
std::vector<std::string> entriesOf(const std::string& section, const std::string& name = "mspdi-check.1") {
    std::ifstream page(std::string(KZMSP_SOURCE).append("/docs/").append(name));
    std::vector<std::string> entries;
    bool isInside = false;
    bool isEntry = false;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with(".SH ")) {
            isInside = line == ".SH " + section;
        } else if (isInside && line.starts_with(".B ")) {
            line.erase(0, 3);
            std::erase(line, '\\');
            entries.push_back(line);
            isEntry = true;
        } else if (isInside && isEntry) {
            entries.back().append(": ").append(line);
            isEntry = false;
        }
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

std::vector<std::string> rulesOf(KZDXSeverity severity) {
    std::vector<std::string> rules;
    for (const auto& rule : KZDXRules()) {
        if (rule.severity == severity) {
            rules.push_back(std::string(rule.name).append(": ").append(rule.what));
        }
    }
    std::sort(rules.begin(), rules.end());
    return rules;
}

}  // namespace

TEST(CheckDocuments, manPageTellsEveryRule) {
    EXPECT_EQ(entriesOf("FAULTS"), rulesOf(KZDXSeverity::Fault));
    EXPECT_EQ(entriesOf("NOTES"), rulesOf(KZDXSeverity::Note));
}

// What a document may have although nobody would draw it so is an oddity of the import.
TEST(CheckDocuments, oddityStandsBehindEveryNote) {
    std::ifstream page(std::string(KZMSP_SOURCE).append("/docs/Oddities.md"));
    std::vector<std::string> rows;
    bool isInside = false;
    for (std::string line; std::getline(page, line);) {
        isInside = line.starts_with("## ") ? line == "## Notes of `mspdi check`" : isInside;
        if (isInside && line.starts_with("| `")) {
            rows.push_back(line.substr(3, line.find('`', 3) - 3));
        }
    }
    std::vector<std::string> notes;
    for (const auto& rule : KZDXRules()) {
        if (rule.severity == KZDXSeverity::Note) {
            notes.emplace_back(rule.name);
        }
    }
    EXPECT_EQ(rows, notes);
}

TEST(DiffDocuments, manPageTellsEveryKind) {
    std::vector<std::string> kinds;
    for (const auto& kind : KZDXDifferenceKinds()) {
        kinds.push_back(std::string(kind.name).append(": ").append(kind.what));
    }
    std::sort(kinds.begin(), kinds.end());
    EXPECT_EQ(entriesOf("KINDS", "mspdi-diff.1"), kinds);
}
