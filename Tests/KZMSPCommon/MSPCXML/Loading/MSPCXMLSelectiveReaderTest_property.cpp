#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "MSPCXMLLoader.h"
#include "MSPCXMLSelectiveReader.h"
#include "PiecewiseSource.h"

// A document that is read in part answers as the whole document does, or is not read in part. However it is read,
// queries and getters see the same text of an element: all of it, whatever elements it is spread over.

namespace {

using namespace std::string_view_literals;

constexpr std::string_view elementsKept = "Project(Name Task(UID Name Notes ~*Baseline(Number)) Empty())";

// Documents of the names that the selection knows and of some that look like them, with everything that may stand in a
// document; sound ones and damaged ones.
class DocumentMaker {
public:
    explicit DocumentMaker(unsigned seed) : _random(seed) {}

    std::string sound() {
        _document.clear();
        _document += oneOf(std::array{""sv, ""sv, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"sv, "\xEF\xBB\xBF"sv,
                                      "<?xml version=\"1.0\"?>"sv, "<!--before-->\n"sv, "<?p q?>"sv});
        addElement(rarely() ? "Task" : "Project", 0);
        _document += oneOf(std::array{""sv, ""sv, "\n"sv, "<!--behind-->"sv, "<?p?>\n"sv});
        return _document;
    }

    std::string damaged() {
        auto text = sound();
        const int count = 1 + below(2);
        for (int damage = 0; damage < count && !text.empty(); ++damage) {
            damageOnce(text);
        }
        return text;
    }

    std::size_t pieceSize() { return oneOf(std::array<std::size_t, 6>{1, 2, 3, 7, 64, 1 << 20}); }

private:
    int below(int limit) { return std::uniform_int_distribution(0, limit - 1)(_random); }
    bool rarely() { return below(20) == 0; }

    template <typename Choices>
    typename Choices::value_type oneOf(const Choices& choices) {
        return choices[static_cast<std::size_t>(below(static_cast<int>(choices.size())))];
    }

    void addElement(std::string_view name, int depth) {
        _document += '<';
        _document += name;
        if (depth == 0 || rarely()) {
            addAttributes();
        }
        if (below(8) == 0) {
            _document += oneOf(std::array{"/>"sv, " />"sv});
            return;
        }
        _document += oneOf(std::array{">"sv, ">"sv, ">"sv, " >"sv});
        const int count = depth > 4 ? 0 : below(6);
        addPiece(name);
        for (int index = 0; index < count; ++index) {
            addElement(oneOf(std::array{"Project"sv, "Name"sv, "Task"sv, "UID"sv, "Notes"sv, "Baseline"sv, "Number"sv,
                                        "Empty"sv, "Other"sv, "Names"sv, "MyName"sv, "Task"sv}),
                       depth + 1);
            addPiece(name);
        }
        _document += "</";
        _document += name;
        _document += oneOf(std::array{">"sv, ">"sv, ">"sv, "\n>"sv});
    }

    void addAttributes() {
        const int count = below(3);
        for (int index = 0; index < count; ++index) {
            _document += oneOf(std::array{" a=\"1\""sv, " b=\"&amp;\""sv, " a='2'"sv, " b=\"x>y\""sv, " a = \"3\""sv,
                                          "\nb=\"\""sv, " xmlns=\"urn:a\""sv, " xml:space=\"preserve\""sv});
        }
    }

    // Mostly blanks where only elements are expected.
    void addPiece(std::string_view owner) {
        const bool holdsElements = owner == "Project" || owner == "Task" || owner == "Baseline" || owner == "Empty";
        if (holdsElements && below(30) != 0) {
            _document += oneOf(std::array{""sv, " "sv, "\n  "sv, "\r\n"sv, "\t"sv});
            return;
        }
        const int count = below(3);
        for (int index = 0; index < count; ++index) {
            _document +=
                rarely()
                    ? oneOf(std::array{"<!--c-->"sv, "<!---->"sv, "<!-- <a> & -->"sv, "<![CDATA[<&>]]>"sv,
                                       "<![CDATA[]]>"sv, "<?p q?>"sv, "<?p?>"sv, "<?xml?>"sv})
                    : oneOf(std::array{"a"sv, "12"sv, " "sv, "\n"sv, "\r\n"sv, "\r"sv, "\t"sv, "&amp;"sv, "&#65;"sv,
                                       "&#13;"sv, "&#32;"sv, ">"sv, "]]>"sv, "\xC3\xA9"sv, "&#x20AC;"sv, "\xFF"sv});
        }
    }

