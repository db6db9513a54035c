#include "MSPCXMLFilter.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "MSPCXMLBytes.h"
#include "MSPCXMLEncoding.h"
#include "MSPCXMLSurvey.h"

namespace {

using namespace MSPCXMLBytes;

std::size_t endOfName(std::string_view text) {
    if (text.empty() || !hasClass(text.front(), NameStart)) {
        return 0;
    }
    std::size_t end = 1;
    while (end < text.size() && hasClass(text[end], NamePart)) {
        ++end;
    }
    return end;
}

bool isAllBlank(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char character) { return hasClass(character, Blank); });
}

// The document ends at a NUL for the tree library, wherever it stands.
bool hasNoNul(std::string_view text) {
    return text.find('\0') == std::string_view::npos;
}

// Text that any parser takes as it is: references are good, and there is no NUL.
bool isPlainText(std::string_view text) {
    return hasNoNul(text) && !hasStrayAmpersand(text);
}

// Walks over a document with a window onto its bytes that slides and, for a single long token, grows.
class Filter {
public:
    Filter(const MSPCByteReader& read, std::size_t expectedSize, const MSPCXMLSelection& selection) : _read(read) {
        constexpr std::size_t smallestWindow = 1 << 12;
        constexpr std::size_t largestWindow = 1 << 18;
        _window.resize(std::clamp(expectedSize + 1, smallestWindow, largestWindow));
        // Costs address space only: pages that stay untouched are never there.
        _kept.bytes.reserve(expectedSize);
        _open.push_back({0, &selection, &_kept.bytes, nullptr});
    }

    std::optional<MSPCXMLFiltered> run() {
        if (!skipMarkAndDeclaration()) {
            return std::nullopt;
        }
        for (;;) {
            while (takePlainMarkup()) {
            }
            const auto text = textBeforeMarkup();
            if (!text) {
                break;
            }
            if (!takeText(*text) || !takeMarkup()) {
                return std::nullopt;
            }
        }
        const bool isComplete = _isAtEnd && _open.size() == 1 && _hasRoot && isAllBlank(rest());
        return isComplete ? std::optional(std::move(_kept)) : std::nullopt;
    }

private:
    // An element that has not ended yet; without a selection it is left out.
    struct OpenElement {
        std::size_t nameStart;  // in _names
        const MSPCXMLSelection* selection;
        std::string* sink;            // for its content and its end tag
        MSPCXMLAsides::List* asides;  // for its children that are set aside, where it may have some
        bool holdsText = false;       // other than blanks; told for elements that are kept whole
        bool holdsElements = false;
    };

    [[nodiscard]] std::string_view rest() const { return std::string_view(_window).substr(_at, _end - _at); }

    // Slides the window on; false at the end of the document.
    bool readMore() {
        if (_isAtEnd) {
            return false;
        }
        if (_at > 0) {
            std::memmove(_window.data(), _window.data() + _at, _end - _at);
            _end -= _at;
            _at = 0;
        }
        if (_end + 1 == _window.size()) {
            _window.resize(2 * _window.size());
        }
        const auto count = _read(_window.data() + _end, _window.size() - _end - 1);
        _end += count;
        _isAtEnd = count == 0;
        return !_isAtEnd;
    }

    // The offset of a text in what is left, from an offset on; none when the document ends before.
    std::optional<std::size_t> find(std::string_view wanted, std::size_t from) {
        for (;;) {
            const auto found = rest().find(wanted, from);
            if (found != std::string_view::npos) {
                return found;
            }
            from = std::max(from, rest().size() - std::min(rest().size(), wanted.size() - 1));
            if (!readMore()) {
                return std::nullopt;
            }
        }
    }

    bool hasAtLeast(std::size_t size) {
        while (rest().size() < size) {
            if (!readMore()) {
                return false;
            }
        }
        return true;
    }

    bool skipMarkAndDeclaration() {
        hasAtLeast(5);
        if (rest().starts_with("\xEF\xBB\xBF")) {
            _at += 3;
            hasAtLeast(5);
        }
        if (!rest().starts_with("<?xml")) {
            return true;
        }
        const auto end = find("?>", 0);
        return end && isDeclaredUtf8(rest().substr(0, *end + 2)) && skipInstruction();
    }

    // Takes what most of a plan is made of, where it stands in the window as a whole: "<Name>text</Name>", and tags
    // without attributes around and between elements. False for whatever else comes next, which is then looked at with
    // more care.
    bool takePlainMarkup() {
        if (_open.size() == 1 || keepsContent()) {
            return false;
        }
        _window[_end] = '\0';  // stops every search below
        const auto* const tag = skip(_window.data() + _at, Blank);
        if (*tag != '<') {
            return false;
        }
        return tag[1] == '/' ? takePlainEndTag(tag) : takePlainElement(tag);
    }

