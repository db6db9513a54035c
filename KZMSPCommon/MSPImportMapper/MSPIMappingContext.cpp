#include "MSPIMappingContext.h"

#include <fmt/format.h>

MSPIMappingContext::MSPIMappingContext(MSPIPlan& plan, const MSPCServices& services)
    : _plan(plan), _services(services), _conversions(services), _index(plan.index(), MSPIUnchangedLists()) {
}

std::optional<MSPCInstant> MSPIMappingContext::instantOfProjectDate(std::string_view mspdiDate) {
    if (mspdiDate != _latestProjectDate) {
        _latestProjectInstant = _conversions.mspdiToMppDateTime(mspdiDate);
        _latestProjectDate = mspdiDate;
    }
    return _latestProjectInstant;
}

std::string MSPIMappingContext::getTempSplitTaskID() {
    return fmt::format("split-{}", ++_splitTaskID);
}
