#include "MSPITimephasedSpans.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "MSPCException.h"

namespace {

// A span into which others are merged. The working time of what overlaps is counted once, when nothing more comes:
// counted anew for each of many spans it would be walked as often as there are spans.
class MergedSpan {
public:
    explicit MergedSpan(MSPITimephasedDataInfo first) : _span(std::move(first)) {}

    [[nodiscard]] MSPCInstant endDate() const { return *_span.endDate(); }

    void merge(const MSPITimephasedDataInfo& span) {
        if (*_span.startDate() > *span.startDate()) {
            throw MSPCInternalInconsistency("Unexpected order of time span start dates.");
        }
        if (endDate() > *span.startDate()) {
            _overlapEnd = span.endDate();
            _touchingDuration = 0;
        } else if (endDate() == *span.startDate()) {
            _touchingDuration += span.duration();
        } else {
            throw MSPCInternalInconsistency("Unexpected order of time span dates.");
        }
        _span.setEndDate(span.endDate());
    }

    [[nodiscard]] MSPITimephasedDataInfo finished(const MSPIWorkingTime& workingTime) && {
        const auto ownDuration = _overlapEnd ? workingTime(*_span.startDate(), *_overlapEnd) : _span.duration();
        _span.setDuration(ownDuration + _touchingDuration);
        return std::move(_span);
    }

private:
    MSPITimephasedDataInfo _span;
    std::optional<MSPCInstant> _overlapEnd;  // of the span merged last that overlapped
    MSPCTimeInterval _touchingDuration = 0;  // of those that touched since then
};

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
    MSPITimephasedSpans finished;
    std::optional<MergedSpan> latest;
    const auto finishLatest = [&] {
        if (latest) {
            finished.push_back(std::move(*latest).finished(workingTime));
        }
    };
    for (auto& span : sortedSpans) {
        if (span.duration() == 0) {
            continue;
        }
        if (latest && !(latest->endDate() < *span.startDate())) {
            latest->merge(span);
        } else if (span.duration() > 0) {
            finishLatest();
            latest.emplace(std::move(span));
        }
    }
    finishLatest();
    return finished;
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
