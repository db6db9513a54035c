#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <string_view>

// Lines on their way to an open file: collected in a block of fixed size and written when it is full, or line by line
// when the file is a terminal. A signal handler may interrupt any operation and write out the block; it then finds
// whole lines only, none missing and none twice. Failures to write are ignored: a log has nowhere to report them.
class MSPCLogBlock {
public:
    explicit MSPCLogBlock(int file);

    void add(std::string_view line);
    void flush() noexcept;
    // For signal handlers; gives up after that time.
    void flushWithin(std::chrono::milliseconds limit) noexcept;

private:
    const int _file;
    const bool _isTerminal;
    std::atomic<std::size_t> _used = 0;
    std::array<char, 64 * 1024> _bytes;
};
