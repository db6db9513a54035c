#include "MSPDIEdits.h"

#include <algorithm>
#include <cstring>
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

// The text moves back by what the changes take at most before any place; then it is never overtaken by what is written
// from the first of them on.
std::string MSPDIEdits::appliedTo(std::string text) const {
    const auto edits = inOrder();
    if (edits.empty()) {
        return text;
    }
    std::size_t taken = 0;
    std::size_t given = 0;
    std::size_t room = 0;
    for (const auto* edit : edits) {
        taken += edit->text.size();
        given += edit->end - edit->begin;
        room = std::max(room, taken - std::min(taken, given));
    }
    const auto size = text.size();
    text.resize(size + room);
    auto* const data = text.data();
    auto* const source = data + room;
    auto copied = edits.front()->begin;
    auto* to = data + copied;
    std::memmove(source + copied, to, size - copied);
    const auto copyUntil = [&](std::size_t end) {
        std::memmove(to, source + copied, end - copied);
        to += end - copied;
    };
    for (const auto* edit : edits) {
        copyUntil(edit->begin);
        to = std::copy(edit->text.begin(), edit->text.end(), to);
        copied = edit->end;
    }
    copyUntil(size);
    text.resize(size + taken - given);
    return text;
}
