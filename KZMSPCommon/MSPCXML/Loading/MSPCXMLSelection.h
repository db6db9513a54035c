#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// The elements of a kind of document that are ever read: a tree of names. What it does not name is left out while a
// document is loaded, which makes large documents small.
class MSPCXMLSelection {
public:
    // From a text such as "Project(Name Tasks(Task(UID Name)))": names, each with the names below it in brackets. An
    // element without brackets is kept whole; of one with brackets only the children named are kept, and no text of its
    // own. "*" in front of a name ("*Baseline(Number)") also keeps, whole, children of it that bear the name of one of
    // its siblings. "~" in front of all defers elements of that name: they are kept, but outside the document.
    [[nodiscard]] static MSPCXMLSelection fromText(std::string_view text);

    // The selection for a child of that name; a null pointer when the child is left out.
    [[nodiscard]] const MSPCXMLSelection* child(std::string_view name) const noexcept;
    // Whether an element of this selection is kept with all that is in it.
    [[nodiscard]] bool isWhole() const noexcept { return _isWhole; }
    // Whether an element of this selection is deferred, and whether one may have children that are.
    [[nodiscard]] bool isDeferred() const noexcept { return _isDeferred; }
    [[nodiscard]] bool defersChildren() const noexcept { return _defersChildren; }
    // The names from below the root to this one, "Tasks/Task"; empty for the root and the document.
    [[nodiscard]] const std::string& path() const noexcept { return _path; }
    // All names kept below elements of this selection.
    [[nodiscard]] std::vector<std::string> childNames() const;

private:
    struct Child;

    static std::size_t readChildren(std::string_view text, std::size_t at, MSPCXMLSelection& parent);
    void add(std::string_view name, MSPCXMLSelection selection);

    bool _isDocument = false;
    bool _isWhole = true;
    bool _takesSiblingNames = false;
    bool _isDeferred = false;
    bool _defersChildren = false;
    std::string _path;
    std::array<std::vector<Child>, 32> _childrenByLength;  // of the name, modulo the number of slots
};

struct MSPCXMLSelection::Child {
    std::string name;
    std::unique_ptr<MSPCXMLSelection> selection;
};
