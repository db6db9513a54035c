#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "MSPCFileDescriptor.h"
#include "MSPCLog.h"
#include "MSPCLogLine.h"

// The end of a file, in the form of the log on standard error. Lines are collected and written in blocks, the last ones
// when the log ends.
class MSPCFileLog final : public MSPCLog {
public:
    // Opens the file, which is made where there is none; what it holds stays. A null pointer when it cannot be written
    // to, with the system's description in `failure`.
    [[nodiscard]] static std::unique_ptr<MSPCFileLog> open(const std::string& path, std::string_view processName,
                                                           std::string& failure);
    // The same with a file of its own: one that was empty or not there, or that it empties. A link with that name is a
    // failure. Each line is written at once, so that a process that is killed has told all that it did.
    [[nodiscard]] static std::unique_ptr<MSPCFileLog> openAnew(const std::string& path, std::string_view processName,
                                                               std::string& failure);
    MSPCFileLog(MSPCFileDescriptor file, std::string_view processName);
    ~MSPCFileLog() override;
    MSPCFileLog(const MSPCFileLog&) = delete;
    MSPCFileLog& operator=(const MSPCFileLog&) = delete;

    // Writes out what was collected; false where the file has not taken all that was told so far (a full disk).
    [[nodiscard]] bool flush() noexcept;

protected:
    void write(std::string_view message) override;

private:
    MSPCFileDescriptor _file;
    MSPCLogLine _line;
    std::string _collected;
    std::size_t _blockSize;
    bool _tookAll = true;
};
