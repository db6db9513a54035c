#include "MSPIBundleNaming.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "MSPCPath.h"

std::string MSPIScenarioName(std::optional<int> baselineNumber) {
    if (!baselineNumber) {
        return "Actual";
    }
    return *baselineNumber == 0 ? "Baseline" : fmt::format("Baseline{}", *baselineNumber);
}

std::string MSPIScenarioFileName(std::string_view scenarioName) {
    return pathByAppendingExtension(scenarioName, "xml");
}

MSPIBundleNaming::MSPIBundleNaming(std::string wantedPath)
    : _pathWithoutExtension(pathByDeletingExtension(wantedPath)),
      _extension(pathExtension(wantedPath)),
      _path(std::move(wantedPath)) {
}

void MSPIBundleNaming::advanceTo(std::uint64_t number) {
    _number = std::max(_number + 1, number);
    _path = pathByAppendingExtension(fmt::format("{}-{}", _pathWithoutExtension, _number), _extension);
}
