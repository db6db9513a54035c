#include "MSPCXMLSelectiveReader.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "MSPCByteStreams.h"
#include "MSPCXMLEncoding.h"
#include "MSPCXMLLexis.h"

namespace {

using namespace MSPCXMLLexis;

// Walks over a document with a window onto its bytes that slides and, for a single long token, grows.
class SelectiveReader {
public:
    SelectiveReader(MSPCByteSource& source, const MSPCXMLSelection& selection, bool keepsPlaces)
        : _source(source), _keepsPlaces(keepsPlaces) {
        const auto expectedSize = source.expectedSize();
        constexpr std::size_t smallestWindow = 1 << 12;
        constexpr std::size_t largestWindow = 1 << 18;
        _window.resize(std::clamp(expectedSize + 1, smallestWindow, largestWindow));
        // Costs address space only: pages that stay untouched are never there.
        _kept.bytes.reserve(expectedSize);
        _open.push_back({0, &selection, &_kept.bytes, nullptr});
    }

    std::optional<MSPCXMLSelected> run() {
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
        const bool isComplete = _isAtEnd && !_hasFailed && _open.size() == 1 && _hasRoot && isAllBlank(rest());
        return isComplete ? std::optional(std::move(_kept)) : std::nullopt;
    }

private:
    // An element that has not ended yet; without a selection it is left out.
    struct OpenElement {
        std::size_t nameStart;  // in _names
        const MSPCXMLSelection* selection;
        std::string* markup;                      // where its content and its end tag go
        MSPCXMLDeferredElements::List* deferred;  // for its deferred children, where it may have some
        bool holdsText = false;                   // other than blanks; told for elements that are kept whole
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
            _passed += _at;
            _end -= _at;
            _at = 0;
        }
        if (_end + 1 == _window.size()) {
            _window.resize(2 * _window.size());
        }
        const auto count = _source.read(_window.data() + _end, _window.size() - _end - 1);
        _hasFailed = !count;
        _end += count.value_or(0);
        _isAtEnd = count.value_or(0) == 0;
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
        if (rest().starts_with(ByteOrderMark)) {
            _at += ByteOrderMark.size();
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
        auto& markup = markupOf(selection);
        take(tag, isLeaf ? textEnd + endTagSize(name) : nameEnd + 1, selection, markup);
        if (!isLeaf) {
            open(name, selection, markup);
        }
        return true;
    }

    bool takePlainEndTag(const char* tag) {
        const auto name = innermostName();
        if (!isEndTag(tag, name)) {
            return false;
        }
        take(tag, tag + endTagSize(name), _open.back().selection, *_open.back().markup);
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
    void take(const char* begin, const char* end, const MSPCXMLSelection* selection, std::string& markup) {
        if (selection != nullptr) {
            keep({begin, static_cast<std::size_t>(end - begin)}, markup);
        }
        _at = static_cast<std::size_t>(end - _window.data());
    }

    // Keeps a piece of the window.
    void keep(std::string_view piece, std::string& markup) {
        if (_keepsPlaces) {
            const auto original = _passed + static_cast<std::size_t>(piece.data() - _window.data());
            if (original != _endOfKept) {
                _kept.places.push_back({markup.size(), original});
            }
            _endOfKept = original + piece.size();
        }
        markup += piece;
    }

    void open(std::string_view name, const MSPCXMLSelection* selection, std::string& markup) {
        _open.push_back({_names.size(), selection, &markup, deferredOfNew(selection)});
        _names += name;
    }

    // Where the markup of a new child of the innermost open element goes.
    [[nodiscard]] std::string& markupOf(const MSPCXMLSelection* selection) {
        const auto& parent = _open.back();
        const bool isDeferred = parent.deferred != nullptr && selection != nullptr && selection->isDeferred();
        return isDeferred ? parent.deferred->markupForChild() : *parent.markup;
    }

    MSPCXMLDeferredElements::List* deferredOfNew(const MSPCXMLSelection* selection) {
        if (selection == nullptr || !selection->defersChildren()) {
            return nullptr;
        }
        auto& list = _kept.deferred.listAt(selection->path());
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
            keep(text, *_open.back().markup);
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
        _kept.reading.hasNestedValues = _kept.reading.hasNestedValues || (isElement && owner.markup == &_kept.bytes);
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
        const bool splitsLineEnd = keepsContent() && _open.back().markup->ends_with('\r');
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
        _kept.reading.hasSections = true;
        _kept.deferred.setHasSections();
    }

    void setHasMixedContent() {
        _kept.reading.hasMixedContent = true;
        _kept.deferred.setHasMixedContent();
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
            keep(section, *_open.back().markup);
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
        auto& markup = markupOf(selection);
        // What is deferred is not looked at by a parser before it is wanted, and then it must be sound.
        if (hasAttributes && &markup != &_kept.bytes) {
            return false;
        }
        _hasRoot = true;
        if (keepsContent()) {
            noteContent(false, true);
        }
        if (selection != nullptr) {
            keep(tag, markup);
        }
        if (hasAttributes && saysWhatBlanksMean(tag)) {
            setHasMixedContent();
        }
        if (!isEmptyElement(tag)) {
            open(name, selection, markup);
        } else {
            deferredOfNew(selection);
        }
        _at += tag.size();
        return true;
    }

    // Where the ">" or "/>" of a tag begins.
    static std::size_t tagClosing(std::string_view tag) { return tag.size() - (isEmptyElement(tag) ? 2 : 1); }
    static bool isEmptyElement(std::string_view tag) { return tag.size() > 2 && tag[tag.size() - 2] == '/'; }

    static bool saysWhatBlanksMean(std::string_view tag) { return tag.find(SpaceAttribute) != std::string_view::npos; }

    // Attributes are left to the parser: it sees those of kept elements, provided that the tag ends where it seems to.
    // One that says what blanks mean may hold for deferred elements, whose parser does not see it.
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
            keep(tag, *_open.back().markup);
        }
        close();
        _at += tag.size();
        return true;
    }

    MSPCByteSource& _source;
    std::string _window;  // the bytes from _at to _end are still to be looked at; one byte behind them is free
    std::size_t _at = 0;
    std::size_t _end = 0;
    std::size_t _passed = 0;  // bytes before the window
    bool _keepsPlaces;
    std::size_t _endOfKept = std::string::npos;  // in the document; nowhere before anything is kept
    bool _isAtEnd = false;
    bool _hasFailed = false;
    bool _hasRoot = false;
    std::vector<OpenElement> _open;  // the document itself first
    std::string _names;              // of the open elements, one behind the other
    MSPCXMLSelected _kept;
};

}  // namespace

std::optional<MSPCXMLSelected> selectedXML(MSPCByteSource& source, const MSPCXMLSelection& selection,
                                           bool keepsPlaces) {
    return SelectiveReader(source, selection, keepsPlaces).run();
}
