#include "MSPIPlan.h"

#include <utility>

MSPIPlan::MSPIPlan(MSPCXMLLoaded loaded)
    : _document(std::move(loaded.document)), _deferred(std::move(loaded.deferred)), _index(_document.root()) {
}

const MSPIBaselineIndex& MSPIPlan::baselines() {
    if (!_baselines) {
        _baselines.emplace(_document, std::move(_deferred));
    }
    return *_baselines;
}