    void damageOnce(std::string& text) {
        const auto at = static_cast<std::size_t>(below(static_cast<int>(text.size())));
        constexpr auto bytes = "<>&/!?-[]\"'= \0a;#\r\nN1"sv;
        switch (below(5)) {
            case 0:
                text.erase(at, 1);
                break;
            case 1:
                text.insert(at, 1, oneOf(bytes));
                break;
            case 2:
                text[at] = oneOf(bytes);
                break;
            case 3:
                text.insert(at, text.substr(static_cast<std::size_t>(below(static_cast<int>(text.size()))), 12));
                break;
            default:
                text.insert(at, oneOf(std::array{"<!DOCTYPE a>"sv, "</Task>"sv, "<Name>"sv, "<!--"sv, "<?"sv, "&b;"sv,
                                                 "<![CDATA["sv, "&#1;"sv, "encoding=\"UTF-16\""sv, "<? ?>"sv}));
        }
    }

    std::mt19937 _random;
    std::string _document;
};

void describeAttributes(const MSPCXMLNode& element, std::string& text) {
    for (const std::string_view name : {"a", "b", "xmlns", "xml:space"}) {
        if (const auto attribute = element.attribute(name)) {
            text.append(" ").append(name).append("=").append(attribute.stringValue());
        }
    }
}

// Everything that can be asked of what a selection keeps below an element, but for what it defers.
void describe(const MSPCXMLNode& element, const MSPCXMLSelection& selection, bool isPart, std::string& text) {
    text.append("<").append(element.name());
    describeAttributes(element, text);
    text += ">";
    if (selection.isWhole()) {
        text.append("\"").append(element.stringValue()).append("\"");
    }
    for (auto child = element.firstChild(); child; child = child.nextSibling()) {
        if (!child.isElement()) {
            continue;
        }
        const auto* childSelection = selection.isWhole() ? &selection : selection.child(child.name());
        if (childSelection != nullptr && !childSelection->isDeferred()) {
            describe(child, *childSelection, isPart, text);
        } else if (isPart) {
            text += "(not selected)";
        }
    }
    text += "</>";
}

// The children of that name of each `Task` of the root.
void describeDeferred(const MSPCXMLLoaded& loaded, const MSPCXMLSelection& rootSelection, bool isPart,
                      std::string& text) {
    auto deferred = loaded.deferred;
    auto walk = deferred.take("Task");
    for (const auto& task : loaded.document.root().childElements("Task")) {
        const auto children = walk.next();
        EXPECT_TRUE(isPart || !children);
        text += "Task:";
        for (const auto& baseline : (children ? children->root() : task).childElements("Baseline")) {
            describe(baseline, *rootSelection.child("Task")->child("Baseline"), isPart, text);
        }
    }
    EXPECT_FALSE(walk.next());
}

std::string described(const MSPCXMLLoaded& loaded, const MSPCXMLSelection& selection, bool isPart) {
    std::string text;
    const auto root = loaded.document.root();
    const auto& rootSelection = *selection.child(root.name());
    describe(root, rootSelection, isPart, text);
    if (rootSelection.child("Task") != nullptr) {
        describeDeferred(loaded, rootSelection, isPart, text);
    }
    return text;
}

std::optional<MSPCXMLLoaded> loadedInPart(const std::string& text, std::size_t pieceSize,
                                          const MSPCXMLSelection& selection) {
    PiecewiseSource source(text, pieceSize);
    auto selected = selectedXML(source, selection);
    auto document = selected ? MSPCXMLDocument::read(std::move(selected->bytes), selected->reading) : std::nullopt;
    return document ? std::optional(MSPCXMLLoaded{std::move(*document), std::move(selected->deferred), std::nullopt})
                    : std::nullopt;
}

std::optional<MSPCXMLLoaded> loadedWhole(const std::string& text) {
    return MSPCXMLLoader(MSPCXMLContent::DataOnly, "Project").loadBytes(text);
}

// A query for the text that a value gives finds the value.
void expectFoundByText(const MSPCXMLNode& element, const MSPCXMLSelection& selection) {
    const auto text = element.stringValue();
    if (selection.isWhole() && text.find('\'') == std::string::npos) {
        const auto found = element.parent().nodesForXPath(std::string(element.name()) + "[.='" + text + "']");
        EXPECT_TRUE(found && std::find(found->begin(), found->end(), element) != found->end()) << element.markup();
    }
    for (auto child = element.firstChild(); child; child = child.nextSibling()) {
        const auto* childSelection = selection.isWhole() ? &selection : selection.child(child.name());
        if (child.isElement() && childSelection != nullptr && !childSelection->isDeferred()) {
            expectFoundByText(child, *childSelection);
        }
    }
}

std::string withDocumentType(std::string text) {
    const std::size_t start = text.starts_with("\xEF\xBB\xBF") ? 3 : 0;
    const bool isDeclared = std::string_view(text).substr(start).starts_with("<?xml ");
    return text.insert(isDeclared ? text.find("?>") + 2 : start, "<!DOCTYPE a [<!ENTITY e 'e'>]>");
}

// The other ways to read a whole document mean the same: with a section somewhere, which has every blank looked at, and
// by the thorough parser, which has entities expanded.
void expectOneMeaning(const std::string& text, const MSPCXMLSelection& selection, const std::string& expected) {
    for (const auto& other : {text + "<?p?>", withDocumentType(text)}) {
        const auto loaded = loadedWhole(other);
        if (loaded && !loaded->repair) {
            EXPECT_EQ(described(*loaded, selection, false), expected) << other;
            expectFoundByText(loaded->document.root(), *selection.child(loaded->document.root().name()));
        }
    }
}

// How many of the documents were read in part; each of them is compared with the whole one.
template <typename Make>
int readInPart(int documents, DocumentMaker& maker, Make&& make) {
    const auto selection = MSPCXMLSelection::fromText(elementsKept);
    int count = 0;
    for (int index = 0; index < documents && !testing::Test::HasFailure(); ++index) {
        const auto text = make();
        const auto part = loadedInPart(text, maker.pieceSize(), selection);
        if (!part) {
            continue;
        }
        ++count;
        const auto whole = loadedWhole(text);
        if (!whole) {
            ADD_FAILURE() << "refused as a whole, read in part: " << text;
            continue;
        }
        EXPECT_FALSE(whole->repair) << "mended as a whole, read in part: " << text;
        const auto expected = described(*whole, selection, false);
        EXPECT_EQ(described(*part, selection, true), expected) << text;
        for (const auto& root : {part->document.root(), whole->document.root()}) {
            expectFoundByText(root, *selection.child(root.name()));
        }
        expectOneMeaning(text, selection, expected);
    }
    return count;
}

}  // namespace

TEST(MSPCXMLSelectiveReaderProperty, soundDocumentsAnswerInPartAsTheyDoWhole) {
    constexpr int documents = 30'000;
    DocumentMaker maker(1);
    EXPECT_GT(readInPart(documents, maker, [&] { return maker.sound(); }), documents / 5);
}

TEST(MSPCXMLSelectiveReaderProperty, damagedDocumentsAreReadInPartOnlyWhereTheWholeNeedsNoMending) {
    constexpr int documents = 60'000;
    DocumentMaker maker(2);
    EXPECT_GT(readInPart(documents, maker, [&] { return maker.damaged(); }), documents / 40);
}
