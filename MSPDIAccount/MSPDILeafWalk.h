#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCXMLDocument.h"
#include "MSPCXMLNode.h"
#include "MSPCXMLPieces.h"
#include "MSPDIAccount.h"
#include "MSPDIElement.h"
#include "MSPDIElementTable.h"

// Goes over all leaves of a plan and enters each with its fate in the account.
class MSPDILeafWalk final : public MSPCXMLPieceVisitor {
public:
    // What is given outlives the walk.
    MSPDILeafWalk(const MSPDIPlanFacts& facts, const MSPDIAccountOptions& options, MSPDIAccount& account);

    // The whole plan in one tree.
    void walk(const MSPCXMLNode& project);
    // The same plan as it is read.
    void value(std::string_view name) override;
    void beginList(std::string_view name) override;
    void piece(const MSPCXMLNode& element) override;
    void endList() override;
    void root(const MSPCXMLNode& element) override;
    // Tells the losses that were found; once, at the end.
    void finish();

private:
    // An element on the way down to the leaves.
    struct Step {
        const MSPDIElementTree* known;  // a null pointer below what the table does not know
        std::string name;               // without prefix
        MSPCXMLNode node;
        std::size_t number = 0;                       // among those of its name, from 1; 0 while it is not known
        std::map<std::string, std::size_t> counts{};  // of its children so far, by name without prefix
    };

    void walkChildren(const MSPCXMLNode& parent, const MSPDIItem& item);
    void walkItem(const MSPCXMLNode& node);
    void takeLeaf(const MSPCXMLNode& node, const MSPDIItem& item);
    [[nodiscard]] MSPDIJudgement judge(const MSPCXMLNode& node, const MSPDIItem& item, std::string_view text) const;
    [[nodiscard]] MSPDIJudgement judgeUnknown(const MSPCXMLNode& node, const MSPDIItem& item) const;
    void tellOfItem(const MSPDIItem& item);
    void tell(std::string_view kind, const MSPDIItem& item, std::string_view value);
    [[nodiscard]] MSPDIPlace placeOf(const MSPDIItem& item, std::string_view value) const;

    // Goes down to a child; with `counts` its number is counted, else looked for when it is wanted.
    void enter(std::string_view name, const MSPCXMLNode& node, bool counts);
    void leave() { _steps.pop_back(); }
    [[nodiscard]] std::string path() const;
    [[nodiscard]] std::string elementPath() const;
    [[nodiscard]] static std::size_t numberOf(const Step& step);

    const MSPDIPlanFacts& _facts;
    const MSPDIAccountOptions& _options;
    bool _countsAll;  // numbers are wanted of so many that they are counted on the way
    MSPDIAccount& _account;
    MSPCXMLDocument _emptyProject;  // what leaves outside of items belong to
    MSPCFields _emptyFields;
    MSPDIItem _projectItem;
    std::vector<MSPDILoss> _losses;  // by kind
    std::vector<Step> _steps;
    std::vector<bool> _areLists;                                 // the root's children so far
    std::map<const MSPDIElementTree*, std::size_t> _itemCounts;  // of each list so far
    std::vector<std::string> _taskNames;
};
