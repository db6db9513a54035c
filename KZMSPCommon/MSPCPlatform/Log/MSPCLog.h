#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "MSPCLogBlock.h"
#include "MSPCMessage.h"

// Where messages go, one line each.
class MSPCLog {
public:
    virtual ~MSPCLog() = default;
    // One message, as `MSPCMessage` makes it: line ends in `text` stay, what values hold of control characters is
    // escaped. There is no other way to the log.
    template <typename... Values>
    void log(fmt::format_string<MSPCMessageValue::Shown<Values>...> text, const Values&... values) {
        write(MSPCMessage(text, values...).text());
    }

protected:
    // Takes one message without time stamp, process name or line end.
    virtual void write(std::string_view message) = 0;
    // For a log that hands on what it takes.
    static void handOn(MSPCLog& log, std::string_view message) { log.write(message); }
};

// Keeps nothing.
class MSPCNoLog final : public MSPCLog {
protected:
    void write(std::string_view /*message*/) override {}
};

// Standard error, with "YYYY-MM-DD hh:mm:ss.mmm MSPDIImport[pid] " in front of each message (local time). Lines are
// collected and written in blocks, at once on a terminal; nothing is lost at exit, failure or a fatal signal.
class MSPCStandardErrorLog final : public MSPCLog {
public:
    explicit MSPCStandardErrorLog(const std::string& processName);
    ~MSPCStandardErrorLog() override;
    MSPCStandardErrorLog(const MSPCStandardErrorLog&) = delete;
    MSPCStandardErrorLog& operator=(const MSPCStandardErrorLog&) = delete;

    [[nodiscard]] bool isOnTerminal() const;
    // Shows one line of text below the last message, cut to the terminal's width and kept there while messages go by,
    // until it is replaced; an empty text takes it away, and so does the end of the log. Nothing where there is no
    // terminal. Control characters in it are escaped, as in a message.
    void showStatus(std::string_view text);
    // Writes out what was collected. What standard error does not take (it is closed, or its disk full) is dropped.
    void flush() noexcept;
    // The same for a signal handler: safe at any moment, and gives up when standard error takes nothing for that long.
    void flushWithin(std::chrono::milliseconds limit) noexcept;

protected:
    void write(std::string_view message) override;

private:
    class Lines;
    MSPCLogBlock _block;  // no part of the lines: a log can then be had even when there is no memory for such a block
    std::unique_ptr<Lines> _lines;
};
