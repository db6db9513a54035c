#include "MSPCXMLPieces.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "MSPCByteStreams.h"
#include "MSPCXMLDocument.h"
#include "MSPCXMLEncoding.h"
#include "MSPCXMLLexis.h"
#include "MSPCXMLLoader.h"

namespace {

using namespace MSPCXMLLexis;

constexpr std::size_t windowSize = 1 << 20;
// What is read at first: most plans are small, and a window is filled with zeros before it is read into.
constexpr std::size_t smallestWindow = 1 << 13;
// Of elements and leaves without anything else.
constexpr MSPCXMLReading plainReading{
    .content = MSPCXMLContent::DataOnly, .hasSections = false, .hasMixedContent = false, .hasNestedValues = false};
// Ends the start tag of an element all of whose leaves were taken. No other one has attributes then.
constexpr std::string_view emptiedMark = " emptied=\"\">";

// Mends nothing.
MSPCXMLLoader dataLoader() {
    return MSPCXMLLoader(MSPCXMLContent::DataOnly);
}

std::string_view nameOf(std::string_view tag) {
    const auto start = tag.starts_with("</") ? 2U : 1U;
    const auto end = tag.find_first_of(" \t\r\n/>", start);
    return tag.substr(start, end - start);
}

class Scanner {
public:
    Scanner(MSPCByteSource& source, MSPCXMLPieceVisitor& visitor) : _source(source), _visitor(visitor) {}

    bool run() {
        if (!skipProlog()) {
            return false;
        }
        while (const auto tag = nextTag()) {
            if (!take(*tag)) {
                return false;
            }
            if (_depth == 0) {
                return !_hasFailed && showRoot();
            }
        }
        return false;
    }

private:
    // A tag from its "<" to behind its ">", as offsets in the window.
    struct Tag {
        std::size_t start;
        std::size_t end;
    };

    [[nodiscard]] std::string_view text(const Tag& tag) const {
        return std::string_view(_window).substr(tag.start, tag.end - tag.start);
    }

    bool readMore() {
        if (_isAtEnd) {
            return false;
        }
        // What comes before a piece is not needed any more.
        const auto kept = std::min(_pieceStart.value_or(_at), _at);
        if (kept > windowSize / 2) {
            _window.erase(0, kept);
            _at -= kept;
            if (_pieceStart) {
                *_pieceStart -= kept;
            }
        }
        // What has to be looked at again from its beginning is twice as long then.
        const auto size = _window.size();
        const auto room = std::max(_nextRoom, size - std::min(size, _pieceStart.value_or(_at)));
        _nextRoom = std::min(2 * _nextRoom, windowSize);
        _window.resize(size + room);
        const auto filled = readInto(_window.data() + size, room);
        _window.resize(size + filled);
        return filled > 0;
    }

    // Fills the room, however little comes at a time, unless the document ends before.
    std::size_t readInto(char* start, std::size_t room) {
        std::size_t filled = 0;
        while (filled < room && !_isAtEnd) {
            const auto count = _source.read(start + filled, room - filled);
            _hasFailed = !count;
            _isAtEnd = count.value_or(0) == 0;
            filled += count.value_or(0);
        }
        return filled;
    }

    // The offset of a text behind `_at` and an offset from there; the window may have slid on then.
    std::optional<std::size_t> find(std::string_view wanted, std::size_t from) {
        for (;;) {
            const auto found = _window.find(wanted, _at + from);
            if (found != std::string::npos) {
                return found - _at;
            }
            from = std::max(from, _window.size() - _at - std::min(_window.size() - _at, wanted.size() - 1));
            if (!readMore()) {
                return std::nullopt;
            }
        }
    }

    bool hasAhead(std::string_view wanted) {
        while (_window.size() - _at < wanted.size()) {
            if (!readMore()) {
                return false;
            }
        }
        return std::string_view(_window).substr(_at).starts_with(wanted);
    }

    bool skipTo(std::string_view end, std::size_t from) {
        const auto found = find(end, from);
        if (found) {
            _at += *found + end.size();
        }
        return found.has_value();
    }

    bool skipProlog() {
        if (hasAhead("\xEF\xBB\xBF")) {
            _at += 3;
        }
        if (hasAhead("<?xml")) {
            const auto end = find("?>", 0);
            if (!end || !isDeclaredUtf8(std::string_view(_window).substr(_at, *end + 2))) {
                return false;
            }
        }
        return _window.find('\0') == std::string::npos;
    }

    // The next tag; comments, sections and instructions before it are passed over. None at the end, and at a document
    // type.
    std::optional<Tag> nextTag() {
        for (;;) {
            const auto start = find("<", 0);
            if (!start) {
                return std::nullopt;
            }
            keepText(*start);
            _at += *start;
            if (hasAhead("<!--")) {
                if (!skipTo("-->", 4)) {
                    return std::nullopt;
                }
            } else if (hasAhead("<![CDATA[")) {
                const auto end = find("]]>", 9);
                if (!end) {
                    return std::nullopt;
                }
                keepText(*end + 3);
                _at += *end + 3;
            } else if (hasAhead("<?")) {
                if (!skipTo("?>", 2)) {
                    return std::nullopt;
                }
            } else if (hasAhead("<!")) {
                return std::nullopt;
            } else {
                return wholeTag();
            }
        }
    }

