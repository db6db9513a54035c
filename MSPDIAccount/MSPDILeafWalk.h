#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MSPCXMLDocument.h"
#include "MSPCXMLNode.h"
#include "MSPCXMLPieces.h"
#include "MSPDIAccount.h"
#include "MSPDIElement.h"
#include "MSPDIElementTable.h"
#include "MSPDINameCounts.h"
#include "MSPDIPassedLeaves.h"

// Goes over all leaves of a plan and enters each with its fate in the account.
//
// Most leaves of a large plan are judged by a line of the table and their text alone. They are taken as they are read,
// without a document. Where some places are to be told, the element of the list that holds them is gone through as a
// whole; where all of them are, or the fate of every leaf, it is kept what has passed, with its numbers.
class MSPDILeafWalk final : public MSPCXMLPieceVisitor {
public:
    // What is given outlives the walk.
    MSPDILeafWalk(const MSPDIPlanFacts& facts, const MSPDIAccountOptions& options, MSPDIAccount& account);

    // The whole plan in one tree. Like all below raises `MSPCInternalInconsistency` "The plan has changed while it was
    // read." for another plan than that of the facts, and "Elements are nested too deeply to be told one by one." where
    // every leaf or place is to be told.
    void walk(const MSPCXMLNode& project);
    // Whether texts of that tree may hold marks of those that stand in other files.
    void expectExternalTexts(bool areExpected) { _hasExternalTexts = areExpected; }
    // The same plan as it is read.
    bool isList(std::string_view name) override;
    void value(std::string_view name) override;
    void beginList(std::string_view name) override;
    void endList() override;
    void root(const MSPCXMLNode& element) override;
    bool wantsLeavesOf(std::string_view name) override;
    void beginElement(std::string_view name) override;
    void endElement() override;
    bool takeLeaf(std::string_view name, std::string_view text) override;
    void passLeaf(std::string_view name) override;
    void forgetLeaves() override;
    bool restOfPiece(const MSPCXMLNode& element) override;
    void piece(const MSPCXMLNode& element) override;
    // Tells the losses that were found; once, at the end.
    void finish();

private:
    using Counts = std::map<std::string, std::size_t, std::less<>>;  // by name without prefix

    // An element on the way down to the leaves.
    struct Step {
        const MSPDIElementTree* known;  // a null pointer below what the table does not know
        std::string_view name;          // without prefix
        MSPCXMLNode node;               // empty for the project and its lists
        std::size_t number;             // among those of its name, from 1; 0 while it is not known
        std::size_t lastKnown;          // the last step, this one included, that the table knows
        bool hasCounted = false;        // its children so far
    };

    // What a piece adds to the account, kept apart until it is sure to count.
    struct Tally {
        std::array<std::size_t, MSPDIFateNames.size()> leaves{};
        std::vector<std::size_t> kinds;  // of each loss
        bool lacksPlaces = false;        // the place of one of them is to be told

        void clear() {
            leaves = {};
            kinds.clear();
            lacksPlaces = false;
        }
    };

    // What is told of a resource at the end, when all calendars are known.
    struct Resource {
        std::size_t list = 0;  // numbers on its path
        std::size_t number = 0;
        std::string uid;
        std::string name;
        std::string calendarUID;
    };

    void walkPiece(const MSPCXMLNode& element);
    void takePiece(const MSPCXMLNode& element);
    void walkItem(const MSPCXMLNode& node);
    void walkChildren(const MSPCXMLNode& parent, const MSPDIItem& item);
    void tellOfOwnText(const MSPCXMLNode& node, const MSPDIItem& item);
    void takeEmptyProject(const MSPDIItem& project);
    void takeLeaf(const MSPCXMLNode& node, const MSPDIItem& item);
    void count(MSPDIFate fate);
    [[nodiscard]] bool isEmptied(const MSPCXMLNode& node) const;
    [[nodiscard]] MSPDIJudgement judge(const MSPCXMLNode& node, const MSPDIItem& item, std::string_view text) const;
    [[nodiscard]] MSPDIJudgement judgeUnknown(const MSPCXMLNode& node, const MSPDIItem& item) const;
    void tellOfItem(const MSPDIItem& item);
    void remember(const MSPDIItem& item);
    void tellOfWeeks();
    void tell(std::string_view kind, const MSPDIItem& item, std::string_view value);
    void tellPlace(std::size_t kind, const MSPDIItem& item, std::string_view value);
    void tellOfTaken(const MSPDIItem& item);
    void tellFate(const MSPDIPathStep& leaf, std::size_t owners, MSPDIFate fate);
    void enterSteps(std::size_t count);
    [[nodiscard]] static MSPDIPathStep pathStepOf(const Step& step);
    [[nodiscard]] bool wasToldOfOwner(std::size_t kind);
    [[nodiscard]] bool wantsPlace(std::size_t kind) const;
    void setPlace(const MSPDIItem& item, std::string_view value, MSPDIPlace& place);
    [[nodiscard]] std::pair<std::string, std::string> identityOf(const MSPDIItem& item) const;
    void setTarget(const MSPDIItem& item, std::string_view value, MSPDIPlace& place) const;
    void nameTarget(MSPDIPlace& place) const;
    [[nodiscard]] bool isOfArrivingTask(std::string_view path, std::size_t position) const;
    void enterTally(bool isOfTask = false);

    [[nodiscard]] static std::size_t& countOf(Counts& counts, std::string_view name);
    void enterChild(const MSPCXMLNode& node, const MSPDIItem& item);
    [[nodiscard]] std::size_t numberOfChild(const MSPCXMLNode& node, const MSPDIElementTree* known);
    [[nodiscard]] MSPDINameCounts& countsOfChildren();
    // Goes down to an element; `name` is to outlive the step.
    void enter(std::string_view name, const MSPCXMLNode& node, std::size_t number);
    void push(const MSPDIElementTree* known, std::string_view name, const MSPCXMLNode& node, std::size_t number);
    void leave();
    // Of the present step; valid until it is left.
    [[nodiscard]] const std::string& path();
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
    Tally _tally;
    bool _hasExternalTexts = false;
    bool _isReduced = false;  // the present piece comes without the leaves that were taken
    std::vector<Step> _steps;
    std::vector<std::pair<std::size_t, std::size_t>> _told;  // the steps and the kinds that were told once for them
    std::vector<MSPDINameCounts> _childCounts;  // of the children of these steps so far, where all are counted
    MSPDIPassedLeaves _passed;                  // of the present piece
    bool _hasPassed = false;                    // they tell the numbers of its elements
    std::size_t _enteredCount = 0;              // of the steps, in the list of fates
    std::string _path;                          // of the last step that it was asked of, as far as it is still open
    std::vector<std::size_t> _pathEnds;         // of its steps in there
    std::string _listName;
    Counts _listCounts;                                          // the project's children
    Counts _pieceCounts;                                         // those of the present list
    std::vector<bool> _areLists;                                 // the project's children so far
    std::map<const MSPDIElementTree*, std::size_t> _itemCounts;  // of each list so far
    std::vector<std::string> _taskNames;
    std::vector<Resource> _resources;
    std::set<std::size_t> _calendarsWithoutWeek;  // that lose what they are based on, or days off
    std::set<std::size_t> _resourcesWithoutWeek;  // whose calendar is not there
};
