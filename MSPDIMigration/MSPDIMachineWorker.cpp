#include "MSPDIMachineWorker.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <ostream>
#include <utility>

#include "MSPCChildProgram.h"
#include "MSPCFileSystem.h"
#include "MSPCLog.h"
#include "MSPCPath.h"
#include "MSPCStandardTimeClock.h"
#include "MSPDIMachineChunk.h"
#include "MSPDIMigrationJob.h"

namespace {

// Raised when nobody waits for the chunk any more.
struct NobodyWaits {};

// Whether somebody still waits for the answers. GNU parallel ends its jobs on other machines when it ends; one on its
// own machine has to look for itself.
class Waiting {
public:
    Waiting(const MSPCFileSystem& fileSystem, std::string chunk) : _fileSystem(fileSystem), _chunk(std::move(chunk)) {
        const std::string_view machine = variable("PARALLEL_SSHLOGIN");
        const auto number = machine == ":" ? variable("PARALLEL_PID") : std::string_view();
        std::from_chars(number.data(), number.data() + number.size(), _parallel);
    }

    void look() {
        const auto now = std::chrono::steady_clock::now();
        if (_parallel > 0 && !MSPCChildProgram::isAlive(_parallel)) {
            throw NobodyWaits();
        }
        if (now >= _next) {
            _next = now + std::chrono::seconds(1);
            if (!_fileSystem.exists(_chunk)) {
                throw NobodyWaits();
            }
        }
    }

private:
    static std::string_view variable(const char* name) {
        const auto* value = std::getenv(name);
        return value != nullptr ? value : "";
    }

    const MSPCFileSystem& _fileSystem;
    std::string _chunk;
    int _parallel = 0;
    std::chrono::steady_clock::time_point _next;
};

}  // namespace

MSPDIMachineWorker::MSPDIMachineWorker(const MSPCServices& services, Installation installation, std::ostream& out)
    : _services(services), _installation(std::move(installation)), _out(out) {
}

bool MSPDIMachineWorker::work(const std::string& folder, const std::string& chunk) {
    _folder = folder;
    _name = chunk;
    const auto text = _services.fileSystem.readFile(pathByAppendingComponent(folder, chunk));
    if (!text) {
        return refuse(
            fmt::format("the folder {} cannot be read there; all machines have to see it, and the plans, at "
                        "the same place",
                        folder));
    }
    auto todo = MSPDIChunkFrom(*text);
    if (todo && !todo->each.templateFolder && _services.fileSystem.isDirectory(_installation.templateFolder)) {
        todo->each.templateFolder = _installation.templateFolder;
    }
    if (const auto why = obstacle(*text, todo.value_or(MSPDIMachineChunk())); !why.empty()) {
        return refuse(why);
    }
    tell("begun");
    return importPlans(*todo);
}

std::string MSPDIMachineWorker::obstacle(const std::string& text, const MSPDIMachineChunk& chunk) const {
    if (const auto version = MSPDIVersionOfChunk(text); version != _installation.version) {
        return fmt::format("{} is installed there, and {} here; install the same", _installation.version, version);
    }
    if (chunk.plans.empty()) {
        return fmt::format("what it has to do cannot be read in {}", _folder);
    }
    if (chunk.zone != MSPDIOffsetsOf(_services.timeZone)) {
        return fmt::format(
            "its time zone would be {}, which is not the one here; install tzdata there, or set TZ here to a zone that "
            "both know",
            _services.timeZone.name());
    }
    auto options = chunk.each;
    options.outputFolder = _folder;
    return MSPDIPlanImporter(_services, options).obstacle().value_or("");
}

bool MSPDIMachineWorker::refuse(const std::string& why) {
    auto line = why;
    std::ranges::replace(line, '\n', ' ');
    tell("refused", line);
    return false;
}

void MSPDIMachineWorker::tell(const std::string& what, const std::string& more) {
    _out << _name << '\t' << what << (more.empty() ? "" : "\t") << more << '\n';
    _out.flush();
}

bool MSPDIMachineWorker::importPlans(const MSPDIMachineChunk& chunk) {
    const MSPCStandardTimeClock winter(_services.clock, _services.timeZone);
    MSPCNoLog noLog;
    const MSPCServices services{_services.clock,
                                _services.timeZone,
                                noLog,
                                _services.userDefaults,
                                _services.fileSystem,
                                _services.randomSource,
                                MSPCNoProgress(),
                                chunk.isAsInWinter ? winter : _services.seasonClock};
    MSPDIMigrationJob job(services, chunk.each, chunk.outputFolder, _folder);
    const auto bounds = chunk.bounds.boundsHere();
    const auto planAt = [&chunk](const std::string& place) -> const auto& {
        return chunk.plans[std::strtoull(place.c_str(), nullptr, 10)];
    };
    const auto import = [&](const std::string& place, std::size_t) {
        const auto& todo = planAt(place);
        const auto work = pathByAppendingComponent(_folder, fmt::format("{}-{}", _name, todo.number));
        return MSPDILineOf(job.make(todo.plan, work), chunk.outputFolder);
    };
    MSPCWorkers workers(std::min(chunk.bounds.processesHere(), chunk.plans.size()), bounds, import);
    std::size_t next = 0;
    const auto give = [&] { return next < chunk.plans.size() ? std::optional(std::to_string(next++)) : std::nullopt; };
    const auto take = [&](const std::string& place, const MSPCJobEnd& end) {
        const auto& todo = planAt(place);
        const auto line = [&] {
            return MSPDILineOf(MSPDIMigrationJob::unanswered(todo.plan, end, bounds), chunk.outputFolder);
        };
        tell(std::to_string(todo.number), end.kind == MSPCJobEnd::Kind::Done ? end.result : line());
    };
    Waiting waiting(_services.fileSystem, pathByAppendingComponent(_folder, _name));
    try {
        return !workers.run(give, take, [&waiting] { waiting.look(); });
    } catch (const NobodyWaits&) {
        return false;
    }
}
