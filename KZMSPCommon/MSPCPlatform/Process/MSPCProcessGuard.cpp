#include "MSPCProcessGuard.h"

#include <cxxabi.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <new>
#include <string_view>
#include <typeinfo>

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

std::terminate_handler usualEnd = std::abort;
std::string_view linesAtLackOfMemory;
int statusAtLackOfMemory = 1;

// Asks for no memory. Without an exception the process ends like this when there was no room for one.
bool isLackOfMemory() {
    const auto* type = abi::__cxa_current_exception_type();
    return type == nullptr || *type == typeid(std::bad_alloc);
}

void endOrAbort() {
    if (!isLackOfMemory()) {
        usualEnd();
    }
    writeOutLog();
    static_cast<void>(!::write(STDERR_FILENO, linesAtLackOfMemory.data(), linesAtLackOfMemory.size()));
    MSPCUnfinishedItem::removeAll();
    ::_exit(statusAtLackOfMemory);
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

void MSPCProcessGuard::endAtLackOfMemory(std::string_view lines, int status) {
    linesAtLackOfMemory = lines;
    statusAtLackOfMemory = status;
    usualEnd = std::set_terminate(endOrAbort);
}

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
