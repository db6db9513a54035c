#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "MSPDIElementTree.h"
#include "MSPDIFate.h"
#include "MSPDINameCounts.h"

// The elements of one piece of a plan while they are read, before there is a document of it: judges the leaves that a
// line of the table and their text decide on their own, which are most of a plan. Where all of them are to be told it
// keeps them, so that they can be told together with what the document of the rest says.
class MSPDIPassedLeaves {
public:
    static constexpr std::uint32_t NoKind = std::numeric_limits<std::uint32_t>::max();

    // What a line of the table and a text say about a leaf.
    struct Judgement {
        MSPDIFate fate = MSPDIFate::Default;
        std::uint32_t kind = NoKind;  // of a loss
        bool isMade = false;          // somebody else is to judge the leaf where it is not
    };

    // An element that has passed, in the order of the document.
    struct Passed {
        const MSPDIElementTree* known;  // a null pointer for what the table does not know
        std::size_t number;             // among those of its name, whatever the prefix, from 1
        std::size_t level;              // 1 for children of the piece
        std::size_t textEnd;            // of that of a loss, behind those before it
        Judgement judgement;            // made of a leaf that the document lacks
    };

    explicit MSPDIPassedLeaves(bool keepsAll);

    // A piece begins that the table knows. Where all are kept what follows raises what `MSPDIExpectFewLevels` raises.
    void beginPiece(const MSPDIElementTree* known);
    void beginElement(std::string_view name);
    void endElement();
    [[nodiscard]] Judgement judge(std::string_view name, std::string_view text);
    // A leaf that is not judged here.
    void passLeaf(std::string_view name);
    void clear();

    // The next one that has passed where it is a leaf of that level that was judged here; a null pointer otherwise.
    // Where all are kept.
    [[nodiscard]] const Passed* nextTaken(std::size_t level);
    // The next one, which is not.
    [[nodiscard]] const Passed& next() { return _passed.at(_next++); }
    // The text of the loss that was given last.
    [[nodiscard]] std::string_view textOf(const Passed& loss);

private:
    // An element around those that pass.
    struct Open {
        const MSPDIElementTree* known = nullptr;
        const MSPDIElementTree* lastChild = nullptr;  // that the table knows
        MSPDINameCounts counts{};                     // of its children so far
    };

    // What is remembered for each line of the table.
    struct Line {
        const MSPDIElementTree* follower = nullptr;    // of an element there, the last time
        const MSPDIElementTree* firstChild = nullptr;  // the last time
        bool isJudged = false;
        std::string text;  // of the last leaf there
        Judgement judgement{};
    };

    void open(const MSPDIElementTree* known);
    [[nodiscard]] const MSPDIElementTree* childOf(Open& parent, std::string_view name);
    [[nodiscard]] Judgement judgementOf(const MSPDIElementTree& known, std::string_view text);
    Passed& keep(const MSPDIElementTree* known, std::string_view name);

    bool _keepsAll;
    std::vector<Open> _open;  // the first `_depth` of them
    std::size_t _depth = 0;
    std::vector<Line> _lines;  // by index
    std::vector<Passed> _passed;
    std::size_t _next = 0;
    std::set<std::string, std::less<>> _unknownNames;  // which are counted
    std::string _texts;                                // of losses
    std::size_t _textStart = 0;                        // of the next one
};