    // Takes a leaf as a whole, of another element the start tag.
    bool takePlainElement(const char* tag) {
        if (!hasClass(tag[1], NameStart)) {
            return false;
        }
        const auto* const nameEnd = skip(tag + 1, NamePart);
        if (*nameEnd != '>') {
            return false;
        }
        const std::string_view name(tag + 1, static_cast<std::size_t>(nameEnd - tag - 1));
        const auto* const selection = selectionOf(name);
        const auto* const textEnd = skip(nameEnd + 1, PlainText);
        const bool holdsText = selection == nullptr || selection->isWhole();
        const bool isLeaf = holdsText && isEndTag(textEnd, name);
        auto& sink = sinkOf(selection);
        take(tag, isLeaf ? textEnd + endTagSize(name) : nameEnd + 1, selection, sink);
        if (!isLeaf) {
            open(name, selection, sink);
        }
        return true;
    }

    bool takePlainEndTag(const char* tag) {
        const auto name = innermostName();
        if (!isEndTag(tag, name)) {
            return false;
        }
        take(tag, tag + endTagSize(name), _open.back().selection, *_open.back().sink);
        close();
        return true;
    }

    static std::size_t endTagSize(std::string_view name) { return name.size() + 3; }

    // Whether "</Name>" stands at a place in the window.
    bool isEndTag(const char* at, std::string_view name) const {
        const auto left = static_cast<std::size_t>(_window.data() + _end - at);
        return left >= endTagSize(name) && at[0] == '<' && at[1] == '/' &&
               std::memcmp(at + 2, name.data(), name.size()) == 0 && at[2 + name.size()] == '>';
    }

    // Goes on behind a piece of the window, and keeps it if it is selected.
    void take(const char* begin, const char* end, const MSPCXMLSelection* selection, std::string& sink) {
        if (selection != nullptr) {
            sink.append(begin, end);
        }
        _at = static_cast<std::size_t>(end - _window.data());
    }

    void open(std::string_view name, const MSPCXMLSelection* selection, std::string& sink) {
        _open.push_back({_names.size(), selection, &sink, asidesOfNew(selection)});
        _names += name;
    }

    // Where the markup of a new child of the innermost open element goes.
    [[nodiscard]] std::string& sinkOf(const MSPCXMLSelection* selection) {
        const auto& parent = _open.back();
        const bool isSetAside = parent.asides != nullptr && selection != nullptr && selection->isSetAside();
        return isSetAside ? parent.asides->sinkForChild() : *parent.sink;
    }

    MSPCXMLAsides::List* asidesOfNew(const MSPCXMLSelection* selection) {
        if (selection == nullptr || !selection->setsChildrenAside()) {
            return nullptr;
        }
        auto& list = _kept.asides.listAt(selection->path());
        list.addParent();
        return &list;
    }

    void close() {
        _names.resize(_open.back().nameStart);
        _open.pop_back();
    }

    [[nodiscard]] std::string_view innermostName() const {
        return std::string_view(_names).substr(_open.back().nameStart);
    }

    std::optional<std::string_view> textBeforeMarkup() {
        const auto markup = find("<", 0);
        return markup ? std::optional(rest().substr(0, *markup)) : std::nullopt;
    }

    bool takeText(std::string_view text) {
        if (!isPlainText(text) || (keepsChildrenOnly() && !isAllBlank(text))) {
            return false;
        }
        if (keepsContent()) {
            *_open.back().sink += text;
            noteContent(!isAllBlank(text), false);
        }
        _at += text.size();
        return true;
    }

    // Looks at what stands in an element that is kept whole: mostly that is a text and nothing else.
    void noteContent(bool isText, bool isElement) {
        auto& owner = _open.back();
        owner.holdsText = owner.holdsText || isText;
        owner.holdsElements = owner.holdsElements || isElement;
        _kept.hasNestedValues = _kept.hasNestedValues || (isElement && owner.sink == &_kept.bytes);
        if (owner.holdsText && owner.holdsElements) {
            setHasMixedContent();
        }
    }

    [[nodiscard]] bool keepsContent() const {
        const auto* selection = _open.back().selection;
        return selection != nullptr && selection->isWhole();
    }

    // Whether nothing but elements is expected here. Text beside them would change what the blanks around it mean.
    [[nodiscard]] bool keepsChildrenOnly() const {
        const auto* selection = _open.back().selection;
        return selection != nullptr && !selection->isWhole();
    }

    bool takeMarkup() {
        if (!hasAtLeast(2)) {
            return false;
        }
        switch (rest()[1]) {
            case '/':
                return takeEndTag();
            case '!':
                return takeCommentOrCData();
            case '?':
                return skipInstruction();
            default:
                return takeStartTag();
        }
    }

    bool skipInstruction() {
        const auto end = find("?>", 2);
        if (!end) {
            return false;
        }
        const auto target = endOfName(rest().substr(2, *end - 2));
        const bool isNamed = target > 0 && (2 + target == *end || hasClass(rest()[2 + target], Blank));
        return isNamed && skipSection(*end + 2);
    }

    bool skipComment() {
        constexpr std::string_view closing = "-->";
        const auto end = find(closing, 4);
        return end && skipSection(*end + closing.size());
    }

