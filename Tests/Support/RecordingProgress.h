#pragma once

#include <string>
#include <vector>

#include "MSPCProgress.h"

// Keeps all that is told: "begin Actual", "1 of 2", "end".
class RecordingProgress final : public MSPCProgress {
public:
    void beginScenario(std::string_view name) override { _told.push_back("begin " + std::string(name)); }
    void bytesRead(std::string_view doing, std::size_t done, std::size_t all) override {
        _told.push_back(std::string(doing) + " " + std::to_string(done) + " of " + std::to_string(all));
    }
    void tasksDone(std::size_t done, std::size_t all) override {
        _told.push_back(std::to_string(done) + " of " + std::to_string(all));
    }
    void endImport() override { _told.emplace_back("end"); }

    [[nodiscard]] const std::vector<std::string>& told() const { return _told; }

private:
    std::vector<std::string> _told;
};
