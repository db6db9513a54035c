#pragma once

#include <array>
#include <cstddef>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MSPDIFate.h"
#include "MSPDIFatesByPath.h"
#include "MSPDIMemoryImport.h"

// Where something is lost.
struct MSPDIPlace {
    std::string path;   // "/Project/Tasks[1]/Task[4]/Name[1]": elements of one name are counted from 1
    std::string uid;    // of the task, resource, assignment, calendar or custom field; empty where it has none
    std::string name;   // of the same; of an assignment that of its task's UID stands in `path` only
    std::string value;  // in the plan
    std::string unit;   // of a lag: the `LagFormat` beside it
    // Of a UID, and of a link's lag: the task, resource or calendar that is meant.
    std::string targetUID;   // empty where there is none
    std::string targetName;  // empty where it is not there, or has no name
};

// All losses of one kind.
struct MSPDILoss {
    std::string_view kind;
    std::string_view what;  // in words
    std::string element;    // the path of the first one without numbers: "Tasks/Task/Deadline"
    std::size_t count = 0;
    std::vector<MSPDIPlace> where;  // the first ones
    std::size_t countInTasks = 0;   // of all, those in tasks of the document and in their assignments
};

// What becomes of a plan.
struct MSPDIAccount {
    // Why nothing can be told: it is no file, or no plan. Everything below is empty then.
    std::optional<std::string> obstacle;
    // Why the importer refuses the plan; what is below is then what would become of it as far as that can be told.
    std::optional<MSPDIRefusal> refusal;
    // Whether the file ends before its plan does. What is below is of the part that is there.
    bool isCutOff = false;
    std::array<std::size_t, MSPDIFateNames.size()> leaves{};  // by fate
    std::vector<MSPDILoss> losses;                            // the most important ones first

    [[nodiscard]] std::size_t total() const { return std::accumulate(leaves.begin(), leaves.end(), std::size_t{0}); }
};

struct MSPDIAccountOptions {
    std::size_t mostPlaces = 3;  // of each kind
    // Gets the path and the fate of every leaf: first what the project's lists hold, in the order of the document, then
    // its own values. It outlives the account; a null pointer where nobody wants to know.
    MSPDIFatesByPath* fates = nullptr;
};
