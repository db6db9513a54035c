#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// A POSIX extended regular expression (leftmost-longest), compiled once.
class MSPCRegex {
public:
    // What a match found; group 0 is the whole match. A group that took part in no match is none; one that matched the
    // empty text is an empty view. Views point into the text that was searched.
    using Groups = std::vector<std::optional<std::string_view>>;

    // A pattern that does not compile raises `MSPCInternalInconsistency`,
    // "Failed to compile reqular expression '<pattern>': <message of the library>".
    explicit MSPCRegex(const std::string& pattern);

    // The first match anywhere in the text, with `groupCount` groups (the whole match included) at most; none when
    // nothing matches. The text ends at its first NUL character.
    [[nodiscard]] std::optional<Groups> firstMatch(std::string_view text, std::size_t groupCount) const;
    // The number of parenthesised subexpressions of the pattern.
    [[nodiscard]] std::size_t subexpressionCount() const;

private:
    class Compiled;
    std::shared_ptr<const Compiled> _compiled;
};
