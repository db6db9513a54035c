#include "MSPDIMachines.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <utility>

#include "MSPCChildProgram.h"
#include "MSPCFileSystem.h"
#include "MSPCPath.h"
#include "MSPCRandomSource.h"
#include "MSPCRemoval.h"
#include "MSPDIShellWord.h"

namespace {

using Pipe = MSPCChildProgram::Pipe;

constexpr std::chrono::milliseconds pauseLength{200};
constexpr int mostFailures = 3;
// What shells, ssh and GNU parallel end with.
constexpr int cannotRun = 126;
constexpr int notFound = 127;
constexpr int ofSignals = 128;
constexpr int ofConnection = 255;
constexpr int mostFailedJobs = 101;

// What a machine runs, made of words that nothing expands: the program, or the one in its PATH, in the time zone of
// this machine. In one line, as GNU parallel tells of it in one.
constexpr const char* script =
    R"sh(text() { printf -- "$(printf %s "$1" | tr % "\\\\")"; }; program=$(text "$1"); )sh"
    R"sh([ -x "$program" ] || program=mspdi; TZ=$(text "$2"); export TZ; exec "$program" migrate-chunk "$3" "$4")sh";

std::vector<std::string> split(const std::string& text, char separator, std::size_t most) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (parts.size() + 1 < most) {
        const auto end = text.find(separator, start);
        if (end == std::string::npos) {
            break;
        }
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    parts.push_back(text.substr(start));
    return parts;
}

template <typename Number>
std::optional<Number> numberFrom(const std::string& text) {
    Number number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() && result.ptr == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

std::string environment(const char* name) {
    const auto* value = std::getenv(name);
    return value != nullptr ? value : "";
}

// What TZ says here in words that mean the same elsewhere: a link into the database of time zones is this machine's
// own.
std::string timeZone(const MSPCFileSystem& fileSystem) {
    const auto setting = environment("TZ");
    const auto file = setting.starts_with(":/") ? fileSystem.resolvedPath(setting.substr(1)) : "";
    return file.empty() ? setting : ":" + file;
}

// The log-in shell may be none that runs commands, as for the accounts of services, which may have no PATH either: GNU
// parallel finds nothing that it needs then. The folder for temporary files gets into commands that it makes up. A
// locale that is not there is no reason for a word. A machine whose power is gone is told by silence only.
std::map<std::string, std::string> environmentOfParallel(const MSPCFileSystem& fileSystem) {
    std::map<std::string, std::string> variables{{"PARALLEL_SHELL", "/bin/sh"}, {"PERL_BADLANG", "0"}};
    if (environment("PATH").empty()) {
        variables["PATH"] = "/usr/local/bin:/usr/bin:/bin";
    }
    const auto folder = environment("TMPDIR");
    if (!folder.starts_with('/') || MSPDIShellWordOf(folder) != folder || !fileSystem.isDirectory(folder)) {
        variables["TMPDIR"] = "/tmp";
    }
    if (environment("PARALLEL_SSH").empty()) {
        variables["PARALLEL_SSH"] = "ssh -o ServerAliveInterval=15 -o ServerAliveCountMax=4";
    }
    return variables;
}

// Each machine gets several chunks, so that none waits long for the others at the end; and each chunk has enough plans
// for all processors of a machine, and for a log-in to be worth it.
std::size_t plansOfChunk(std::size_t plans, std::size_t machines) {
    constexpr std::size_t fewest = 16;
    constexpr std::size_t most = 100;
    constexpr std::size_t turns = 4;
    const auto share = (plans + machines - 1) / machines;
    return std::min(share, std::clamp(share / turns, fewest, most));
}

std::string_view inWords(std::string_view machine) {
    return machine == ":" ? "this machine" : machine;
}

// GNU parallel tells of its own doings in such lines.
bool isOfParallel(const std::string& line) {
    return line.starts_with("parallel: ") || line.empty();
}

}  // namespace

MSPDIMachines::MSPDIMachines(const MSPCServices& services, MSPDIMachinesOptions options, std::string outputFolder,
                             Place place)
    : _services(services),
      _options(std::move(options)),
      _place(std::move(place)),
      _run(fmt::format("{:016x}", _services.randomSource.draw64Bits().value_or(0))) {
    _options.chunk.outputFolder = std::move(outputFolder);
}

std::optional<std::string> MSPDIMachines::obstacle() {
    std::string failure;
    const auto parallel = MSPCChildProgram::start({{"parallel", "--version"}, {}, {}}, failure);
    if (!parallel) {
        return "GNU parallel cannot be started: " + failure;
    }
    bool isGNU = false;
    const auto take = [&isGNU](Pipe pipe, const std::string& line) {
        isGNU = isGNU || (pipe == Pipe::Output && line.starts_with("GNU parallel "));
    };
    while (parallel->takeLines(pauseLength, take)) {
    }
    if (isGNU) {
        return std::nullopt;
    }
    return parallel->status() == notFound
               ? "--machines needs GNU parallel, which is not installed: apt-get install parallel"
               : "--machines needs GNU parallel, and \"parallel\" is another program here: apt-get install parallel";
}

// A number of processors before a name, "4/host", is what --jobs is for here. What begins with a hyphen would be an
// option of ssh.
std::optional<std::vector<std::string>> MSPDIMachines::namesIn(const std::string& list) {
    std::vector<std::string> names;
    for (auto& name : split(list, ',', list.size() + 1)) {
        const auto end = name.find_first_not_of("0123456789");
        if (end != std::string::npos && end > 0 && name[end] == '/') {
            name.erase(0, end + 1);
        }
        const bool isPlain = std::ranges::none_of(name, [](unsigned char c) { return c < ' ' || c == 0x7F; });
        if (name.empty() || name.starts_with('-') || name.starts_with(' ') || !isPlain) {
            return std::nullopt;
        }
        if (std::ranges::find(names, name) == names.end()) {
            names.push_back(std::move(name));
        }
    }
    return names;
}

std::optional<std::string> MSPDIMachines::run(std::size_t count, const NextPlan& next, const Take& take,
                                              const std::function<void()>& pause) {
    addAll(count, next);
    while (!_chunks.empty() && !_options.names.empty() && !_failure) {
        _failure = handOut(take, pause);
        std::erase_if(_chunks, [](const Chunk& chunk) { return chunk.plans.empty(); });
        judge();
        if (!_failure && !_options.names.empty()) {
            const auto failed = std::exchange(_chunks, {});
            addAgain(failed, false);
            addAgain(failed, true);  // what may have been to blame comes last
        }
    }
    if (!_chunks.empty() && !_failure) {
        _failure = giveUp(take);
    }
    clearAway();
    return _failure;
}

void MSPDIMachines::add(MSPDIMachineChunk content) {
    Chunk chunk;
    chunk.name = fmt::format("{}-{}", _run, ++_number);
    for (const auto& plan : content.plans) {
        chunk.plans.push_back(plan.number);
    }
    const auto path = pathByAppendingComponent(_place.folder, chunk.name);
    const auto failure = _services.fileSystem.writeAtomically(
        path, [&content](MSPCByteWriter& writer) { writer.write(MSPDITextOf(content)); });
    if (failure) {
        _failure = fmt::format("{}: {}", path, *failure);
    }
    _chunks.push_back(std::move(chunk));
}

void MSPDIMachines::addAll(std::size_t count, const NextPlan& next) {
    const auto size = plansOfChunk(count, _options.names.size());
    auto content = _options.chunk;
    while (auto plan = _failure ? std::nullopt : next()) {
        content.plans.push_back({_plans++, std::move(*plan)});
        if (content.plans.size() >= size) {
            add(std::exchange(content, _options.chunk));
        }
    }
    if (!content.plans.empty()) {
        add(std::move(content));
    }
}

// Chunks get new names, so that what may live on of the old ones is nobody's any more.
void MSPDIMachines::addAgain(const std::vector<Chunk>& failed, bool thatHaveBegun) {
    for (const auto& chunk : failed) {
        if (chunk.hasBegun != thatHaveBegun || _failure) {
            continue;
        }
        if (auto content = contentOf(chunk)) {
            add(std::move(*content));
            MSPCRemoveItem(_place.openFolder, chunk.name.c_str());
        }
    }
}

// The plans of a chunk that have no record yet.
std::optional<MSPDIMachineChunk> MSPDIMachines::contentOf(const Chunk& chunk) {
    const auto path = pathByAppendingComponent(_place.folder, chunk.name);
    const auto text = _services.fileSystem.readFile(path);
    auto content = text ? MSPDIChunkFrom(*text) : std::nullopt;
    if (!content) {
        _failure = path + ": it cannot be read any more";
        return std::nullopt;
    }
    std::erase_if(content->plans,
                  [&chunk](const auto& plan) { return !std::ranges::binary_search(chunk.plans, plan.number); });
    return content;
}

std::vector<std::string> MSPDIMachines::command() const {
    std::vector<std::string> words = {"parallel", "--will-cite",   "--plain",  "--jobs",
                                      "1",        "--line-buffer", "--joblog", MSPCChildProgram::NotesPath};
    for (const auto& name : _options.names) {
        words.push_back("--sshlogin=" + name);
    }
    for (const auto* const word : {"--quote", "sh", "-c", script, "-"}) {
        words.emplace_back(word);
    }
    for (const auto& text : {_options.program, timeZone(_services.fileSystem), _place.folder}) {
        words.push_back(MSPDIShellWordOf(text));
    }
    return words;  // and the name of a chunk
}

std::optional<std::string> MSPDIMachines::handOut(const Take& take, const std::function<void()>& pause) {
    std::string names;
    for (const auto& chunk : _chunks) {
        names += chunk.name + '\n';
    }
    std::string failure;
    const auto parallel =
        MSPCChildProgram::start({command(), names, environmentOfParallel(_services.fileSystem), _place.lock}, failure);
    if (!parallel) {
        return "GNU parallel cannot be started: " + failure;
    }
    _isToEnd = false;
    const auto takeLine = [&](Pipe pipe, const std::string& line) {
        if (pipe == Pipe::Output) {
            takeAnswer(line, take);
        } else if (pipe == Pipe::Notes) {
            takeEnd(line, *parallel);
        } else {
            tellOnce(line);
        }
    };
    while (parallel->takeLines(pauseLength, takeLine)) {
        if (_failure) {
            return _failure;
        }
        pause();
    }
    pause();
    const bool hasAnyEnded = std::ranges::any_of(_chunks, [](const Chunk& chunk) { return !chunk.machine.empty(); });
    // Asked to end at its very end, it ends by that signal.
    if (_failure || _isToEnd || (parallel->status() <= mostFailedJobs && hasAnyEnded)) {
        return _failure;
    }
    return fmt::format("GNU parallel was ended (exit status {}){}; the same command goes on where it was",
                       parallel->status(), _lastError.empty() ? "" : ": " + _lastError);
}

// Chunks of this round by their names; a null pointer for others.
MSPDIMachines::Chunk* MSPDIMachines::chunkNamed(const std::string& name) {
    const auto number = numberFrom<std::size_t>(name.substr(name.rfind('-') + 1));
    const auto first = _number - _chunks.size() + 1;
    const bool isAny = number && *number >= first && *number <= _number;
    auto* const chunk = isAny ? &_chunks[*number - first] : nullptr;
    return chunk != nullptr && chunk->name == name ? chunk : nullptr;
}

// What a log-in says before the worker does, and what is no answer, is left aside.
void MSPDIMachines::takeAnswer(const std::string& line, const Take& take) {
    const auto parts = split(line, '\t', 3);
    auto* const chunk = chunkNamed(parts[0]);
    if (chunk == nullptr || parts.size() < 2 || _failure) {
        return;
    }
    if (parts.size() == 2) {
        chunk->hasBegun = chunk->hasBegun || parts[1] == "begun";
        return;
    }
    if (parts[1] == "refused") {
        chunk->refusal = parts[2];
        return;
    }
    const auto number = numberFrom<std::size_t>(parts[1]).value_or(_plans);
    const auto plan = std::ranges::lower_bound(chunk->plans, number);
    auto record = MSPDIRecordFrom(parts[2], _options.chunk.outputFolder);
    if (record && plan != chunk->plans.end() && *plan == number) {
        chunk->plans.erase(plan);
        chunk->hasAnswered = true;
        _begun.erase(number);
        _failure = take(std::move(*record), fmt::format("{}-{}", chunk->name, number));
    }
}

// A line of GNU parallel's log of jobs: number, machine, start, run time, bytes sent and received, exit status, signal,
// command. A machine that fails is asked no more in this round, lest it takes all chunks from the others.
void MSPDIMachines::takeEnd(const std::string& line, MSPCChildProgram& parallel) {
    const auto fields = split(line, '\t', 9);
    const auto place = numberFrom<std::size_t>(fields[0]);
    if (fields.size() < 9 || !place || *place < 1 || *place > _chunks.size()) {
        return;
    }
    auto& chunk = _chunks[*place - 1];
    chunk.machine = fields[1];
    const auto signal = numberFrom<int>(fields[7]).value_or(0);
    chunk.status = signal != 0 ? ofSignals + signal : numberFrom<int>(fields[6]).value_or(ofConnection);
    if (chunk.status != 0 && !std::exchange(_isToEnd, true)) {
        parallel.hangUp();
    }
}

// What ssh and the programs on other machines say may be the only reason that there is.
void MSPDIMachines::tellOnce(const std::string& line) {
    _lastError = line;
    if (!isOfParallel(line) && _told.insert(line).second) {
        _options.tell("--machines", line);
    }
}

// Tells of the machines that have failed, and asks those no more which cannot do better.
void MSPDIMachines::judge() {
    std::set<std::string> told;
    for (const auto& chunk : _chunks) {
        if (chunk.machine.empty()) {
            continue;
        }
        const auto what = whatBecameOf(chunk);
        if (chunk.hasBegun) {
            for (const auto number : chunk.plans) {
                _begun[number] = fmt::format("{}: {}", inWords(chunk.machine), what);
            }
        }
        if (told.insert(chunk.machine).second) {
            const bool isIn = mayTryAgain(chunk);
            if (!isIn && std::erase(_options.names, chunk.machine) == 0) {
                _failure = "GNU parallel tells of a machine that it was not given: " + chunk.machine;
            }
            const auto* const then = isIn ? "; it is tried again" : _options.names.empty() ? "" : "; it is left out";
            _options.tell(std::string(inWords(chunk.machine)), what + then);
        }
    }
    if (told.empty() && !_failure && !_chunks.empty() && !_isToEnd) {
        _failure = "GNU parallel ended before it had handed out all plans";
    }
}

// Not where it took no part at all, unless its work was killed.
bool MSPDIMachines::mayTryAgain(const Chunk& chunk) {
    const bool wasKilled = chunk.status > ofSignals && chunk.status != ofConnection;
    return ++_failures[chunk.machine] < mostFailures && chunk.refusal.empty() && (chunk.hasAnswered || wasKilled);
}

std::string MSPDIMachines::whatBecameOf(const Chunk& chunk) const {
    if (!chunk.refusal.empty()) {
        return chunk.refusal;
    }
    if (chunk.status == notFound || chunk.status == cannotRun) {
        return fmt::format("mspdi is not installed there; install {} where the PATH of a log-in leads",
                           _options.chunk.version);
    }
    if (chunk.status == ofConnection) {
        return fmt::format("no connection, or it was lost; see what this says: ssh {} mspdi --version", chunk.machine);
    }
    if (chunk.status > ofSignals) {
        return fmt::format("its work was ended by signal {}", chunk.status - ofSignals);
    }
    if (!chunk.hasBegun && chunk.status != 0) {
        return fmt::format("its mspdi cannot take part (exit status {}); install {} there", chunk.status,
                           _options.chunk.version);
    }
    return fmt::format("it ended without an answer for {} plans (exit status {})", chunk.plans.size(), chunk.status);
}

// Plans that a machine had begun on are told as failed, for they may be to blame; the others are as they were.
std::optional<std::string> MSPDIMachines::giveUp(const Take& take) {
    std::size_t others = 0;
    for (const auto& chunk : _chunks) {
        const auto content = contentOf(chunk);
        if (!content) {
            return _failure;
        }
        for (const auto& [number, plan] : content->plans) {
            const auto begun = _begun.find(number);
            if (begun == _begun.end()) {
                ++others;
                continue;
            }
            auto record = MSPDIMigrationJob::unanswered(plan, {}, {});
            record.reason = begun->second;
            if (auto failure = take(std::move(record), fmt::format("{}-{}", chunk.name, number))) {
                return failure;
            }
        }
    }
    return others == 0 ? std::nullopt
                       : std::optional(fmt::format(
                             "no machine is left for {} plans; the same command goes on with them", others));
}

// Where somebody on another machine still works in it something may be left, for the next run to take away.
void MSPDIMachines::clearAway() {
    for (const auto& name : _services.fileSystem.namesIn(_place.folder).value_or(std::vector<std::string>())) {
        if (name.starts_with(_run)) {
            MSPCRemoveItem(_place.openFolder, name.c_str());
        }
    }
}
