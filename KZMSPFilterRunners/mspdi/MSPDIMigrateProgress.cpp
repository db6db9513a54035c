#include "MSPDIMigrateProgress.h"

#include <fmt/format.h>

#include <cmath>
#include <utility>

#include "MSPDIRun.h"

namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;

std::string timeLeft(double seconds) {
    constexpr int minute = 60;
    constexpr int hour = 60 * minute;
    const auto whole = std::llround(seconds);
    if (whole >= hour) {
        return fmt::format("{} h {} min", whole / hour, whole % hour / minute);
    }
    return whole >= 2 * minute ? fmt::format("{} min", whole / minute) : fmt::format("{} s", whole);
}

}  // namespace

MSPDIMigrateProgress::MSPDIMigrateProgress(MSPDIRun& run, Clock now) : _run(run), _now(std::move(now)), _since(_now()) {
    _next = _since + (_run.showStatus ? milliseconds(500) : std::chrono::minutes(1));
}

std::string MSPDIMigrateProgress::line(const MSPDIMigrationProgress& progress, milliseconds time) {
    auto text = fmt::format("{} of {} plans done, {} failed", progress.done, progress.all, progress.failed);
    if (progress.done == 0 || time.count() <= 0) {
        return text;
    }
    const auto seconds = std::chrono::duration<double>(time).count();
    const auto rate = static_cast<double>(progress.done) / seconds;
    text += rate >= 10 ? fmt::format(", {:.0f} a second", rate) : fmt::format(", {:.0f} a minute", rate * 60);
    return progress.done == progress.all
               ? text
               : text + ", " + timeLeft(static_cast<double>(progress.all - progress.done) / rate) + " left";
}

void MSPDIMigrateProgress::tell(const MSPDIMigrationProgress& progress) {
    const auto now = _now();
    if (_run.isQuiet || now < _next) {
        return;
    }
    const auto text = line(progress, duration_cast<milliseconds>(now - _since));
    if (_run.showStatus) {
        _run.showStatus(text);
        _next = now + milliseconds(200);
    } else {
        _run.err << "mspdi: " << text << '\n';
        _run.err.flush();
        _next = now + std::chrono::minutes(1);
    }
}

void MSPDIMigrateProgress::finish() {
    if (_run.showStatus) {
        _run.showStatus({});
    }
}
