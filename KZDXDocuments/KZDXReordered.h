#pragma once

#include <vector>

#include "KZDXMatch.h"

// Which items of the new outline have another place among those that are in the same group as before: as few as
// possible, so that of a group in which one task was moved only that one counts.
[[nodiscard]] std::vector<bool> KZDXReordered(const KZDXOutline& old, const KZDXOutline& now, const KZDXMatch& match);
