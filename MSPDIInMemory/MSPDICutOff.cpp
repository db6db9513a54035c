#include "MSPDICutOff.h"

#include <cstddef>
#include <cstdint>

#include "MSPCXMLLexis.h"

namespace {

using namespace MSPCXMLLexis;

constexpr auto npos = std::string_view::npos;
constexpr std::string_view rootName = "Project";

// What is not ASCII may become anything else: it is no markup.
std::string withoutUTF16(std::string_view bytes, bool isLittle) {
    std::string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t index = 0; index + 1 < bytes.size(); index += 2) {
        const auto low = bytes[index + (isLittle ? 0 : 1)];
        const auto high = bytes[index + (isLittle ? 1 : 0)];
        text += high == '\0' ? low : '?';
    }
    return text;
}

std::string_view withoutPrefix(std::string_view name) {
    const auto colon = name.rfind(':');
    return colon == npos ? name : name.substr(colon + 1);
}

// Goes over the markup as far as it can be told apart, however damaged it is.
class Walk {
public:
    explicit Walk(std::string_view text) : _text(text) {}

    bool endsTooEarly() {
        for (auto index = _text.find('<', prologOf(_text).end); index != npos; index = _text.find('<', index)) {
            const auto end = endOfMarkup(index);
            if (end == npos) {
                return isRootOpen() ? !holdsEndOfRoot(index) : isRootAt(index);
            }
            index = end;
        }
        return isRootOpen() && _depth > 0;
    }

private:
    // None for what the text ends within.
    std::size_t endOfMarkup(std::size_t start) {
        if (start + 1 == _text.size() || _text.substr(start) == "</") {
            return npos;
        }
        if (const auto end = endOfSection(_text, start); end != start) {
            return end == _text.size() && !endsWithSection() ? npos : end;
        }
        const bool isEnd = _text[start + 1] == '/';
        const auto name = nameAt(start + (isEnd ? 2 : 1));
        if (name.empty()) {
            return start + 1;  // a stray "<"
        }
        const auto end = _text.find_first_of("<>", start + 1);
        if (end == npos || _text[end] == '<') {
            return end;
        }
        enter(name, isEnd, _text[end - 1] == '/');
        return end + 1;
    }

    // The plan may stand inside another file, whose elements need not end.
    void enter(std::string_view name, bool isEnd, bool isEmpty) {
        const int levels = isEnd ? -1 : isEmpty ? 0 : 1;
        if (!isEnd && _openRoots == 0 && !_isRootClosed && withoutPrefix(name) == rootName) {
            _root = name;
            _depth = 0;
        }
        if (!_root.empty()) {
            _depth += levels;
            _openRoots += name == _root ? levels : 0;
            _isRootClosed = _isRootClosed || _openRoots <= 0;
        }
    }

    [[nodiscard]] bool endsWithSection() const {
        return _text.ends_with("-->") || _text.ends_with("]]>") || _text.ends_with("?>");
    }

    [[nodiscard]] bool isRootAt(std::size_t start) const {
        return _root.empty() && withoutPrefix(nameAt(start + 1)) == rootName;
    }
    [[nodiscard]] bool isRootOpen() const { return !_root.empty() && !_isRootClosed; }

    // A section without an end may hide it.
    [[nodiscard]] bool holdsEndOfRoot(std::size_t start) const {
        std::string end = "</";
        end += _root;
        return _text.find(end += '>', start) != npos;
    }

    [[nodiscard]] std::string_view nameAt(std::size_t start) const {
        const auto rest = _text.substr(start);
        return rest.substr(0, endOfName(rest));
    }

    std::string_view _text;
    std::string_view _root;       // the name of the plan's root element as it is written
    std::int64_t _openRoots = 0;  // elements of that name
    std::int64_t _depth = 0;      // from the root on
    bool _isRootClosed = false;
};

}  // namespace

bool MSPDIIsCutOff(std::string_view bytes) {
    const bool isLittle = bytes.starts_with("\xFF\xFE") || bytes.substr(0, 2) == std::string_view("<\0", 2);
    const bool isBig = bytes.starts_with("\xFE\xFF") || bytes.substr(0, 2) == std::string_view("\0<", 2);
    return isLittle || isBig ? Walk(withoutUTF16(bytes, isLittle)).endsTooEarly() : Walk(bytes).endsTooEarly();
}

bool MSPDIIsPlanCutOff(const std::string& planPath, const MSPCFileSystem& fileSystem) {
    const auto bytes = fileSystem.readFile(planPath);
    return bytes && MSPDIIsCutOff(*bytes);
}
