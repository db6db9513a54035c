#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "MSPCProgress.h"

class MSPCStandardErrorLog;

// Progress as one line at the bottom of the terminal that the log goes to: "Actual: 12800 of 100000 tasks (12%)", or
// "Reading: 12 of 96 MB (12%)". It appears when something has been told of an import for half a second, is written anew
// at most ten times a second, and goes away at the end of the import. Nothing is shown where the log goes elsewhere, or
// on a terminal that cannot rewrite a line.
class MSPCProgressLine final : public MSPCProgress {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    // `terminalType` is the value of TERM, a null pointer when it is not set. The log is borrowed.
    MSPCProgressLine(MSPCStandardErrorLog& log, const char* terminalType, Clock now = std::chrono::steady_clock::now);

    void bytesRead(std::string_view doing, std::size_t done, std::size_t all) override;
    void beginScenario(std::string_view name) override;
    void tasksDone(std::size_t done, std::size_t all) override;
    void endImport() override;

private:
    void begin();
    [[nodiscard]] bool isDue();
    void show(const std::string& text);

    MSPCStandardErrorLog& _log;
    const bool _isPossible;
    const Clock _now;
    std::string _scenario;
    bool _hasBegun = false;  // an import has told something
    bool _isShown = false;
    std::chrono::steady_clock::time_point _nextTime;
};
