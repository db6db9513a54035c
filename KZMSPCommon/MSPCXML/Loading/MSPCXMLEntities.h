#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>

struct _xmlEntity;  // NOLINT(bugprone-reserved-identifier): libxml2's name for it

// What the references to a document type's entities become. libxml2 would copy an entity's content as nodes for each
// reference, which costs fifty times the text that these nodes are written as: a reference of three bytes may stand for
// a whole task. So a reference stays in the tree, as a mark within the text around it, and the text that the entity's
// content is written as takes its place in what the tree is written as.
class MSPCXMLEntities {
public:
    // How much text the references of `documentSize` bytes may make before `isBeyondMeasure()`: as libxml2 bounds what
    // references make that it copies.
    explicit MSPCXMLEntities(std::size_t documentSize);
    MSPCXMLEntities(const MSPCXMLEntities&) = delete;
    MSPCXMLEntities& operator=(const MSPCXMLEntities&) = delete;
    ~MSPCXMLEntities();

    // An entity whose text is the mark of a reference to this one. It is one of those that the parser adds to the text
    // where it is, like "&amp;"; it belongs to this object. `entity` itself until the parser has read its content and
    // knows it to be well-formed, and where there is none.
    [[nodiscard]] _xmlEntity* markFor(_xmlEntity* entity);
    [[nodiscard]] bool hasMarks() const { return !_entries.empty(); }
    [[nodiscard]] bool isBeyondMeasure() const { return _textSize > _mostText; }

    // What a tree with such marks was written as, with the text of the entities in their places.
    [[nodiscard]] std::string withTexts(std::string written) const;

private:
    struct Entry;

    [[nodiscard]] Entry& entryOf(const _xmlEntity& entity);

    std::size_t _mostText;
    std::size_t _textSize = 0;  // of all references so far
    // By name; ordered, since a plan chooses the names.
    std::map<std::string, std::unique_ptr<Entry>, std::less<>> _entries;
};
