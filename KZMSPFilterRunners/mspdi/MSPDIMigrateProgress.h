#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "MSPDIMigration.h"

struct MSPDIRun;

// Tells how far a migration has come: on a terminal in one line, which is written anew; elsewhere in a line a minute.
class MSPDIMigrateProgress {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    explicit MSPDIMigrateProgress(MSPDIRun& run, Clock now = std::chrono::steady_clock::now);

    // Called as often as one likes.
    void tell(const MSPDIMigrationProgress& progress);
    // Takes the line of a terminal away.
    void finish();
    // "1200 of 10000 plans done, 3 failed, 250 a second, 36 s left".
    [[nodiscard]] static std::string line(const MSPDIMigrationProgress& progress, std::chrono::milliseconds time);

private:
    MSPDIRun& _run;
    Clock _now;
    std::chrono::steady_clock::time_point _since;
    std::chrono::steady_clock::time_point _next;
};
