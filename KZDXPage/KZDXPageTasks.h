#pragma once

#include "KZDXPageColumns.h"
#include "KZDXPageRows.h"
#include "KZDXScenario.h"

// A scenario ready to be told: its index, its outline and its rows.
struct KZDXPageScenario {
    explicit KZDXPageScenario(const MSPCXMLNode& root);

    KZDXScenario scenario;
    KZDXOutline outline;
    KZDXPageRows rows;
};

// The tasks of a scenario in the order of its rows, column by column: everything that they hold.
[[nodiscard]] KZDXPageJSON KZDXPageTasks(const KZDXPageScenario& scenario);
// The links between rows: {"from": [...], "to": [...], "kind": "1130..."}, a digit for each kind: 0 FF, 1 FS, 2 SF, 3
// SS, 4 none of these.
[[nodiscard]] KZDXPageJSON KZDXPageLinks(const KZDXPageScenario& scenario);
// The tasks of a baseline by the rows of the actual scenario: {"row": column, "start", "end", "effort", "pieces",
// "gone"}; "gone" names those that the actual scenario does not have.
[[nodiscard]] KZDXPageJSON KZDXPageBaselineTasks(const KZDXPageScenario& baseline, const KZDXPageScenario& actual);

// The paragraphs of a task's or resource's note, a line for each; none without a note.
[[nodiscard]] std::optional<std::string> KZDXPageNote(const MSPCXMLNode& item);
// What an element holds that has no place of its own: its text, or as it stands where it is more than a text.
[[nodiscard]] std::string KZDXPageContent(const MSPCXMLNode& element);
// The custom fields of a task or resource as [name, value] pairs, in their order.
[[nodiscard]] std::vector<std::pair<std::string, std::string>> KZDXPageFields(const MSPCXMLNode& item);
