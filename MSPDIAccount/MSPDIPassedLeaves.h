#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
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

    enum class What : std::uint8_t {
        Element,  // that the document has, or a leaf that it has
        Loss,     // a leaf that was judged here and is told; the document lacks it
        Fates,    // of leaves that were judged here, losses among them, one behind the other
    };

    // What has passed, in the order of the document.
    struct Passed {
        What what;
        std::size_t level;              // 1 for children of the piece
        const MSPDIElementTree* known;  // of elements and losses; a null pointer for what the table does not know
        std::size_t number;             // of the same among those of its name, whatever the prefix, from 1
        std::size_t kind;               // of a loss
        std::size_t end;                // of the text of a loss, or of the fates, behind those before it
    };

    // Nothing is kept; what is needed to tell of all losses; or the fates of all leaves, too.
    enum class Keeping { Nothing, Losses, Fates };

    explicit MSPDIPassedLeaves(Keeping keeping);

    // A piece begins that the table knows. Where anything is kept what follows raises what `MSPDIExpectFewLevels`
    // raises.
    void beginPiece(const MSPDIElementTree* known);
    void beginElement(std::string_view name);
    void endElement();
    [[nodiscard]] Judgement judge(std::string_view name, std::string_view text);
    // A leaf that is not judged here.
    void passLeaf(std::string_view name);
    void clear();

    // The next one that has passed where it is a loss or fates of that level; a null pointer otherwise. Where anything
    // is kept.
    [[nodiscard]] const Passed* nextTaken(std::size_t level) {
        const bool isThere =
            _next < _passed.size() && _passed[_next].what != What::Element && _passed[_next].level == level;
        return isThere ? &_passed[_next++] : nullptr;
    }
    // The next one, which is an element.
    [[nodiscard]] const Passed& next() { return _passed.at(_next++); }
    // The text of the loss that was given last.
    [[nodiscard]] std::string_view textOf(const Passed& loss);
    // The fates that were given last, for `MSPDIFatesByPath::addAll`.
    [[nodiscard]] std::string_view fatesOf(const Passed& fates);

private:
    // What is remembered for each line of the table.
    struct Line {
        const MSPDIElementTree* known = nullptr;
        std::string_view name;
        Line* firstChild = nullptr;  // the last time
        Line* follower = nullptr;    // of an element there, the last time
        bool isJudged = false;
        std::string text;  // of the last leaf there
        Judgement judgement{};
    };

    // An element around those that pass.
    struct Open {
        Line* line = nullptr;       // a null pointer for what the table does not know
        Line* lastChild = nullptr;  // that the table knows
        MSPDINameCounts counts{};   // of its children so far
    };

    void open(Line* line);
    [[nodiscard]] Line& lineOf(const MSPDIElementTree& known);
    [[nodiscard]] Line* childOf(Open& parent, std::string_view name);
    [[nodiscard]] static const Judgement& judgementOf(Line& line, std::string_view text);
    [[nodiscard]] std::size_t numberOf(const Line* line, std::string_view name);
    void keepElement(const Line* line, std::string_view name);
    void keepJudged(const Line& line, const Judgement& judgement, std::string_view text);
    void keepFate(const Line& line, std::size_t number, MSPDIFate fate);

    Keeping _keeping;
    std::vector<Open> _open;  // the first `_depth` of them
    std::size_t _depth = 0;
    std::vector<Line> _lines;  // by index
    std::vector<Passed> _passed;
    std::size_t _next = 0;
    std::optional<std::size_t> _lastFates;             // that go on, among those that have passed
    std::set<std::string, std::less<>> _unknownNames;  // which are counted
    std::string _texts;                                // of losses
    std::size_t _textStart = 0;                        // of the next one
    std::string _fates;                                // with room behind them
    std::size_t _fatesStart = 0;                       // of the next ones
    std::size_t _fatesEnd = 0;
};
