#include "MSPCWorkers.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <malloc.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <utility>

namespace {

constexpr std::chrono::milliseconds pauseLength{200};
// The exit status of a worker whose work raised something, or that could not write its result.
constexpr int failedStatus = 70;

// A text in a pipe: its size, and its bytes.
std::string framed(const std::string& text) {
    const std::uint64_t size = text.size();
    std::string frame(sizeof size, '\0');
    std::memcpy(frame.data(), &size, sizeof size);
    return frame += text;
}

// The text at the start of what came through a pipe, once it is there as a whole.
std::optional<std::string> textOf(const std::string& received) {
    std::uint64_t size = 0;
    if (received.size() < sizeof size) {
        return std::nullopt;
    }
    std::memcpy(&size, received.data(), sizeof size);
    return received.size() - sizeof size < size ? std::nullopt : std::optional(received.substr(sizeof size));
}

// What a pipe has at the moment, or the next that it gets; false at its end.
bool readMore(int pipe, std::string& received) {
    std::array<char, 16 * 1024> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init): it is filled
    ssize_t count = 0;
    do {
        count = ::read(pipe, buffer.data(), buffer.size());
    } while (count < 0 && errno == EINTR);
    if (count > 0) {
        received.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return count > 0;
}

struct Pipe {
    MSPCFileDescriptor out;
    MSPCFileDescriptor in;
};

std::optional<Pipe> openPipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return std::nullopt;
    }
    return Pipe{MSPCFileDescriptor(ends[0]), MSPCFileDescriptor(ends[1])};
}

// Signals take their normal course again: what they would write out and remove belongs to the parent. Those that are
// ignored stay so.
void takeUpSignals() {
    for (const int signal :
         {SIGHUP, SIGINT, SIGTERM, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGQUIT, SIGSEGV, SIGSYS, SIGXCPU}) {
        if (std::signal(signal, SIG_DFL) == SIG_IGN) {
            std::signal(signal, SIG_IGN);
        }
    }
}

void boundMemory([[maybe_unused]] std::size_t bytes) {
#if !defined(__SANITIZE_ADDRESS__)  // which reserves more from the start than any machine has
    if (bytes > 0) {
        const rlimit limit{bytes, bytes};
        ::setrlimit(RLIMIT_DATA, &limit);
    }
#endif
}

// What one job gives back the next one takes again. Giving it to the system in between costs small jobs a tenth of
// their time: every page of it comes back by a fault, and filled with zeros.
void keepFreedMemory() {
#if defined(__GLIBC__)
    constexpr int mostKept = 32 * 1024 * 1024;
    constexpr int largestInHeap = 4 * 1024 * 1024;
    ::mallopt(M_TRIM_THRESHOLD, mostKept);
    ::mallopt(M_MMAP_THRESHOLD, largestInHeap);
#endif
}

}  // namespace

MSPCWorkers::MSPCWorkers(std::size_t count, MSPCWorkerBounds bounds, Work work)
    : _bounds(bounds), _work(std::move(work)), _workers(std::max<std::size_t>(count, 1)) {
}

MSPCWorkers::~MSPCWorkers() {
    for (auto& worker : _workers) {
        if (worker.process > 0) {
            ::kill(worker.process, SIGKILL);
            static_cast<void>(reap(worker));
        }
    }
}

std::size_t MSPCWorkers::processors() {
    cpu_set_t set;
    CPU_ZERO(&set);
    if (::sched_getaffinity(0, sizeof set, &set) != 0) {
        return 1;
    }
    return static_cast<std::size_t>(std::max(CPU_COUNT(&set), 1));
}

std::size_t MSPCWorkers::memoryOfMachine() {
    const auto pages = ::sysconf(_SC_PHYS_PAGES);
    const auto size = ::sysconf(_SC_PAGESIZE);
    return pages > 0 && size > 0 ? static_cast<std::size_t>(pages) * static_cast<std::size_t>(size) : 0;
}

// 0, or the system's error number.
int MSPCWorkers::start(Worker& worker) {
    auto jobs = openPipe();
    auto results = jobs ? openPipe() : std::nullopt;
    if (!results) {
        return errno;
    }
    const auto parent = ::getpid();
    const auto process = ::fork();
    if (process < 0) {
        return errno;
    }
    if (process == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        takeUpSignals();
        if (::getppid() != parent) {
            ::_exit(failedStatus);  // it has ended meanwhile
        }
        // The ends of the other pipes would keep those from ending.
        for (auto& other : _workers) {
            other.jobs.close();
            other.results.close();
        }
        jobs->in.close();
        results->out.close();
        workInChild(jobs->out.number(), results->in.number(), numberOf(worker));
    }
    worker.process = process;
    worker.jobs = std::move(jobs->in);
    worker.results = std::move(results->out);
    return 0;
}