    // Leaves out a comment or an instruction of that size.
    bool skipSection(std::size_t size) {
        // A carriage return before it would become one line end with a line feed behind it.
        const bool splitsLineEnd = keepsContent() && _open.back().sink->ends_with('\r');
        if (splitsLineEnd || !hasNoNul(rest().substr(0, size))) {
            return false;
        }
        if (_hasRoot) {
            setHasSections();
        }
        _at += size;
        return true;
    }

    void setHasSections() {
        _kept.hasSections = true;
        _kept.asides.setHasSections();
    }

    void setHasMixedContent() {
        _kept.hasMixedContent = true;
        _kept.asides.setHasMixedContent();
    }

    bool takeCommentOrCData() {
        constexpr std::string_view cdata = "<![CDATA[";
        if (hasAtLeast(4) && rest().starts_with("<!--")) {
            return skipComment();
        }
        if (keepsChildrenOnly() || !hasAtLeast(cdata.size()) || !rest().starts_with(cdata)) {
            return false;
        }
        const auto end = find("]]>", cdata.size());
        if (!end || !hasNoNul(rest().substr(0, *end))) {
            return false;
        }
        const auto section = rest().substr(0, *end + 3);
        if (keepsContent()) {
            *_open.back().sink += section;
        }
        setHasSections();
        _at += section.size();
        return true;
    }

    bool takeStartTag() {
        auto tagEnd = find(">", 1);
        if (!tagEnd) {
            return false;
        }
        auto tag = rest().substr(0, *tagEnd + 1);
        const auto nameEnd = 1 + endOfName(tag.substr(1));
        const auto name = tag.substr(1, nameEnd - 1);
        const bool hasAttributes = !name.empty() && !isAllBlank(tag.substr(nameEnd, tagClosing(tag) - nameEnd));
        const auto* selection = selectionOf(name);
        if (name.empty() || (_open.size() == 1 && _hasRoot) || (hasAttributes && !isPlainAttributes(tag, selection))) {
            return false;
        }
        auto& sink = sinkOf(selection);
        // What is set aside is not looked at by a parser before it is wanted, and then it must be sound.
        if (hasAttributes && &sink != &_kept.bytes) {
            return false;
        }
        _hasRoot = true;
        if (keepsContent()) {
            noteContent(false, true);
        }
        if (selection != nullptr) {
            sink += tag;
        }
        if (hasAttributes && saysWhatBlanksMean(tag)) {
            setHasMixedContent();
        }
        if (!isEmptyElement(tag)) {
            open(name, selection, sink);
        } else {
            asidesOfNew(selection);
        }
        _at += tag.size();
        return true;
    }

    // Where the ">" or "/>" of a tag begins.
    static std::size_t tagClosing(std::string_view tag) { return tag.size() - (isEmptyElement(tag) ? 2 : 1); }
    static bool isEmptyElement(std::string_view tag) { return tag.size() > 2 && tag[tag.size() - 2] == '/'; }

    static bool saysWhatBlanksMean(std::string_view tag) { return tag.find("xml:space") != std::string_view::npos; }

    // Attributes are left to the parser: it sees those of kept elements, provided that the tag ends where it seems to.
    // One that says what blanks mean may hold for elements that are set aside, whose parser does not see it.
    static bool isPlainAttributes(std::string_view tag, const MSPCXMLSelection* selection) {
        const auto quotes = std::count(tag.begin(), tag.end(), '"');
        return selection != nullptr && (selection->isWhole() || !saysWhatBlanksMean(tag)) && quotes % 2 == 0 &&
               tag.find('\'') == std::string_view::npos && tag.find('<', 1) == std::string_view::npos &&
               isPlainText(tag);
    }

    // What a new element below the innermost open one is; a null pointer when it is left out.
    [[nodiscard]] const MSPCXMLSelection* selectionOf(std::string_view name) const {
        const auto* parent = _open.back().selection;
        return parent == nullptr || parent->isWhole() ? parent : parent->child(name);
    }

    bool takeEndTag() {
        const auto tagEnd = find(">", 2);
        if (!tagEnd || _open.size() == 1) {
            return false;
        }
        const auto tag = rest().substr(0, *tagEnd + 1);
        const auto name = innermostName();
        const auto written = tag.substr(2, tag.size() - 3);
        if (!written.starts_with(name) || !isAllBlank(written.substr(name.size()))) {
            return false;
        }
        if (_open.back().selection != nullptr) {
            *_open.back().sink += tag;
        }
        close();
        _at += tag.size();
        return true;
    }

    const MSPCByteReader& _read;
    std::string _window;  // the bytes from _at to _end are still to be looked at; one byte behind them is free
    std::size_t _at = 0;
    std::size_t _end = 0;
    bool _isAtEnd = false;
    bool _hasRoot = false;
    std::vector<OpenElement> _open;  // the document itself first
    std::string _names;              // of the open elements, one behind the other
    MSPCXMLFiltered _kept;
};

}  // namespace

std::optional<MSPCXMLFiltered> filteredXML(const MSPCByteReader& read, std::size_t expectedSize,
                                           const MSPCXMLSelection& selection) {
    return Filter(read, expectedSize, selection).run();
}
