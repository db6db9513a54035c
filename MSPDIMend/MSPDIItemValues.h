#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCXMLNode.h"

class MSPDIPatient;

// Reading the tasks, resources and calendars of a plan that is refused: nothing here raises.

// The last child of a name as a number; none when it is missing or no number.
[[nodiscard]] std::optional<std::int64_t> MSPDIIntegerIn(const MSPCXMLNode& item, std::string_view name);
// Its text; none when it is missing.
[[nodiscard]] std::optional<std::string> MSPDITextIn(const MSPCXMLNode& item, std::string_view name);
// Its truth; false when it is missing or unreadable.
[[nodiscard]] bool MSPDIIsTrueIn(const MSPCXMLNode& item, std::string_view name);

// The tasks that are no empty rows.
[[nodiscard]] std::vector<MSPCXMLNode> MSPDITasksOf(const MSPDIPatient& patient);
// Whether only summary tasks can have others under them.
[[nodiscard]] bool MSPDIHasSummaryParentsOnly(const MSPDIPatient& patient);

// The calendar that the importer takes for the project's; empty where it finds none.
[[nodiscard]] MSPCXMLNode MSPDITakenCalendar(const MSPDIPatient& patient);

// Numbers that no item has.
class MSPDIFreeUIDs {
public:
    explicit MSPDIFreeUIDs(const std::vector<MSPCXMLNode>& items);
    // Keeps a number for somebody else.
    void keep(std::int64_t uid);
    // The next one.
    [[nodiscard]] std::int64_t nextNumber();
    // The same as text.
    [[nodiscard]] std::string next() { return std::to_string(nextNumber()); }

private:
    std::int64_t _latest = 0;
    std::set<std::int64_t> _unusual;  // so high that the next ones do not begin behind them
};

// The children of a task that stand before the ones named, by the order that planning programs keep.
[[nodiscard]] std::vector<std::string_view> MSPDITaskFieldsBefore(std::string_view name);