// Never comes back, so that nothing of the parent is undone here.
void MSPCWorkers::workInChild(int jobs, int results, std::size_t number) {
    boundMemory(_bounds.memory);
    keepFreedMemory();
    const MSPCFileDescriptor answers(results);
    try {
        std::string received;
        while (readMore(jobs, received)) {
            if (const auto job = textOf(received)) {
                received.clear();
                if (answers.write(framed(_work(*job, number))) != 0) {
                    break;
                }
            }
        }
    } catch (...) {
        ::_exit(failedStatus);
    }
    ::_exit(0);
}

std::size_t MSPCWorkers::numberOf(const Worker& worker) const {
    return static_cast<std::size_t>(&worker - _workers.data());
}

// Where that fails its process has ended, which its other pipe tells.
void MSPCWorkers::give(Worker& worker, std::string job) {
    worker.hasJob = worker.jobs.write(framed(job)) == 0;
    worker.job = std::move(job);
    worker.since = std::chrono::steady_clock::now();
    worker.received.clear();
}

// Whether a worker has taken anything of its job out of the pipe.
bool MSPCWorkers::hasBegun(const Worker& worker) {
    int unread = 0;
    const bool isKnown = ::ioctl(worker.jobs.number(), FIONREAD, &unread) == 0;
    const auto size = sizeof(std::uint64_t) + worker.job->size();
    return worker.hasJob && !(isKnown && static_cast<std::size_t>(unread) == size);
}

// A job that its worker never began is not to blame for that one's end. A few times: where no process lives long enough
// to begin anything, that has to come to an end, too.
bool MSPCWorkers::giveToAnother(Worker& worker) {
    constexpr int mostAttempts = 5;
    if (++worker.attempts >= mostAttempts || start(worker) != 0) {
        return false;
    }
    give(worker, *std::exchange(worker.job, std::nullopt));
    return true;
}

std::optional<std::string> MSPCWorkers::giveOut(const NextJob& next) {
    for (auto& worker : _workers) {
        if (_isAtEnd || worker.job) {
            continue;
        }
        if (worker.process < 0) {
            const int error = start(worker);
            if (error != 0) {
                // Fewer will do.
                return isBusy() ? std::nullopt : std::optional(MSPCSystemErrorText(error));
            }
        }
        auto job = next();
        _isAtEnd = !job;
        if (job) {
            worker.attempts = 0;
            give(worker, std::move(*job));
        }
    }
    return std::nullopt;
}

bool MSPCWorkers::isBusy() const {
    return std::ranges::any_of(_workers, [](const Worker& worker) { return worker.job.has_value(); });
}

std::optional<std::string> MSPCWorkers::run(const NextJob& next, const JobDone& done,
                                            const std::function<void()>& pause) {
    _isAtEnd = false;
    std::optional<std::string> failure;
    while (true) {
        if (!failure) {
            failure = giveOut(next);
        }
        if (!isBusy()) {
            return failure;
        }
        std::vector<pollfd> requests;
        for (const auto& worker : _workers) {
            requests.push_back({worker.job ? worker.results.number() : -1, POLLIN, 0});
        }
        ::poll(requests.data(), requests.size(), static_cast<int>(pauseLength.count()));
        for (std::size_t index = 0; index < _workers.size(); ++index) {
            if (requests[index].revents != 0) {
                take(_workers[index], done);
            }
        }
        endThoseThatTakeTooLong(done);
        pause();
    }
}

void MSPCWorkers::take(Worker& worker, const JobDone& done) {
    if (!readMore(worker.results.number(), worker.received)) {
        const bool isToBlame = hasBegun(worker);
        auto reason = reap(worker);
        if (isToBlame || !giveToAnother(worker)) {
            tell(worker, {MSPCJobEnd::Kind::Died, {}, std::move(reason)}, done);
        }
    } else if (auto result = textOf(worker.received)) {
        tell(worker, {MSPCJobEnd::Kind::Done, std::move(*result), {}}, done);
    }
}

void MSPCWorkers::endThoseThatTakeTooLong(const JobDone& done) {
    const auto now = std::chrono::steady_clock::now();
    for (auto& worker : _workers) {
        if (worker.job && _bounds.time.count() > 0 && now - worker.since > _bounds.time) {
            ::kill(worker.process, SIGKILL);
            static_cast<void>(reap(worker));
            tell(worker, {MSPCJobEnd::Kind::TookTooLong, {}, {}}, done);
        }
    }
}

void MSPCWorkers::tell(Worker& worker, MSPCJobEnd end, const JobDone& done) {
    end.time = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - worker.since);
    end.worker = numberOf(worker);
    const auto job = *std::exchange(worker.job, std::nullopt);
    done(job, end);
}

std::string MSPCWorkers::reap(Worker& worker) {
    int status = 0;
    while (::waitpid(worker.process, &status, 0) < 0 && errno == EINTR) {
    }
    worker.process = -1;
    worker.jobs.close();
    worker.results.close();
    return WIFSIGNALED(status) ? fmt::format("signal {}", WTERMSIG(status))
                               : fmt::format("exit status {}", WEXITSTATUS(status));
}
