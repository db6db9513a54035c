#include "MSPDIPassedLeaves.h"

#include <cstring>
#include <utility>

#include "MSPDIConditions.h"
#include "MSPDIElementTable.h"
#include "MSPDIFatesByPath.h"
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

// Of two texts of one size, at least that of a word. The last words may overlap those before.
template <typename Word>
bool isSameByWords(std::string_view first, std::string_view second) {
    const auto wordAt = [](std::string_view text, std::size_t position) {
        Word word = 0;
        std::memcpy(&word, text.data() + position, sizeof word);
        return word;
    };
    const auto last = first.size() - sizeof(Word);
    for (std::size_t position = 0; position < last; position += sizeof(Word)) {
        if (wordAt(first, position) != wordAt(second, position)) {
            return false;
        }
    }
    return wordAt(first, last) == wordAt(second, last);
}

// Of names and values, of which there are millions: calling the library takes longer than comparing their few bytes.
bool isSame(std::string_view first, std::string_view second) {
    const auto size = first.size();
    if (size != second.size()) {
        return false;
    }
    return size >= sizeof(std::uint64_t)   ? isSameByWords<std::uint64_t>(first, second)
           : size >= sizeof(std::uint32_t) ? isSameByWords<std::uint32_t>(first, second)
                                           : size == 0 || isSameByWords<std::uint8_t>(first, second);
}

}  // namespace

MSPDIPassedLeaves::MSPDIPassedLeaves(Keeping keeping) : _keeping(keeping), _lines(MSPDIProjectElements().size()) {
}

void MSPDIPassedLeaves::beginPiece(const MSPDIElementTree* known) {
    clear();
    _depth = 0;
    open(known == nullptr ? nullptr : &lineOf(*known));
}

void MSPDIPassedLeaves::beginElement(std::string_view name) {
    auto* const line = childOf(_open[_depth - 1], name);
    keepElement(line, name);
    open(line);
}

void MSPDIPassedLeaves::endElement() {
    --_depth;
    _lastFates.reset();
}

void MSPDIPassedLeaves::open(Line* line) {
    if (_depth == _open.size()) {
        _open.emplace_back();
    }
    auto& element = _open[_depth++];
    element.line = line;
    element.lastChild = nullptr;
    element.counts.clear();
}

MSPDIPassedLeaves::Judgement MSPDIPassedLeaves::judge(std::string_view name, std::string_view text) {
    auto* const line = childOf(_open[_depth - 1], name);
    if (line == nullptr) {
        keepElement(line, name);
        return {};
    }
    const auto& judgement = judgementOf(*line, text);
    if (judgement.isMade) {
        keepJudged(*line, judgement, text);
    } else {
        keepElement(line, name);
    }
    return judgement;
}

void MSPDIPassedLeaves::passLeaf(std::string_view name) {
    keepElement(childOf(_open[_depth - 1], name), name);
}

void MSPDIPassedLeaves::clear() {
    _passed.clear();
    _next = 0;
    _lastFates.reset();
    _unknownNames.clear();
    _texts.clear();
    _textStart = 0;
    _fatesStart = 0;
    _fatesEnd = 0;
}

std::string_view MSPDIPassedLeaves::textOf(const Passed& loss) {
    const auto start = std::exchange(_textStart, loss.end);
    return std::string_view(_texts).substr(start, loss.end - start);
}

std::string_view MSPDIPassedLeaves::fatesOf(const Passed& fates) {
    const auto start = std::exchange(_fatesStart, fates.end);
    return std::string_view(_fates).substr(start, fates.end - start);
}

MSPDIPassedLeaves::Line& MSPDIPassedLeaves::lineOf(const MSPDIElementTree& known) {
    auto& line = _lines[known.index()];
    line.known = &known;
    line.name = known.name();
    return line;
}

// Children come in the same order nearly always, so that the one that followed last time is tried first.
MSPDIPassedLeaves::Line* MSPDIPassedLeaves::childOf(Open& parent, std::string_view name) {
    if (parent.line == nullptr) {
        return nullptr;
    }
    auto*& follower = parent.lastChild == nullptr ? parent.line->firstChild : parent.lastChild->follower;
    if (follower == nullptr || !isSame(follower->name, name)) {
        const auto* const child = parent.line->known->child(name);
        if (child == nullptr) {
            return nullptr;
        }
        follower = &lineOf(*child);
    }
    parent.lastChild = follower;
    return follower;
}

// Most leaves of a name say the same.
const MSPDIPassedLeaves::Judgement& MSPDIPassedLeaves::judgementOf(Line& line, std::string_view text) {
    if (!line.isJudged || !isSame(line.text, text)) {
        line.judgement = judgementOfText(*line.known, text);
        constexpr std::size_t longestKept = 32;
        line.isJudged = text.size() <= longestKept;
        if (line.isJudged) {
            line.text = text;
        }
    }
    return line.judgement;
}

std::size_t MSPDIPassedLeaves::numberOf(const Line* line, std::string_view name) {
    constexpr std::size_t levelsAroundPiece = 2;  // the project and the list
    MSPDIExpectFewLevels(_depth + levelsAroundPiece);
    auto& parent = _open[_depth - 1];
    if (line != nullptr) {
        return parent.counts.nextKnown(line->known->ordinal());
    }
    const auto* const knownParent = parent.line == nullptr ? nullptr : parent.line->known;
    return parent.counts.nextOf(*_unknownNames.emplace(name).first, knownParent, nullptr);
}

void MSPDIPassedLeaves::keepElement(const Line* line, std::string_view name) {
    if (_keeping != Keeping::Nothing) {
        const auto* const known = line == nullptr ? nullptr : line->known;
        _passed.push_back({What::Element, _depth, known, numberOf(line, name), NoKind, 0});
        _lastFates.reset();
    }
}

void MSPDIPassedLeaves::keepJudged(const Line& line, const Judgement& judgement, std::string_view text) {
    if (_keeping == Keeping::Nothing) {
        return;
    }
    const auto number = numberOf(&line, line.name);
    if (_keeping == Keeping::Fates) {
        keepFate(line, number, judgement.fate);
    }
    if (judgement.kind != NoKind) {
        _texts += text;
        _passed.push_back({What::Loss, _depth, line.known, number, judgement.kind, _texts.size()});
    }
}

void MSPDIPassedLeaves::keepFate(const Line& line, std::size_t number, MSPDIFate fate) {
    if (_fates.size() - _fatesEnd < MSPDIFatesByPath::LongestPut) {
        _fates.resize(2 * _fates.size() + MSPDIFatesByPath::LongestPut);
    }
    const auto* const end = MSPDIFatesByPath::put(*line.known, number, fate, _fates.data() + _fatesEnd);
    _fatesEnd = static_cast<std::size_t>(end - _fates.data());
    if (!_lastFates) {
        _lastFates = _passed.size();
        _passed.push_back({What::Fates, _depth, nullptr, 0, NoKind, 0});
    }
    _passed[*_lastFates].end = _fatesEnd;
}
