#include "MSPITimephasedSpans.h"

#include <algorithm>

#include "MSPCException.h"

namespace {

void mergeInto(MSPITimephasedDataInfo& kept, const MSPITimephasedDataInfo& span, const MSPIWorkingTime& workingTime) {
    if (*kept.startDate() > *span.startDate()) {
        throw MSPCInternalInconsistency("Unexpected order of time span start dates.");
    }
    const auto keptEnd = *kept.endDate();
    kept.setEndDate(span.endDate());
    if (keptEnd > *span.startDate()) {
        kept.setDuration(workingTime(*kept.startDate(), *kept.endDate()));
    } else if (keptEnd == *span.startDate()) {
        kept.setDuration(kept.duration() + span.duration());
    } else {
        throw MSPCInternalInconsistency("Unexpected order of time span dates.");
    }
}

MSPCTimeInterval checkedGap(const MSPITimephasedDataInfo& earlier, const MSPITimephasedDataInfo& later,
                            const MSPIWorkingTime& workingTime) {
    if (!(*earlier.endDate() < *later.startDate())) {
        throw MSPCInternalInconsistency("Unexpected order of time chunk dates.");
    }
    const auto gap = workingTime(*earlier.endDate(), *later.startDate());
    if (gap < 0) {
        throw MSPCInternalInconsistency("Negative working time got for the time chunk.");
    }
    return gap;
}

}  // namespace

void sortSpans(MSPITimephasedSpans& spans) {
    std::stable_sort(spans.begin(), spans.end(), [](const auto& a, const auto& b) {
        return a.startDate() != b.startDate() ? a.startDate() < b.startDate() : a.endDate() > b.endDate();
    });
}

MSPITimephasedSpans mergedSpans(MSPITimephasedSpans sortedSpans, const MSPIWorkingTime& workingTime) {
    MSPITimephasedSpans kept;
    for (auto& span : sortedSpans) {
        if (span.duration() == 0) {
            continue;
        }
        if (kept.empty() || *kept.back().endDate() < *span.startDate()) {
            if (span.duration() > 0) {
                kept.push_back(std::move(span));
            }
        } else {
            mergeInto(kept.back(), span, workingTime);
        }
    }
    return kept;
}

MSPITimephasedSpans joinedStretches(const MSPITimephasedSpans& spans, const MSPIWorkingTime& workingTime) {
    MSPITimephasedSpans stretches;
    for (std::size_t i = 0; i < spans.size(); ++i) {
        const auto& span = spans[i];
        if (!(span.duration() > 0)) {
            throw MSPCInternalInconsistency("");
        }
        if (i == 0 || checkedGap(spans[i - 1], span, workingTime) != 0) {
            stretches.push_back(span);
        } else {
            stretches.back().setEndDate(span.endDate());
            stretches.back().setDuration(stretches.back().duration() + span.duration());
        }
    }
    return stretches;
}
