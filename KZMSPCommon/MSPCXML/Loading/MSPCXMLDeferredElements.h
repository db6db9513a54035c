#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class MSPCXMLDocument;

// The elements of a document that its selection defers. A tree of what is read once, or by few, would make every walk
// over the rest of the document longer, and the document several times as large. They are kept as markup, by the
// elements they were children of, until they are asked for.
class MSPCXMLDeferredElements {
public:
    // Those of all elements at one path.
    class List {
    public:
        // Starts with the next element at the path.
        void addParent() { ++_parentCount; }
        // Where the markup of a child of the element added last goes; stays in its place until the child has ended.
        [[nodiscard]] std::string& markupForChild();

    private:
        friend class MSPCXMLDeferredElements;

        // The children of one element, one after the other, up to those of the next one or the end of the block.
        struct Group {
            std::size_t parentPosition;
            std::size_t block;
            std::size_t start;
        };

        [[nodiscard]] std::string_view markupOf(std::size_t group) const;
        void freeBlocksBefore(std::size_t group);

        std::size_t _parentCount = 0;
        std::vector<Group> _groups;
        std::deque<std::string> _blocks;
        std::size_t _freedBlocks = 0;
    };

    // Goes from element to element of those at one path. What it has passed is freed.
    class Walk {
    public:
        // The deferred children of the next element: the child elements of the document's root. None where there are
        // none. Raises `MSPCInternalInconsistency` "Failed to read elements that were set aside." for markup that is
        // not sound, which would otherwise be missing unnoticed.
        [[nodiscard]] std::optional<MSPCXMLDocument> next();

    private:
        friend class MSPCXMLDeferredElements;
        Walk(List list, bool hasSections, bool hasMixedContent)
            : _list(std::move(list)), _hasSections(hasSections), _hasMixedContent(hasMixedContent) {}

        List _list;
        bool _hasSections;
        bool _hasMixedContent;
        std::size_t _parentPosition = 0;
        std::size_t _group = 0;
    };

    // The list for a path below the root such as "Tasks/Task"; made when it is missing. Stays in its place.
    [[nodiscard]] List& listAt(const std::string& path) { return _lists[path]; }
    // Says that the document had CDATA sections, comments or processing instructions in its content.
    void setHasSections() { _hasSections = true; }
    // Says that the document had text beside elements in what is kept.
    void setHasMixedContent() { _hasMixedContent = true; }

    // Takes the list for a path out. The walk starts before the first element at the path, in document order.
    [[nodiscard]] Walk take(const std::string& path);

private:
    std::map<std::string, List> _lists;
    bool _hasSections = false;
    bool _hasMixedContent = false;
};
