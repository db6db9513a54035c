#pragma once

#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCXMLWithBytes.h"
#include "MSPDIEdits.h"
#include "MSPDIMarkup.h"
#include "MSPDIMend.h"
#include "MSPIPlan.h"

// A plan that is being mended: its tree, which the mappers can be tried on, and the changes to its bytes. Both change
// together. What leaves the tree stays alive, so that handles stay good.
class MSPDIPatient {
public:
    MSPDIPatient(MSPCXMLWithBytes loaded, const MSPDIMendOptions& options);

    [[nodiscard]] MSPIPlan& plan() { return _plan; }
    [[nodiscard]] MSPCXMLNode project() const { return _plan.root(); }
    // What the lists of the project hold: "Tasks", "Task".
    [[nodiscard]] std::vector<MSPCXMLNode> items(std::string_view list, std::string_view item) const;

    // Whether a step may be done. With `wanted` it must be asked for: by its name, or with all others.
    [[nodiscard]] bool allows(std::string_view step) const;
    [[nodiscard]] bool isAskedFor(std::string_view step) const;
    // Tells of one thing that a step has done.
    void note(std::string_view step, const std::string& place);
    [[nodiscard]] const std::vector<MSPDIMendDone>& done() const { return _done; }

    // Gives an element that holds a text at most another one.
    void setText(MSPCXMLNode element, std::string_view text);
    // The same for the last child of a name; one that is missing is put in behind the last of the children that `after`
    // names, else first.
    MSPCXMLNode setChild(MSPCXMLNode parent, std::string_view name, std::string_view text,
                         std::span<const std::string_view> after);
    // Puts an element with that markup in, as the last one of its parent and indented as the others are. The tree gets
    // an empty element of that name.
    MSPCXMLNode append(MSPCXMLNode parent, std::string_view name, std::string_view markup);
    // The same behind a child of the parent; behind none, as the first one.
    MSPCXMLNode insertAfter(MSPCXMLNode parent, const MSPCXMLNode& sibling, std::string_view name,
                            std::string_view markup);
    // An element of the plan as it stands there.
    [[nodiscard]] std::string markupOf(const MSPCXMLNode& element) const;
    // What stands before the children of an element: a line end and blanks; empty where they share a line.
    [[nodiscard]] std::string indentationWithin(const MSPCXMLNode& parent) const;
    // Takes an element out, with the line that it leaves empty.
    void remove(MSPCXMLNode element);

    // Whether the root task was on another level, with its tasks under it.
    bool hasMovedRoot = false;

    // The mended bytes.
    [[nodiscard]] std::string bytes() const;
    [[nodiscard]] bool isChanged() const { return !_edits.isEmpty(); }
    [[nodiscard]] std::string_view originalBytes() const { return _utf8; }
    [[nodiscard]] bool isConverted() const { return _isConverted; }
    [[nodiscard]] bool isWrittenAnew() const { return _isWrittenAnew; }

private:
    // An element that was put in: its markup is the text of that edit.
    struct Inserted {
        std::size_t edit;
        std::string lead;
        std::string name;
    };

    [[nodiscard]] MSPDIExtent extentOf(const MSPCXMLNode& element) const;
    [[nodiscard]] MSPDIExtent openExtentOf(const MSPCXMLNode& element);
    [[nodiscard]] std::string blanksBefore(std::size_t offset) const;

    MSPIPlan _plan;
    std::string _utf8;
    const MSPDIMendOptions& _options;
    bool _isConverted;
    bool _isWrittenAnew;
    MSPDIEdits _edits;
    std::set<MSPCXMLNode> _opened;                 // that were closed in themselves
    std::map<MSPCXMLNode, std::size_t> _replaced;  // the edits of texts that were replaced
    std::map<MSPCXMLNode, Inserted> _inserted;
    std::vector<MSPCXMLNewElement> _removed;
    std::vector<MSPDIMendDone> _done;
};
