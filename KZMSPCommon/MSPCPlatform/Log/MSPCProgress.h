#pragma once

#include <cstddef>
#include <string_view>

// Where a run says how far it has come, for whoever waits for it. What is told here never reaches the log.
class MSPCProgress {
public:
    virtual ~MSPCProgress() = default;
    // So many bytes of a file are read; `doing` says what for ("Reading"). Whoever does not ask for it is not told.
    virtual void bytesRead(std::string_view doing, std::size_t done, std::size_t all) {
        static_cast<void>(doing), static_cast<void>(done), static_cast<void>(all);
    }
    // The scenario that the tasks told from here on belong to, by its name in the document ("Actual", "Baseline3").
    virtual void beginScenario(std::string_view name) = 0;
    // So many of all tasks of the scenario are done. Cheap enough to be told after each task.
    virtual void tasksDone(std::size_t done, std::size_t all) = 0;
    // The import is over.
    virtual void endImport() = 0;
};

// Tells nobody; it lives as long as the process.
[[nodiscard]] MSPCProgress& MSPCNoProgress();
