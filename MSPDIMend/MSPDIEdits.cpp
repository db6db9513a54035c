#include "MSPDIEdits.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

std::size_t MSPDIEdits::replace(std::size_t begin, std::size_t end, std::string text) {
    _edits.push_back({begin, end, std::move(text)});
    return _edits.size() - 1;
}

std::vector<const MSPDIEdits::Edit*> MSPDIEdits::inOrder() const {
    std::vector<const Edit*> sorted;
    sorted.reserve(_edits.size());
    for (const auto& edit : _edits) {
        sorted.push_back(&edit);
    }
    // What is put in before a place comes before what takes away from there on, and the larger before the smaller.
    std::stable_sort(sorted.begin(), sorted.end(), [](const Edit* a, const Edit* b) {
        if (a->begin != b->begin) {
            return a->begin < b->begin;
        }
        const bool isInsertion = a->begin == a->end;
        return isInsertion != (b->begin == b->end) ? isInsertion : b->end < a->end;
    });
    std::size_t end = 0;
    std::erase_if(sorted, [&](const Edit* edit) {
        const bool isWithin = edit->begin < end;  // what has been replaced
        end = isWithin ? end : edit->end;
        return isWithin;
    });
    return sorted;
}

// What stays moves once, and only where its place changes: what moves back from the last one on and what moves forward
// from the first one on, so that nothing is overwritten that has not moved yet.
std::string MSPDIEdits::appliedTo(std::string text) const {
    struct Kept {
        std::size_t from;
        std::size_t to;
        std::size_t size;
    };
    const auto edits = inOrder();
    std::vector<Kept> kept;
    std::size_t from = 0;
    std::size_t to = 0;
    for (const auto* edit : edits) {
        kept.push_back({from, to, edit->begin - from});
        to += kept.back().size + edit->text.size();
        from = edit->end;
    }
    kept.push_back({from, to, text.size() - from});
    const auto size = to + kept.back().size;
    text.resize(std::max(size, text.size()));
    auto* const data = text.data();
    const auto move = [data](const Kept& piece) { std::memmove(data + piece.to, data + piece.from, piece.size); };
    const auto movesBack = [](const Kept& piece) { return piece.to > piece.from; };
    for (auto first = kept.begin(); first != kept.end();) {
        const auto end = std::find_if_not(first, kept.end(), movesBack);
        std::for_each(std::make_reverse_iterator(end), std::make_reverse_iterator(first), move);
        first = std::find_if(end, kept.end(), movesBack);
        std::for_each(end, first, [&](const Kept& piece) {
            if (piece.to != piece.from) {
                move(piece);
            }
        });
    }
    for (std::size_t index = 0; index < edits.size(); ++index) {
        const auto& other = edits[index]->text;
        std::copy(other.begin(), other.end(), data + kept[index].to + kept[index].size);
    }
    text.resize(size);
    return text;
}
