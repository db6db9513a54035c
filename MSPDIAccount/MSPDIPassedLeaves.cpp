#include "MSPDIPassedLeaves.h"

#include <utility>

#include "MSPDIConditions.h"
#include "MSPDIElementTable.h"
#include "MSPDIKinds.h"

namespace {

MSPDIPassedLeaves::Judgement judgementOfText(const MSPDIElementTree& known, std::string_view text) {
    const auto* const element = known.element();
    // One without children where others have some may count among them.
    if (element == nullptr || known.hasChildren() || !MSPDIGoesByTextAlone(*element)) {
        return {};
    }
    const auto judgement = MSPDIJudgementOfText(*element, text);
    if (judgement.kind.empty()) {
        return {judgement.fate, MSPDIPassedLeaves::NoKind, true};
    }
    const auto kind = MSPDIKindIndex(judgement.kind);
    const bool isToldOfOwner = !MSPDIKinds()[kind].owners.empty();
    return {judgement.fate, static_cast<std::uint32_t>(kind), !isToldOfOwner};
}

}  // namespace

MSPDIPassedLeaves::MSPDIPassedLeaves(bool keepsAll) : _keepsAll(keepsAll), _lines(MSPDIProjectElements().size()) {
}

void MSPDIPassedLeaves::beginPiece(const MSPDIElementTree* known) {
    clear();
    _depth = 0;
    open(known);
}

void MSPDIPassedLeaves::beginElement(std::string_view name) {
    const auto* const known = childOf(_open[_depth - 1], name);
    if (_keepsAll) {
        keep(known, name);
    }
    open(known);
}

void MSPDIPassedLeaves::endElement() {
    --_depth;
}

void MSPDIPassedLeaves::open(const MSPDIElementTree* known) {
    if (_depth == _open.size()) {
        _open.emplace_back();
    }
    auto& element = _open[_depth++];
    element.known = known;
    element.lastChild = nullptr;
    if (_keepsAll) {
        element.counts.clear();
    }
}

MSPDIPassedLeaves::Judgement MSPDIPassedLeaves::judge(std::string_view name, std::string_view text) {
    const auto* const known = childOf(_open[_depth - 1], name);
    const auto judgement = known == nullptr ? Judgement() : judgementOf(*known, text);
    if (_keepsAll) {
        auto& leaf = keep(known, name);
        leaf.judgement = judgement;
        if (judgement.isMade && judgement.kind != NoKind) {
            _texts += text;
            leaf.textEnd = _texts.size();
        }
    }
    return judgement;
}

void MSPDIPassedLeaves::passLeaf(std::string_view name) {
    if (_keepsAll) {
        keep(childOf(_open[_depth - 1], name), name);
    }
}

void MSPDIPassedLeaves::clear() {
    _passed.clear();
    _next = 0;
    _unknownNames.clear();
    _texts.clear();
    _textStart = 0;
}

const MSPDIPassedLeaves::Passed* MSPDIPassedLeaves::nextTaken(std::size_t level) {
    const bool isThere = _next < _passed.size() && _passed[_next].judgement.isMade && _passed[_next].level == level;
    return isThere ? &_passed[_next++] : nullptr;
}

std::string_view MSPDIPassedLeaves::textOf(const Passed& loss) {
    const auto start = std::exchange(_textStart, loss.textEnd);
    return std::string_view(_texts).substr(start, loss.textEnd - start);
}

// Children come in the same order nearly always, so that the one that followed last time is tried first.
const MSPDIElementTree* MSPDIPassedLeaves::childOf(Open& parent, std::string_view name) {
    if (parent.known == nullptr) {
        return nullptr;
    }
    auto& follower = parent.lastChild == nullptr ? _lines[parent.known->index()].firstChild
                                                 : _lines[parent.lastChild->index()].follower;
    if (follower == nullptr || follower->name() != name) {
        const auto* const child = parent.known->child(name);
        if (child == nullptr) {
            return nullptr;
        }
        follower = child;
    }
    parent.lastChild = follower;
    return follower;
}

// Most leaves of a name say the same.
MSPDIPassedLeaves::Judgement MSPDIPassedLeaves::judgementOf(const MSPDIElementTree& known, std::string_view text) {
    constexpr std::size_t longestKept = 32;
    auto& last = _lines[known.index()];
    if (last.isJudged && last.text == text) {
        return last.judgement;
    }
    const auto judgement = judgementOfText(known, text);
    if (text.size() <= longestKept) {
        last.text = text;
        last.judgement = judgement;
        last.isJudged = true;
    }
    return judgement;
}

MSPDIPassedLeaves::Passed& MSPDIPassedLeaves::keep(const MSPDIElementTree* known, std::string_view name) {
    constexpr std::size_t levelsAroundPiece = 2;  // the project and the list
    MSPDIExpectFewLevels(_depth + levelsAroundPiece);
    auto& parent = _open[_depth - 1];
    const auto number = known != nullptr
                            ? parent.counts.next(name, known)
                            : parent.counts.nextOf(*_unknownNames.emplace(name).first, parent.known, known);
    return _passed.emplace_back(Passed{known, number, _depth, 0, {}});
}
