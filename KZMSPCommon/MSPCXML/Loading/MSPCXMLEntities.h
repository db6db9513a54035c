#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct _xmlEntity;  // NOLINT(bugprone-reserved-identifier): libxml2's name for it

// What the references to a document type's entities become. libxml2 would copy an entity's content as nodes for each
// reference, which costs fifty times the text that these nodes are written as: a reference of three bytes may stand for
// a whole task. So a reference stays in the tree, as a mark within the text around it, and the text that the entity's
// content is written as takes its place in what the tree is written as.
class MSPCXMLEntities {
public:
    // Of `documentSize` bytes, by which it is measured what their references may make and have the parser look at.
    explicit MSPCXMLEntities(std::size_t documentSize);
    MSPCXMLEntities(const MSPCXMLEntities&) = delete;
    MSPCXMLEntities& operator=(const MSPCXMLEntities&) = delete;
    ~MSPCXMLEntities();

    // For a reference within content that `parser` sees: an entity whose text is the mark of a reference to this one.
    // It is one of those that the parser adds to the text where it is, like "&amp;"; it belongs to this object.
    // `entity` itself when the parser has not read its content yet, none within that content, where it is a loop.
    [[nodiscard]] _xmlEntity* markFor(_xmlEntity* entity, const void* parser);
    // For a reference to what is not declared: an entity whose text is the reference as it is written. It belongs to
    // this object, and is another one's with the next call.
    [[nodiscard]] _xmlEntity* asWritten(std::string_view name);
    // For references elsewhere, which the parser writes out itself: within values of attributes,
    void countInValue(const _xmlEntity* entity);
    // and to entities of declarations.
    void countInDeclarations(const _xmlEntity* entity);

    [[nodiscard]] bool hasMarks() const { return !_entries.empty(); }
    [[nodiscard]] bool isBeyondMeasure() const;

    // What a tree with such marks was written as, with the text of the entities in their places.
    [[nodiscard]] std::string withTexts(std::string written) const;

private:
    struct Entry;

    static void becomeText(Entry& entry);
    [[nodiscard]] bool isRead(const _xmlEntity& entity, const void* parser);
    [[nodiscard]] Entry& entryOf(const _xmlEntity& entity);

    std::size_t _documentSize;
    // Of all references so far.
    std::size_t _textSize = 0;
    std::size_t _sizeInValues = 0;
    std::size_t _sizeInDeclarations = 0;
    bool _hasLoop = false;
    // Those whose content is being read, each within the one before, with the parser that came upon it.
    std::vector<std::pair<const void*, std::string>> _open;
    std::set<std::string, std::less<>> _begun;  // those whose content was, or is being read
    std::unique_ptr<Entry> _undeclared;
    // By name; ordered, since a plan chooses the names.
    std::map<std::string, std::unique_ptr<Entry>, std::less<>> _entries;
};