    // Text or a section that begins here stays with the root where it stands right in it, or in a list.
    void keepText(std::size_t size) {
        if (_depth == 1 || (_depth == 2 && _child == Child::List)) {
            addTextToRoot(_at, size);
        }
    }

    void addTextToRoot(std::size_t start, std::size_t size) {
        const auto text = std::string_view(_window).substr(start, size);
        if (text.find_first_not_of(" \t\r\n") != std::string_view::npos) {
            _root += text;
        }
    }

    // A ">" within quotes does not end a tag.
    std::optional<Tag> wholeTag() {
        std::size_t size = 1;
        for (;;) {
            const auto end = find(">", size);
            if (!end) {
                return std::nullopt;
            }
            size = *end + 1;
            const auto tag = std::string_view(_window).substr(_at, size);
            if (tag.find_first_of("\"'") == std::string_view::npos || !isWithinQuotes(tag)) {
                break;
            }
        }
        const Tag tag{_at, _at + size};
        _at += size;
        return tag;
    }

    static bool isWithinQuotes(std::string_view tag) {
        char quote = '\0';
        for (const auto character : tag) {
            if (quote == '\0' && (character == '"' || character == '\'')) {
                quote = character;
            } else if (character == quote) {
                quote = '\0';
            }
        }
        return quote != '\0';
    }

    bool take(const Tag& tag) {
        const auto markup = text(tag);
        const bool isEnd = markup[1] == '/';
        const bool isEmpty = !isEnd && markup[markup.size() - 2] == '/';
        if (isEnd) {
            return takeEnd(tag);
        }
        if (!isEmpty) {
            ++_depth;
        }
        const auto level = isEmpty ? _depth + 1 : _depth;
        switch (level) {
            case 1:
                _root += markup;
                return true;
            case 2:
                return beginChild(tag, isEmpty);
            case 3:
                return beginElementOfChild(tag, isEmpty);
            default:
                return true;
        }
    }

    bool takeEnd(const Tag& tag) {
        const auto level = _depth--;
        if (level == 3) {
            return _child != Child::List || showPiece(tag.end);
        }
        if (level == 2) {
            endChild(tag);
        } else if (level == 1) {
            _root += text(tag);
        }
        return level > 0;
    }

    // A child of the root may be a list as soon as there is an element in it; until then it is a value.
    bool beginChild(const Tag& tag, bool isEmpty) {
        if (isEmpty) {
            _root += text(tag);
            _visitor.value(nameOf(text(tag)));
            return true;
        }
        _pieceStart = tag.start;
        _childTag = text(tag);
        _child = Child::Empty;
        return true;
    }

    void endChild(const Tag& tag) {
        if (_child == Child::List) {
            _visitor.endList();
            _root += text(tag);
        } else {
            _root.append(_window, *_pieceStart, tag.end - *_pieceStart);
            _visitor.value(nameOf(_childTag));
        }
        _pieceStart.reset();
    }

    bool beginElementOfChild(const Tag& tag, bool isEmpty) {
        if (_child == Child::Empty) {
            _child = _visitor.isList(nameOf(_childTag)) ? Child::List : Child::Value;
            if (_child == Child::List) {
                const auto textStart = *_pieceStart + _childTag.size();
                _root += _childTag;
                addTextToRoot(textStart, tag.start - textStart);
                _visitor.beginList(nameOf(_childTag));
            }
        }
        return _child == Child::Value || beginPiece(tag, isEmpty);
    }

    bool beginPiece(const Tag& tag, bool isEmpty) {
        _pieceStart = tag.start;
        if (isEmpty) {
            return showPiece(tag.end);
        }
        return isPlainTag(text(tag)) && _visitor.wantsLeavesOf(nameOf(text(tag))) ? takeLeavesOfPiece() : true;
    }

    static bool isPlainTag(std::string_view tag) { return nameOf(tag).size() + 2 == tag.size(); }

    // Offers the leaves of a piece whose start tag has passed, and shows what is left of it. Where there is more to it
    // than elements and leaves, it is gone through like any other.
    bool takeLeavesOfPiece() {
        const auto start = _at - *_pieceStart;
        _rest.assign(_window, *_pieceStart, start);
        _openInRest.assign(1, _rest.size());
        _hasTaken = false;
        while (!_openInRest.empty()) {
            const auto taken = takePlainMarkup();
            if (taken == Markup::Cut && readMore()) {
                continue;
            }
            if (taken != Markup::Taken) {
                _visitor.forgetLeaves();
                _at = *_pieceStart + start;
                return true;
            }
        }
        --_depth;
        return showRest();
    }

    bool showRest() {
        const auto rest = MSPCXMLDocument::read(std::move(_rest), plainReading);
        _rest.clear();
        if (!rest) {
            return false;
        }
        if (_visitor.restOfPiece(rest->root())) {
            _pieceStart.reset();
            return true;
        }
        return showPiece(_at);
    }

