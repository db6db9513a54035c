#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "MSPCLogBlock.h"

// Where messages go, one line each.
class MSPCLog {
public:
    virtual ~MSPCLog() = default;
    // One message without time stamp, process name or line end. Line feeds inside it stay.
    virtual void log(std::string_view message) = 0;
};

// Standard error, with "YYYY-MM-DD hh:mm:ss.mmm MSPDIImport[pid] " in front of each message (local time). Lines are
// collected and written in blocks, at once on a terminal; nothing is lost at exit, failure or a fatal signal.
class MSPCStandardErrorLog final : public MSPCLog {
public:
    explicit MSPCStandardErrorLog(std::string processName);
    ~MSPCStandardErrorLog() override;
    MSPCStandardErrorLog(const MSPCStandardErrorLog&) = delete;
    MSPCStandardErrorLog& operator=(const MSPCStandardErrorLog&) = delete;

    void log(std::string_view message) override;
    [[nodiscard]] bool isOnTerminal() const;
    // Shows one line of text below the last message, cut to the terminal's width and kept there while messages go by,
    // until it is replaced; an empty text takes it away, and so does the end of the log. Nothing where there is no
    // terminal. The text is ASCII without control characters.
    void showStatus(std::string_view text);
    // Writes out what was collected. What standard error does not take (it is closed, or its disk full) is dropped.
    void flush() noexcept;
    // The same for a signal handler: safe at any moment, and gives up when standard error takes nothing for that long.
    void flushWithin(std::chrono::milliseconds limit) noexcept;

private:
    class Sink;
    MSPCLogBlock _block;  // no part of the sink: a log can then be had even when there is no memory for such a block
    std::unique_ptr<Sink> _sink;
};
