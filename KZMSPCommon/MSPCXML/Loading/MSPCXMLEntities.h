#pragma once

#include <libxml/tree.h>

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

// What the references to a document type's entities become. libxml2 would copy an entity's content as nodes for each
// reference, which costs fifty times the text that these nodes are written as: a reference of three bytes may stand for
// a whole task. So a reference stays in the tree, as a mark within the text around it, and the text that the entity's
// content is written as takes its place in what the tree is written as.
class MSPCXMLEntities {
public:
    // How much text the references of `documentSize` bytes may make before `isBeyondMeasure()`: as libxml2 bounds what
    // references make that it copies.
    explicit MSPCXMLEntities(std::size_t documentSize);

    // An entity whose text is the mark of a reference to this one. It is one of those that the parser adds to the text
    // where it is, like "&amp;"; it belongs to this object. `entity` itself until the parser has read its content and
    // knows it to be well-formed, and where there is none.
    [[nodiscard]] xmlEntity* markFor(xmlEntity* entity);
    [[nodiscard]] bool hasMarks() const { return !_entries.empty(); }
    [[nodiscard]] bool isBeyondMeasure() const { return _textSize > _mostText; }

    // What a tree with such marks was written as, with the text of the entities in their places.
    [[nodiscard]] std::string withTexts(std::string written) const;

private:
    struct Entry {
        std::string mark;
        xmlEntity standIn = {};
        std::string text;  // markup, entities within it included
    };

    [[nodiscard]] Entry& entryOf(const xmlEntity& entity);

    std::size_t _mostText;
    std::size_t _textSize = 0;                           // of all references so far
    std::map<std::string, Entry, std::less<>> _entries;  // by name; ordered, since a plan chooses the names
};
