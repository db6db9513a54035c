#pragma once

#include <deque>
#include <functional>
#include <string>
#include <string_view>

#include "MSPDIFate.h"

// The fates of all leaves by their paths, in the order in which they were told. Paths that follow each other begin
// alike: of each only what differs from the one before is kept, so that the fates of a plan take less memory than the
// plan.
class MSPDIFatesByPath {
public:
    void add(std::string_view path, MSPDIFate fate);
    void clear();
    // Whether all paths stand in JSON as they are; those of plans that anybody has saved do.
    [[nodiscard]] bool arePlain() const { return _arePlain; }
    void forEach(const std::function<void(std::string_view path, MSPDIFate fate)>& visit) const;

private:
    // Of each path how long that beginning is, how long the rest, the fate, and the rest. In pieces, which grow without
    // being copied.
    std::deque<std::string> _pieces;
    std::string _last;
    bool _arePlain = true;
};
