#pragma once

#include "MSPCInstant.h"

// The present. Passed in everywhere, so that tests fix it.
class MSPCClock {
public:
    virtual ~MSPCClock() = default;
    [[nodiscard]] virtual MSPCInstant now() const = 0;
};

// The machine's clock.
class MSPCSystemClock final : public MSPCClock {
public:
    [[nodiscard]] MSPCInstant now() const override;
};
