#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "KZDXScenario.h"

// One thing that leads to another one: a group to its child, a task to the one that it waits for.
struct KZDXEdge {
    std::size_t from = 0;
    std::size_t to = 0;
    const KZDXReference* link = nullptr;  // the element that says so; none where nothing says it for itself
    bool isOfOutline = false;             // from a group to a child or back, where that is told from links
};

// A way along edges that ends where it began.
struct KZDXCircle {
    const KZDXReference* link = nullptr;  // the last one that says so; none where none does
    std::vector<std::size_t> places;      // the first few on the way, from where the circle is closed
    std::size_t length = 0;               // of all of them
    bool usesOutline = false;             // whether an edge of the outline is among them
};

// Calls `tell` for every edge that closes a circle. The places are those from 0 to `count` - 1; each is gone through
// once, without recursion, so that neither long ways nor many circles cost more than there are edges.
void KZDXForEachCircle(std::vector<KZDXEdge> edges, std::size_t count,
                       const std::function<void(const KZDXCircle&)>& tell);
