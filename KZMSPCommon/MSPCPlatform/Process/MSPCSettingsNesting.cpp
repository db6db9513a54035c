#include "MSPCSettingsNesting.h"

#include <algorithm>
#include <vector>

namespace {

// Where the text or comment ends that begins at a position; the same position when none begins there.
std::size_t endOfText(std::string_view toml, std::size_t start) {
    const char quote = toml[start];
    if (quote == '#') {
        return std::min(toml.find('\n', start), toml.size());
    }
    if (quote != '"' && quote != '\'') {
        return start;
    }
    const auto delimiter = quote == '"' ? std::string_view(R"(""")") : std::string_view("'''");
    const bool hasLines = toml.substr(start).starts_with(delimiter);
    for (auto at = start + (hasLines ? delimiter.size() : 1); at < toml.size(); ++at) {
        if (toml[at] == '\\' && quote == '"') {
            ++at;
        } else if (hasLines && toml.substr(at).starts_with(delimiter)) {
            // One or two quotes right before the delimiter belong to the text.
            const auto end = std::min(toml.find_first_not_of(quote, at), toml.size());
            return std::min(end, at + delimiter.size() + 2);
        } else if (!hasLines && (toml[at] == quote || toml[at] == '\n')) {
            return toml[at] == quote ? at + 1 : at;
        }
    }
    return toml.size();
}

// The levels at a place of a TOML text, from the characters that are no part of texts and comments.
class Levels {
public:
    void take(char character) {
        auto& here = _open.back();
        switch (character) {
            case '[':
                here.isAtKey&& _open.size() == 1 ? beginHeader() : open(false);
                break;
            case '{':
                open(true);
                break;
            case ']':
            case '}':
                close();
                break;
            case '.':
                here.dots += here.isAtKey ? 1U : 0U;
                break;
            case '=':
                here.isAtKey = false;
                break;
            case ',':
                beginKey();
                break;
            case '\n':
                endLine();
                break;
            default:
                break;
        }
    }

    [[nodiscard]] std::size_t depth() const { return _open.back().depth + _open.back().dots; }

private:
    // The document, or an array or inline table that is open.
    struct Level {
        std::size_t depth = 0;
        bool isTable = true;
        bool isAtKey = true;   // where the dots are those of a key, not of a number or a time
        std::size_t dots = 0;  // of the key whose value is being read
    };

    void open(bool isTable) { _open.push_back({depth() + 1, isTable, isTable, 0}); }

    void close() {
        if (_open.size() > 1) {
            _open.pop_back();
        }
    }

    void beginKey() {
        auto& here = _open.back();
        here.isAtKey = here.isTable;
        here.dots = 0;
    }

    // "[" and each further one: what comes until the next header lies below it.
    void beginHeader() {
        auto& document = _open.front();
        document.depth = _isInHeader ? document.depth + 1 : 1;
        _isInHeader = true;
    }

    void endLine() {
        if (_open.size() > 1) {
            return;
        }
        if (_isInHeader) {
            _open.front().depth = depth();
            _isInHeader = false;
        }
        beginKey();
    }

    std::vector<Level> _open{Level{}};
    bool _isInHeader = false;
};

}  // namespace

std::optional<std::size_t> MSPCLineNestedDeeperThan(std::size_t limit, std::string_view toml) {
    Levels levels;
    std::size_t line = 1;
    for (std::size_t at = 0; at < toml.size();) {
        if (const auto end = endOfText(toml, at); end != at) {
            line += static_cast<std::size_t>(std::count(toml.begin() + static_cast<std::ptrdiff_t>(at),
                                                        toml.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
            at = end;
            continue;
        }
        levels.take(toml[at]);
        if (levels.depth() > limit) {
            return line;
        }
        line += toml[at] == '\n' ? 1U : 0U;
        ++at;
    }
    return std::nullopt;
}
