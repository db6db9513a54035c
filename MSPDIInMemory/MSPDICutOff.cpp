#include "MSPDICutOff.h"

#include <cstddef>
#include <cstdint>

#include "MSPCXMLLexis.h"

namespace {

using namespace MSPCXMLLexis;

constexpr auto npos = std::string_view::npos;

// Markup is ASCII: of UTF-16 the other characters may be anything else.
std::string withoutUTF16(std::string_view bytes) {
    const bool isLittle = bytes.starts_with("\xFF\xFE") || bytes.substr(0, 2) == std::string_view("<\0", 2);
    const bool isBig = bytes.starts_with("\xFE\xFF") || bytes.substr(0, 2) == std::string_view("\0<", 2);
    if (!isLittle && !isBig) {
        return std::string(bytes);
    }
    std::string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t index = 0; index + 1 < bytes.size(); index += 2) {
        const auto low = bytes[index + (isLittle ? 0 : 1)];
        const auto high = bytes[index + (isLittle ? 1 : 0)];
        text += high == '\0' ? low : '?';
    }
    return text;
}

// The end of the tag that starts at `start`; none where the text ends before it.
std::size_t endOfTag(std::string_view text, std::size_t start) {
    const auto end = text.find('>', start);
    return end == npos ? npos : end + 1;
}

// Goes over the markup as far as it can be told apart, however damaged it is.
class Walk {
public:
    explicit Walk(std::string_view text) : _text(text) {}

    bool endsTooEarly() {
        for (auto index = _text.find('<', prologOf(_text).end); index != npos; index = _text.find('<', index)) {
            const auto end = endOfMarkup(index);
            if (end == npos) {
                return !_isRootClosed;
            }
            index = end;
        }
        return !_isRootClosed && _depth > 0;
    }

private:
    std::size_t endOfMarkup(std::size_t start) {
        if (start + 1 == _text.size() || _text.substr(start) == "</") {
            return npos;
        }
        if (const auto end = endOfSection(_text, start); end != start) {
            return end == _text.size() && _text[end - 1] != '>' ? npos : end;
        }
        const bool isEnd = _text[start + 1] == '/';
        const auto name = nameAt(start + (isEnd ? 2 : 1));
        if (name.empty()) {
            return start + 1;  // a stray "<"
        }
        const auto end = endOfTag(_text, start);
        if (end != npos) {
            enter(name, isEnd, _text[end - 2] == '/');
        }
        return end;
    }

    void enter(std::string_view name, bool isEnd, bool isEmpty) {
        if (_root.empty()) {
            _root = name;
        }
        _isRootClosed = _isRootClosed || (name == _root && (isEnd || (isEmpty && _depth == 0)));
        _depth += isEnd ? -1 : isEmpty ? 0 : 1;
    }

    [[nodiscard]] std::string_view nameAt(std::size_t start) const {
        const auto rest = _text.substr(start);
        return rest.substr(0, endOfName(rest));
    }

    std::string_view _text;
    std::string_view _root;  // its name as it is written
    std::int64_t _depth = 0;
    bool _isRootClosed = false;
};

}  // namespace

bool MSPDIIsCutOff(std::string_view bytes) {
    const auto text = withoutUTF16(bytes);
    return Walk(text).endsTooEarly();
}

bool MSPDIIsPlanCutOff(const std::string& planPath, const MSPCFileSystem& fileSystem) {
    const auto bytes = fileSystem.readFile(planPath);
    return bytes && MSPDIIsCutOff(*bytes);
}
