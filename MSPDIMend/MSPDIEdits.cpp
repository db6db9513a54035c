#include "MSPDIEdits.h"

#include <algorithm>
#include <numeric>
#include <utility>

std::size_t MSPDIEdits::replace(std::size_t begin, std::size_t end, std::string text) {
    _edits.push_back({begin, end, std::move(text)});
    return _edits.size() - 1;
}

std::string MSPDIEdits::appliedTo(std::string_view text) const {
    std::vector<const Edit*> inOrder;
    inOrder.reserve(_edits.size());
    for (const auto& edit : _edits) {
        inOrder.push_back(&edit);
    }
    // What is put in before a place comes before what takes away from there on, and the larger before the smaller.
    std::stable_sort(inOrder.begin(), inOrder.end(), [](const Edit* a, const Edit* b) {
        if (a->begin != b->begin) {
            return a->begin < b->begin;
        }
        const bool isInsertion = a->begin == a->end;
        return isInsertion != (b->begin == b->end) ? isInsertion : b->end < a->end;
    });
    std::string result;
    result.reserve(std::accumulate(_edits.begin(), _edits.end(), text.size(),
                                   [](std::size_t size, const auto& edit) { return size + edit.text.size(); }));
    std::size_t copied = 0;
    for (const auto* edit : inOrder) {
        if (edit->begin < copied) {
            continue;  // within what has been replaced
        }
        result.append(text, copied, edit->begin - copied).append(edit->text);
        copied = edit->end;
    }
    return result.append(text, copied);
}
