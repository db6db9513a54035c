#pragma once

#include "MSPCClock.h"

// A clock that stands still until it is moved by hand.
class FixedClock final : public MSPCClock {
public:
    explicit FixedClock(MSPCInstant now) : _now(now) {}
    [[nodiscard]] MSPCInstant now() const override { return _now; }
    void set(MSPCInstant now) { _now = now; }

private:
    MSPCInstant _now;
};
