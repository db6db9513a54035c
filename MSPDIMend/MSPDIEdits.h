#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Changes to a text that are collected and then made all at once, so that every other byte stays as it is.
class MSPDIEdits {
public:
    // Puts a text in the place of those bytes; at one place in the order of the calls. Answers the number of the edit.
    std::size_t replace(std::size_t begin, std::size_t end, std::string text);
    // Gives an edit another text.
    void setText(std::size_t edit, std::string text) { _edits[edit].text = std::move(text); }
    // Puts a text into that of an edit, so many bytes before its end.
    void insertBeforeEnd(std::size_t edit, std::size_t bytes, std::string_view text) {
        auto& all = _edits[edit].text;
        all.insert(all.size() - bytes, text);
    }
    [[nodiscard]] bool isEmpty() const { return _edits.empty(); }

    // The text with all changes made: in its own place where it has the room. What is replaced as a whole takes with it
    // what was changed within.
    [[nodiscard]] std::string appliedTo(std::string text) const;

private:
    struct Edit {
        std::size_t begin;
        std::size_t end;
        std::string text;
    };
    // Those that count, by their places.
    [[nodiscard]] std::vector<const Edit*> inOrder() const;
    std::vector<Edit> _edits;
};