    enum class Markup {
        Taken,
        Cut,    // by the end of the window
        Other,  // what is not of the plainest kind
    };

    [[nodiscard]] Markup unlessCut(const char* at) const {
        return at == _window.data() + _window.size() ? Markup::Cut : Markup::Other;
    }

    // Takes a tag, or a leaf as a whole. The window ends with a NUL, which stops every search.
    Markup takePlainMarkup() {
        const auto* const tag = skip(_window.data() + _at, Blank);
        if (*tag != '<') {
            return unlessCut(tag);
        }
        if (tag[1] == '/') {
            const auto* const end = skip(tag + 2, NamePart);
            if (*end != '>') {
                return unlessCut(end);
            }
            return takePlainEndTag(tag, end + 1);
        }
        if (!hasClass(tag[1], NameStart)) {
            return unlessCut(tag + 1);
        }
        const auto* const nameEnd = skip(tag + 1, NamePart);
        if (*nameEnd == '/') {
            return nameEnd[1] == '>' ? takeLeaf(tag, nameEnd, {}, nameEnd + 2) : unlessCut(nameEnd + 1);
        }
        return *nameEnd == '>' ? takePlainElement(tag, nameEnd) : unlessCut(nameEnd);
    }

    Markup takePlainElement(const char* tag, const char* nameEnd) {
        const std::string_view name(tag + 1, static_cast<std::size_t>(nameEnd - tag - 1));
        const auto* textEnd = skip(nameEnd + 1, PlainText);
        const bool hasReferences = *textEnd == '&';
        while (*textEnd == '&') {
            textEnd = skip(textEnd + 1, PlainText);
        }
        if (*textEnd != '<') {
            return unlessCut(textEnd);
        }
        const auto left = static_cast<std::size_t>(_window.data() + _window.size() - textEnd);
        const auto endTagSize = name.size() + 3;
        if (left < endTagSize) {
            return Markup::Cut;
        }
        const bool isLeaf = textEnd[1] == '/' && std::memcmp(textEnd + 2, name.data(), name.size()) == 0 &&
                            textEnd[2 + name.size()] == '>';
        if (isLeaf) {
            const std::string_view text(nameEnd + 1, static_cast<std::size_t>(textEnd - nameEnd - 1));
            const auto* const end = textEnd + endTagSize;
            if (!hasReferences) {
                return takeLeaf(tag, nameEnd, text, end);
            }
            _visitor.passLeaf(name);
            return keep(tag, end);
        }
        _visitor.beginElement(name);
        keep(tag, nameEnd + 1);
        _openInRest.push_back(_rest.size());
        return Markup::Taken;
    }

    Markup takePlainEndTag(const char* tag, const char* end) {
        const bool isEmptied = _hasTaken && _rest.size() == _openInRest.back();
        if (isEmptied) {
            _rest.replace(_rest.size() - 1, 1, emptiedMark);
        }
        _openInRest.pop_back();
        if (!_openInRest.empty()) {
            _visitor.endElement();
        }
        return keep(tag, end);
    }

    Markup takeLeaf(const char* tag, const char* nameEnd, std::string_view text, const char* end) {
        if (!_visitor.takeLeaf({tag + 1, static_cast<std::size_t>(nameEnd - tag - 1)}, text)) {
            return keep(tag, end);
        }
        _hasTaken = true;
        _at = static_cast<std::size_t>(end - _window.data());
        return Markup::Taken;
    }

    Markup keep(const char* begin, const char* end) {
        _rest.append(begin, end);
        _at = static_cast<std::size_t>(end - _window.data());
        return Markup::Taken;
    }

    bool showPiece(std::size_t end) {
        const auto piece = dataLoader().loadBytes(_window.substr(*_pieceStart, end - *_pieceStart));
        _pieceStart.reset();
        if (!piece) {
            return false;
        }
        _visitor.piece(piece->document.root());
        return true;
    }

    bool showRoot() {
        const auto loaded = dataLoader().loadBytes(std::move(_root));
        if (loaded) {
            _visitor.root(loaded->document.root());
        }
        return loaded.has_value();
    }

    MSPCByteSource& _source;
    MSPCXMLPieceVisitor& _visitor;
    std::string _window;
    std::size_t _nextRoom = smallestWindow;
    std::size_t _at = 0;
    bool _isAtEnd = false;
    bool _hasFailed = false;
    std::size_t _depth = 0;                  // of the open elements
    std::optional<std::size_t> _pieceStart;  // of what is wanted as a whole
    std::string _childTag;                   // of the open child of the root
    std::string _rest;                       // of the piece, without the leaves that were taken
    std::vector<std::size_t> _openInRest;    // where the contents of its open elements begin
    bool _hasTaken = false;                  // leaves of the piece; none of one that has no leaves
    enum class Child { Empty, List, Value } _child = Child::Empty;  // the open one of the root, so far
    std::string _root;
};

}  // namespace

bool isEmptiedXMLPiece(const MSPCXMLNode& element) {
    return static_cast<bool>(element.attribute("emptied"));
}

bool visitXMLPieces(MSPCByteSource& source, MSPCXMLPieceVisitor& visitor) {
    return Scanner(source, visitor).run();
}
