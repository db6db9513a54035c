#pragma once

#include <functional>
#include <map>
#include <optional>
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
// together. The tree holds what the steps look at (`MSPDIElementsMended`), the bytes all of it. What leaves the tree
// stays alive, so that handles stay good.
class MSPDIPatient {
public:
    MSPDIPatient(MSPCXMLWithBytes loaded, const MSPDIMendOptions& options);

    [[nodiscard]] MSPIPlan& plan() { return _plan; }
    [[nodiscard]] MSPCXMLNode project() const { return _plan.root(); }
    // What the lists of the project hold: "Tasks", "Task".
    [[nodiscard]] std::vector<MSPCXMLNode> items(std::string_view list, std::string_view item) const;

    [[nodiscard]] bool allows(std::string_view step) const { return _options.allows(step); }
    [[nodiscard]] bool isAskedFor(std::string_view step) const { return _options.isAskedFor(step); }
    // Tells of one thing that a step has done; the place is asked for only where it is told.
    void note(std::string_view step, const std::function<std::string()>& place);
    [[nodiscard]] const std::vector<MSPDIMendDone>& done() const { return _done; }
    // Tells of one thing that a step leaves as it is, because of that bound.
    void leave(std::string_view step, std::string_view why);
    [[nodiscard]] const std::vector<MSPDIMendLeft>& left() const { return _left; }

    // Whether an element stands in the plan's bytes, so that it can be changed and removed; parts of what was put in
    // cannot.
    [[nodiscard]] bool isChangeable(const MSPCXMLNode& element) const;
    // Gives an element that holds a text at most another one.
    void setText(MSPCXMLNode element, std::string_view text);
    // The same for the last child of a name; one that is missing is put in behind the last of the children that `after`
    // names, else first.
    MSPCXMLNode setChild(MSPCXMLNode parent, std::string_view name, std::string_view text,
                         std::span<const std::string_view> after);
    // Puts an element with that markup in, indented as the others are: as the last one of its parent,
    MSPCXMLNode append(MSPCXMLNode parent, std::string_view markup);
    // behind a child of the parent,
    MSPCXMLNode insertBehind(const MSPCXMLNode& sibling, std::string_view markup);
    // behind the last of the children that are named, else as the first one,
    MSPCXMLNode insertBehind(MSPCXMLNode parent, std::span<const std::string_view> names, std::string_view markup);
    // or before the first of the children that are named, else as the last one.
    MSPCXMLNode insertBefore(MSPCXMLNode parent, std::span<const std::string_view> names, std::string_view markup);
    // An element of the plan as it stands there.
    [[nodiscard]] std::string markupOf(const MSPCXMLNode& element) const;
    // What stands before the children of an element: a line end and blanks; empty where they share a line.
    [[nodiscard]] const std::string& indentationWithin(const MSPCXMLNode& parent);
    // Takes an element out, with the line that it leaves empty.
    void remove(MSPCXMLNode element);

    // Whether the root task was on another level, with its tasks under it.
    bool hasMovedRoot = false;
    // What several steps ask of all tasks, once it was looked for: those that arrive with their custom fields, and the
    // numbers of all fields that tasks have. No step changes the one, and each adds to the other what it puts in.
    std::optional<std::vector<MSPCXMLNode>> tasksWithFields;
    std::optional<std::set<std::string>> fieldsOfTasks;

    // The mended bytes. Nothing else is to be asked for then.
    [[nodiscard]] std::string takeBytes();
    [[nodiscard]] bool isChanged() const { return !_edits.isEmpty(); }
    [[nodiscard]] bool isConverted() const { return _loaded.isConverted; }
    [[nodiscard]] bool isWrittenAnew() const { return _loaded.isWrittenAnew; }

private:
    // An element that was put in: its markup is the text of that edit.
    struct Inserted {
        std::size_t edit;
        std::size_t place;
        std::string lead;
    };

    [[nodiscard]] MSPDIExtent extentOf(const MSPCXMLNode& element) const;
    [[nodiscard]] MSPDIExtent openExtentOf(const MSPCXMLNode& element);
    // Behind the start tag of an element, which is closed by an end tag from then on.
    [[nodiscard]] std::size_t contentBeginOf(const MSPCXMLNode& element);
    // The first child in the plan's bytes that begins at an offset or behind it; none in an element that was opened.
    [[nodiscard]] std::optional<MSPDIChildMarkup> childFrom(const MSPCXMLNode& parent, std::size_t offset) const;
    [[nodiscard]] std::string blanksBefore(std::size_t offset) const;
    [[nodiscard]] std::size_t endOfLast(const MSPCXMLNode& parent);
    MSPCXMLNode putIn(MSPCXMLNode parent, std::size_t place, const MSPCXMLNode& sibling, std::string_view markup);
    MSPCXMLNode putIntoNew(MSPCXMLNode parent, const Inserted& holder, std::string_view markup);

    MSPCXMLWithBytes _loaded;
    MSPIPlan _plan;
    std::string& _utf8;
    const MSPDIMendOptions& _options;
    MSPDIEdits _edits;
    std::set<MSPCXMLNode> _opened;                 // that were closed in themselves
    std::map<MSPCXMLNode, std::size_t> _replaced;  // the edits of texts that were replaced
    std::map<MSPCXMLNode, Inserted> _inserted;
    std::map<MSPCXMLNode, std::string> _indentations;
    std::vector<MSPCXMLNewElement> _removed;
    std::vector<MSPDIMendDone> _done;
    std::vector<MSPDIMendLeft> _left;
};
