#include "MSPCProcessGuard.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>

#include "MSPCLog.h"
#include "MSPCUnfinishedItem.h"

namespace {

constexpr std::array terminationSignals{SIGHUP, SIGINT, SIGTERM};
constexpr std::array fatalSignals{SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGQUIT, SIGSEGV, SIGSYS, SIGXCPU};
constexpr std::array ignoredSignals{SIGPIPE, SIGXFSZ};
constexpr auto patience = std::chrono::milliseconds(250);

// A handler gets no argument of ours, so the log it writes out has to be reachable from here.
std::atomic<MSPCStandardErrorLog*> guardedLog = nullptr;
// A handler needs a stack of its own when the normal one has overflowed.
std::array<char, 64 * 1024> handlerStack;

void writeOutLog() {
    if (auto* log = guardedLog.load()) {
        log->flushWithin(patience);
    }
}

void endProcess(int signal) {
    writeOutLog();
    MSPCUnfinishedItem::removeAll();
    ::_exit(128 + signal);
}

// The default action is in force again (SA_RESETHAND); the signal stays blocked until the return.
void passOn(int signal) {
    writeOutLog();
    ::raise(signal);
}

bool isIgnored(int signal) {
    struct sigaction action {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

// A signal that was ignored when the program started stays so: nohup and shells without job control rely on it.
void setAction(int signal, void (*handler)(int), int flags) {
    if (isIgnored(signal)) {
        return;
    }
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    ::sigfillset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
}

void openStandardDescriptors() {
    int opened = -1;
    do {
        opened = ::open("/dev/null", O_RDWR);
    } while (opened >= 0 && opened <= STDERR_FILENO);
    ::close(opened);
}

}  // namespace

MSPCProcessGuard::MSPCProcessGuard(MSPCStandardErrorLog& log) {
    openStandardDescriptors();
    guardedLog = &log;
    const stack_t stack{handlerStack.data(), 0, handlerStack.size()};
    ::sigaltstack(&stack, nullptr);
    for (const int signal : ignoredSignals) {
        setAction(signal, SIG_IGN, 0);
    }
    for (const int signal : terminationSignals) {
        setAction(signal, endProcess, SA_RESTART);
    }
    for (const int signal : fatalSignals) {
        setAction(signal, passOn, static_cast<int>(SA_RESETHAND | SA_ONSTACK));
    }
}

MSPCProcessGuard::~MSPCProcessGuard() {
    guardedLog = nullptr;
}
