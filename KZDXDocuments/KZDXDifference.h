#pragma once

#include <string>
#include <string_view>
#include <vector>

// One thing that differs between two documents.
struct KZDXDifference {
    std::string_view kind;     // "new", "gone", "renamed", "moved", "date", "effort", "link" ...: see the man page
    std::string_view subject;  // "project", "task", "resource" or "scenario"
    std::string id;            // in the new document, in the old one where it is gone; empty for the project
    std::string name;          // "Paint (t12)", "Paint (t3), piece 2"; empty for the project
    std::string what;          // in words: "starts 3 days later, Mon 4 May 08:00 -> Thu 7 May 08:00"
    std::string before;  // the value as it stands in the old document, and in the new one; empty where there is none
    std::string after;
};

using KZDXDifferences = std::vector<KZDXDifference>;

// A kind of differences, for the man page.
struct KZDXDifferenceKind {
    std::string_view name;
    std::string_view what;
};
[[nodiscard]] std::vector<KZDXDifferenceKind> KZDXDifferenceKinds();
