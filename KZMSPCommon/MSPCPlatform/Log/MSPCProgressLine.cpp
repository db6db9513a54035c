#include "MSPCProgressLine.h"

#include <fmt/format.h>

#include <utility>

#include "MSPCLog.h"

namespace {

constexpr auto delay = std::chrono::milliseconds(500);
constexpr auto interval = std::chrono::milliseconds(100);
// Tasks between two looks at the clock.
constexpr std::size_t stride = 64;

class NoProgress final : public MSPCProgress {
public:
    void beginScenario(std::string_view /*name*/) override {}
    void tasksDone(std::size_t /*done*/, std::size_t /*all*/) override {}
    void endImport() override {}
};

bool canRewriteLines(const char* terminalType) {
    const std::string_view type = terminalType ? terminalType : "";
    return !type.empty() && type != "dumb";
}

}  // namespace

MSPCProgress& MSPCNoProgress() {
    static NoProgress progress;
    return progress;
}

MSPCProgressLine::MSPCProgressLine(MSPCStandardErrorLog& log, const char* terminalType, Clock now)
    : _log(log), _isPossible(log.isOnTerminal() && canRewriteLines(terminalType)), _now(std::move(now)) {
}

void MSPCProgressLine::beginScenario(std::string_view name) {
    if (_isPossible && _scenario.empty()) {
        _nextTime = _now() + delay;
    }
    _scenario = name;
}

void MSPCProgressLine::tasksDone(std::size_t done, std::size_t all) {
    // The last task counts in any case: the line would else stay short of 100% while the scenario is written.
    const bool isLast = done == all && _isShown;
    if (!_isPossible || (done % stride != 0 && !isLast)) {
        return;
    }
    const auto now = _now();
    if (now < _nextTime && !isLast) {
        return;
    }
    _nextTime = now + interval;
    _isShown = true;
    _log.showStatus(fmt::format("{}: {} of {} tasks ({}%)", _scenario, done, all, all == 0 ? 100 : done * 100 / all));
}

void MSPCProgressLine::endImport() {
    _scenario.clear();
    if (std::exchange(_isShown, false)) {
        _log.showStatus({});
    }
}
