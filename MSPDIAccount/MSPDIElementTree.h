#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct MSPDIElement;

// A table of element paths as a tree of names.
class MSPDIElementTree {
public:
    MSPDIElementTree() = default;
    // The tree of a whole table, which outlives it, from the project on.
    explicit MSPDIElementTree(std::span<const MSPDIElement> table);

    // What is known below this element under a name; a null pointer for an element that the table does not know.
    [[nodiscard]] const MSPDIElementTree* child(std::string_view name) const;
    // The same for a path of such steps; this element for an empty one.
    [[nodiscard]] const MSPDIElementTree* at(std::string_view path) const;
    // The line for a leaf here; a null pointer where the table knows only elements with children.
    [[nodiscard]] const MSPDIElement* element() const { return _element; }
    [[nodiscard]] bool hasChildren() const { return _hasChildren; }
    // Its place among all that the table knows below its parent, from 0.
    [[nodiscard]] std::size_t ordinal() const { return _ordinal; }
    // Its place among all of the tree, from 0 for the project; and of the whole tree how many there are, and the name
    // at a place.
    [[nodiscard]] std::size_t index() const { return _index; }
    [[nodiscard]] std::size_t size() const { return _all.size() + 1; }
    [[nodiscard]] std::string_view nameAt(std::size_t index) const {
        return index == 0 ? name() : _all.at(index - 1)->name();
    }
    // From below the project to here: "Tasks/Task/Name".
    [[nodiscard]] const std::string& path() const { return _path; }
    // The last step of it; empty for the project.
    [[nodiscard]] std::string_view name() const { return std::string_view(_path).substr(_nameStart); }

private:
    void add(std::string_view path, const MSPDIElement& element);

    std::string _path;
    std::size_t _nameStart = 0;
    const MSPDIElement* _element = nullptr;
    // By what names look like. The names are those of the table, so that no plan can make one of them long.
    static constexpr std::size_t SlotCount = 128;
    [[nodiscard]] static std::size_t slotOf(std::string_view name);
    std::array<std::vector<std::unique_ptr<MSPDIElementTree>>, SlotCount> _children;
    bool _hasChildren = false;
    std::size_t _childCount = 0;
    std::size_t _ordinal = 0;
    std::size_t _index = 0;
    std::vector<const MSPDIElementTree*> _all;  // of the whole tree, without its root
};
