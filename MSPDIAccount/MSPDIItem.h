#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MSPCFields.h"
#include "MSPCXMLNode.h"
#include "MSPDIPlanFacts.h"
#include "MSPDIWeekDayFacts.h"

class MSPDIElementTree;

// Keeps what was found out about one element until another one is asked about: the leaves of an element ask one after
// the other, and there may be millions of them.
template <typename Facts>
class MSPDILastAsked {
public:
    template <typename Find>
    const Facts& of(const MSPCXMLNode& element, const Find& find) {
        if (element != _element) {
            _facts = find();
            _element = element;
        }
        return _facts;
    }

private:
    MSPCXMLNode _element;
    Facts _facts{};
};

struct MSPDIExceptionFacts {
    enum class Use { None, TimeOff, Overtime };
    Use use = Use::None;
    bool givesEvents = false;   // its last period is no shorter than nothing
    bool isOnlyNumber = false;  // neither its type nor its kind of days is there twice
    bool isRecurring = false;
    MSPCXMLNode period;  // the last one
};

struct MSPDILinkFacts {
    enum class Fate { Carried, LeadsNowhere, Dropped, InSomeScenario };
    Fate fate = Fate::Dropped;
};

// What a leaf belongs to: an element of one of the project's lists (a task, a resource, a calendar, ...), or the
// project. Remembers what its leaves ask for, so that an item costs no more than its size, whatever it holds.
class MSPDIItem {
public:
    // All that is given outlives the item. `knownOf` is what the table knows below it, `positionOf` its place among all
    // of its kind.
    MSPDIItem(const MSPDIPlanFacts& factsOf, const MSPDIElementTree& knownOf, const MSPCXMLNode& element,
              const MSPCFields& fieldsOf, std::size_t positionOf)
        : facts(factsOf), known(knownOf), node(element), fields(fieldsOf), position(positionOf) {}
    MSPDIItem(const MSPDIItem&) = delete;
    MSPDIItem& operator=(const MSPDIItem&) = delete;

    // The last child of an element within the item that has that name, and their number.
    [[nodiscard]] MSPCXMLLastChild lastChild(const MSPCXMLNode& parent, std::string_view name) const;
    // Its text; empty where there is none.
    [[nodiscard]] std::string lastText(const MSPCXMLNode& parent, std::string_view name) const;

    // The number, 0 to 10, that a `Baseline` of the item goes by; none when it is no baseline that is imported.
    [[nodiscard]] std::optional<int> baselineNumber(const MSPCXMLNode& baseline) const;
    // The baselines that count, with their numbers: of those with one number the last one; in the order of the plan.
    [[nodiscard]] const std::vector<std::pair<int, MSPCXMLNode>>& baselines() const;
    [[nodiscard]] bool countsAsBaseline(const MSPCXMLNode& baseline) const;
    // The last `ExtendedAttribute` of the item whose value goes by this name.
    [[nodiscard]] MSPCXMLNode lastFieldOfName(std::string_view name) const;

    const MSPDIPlanFacts& facts;
    const MSPDIElementTree& known;
    MSPCXMLNode node;
    const MSPCFields& fields;
    std::size_t position;

    // For the conditions that find these out.
    mutable MSPDILastAsked<MSPDIWeekDayFacts> weekDay;
    mutable MSPDILastAsked<MSPDIExceptionFacts> exception;
    mutable MSPDILastAsked<MSPDILinkFacts> link;
    mutable MSPDILastAsked<bool> arrivesAsText;
    // Of a calendar, once they were asked for: its exceptions that are read.
    mutable std::optional<std::map<MSPCXMLNode, MSPDIExceptionFacts::Use>> exceptionUses;
    // And its days of the week.
    mutable std::optional<std::set<MSPCXMLNode>> daysOfWeek;
    // The number and the name that people know it by, once they were asked for.
    mutable std::optional<std::pair<std::string, std::string>> identity;

private:
    using LastChildren = std::map<std::string_view, MSPCXMLLastChild>;

    mutable std::map<MSPCXMLNode, LastChildren> _children;  // of elements with many
    mutable MSPDILastAsked<std::optional<int>> _number;
    mutable std::optional<std::vector<std::pair<int, MSPCXMLNode>>> _baselines;
    mutable std::optional<std::map<std::string_view, MSPCXMLNode>> _lastFields;
};
