#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "MSPCLog.h"

// A log that keeps its lines. A test that leaves lines unread fails, so no message slips in unnoticed.
class RecordingLog final : public MSPCLog {
public:
    RecordingLog() = default;
    RecordingLog(const RecordingLog&) = delete;
    RecordingLog& operator=(const RecordingLog&) = delete;
    ~RecordingLog() override {
        EXPECT_EQ(_lines, std::vector<std::string>{}) << "log lines that the test did not read";
    }

    // The lines since the last call, in order.
    [[nodiscard]] std::vector<std::string> takeLines() { return std::exchange(_lines, {}); }
    // For tests that have nothing to say about the log.
    void ignoreLines() { _lines.clear(); }

protected:
    void write(std::string_view message) override { _lines.emplace_back(message); }

private:
    std::vector<std::string> _lines;
};
