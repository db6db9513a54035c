#pragma once

#include <functional>
#include <vector>

#include "MSPITimephasedDataInfo.h"

// How spans of timephased work become the stretches of a split task.

using MSPITimephasedSpans = std::vector<MSPITimephasedDataInfo>;
// Working seconds between two instants.
using MSPIWorkingTime = std::function<MSPCTimeInterval(MSPCInstant from, MSPCInstant to)>;

// Earlier starts first; of equal starts the later end first; spans with the same dates keep their order.
void sortSpans(MSPITimephasedSpans& spans);

// Merges spans that overlap or touch. The spans have both dates and are sorted; those of duration 0 are left out.
// Touching spans add their durations; the duration of overlapping ones is the working time of their union.
// Deliberate: a merged span ends where the span merged last ends, even if an earlier one ended later.
// Raises `MSPCInternalInconsistency` "Unexpected order of time span start dates." and "Unexpected order of time span
// dates.".
[[nodiscard]] MSPITimephasedSpans mergedSpans(MSPITimephasedSpans sortedSpans, const MSPIWorkingTime& workingTime);

// Joins neighbouring spans between which there is no working time. The spans are sorted and do not overlap. Raises
// `MSPCInternalInconsistency` with an empty reason for a span whose duration is not above 0, "Unexpected order of time
// chunk dates." and "Negative working time got for the time chunk.".
[[nodiscard]] MSPITimephasedSpans joinedStretches(const MSPITimephasedSpans& spans, const MSPIWorkingTime& workingTime);
