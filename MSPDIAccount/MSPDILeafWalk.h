#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "MSPCXMLNode.h"
#include "MSPDIAccount.h"
#include "MSPDIElement.h"
#include "MSPDIElementTable.h"

// Goes over all leaves of a plan and enters each with its fate in the account.
class MSPDILeafWalk {
public:
    // What is given outlives the walk.
    MSPDILeafWalk(const MSPDIPlanFacts& facts, const MSPDIAccountOptions& options, MSPDIAccount& account);

    // The whole plan in one tree.
    void walk(const MSPCXMLNode& project);
    // Tells the losses that were found; once, at the end.
    void finish();

private:
    // An element on the way down to the leaves: what is known about it, and its children so far.
    struct Step {
        const MSPDIElementTree* known;                             // a null pointer below what the table does not know
        std::string_view name;                                     // without prefix
        std::size_t number;                                        // among those of its name, from 1
        std::unordered_map<std::string_view, std::size_t> counts;  // of its children, by name without prefix
    };

    void walkChildren(const MSPCXMLNode& parent, const MSPDIItem& item);
    void walkElement(const MSPCXMLNode& node, const MSPDIItem& item);
    void walkItem(const MSPCXMLNode& node, const MSPDIItem& project);
    void takeLeaf(const MSPCXMLNode& node, const MSPDIItem& item);
    [[nodiscard]] MSPDIJudgement judge(const MSPCXMLNode& node, const MSPDIItem& item, std::string_view text) const;
    [[nodiscard]] MSPDIJudgement judgeUnknown(const MSPCXMLNode& node, const MSPDIItem& item) const;
    void tellOfItem(const MSPDIItem& item);
    void tell(std::string_view kind, const MSPDIItem& item, std::string_view value);
    [[nodiscard]] MSPDIPlace placeOf(const MSPDIItem& item, std::string_view value) const;

    void enter(const MSPCXMLNode& node);
    void leave() { _steps.pop_back(); }
    [[nodiscard]] std::string path() const;
    [[nodiscard]] std::string elementPath() const;

    const MSPDIPlanFacts& _facts;
    const MSPDIAccountOptions& _options;
    MSPDIAccount& _account;
    std::vector<MSPDILoss> _losses;  // by kind
    std::vector<Step> _steps;
    std::unordered_map<const MSPDIElementTree*, std::size_t> _itemCounts;  // of each list so far
    std::vector<std::string> _taskNames;
};
