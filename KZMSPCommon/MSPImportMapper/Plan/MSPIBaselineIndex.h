#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory_resource>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCFields.h"
#include "MSPCXMLDeferredElements.h"
#include "MSPCXMLDocument.h"
#include "MSPCXMLNode.h"
#include "MSPIBaselineNumbers.h"
#include "MSPIProjectIndex.h"

// A child of a task, resource or assignment, and the text that it is to show for a baseline.
struct MSPIBaselineValue {
    MSPCXMLNode child;
    std::string_view text;
};

// What baselines have for the children of the elements they belong to. The texts are copies, laid out in the order in
// which they are shown: the baselines themselves are scattered over the whole document.
class MSPIBaselineValues {
public:
    // Appends the values of one baseline, and gives them: for each child of the element that is the last of its name,
    // the last value of that name. "Number" is none. Valid as long as this object.
    std::span<const MSPIBaselineValue> append(const MSPCFields& element, const MSPCXMLNode& baseline);

    // Whether any value that was ever appended is for a number by which elements are looked up ("UID", "TaskUID" …).
    [[nodiscard]] bool showUID() const { return _showUID; }

private:
    // A field of the element, and the last child of the baseline that bears its name.
    struct Shown {
        std::size_t field;
        MSPCXMLNode value;
    };

    [[nodiscard]] std::vector<MSPIBaselineValue>& blockWithRoomFor(std::size_t count);
    [[nodiscard]] std::string_view kept(std::string_view text);

    // None ever grows beyond its room, so that values stay in their places.
    std::deque<std::vector<MSPIBaselineValue>> _blocks;
    bool _showUID = false;
    std::pmr::monotonic_buffer_resource _texts;

    // For the baseline that is being appended: what it shows so far, and by field the position of the value in the last
    // block or None.
    static constexpr auto None = static_cast<std::size_t>(-1);
    std::vector<Shown> _shown;
    std::vector<std::size_t> _positionByField;
};

// How many tasks, resources and assignments carry data for one of MSPDI's baselines.
struct MSPIBaselineCounts {
    std::size_t tasks = 0;
    std::size_t resources = 0;
    std::size_t assignments = 0;

    [[nodiscard]] bool areZero() const { return tasks + resources + assignments == 0; }
    friend bool operator==(const MSPIBaselineCounts&, const MSPIBaselineCounts&) = default;
};

// Which elements of a project have data for which baseline, found in one walk over its lists with the meaning of
// "Tasks/Task[Baseline[Number=<n>]]" and its like. The handles stay valid as long as the project's document.
class MSPIBaselineIndex {
public:
    // An assignment, resource or task; `values` are what its `Baseline` child of the number asked for, the last of
    // several, has for the element's children.
    struct Target {
        MSPCXMLNode element;
        bool hasBaseline = false;
        std::span<const MSPIBaselineValue> values;
    };

    // Of the baselines that the document has in its tree, and of those that were deferred when it was loaded, which are
    // freed on the way.
    explicit MSPIBaselineIndex(const MSPCXMLDocument& mspDocument, MSPCXMLDeferredElements deferred = {});

    [[nodiscard]] const MSPIBaselineCounts& counts(std::int32_t number) const { return of(number).counts; }
    // Which lists have all their elements, under the numbers they were loaded with, while the baseline shows.
    [[nodiscard]] MSPIUnchangedLists unchangedLists(std::int32_t number) const;
    // All assignments, then all resources, then all tasks, in document order. Valid as long as this index.
    [[nodiscard]] std::vector<Target> targets(std::int32_t number) const;

private:
    struct Entry {
        std::size_t elementPosition;  // in _elements
        std::span<const MSPIBaselineValue> values;
    };
    struct OfNumber {
        MSPIBaselineCounts counts;
        std::vector<Entry> entries;  // in the order of _elements, at most one for each
        bool showsUID = false;       // or a number by which assignments are looked up
        // Of the entries, one after the other, but for those of baselines with several numbers, which the first has:
        // reading them while the index is made, all baselines of an element at once, spares a walk over the whole
        // document for each baseline.
        MSPIBaselineValues values;
    };

    void addList(const MSPCXMLNode& mspProject, MSPCXMLDeferredElements& deferred, const std::string& path,
                 std::size_t MSPIBaselineCounts::*count);
    // `firstBaseline` is that of the element added last; it need not stand in the element's own document.
    void addBaselines(const MSPCXMLNode& firstBaseline, const MSPCFields& element,
                      std::size_t MSPIBaselineCounts::*count);
    [[nodiscard]] const OfNumber& of(std::int32_t number) const {
        return _byNumber.at(static_cast<std::size_t>(number));
    }

    MSPIBaselineCounts _elementCounts;
    std::vector<MSPCXMLNode> _elements;
    std::array<OfNumber, MSPIBaselineCount> _byNumber;
};
