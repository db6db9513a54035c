#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCXMLNode.h"

// The tasks mapped so far, for finding the parent of the next one by outline level.
//
// A parent is the newest task before it whose level is lower. Level and kind of a candidate are those of the MSPDI task
// recorded last under the candidate's id: of two tasks with one id the later one counts for both. The older of the two
// can therefore be left out: it qualifies only where the newer one, which is nearer, does too. Each look-up takes time
// logarithmic in the number of tasks.
class MSPITaskTree {
public:
    // A mapped task as the tree keeps it.
    struct Entry {
        MSPCXMLNode mspTask;
        MSPCXMLNode kdzxTask;
        MSPCXMLNode kdzxType;  // its `type` element; empty where it has none
        std::int64_t outlineLevel = 0;
        bool isSummary = false;
    };

    // With `onlySummaryParents` tasks that are no Summary tasks are passed over as parents. At most `capacity` tasks
    // can be recorded.
    MSPITaskTree(std::size_t capacity, bool onlySummaryParents);

    // Raises `MSPCInternalInconsistency` "MSPDI Summary Task must be mapped to KDZX Group Task." unless the `type` of a
    // freshly mapped task is "group" exactly where the task comes from a Summary task.
    static void checkType(const MSPCXMLNode& kdzxType, bool isSummary);

    // Records the newest task under its target id.
    void record(const std::string& kdzxId, const Entry& entry);
    // Whether tasks of a level are below the group of all tasks itself, whatever stands before them.
    [[nodiscard]] static bool isTopLevel(std::int64_t outlineLevel) { return outlineLevel == 1; }
    // The parent of the task recorded last, whose level is given; none when no task qualifies.
    [[nodiscard]] std::optional<Entry> parentForLevel(std::int64_t outlineLevel) const;

    // The target task of a parent, as a group that can take children: with `onlySummaryParents` it must be one already,
    // otherwise its type becomes "group". Raises `MSPCInternalInconsistency`
    // "Failed to find msp 'Task' for given kdzx 'Task' in dictionary.",
    // "Candidate for parent group must be a Summary Task in MSPDI.", "Parent task was not assigned a type.",
    // "Candidate for parent group must be a Group Task in KDZX.".
    [[nodiscard]] MSPCXMLNode groupOfParent(const Entry& parent) const;

private:
    static constexpr std::int64_t NoCandidate = std::numeric_limits<std::int64_t>::max();

    void setLevel(std::size_t position, std::int64_t level);

    bool _onlySummaryParents;
    std::size_t _leafCount;             // a power of two
    std::vector<std::int64_t> _lowest;  // tree of minima over the candidates' levels; leaves from _leafCount on
    std::vector<Entry> _entries;
    // Of the newest entry of each id. Ids can be chosen so that hashes of them are all equal.
    std::map<std::string, std::size_t> _positions;
};
