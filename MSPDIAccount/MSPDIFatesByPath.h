#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "MSPDIFate.h"

class MSPDIElementTree;

// A step on the path to a leaf: an element, and its place among those of its name.
struct MSPDIPathStep {
    const MSPDIElementTree* known = nullptr;  // what the table knows there; the root of the tree is the project
    std::string_view name;                    // without prefix; that of the table counts where there is one
    std::size_t number = 1;
};

// A name as paths have it: bytes that are no UTF-8, which only broken markup has in a name, as escapes, since one
// character for all of them would make two paths alike.
[[nodiscard]] std::string MSPDINameInPath(std::string_view name);

// Is shown the fates of all leaves in the order in which they were told.
class MSPDIFateReader {
public:
    virtual ~MSPDIFateReader() = default;
    // The leaves that follow stand right below this path, with its "/" at the end.
    virtual void below(std::string_view path) = 0;
    // The rest of the path of a leaf: "Name[1]". `line` says which element of the table it is that is the first of its
    // name, so that the step is always the same, and there are but letters and digits in its name; none for others.
    virtual void leaf(std::string_view step, std::optional<std::size_t> line, MSPDIFate fate) = 0;
};

// The fates of all leaves by their paths, as the plan is gone through. There may be millions: a leaf that the table
// knows takes two bytes.
class MSPDIFatesByPath {
public:
    // What follows stands within this element, until it is left.
    void enter(const MSPDIPathStep& step);
    void leave();
    void add(const MSPDIPathStep& leaf, MSPDIFate fate);
    // Many leaves of one element at once, each of which was put behind the others by `put`.
    void addAll(std::string_view leaves);
    // Gives the end of what was put there, at most so many bytes.
    static char* put(const MSPDIElementTree& known, std::size_t number, MSPDIFate fate, char* at);
    static constexpr std::size_t LongestPut = 20;
    void clear();
    void read(MSPDIFateReader& reader) const;
    void forEach(const std::function<void(const std::string& path, MSPDIFate fate)>& visit) const;

private:
    void addStep(const MSPDIPathStep& step, std::size_t what);
    void addUnknown(const MSPDIPathStep& step, std::size_t what);
    [[nodiscard]] std::string& roomFor(std::size_t size);

    std::deque<std::string> _pieces;  // which grow without being copied
};
