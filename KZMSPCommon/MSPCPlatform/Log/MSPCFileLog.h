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
    // to, with the reason in `failure`: a pipe that nobody reads is not waited for.
    [[nodiscard]] static std::unique_ptr<MSPCFileLog> open(const std::string& path, std::string_view processName,
                                                           std::string& failure);
    // The same for a file that the program has made for itself: a link with that name is a failure.
    [[nodiscard]] static std::unique_ptr<MSPCFileLog> openOwn(const std::string& path, std::string_view processName,
                                                              std::string& failure);
    // The same with a new file, which takes the place of whatever file or link has that name: what other names lead to
    // it stays as it was. Each line is written at once, so that a process that is killed has told all that it did.
    [[nodiscard]] static std::unique_ptr<MSPCFileLog> openAnew(const std::string& path, std::string_view processName,
                                                               std::string& failure);
    MSPCFileLog(MSPCFileDescriptor file, std::string_view processName);
    ~MSPCFileLog() override;
    MSPCFileLog(const MSPCFileLog&) = delete;
    MSPCFileLog& operator=(const MSPCFileLog&) = delete;

    // Writes out what was collected; false where the file has not taken all that was told so far (a full disk).
    [[nodiscard]] bool flush() noexcept;
    // Why it has not; empty where it has.
    [[nodiscard]] std::string failure() const;

protected:
    void write(std::string_view message) override;

private:
    MSPCFileDescriptor _file;
    MSPCLogLine _line;
    std::string _collected;
    std::size_t _blockSize;
    int _error = 0;  // the first of the system's that the file gave
};
