#include "MSPCLogBlock.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <optional>

#include "MSPCSignalsBlocked.h"

namespace {

// Back to the line's first column, and everything from there on is wiped out.
constexpr std::string_view wipeLine = "\r\033[K";

using Clock = std::chrono::steady_clock;

static_assert(std::atomic<std::size_t>::is_always_lock_free, "a signal handler reads it");

// Waits until the file takes bytes; false when the time is over.
bool waitUntilWritable(int file, std::optional<Clock::time_point> deadline) noexcept {
    int milliseconds = -1;
    if (deadline) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(*deadline - Clock::now());
        milliseconds = static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
    }
    pollfd request{file, POLLOUT, 0};
    return ::poll(&request, 1, milliseconds) != 0;
}

void writeOut(int file, std::string_view bytes, std::optional<Clock::time_point> deadline) noexcept {
    // A pipe that polls as writable takes that much without making the writer wait.
    const std::size_t pieceSize = deadline ? PIPE_BUF : bytes.size();
    while (!bytes.empty() && waitUntilWritable(file, deadline)) {
        const auto written = ::write(file, bytes.data(), std::min(bytes.size(), pieceSize));
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR && errno != EAGAIN) {
            return;
        }
    }
}

// What fits into one line of the terminal: a text that is broken into two could not be wiped out.
std::string_view cutToWidth(int terminal, std::string_view text) {
    constexpr std::size_t usualWidth = 80;
    winsize size{};
    const bool isKnown = ::ioctl(terminal, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return text.substr(0, (isKnown ? size.ws_col : usualWidth) - 1);
}

}  // namespace

MSPCLogBlock::MSPCLogBlock(int file) : _file(file), _isTerminal(::isatty(file) == 1) {
}

void MSPCLogBlock::add(std::string_view line) {
    if (_statusSize == 0) {
        collect(line);
        if (_isTerminal) {
            flush();
        }
        return;
    }
    // In one piece, so that the status neither flickers nor ever stands between lines.
    const MSPCSignalsBlocked blocked;
    collect(wipeLine);
    collect(line);
    collect(status());
    flush();
}

void MSPCLogBlock::collect(std::string_view bytes) {
    if (bytes.size() > _bytes.size() - _used) {
        flush();
    }
    if (bytes.size() > _bytes.size()) {
        writeOut(_file, bytes, std::nullopt);
        return;
    }
    std::memcpy(_bytes.data() + _used, bytes.data(), bytes.size());
    _used += bytes.size();
}

void MSPCLogBlock::showStatus(std::string_view text) {
    if (!_isTerminal || (text.empty() && _statusSize == 0)) {
        return;
    }
    const auto shown = cutToWidth(_file, text).substr(0, _status.size());
    const MSPCSignalsBlocked blocked;
    std::ranges::copy(shown, _status.begin());
    _statusSize = shown.size();
    collect(wipeLine);
    collect(status());
    flush();
}

void MSPCLogBlock::flush() noexcept {
    if (_used != 0) {
        const MSPCSignalsBlocked blocked;
        writeOut(_file, {_bytes.data(), _used}, std::nullopt);
        _used = 0;
    }
}

void MSPCLogBlock::flushWithin(std::chrono::milliseconds limit) noexcept {
    const auto deadline = Clock::now() + limit;
    if (_statusSize.exchange(0) != 0) {
        writeOut(_file, wipeLine, deadline);
    }
    writeOut(_file, {_bytes.data(), _used}, deadline);
    _used = 0;
}
