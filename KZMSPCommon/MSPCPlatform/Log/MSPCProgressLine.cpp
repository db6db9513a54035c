#include "MSPCProgressLine.h"

#include <fmt/format.h>

#include <algorithm>
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

std::size_t percentOf(std::size_t done, std::size_t all) {
    return all == 0 ? 100 : std::min(done, all) * 100 / all;
}

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

void MSPCProgressLine::begin() {
    if (_isPossible && !std::exchange(_hasBegun, true)) {
        _nextTime = _now() + delay;
    }
}

bool MSPCProgressLine::isDue() {
    const auto now = _now();
    if (now < _nextTime) {
        return false;
    }
    _nextTime = now + interval;
    return true;
}

void MSPCProgressLine::show(const std::string& text) {
    _isShown = true;
    _log.showStatus(text);
}

void MSPCProgressLine::bytesRead(std::string_view doing, std::size_t done, std::size_t all) {
    begin();
    if (_isPossible && isDue()) {
        constexpr std::size_t megabyte = 1'000'000;
        show(fmt::format("{}: {} of {} MB ({}%)", doing, done / megabyte, all / megabyte, percentOf(done, all)));
    }
}

void MSPCProgressLine::beginScenario(std::string_view name) {
    begin();
    _scenario = name;
}

void MSPCProgressLine::tasksDone(std::size_t done, std::size_t all) {
    // The last task counts in any case: the line would else stay short of 100% while the scenario is written.
    const bool isLast = done == all && _isShown;
    if (!_isPossible || (done % stride != 0 && !isLast)) {
        return;
    }
    if (isDue() || isLast) {
        show(fmt::format("{}: {} of {} tasks ({}%)", _scenario, done, all, percentOf(done, all)));
    }
}

void MSPCProgressLine::endImport() {
    _scenario.clear();
    _hasBegun = false;
    if (std::exchange(_isShown, false)) {
        _log.showStatus({});
    }
}
