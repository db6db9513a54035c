#include "MSPCChildProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <optional>
#include <utility>

namespace {

constexpr int noSuchProgram = 127;
constexpr int ofSignals = 128;
constexpr int notesNumber = STDERR_FILENO + 1;
constexpr int keptNumber = notesNumber + 1;

// A file without a name, read from its beginning.
MSPCFileDescriptor fileHolding(const std::string& text) {
    MSPCFileDescriptor file(::memfd_create("input", MFD_CLOEXEC));
    if (file.isOpen() && (file.write(text) != 0 || ::lseek(file.number(), 0, SEEK_SET) != 0)) {
        file.close();
    }
    return file;
}

// A pipe whose end for reading never waits.
bool openPipe(MSPCFileDescriptor& out, MSPCFileDescriptor& in) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return false;
    }
    out = MSPCFileDescriptor(ends[0]);
    in = MSPCFileDescriptor(ends[1]);
    return ::fcntl(ends[0], F_SETFL, O_NONBLOCK) == 0;
}

// Variables are strings "name=value".
std::vector<std::string> environmentWith(const std::map<std::string, std::string>& more) {
    std::vector<std::string> all;
    for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
        std::string text = *variable;
        if (!more.contains(text.substr(0, text.find('=')))) {
            all.push_back(std::move(text));
        }
    }
    for (const auto& [name, value] : more) {
        all.push_back(name);
        all.back().append("=").append(value);
    }
    return all;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (auto& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

// Gives the files the numbers from 0 on; one that is not open is left out. Only what is safe in a new process is done.
void numberFiles(std::array<int, keptNumber + 1> files) {
    for (auto& file : files) {
        file = file < 0 ? -1 : ::fcntl(file, F_DUPFD_CLOEXEC, keptNumber + 1);  // out of the way of the others
    }
    int number = 0;
    for (const auto file : files) {
        if (file >= 0) {
            ::dup2(file, number);
        }
        ++number;
    }
}

void takeUpSignals() {
    for (const int signal :
         {SIGHUP, SIGINT, SIGTERM, SIGQUIT, SIGPIPE, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV, SIGSYS, SIGXCPU}) {
        const bool staysIgnored = std::signal(signal, SIG_DFL) == SIG_IGN && signal != SIGPIPE;
        if (staysIgnored) {
            std::signal(signal, SIG_IGN);
        }
    }
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

}  // namespace

std::unique_ptr<MSPCChildProgram> MSPCChildProgram::start(const MSPCChildCommand& command, std::string& failure) {
    auto arguments = command.arguments;
    auto environment = environmentWith(command.environment);
    const auto argumentPointers = pointersTo(arguments);
    const auto environmentPointers = pointersTo(environment);
    const auto input = fileHolding(command.input);
    std::array<Source, 3> sources;
    std::array<MSPCFileDescriptor, 3> ends;
    bool isGood = input.isOpen();
    for (std::size_t index = 0; index < sources.size(); ++index) {
        isGood = isGood && openPipe(sources[index].pipe, ends[index]);
    }
    const auto parent = ::getpid();
    const auto process = isGood ? ::fork() : -1;
    if (process < 0) {
        failure = MSPCSystemErrorText(errno);
        return nullptr;
    }
    if (process == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        takeUpSignals();
        numberFiles({input.number(), ends[0].number(), ends[1].number(), ends[2].number(), command.kept});
        if (::getppid() == parent) {
            ::execvpe(argumentPointers[0], argumentPointers.data(), environmentPointers.data());
        }
        ::_exit(noSuchProgram);
    }
    return std::unique_ptr<MSPCChildProgram>(new MSPCChildProgram(process, std::move(sources)));
}

MSPCChildProgram::~MSPCChildProgram() {
    if (_process > 0) {
        ::kill(_process, SIGKILL);
        while (::waitpid(_process, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
}

void MSPCChildProgram::hangUp() const {
    if (_process > 0) {
        ::kill(_process, SIGHUP);
    }
}

bool MSPCChildProgram::isAlive(int process) {
    return ::kill(process, 0) == 0 || errno == EPERM;
}

// Its pipes may stay open in what it has started, so its own end counts, and what is in the pipes then.
bool MSPCChildProgram::takeLines(std::chrono::milliseconds wait, const TakeLine& take) {
    waitForBytes(wait);
    const bool isLast = hasEnded();
    for (const auto pipe : {Pipe::Output, Pipe::Errors, Pipe::Notes}) {
        takeFrom(pipe, take);
        auto& rest = _sources[static_cast<std::size_t>(pipe)].received;
        if (isLast && !rest.empty()) {
            take(pipe, std::exchange(rest, {}));
        }
    }
    return !isLast;
}

void MSPCChildProgram::waitForBytes(std::chrono::milliseconds wait) const {
    std::array<pollfd, 3> requests{};
    for (std::size_t index = 0; index < requests.size(); ++index) {
        requests[index] = {_sources[index].pipe.number(), POLLIN, 0};
    }
    ::poll(requests.data(), requests.size(), static_cast<int>(wait.count()));
}

void MSPCChildProgram::takeFrom(Pipe pipe, const TakeLine& take) {
    auto& source = _sources[static_cast<std::size_t>(pipe)];
    std::array<char, 16 * 1024> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init): it is filled
    while (source.pipe.isOpen()) {
        const auto count = ::read(source.pipe.number(), buffer.data(), buffer.size());
        if (count > 0) {
            source.received.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0) {
            source.pipe.close();  // else it would end every wait at once
        } else if (errno != EINTR) {
            break;
        }
    }
    std::size_t start = 0;
    for (auto end = source.received.find('\n'); end != std::string::npos; end = source.received.find('\n', start)) {
        take(pipe, source.received.substr(start, end - start));
        start = end + 1;
    }
    source.received.erase(0, start);
}

bool MSPCChildProgram::hasEnded() {
    int status = 0;
    if (_process > 0 && ::waitpid(_process, &status, WNOHANG) == _process) {
        _process = -1;
        _status = WIFSIGNALED(status) ? ofSignals + WTERMSIG(status) : WEXITSTATUS(status);
    }
    return _process < 0;
}
