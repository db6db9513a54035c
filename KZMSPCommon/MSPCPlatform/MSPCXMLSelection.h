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
    // its siblings.
    [[nodiscard]] static MSPCXMLSelection fromText(std::string_view text);

    // The selection for a child of that name; a null pointer when the child is left out.
    [[nodiscard]] const MSPCXMLSelection* child(std::string_view name) const noexcept;
    // Whether an element of this selection is kept with all that is in it.
    [[nodiscard]] bool isWhole() const noexcept { return _isWhole; }
    // All names kept below elements of this selection.
    [[nodiscard]] std::vector<std::string> childNames() const;

private:
    struct Child;

    static std::size_t readChildren(std::string_view text, std::size_t at, MSPCXMLSelection& parent);
    void add(std::string_view name, MSPCXMLSelection selection);

    bool _isWhole = true;
    bool _takesSiblingNames = false;
    std::array<std::vector<Child>, 32> _childrenByLength;  // of the name, modulo the number of slots
};

struct MSPCXMLSelection::Child {
    std::string name;
    std::unique_ptr<MSPCXMLSelection> selection;
};
