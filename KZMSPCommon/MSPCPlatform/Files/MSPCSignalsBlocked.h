#pragma once

#include <csignal>

// Keeps signal handlers away while something that they look at is half changed.
class MSPCSignalsBlocked {
public:
    MSPCSignalsBlocked() noexcept {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &_before);
    }
    ~MSPCSignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &_before, nullptr); }
    MSPCSignalsBlocked(const MSPCSignalsBlocked&) = delete;
    MSPCSignalsBlocked& operator=(const MSPCSignalsBlocked&) = delete;

private:
    sigset_t _before;
};
