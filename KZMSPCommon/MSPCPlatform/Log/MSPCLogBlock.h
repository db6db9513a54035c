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
    [[nodiscard]] bool isTerminal() const { return _isTerminal; }
    // Keeps a text in the line below the last one, on a terminal only; an empty text takes it away.
    void showStatus(std::string_view text);
    void flush() noexcept;
    // For signal handlers; gives up after that time.
    void flushWithin(std::chrono::milliseconds limit) noexcept;

private:
    void collect(std::string_view bytes);
    [[nodiscard]] std::string_view status() const { return {_status.data(), _statusSize}; }

    const int _file;
    const bool _isTerminal;
    // What the terminal's last line shows; of fixed size, because a log must not need memory.
    std::array<char, 200> _status{};
    std::atomic<std::size_t> _statusSize = 0;
    std::atomic<std::size_t> _used = 0;
    std::array<char, 64 * 1024> _bytes;
};
