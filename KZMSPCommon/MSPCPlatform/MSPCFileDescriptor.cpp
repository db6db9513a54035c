#include "MSPCFileDescriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace {

constexpr int patienceInMilliseconds = 5'000;

// Waits for bytes of a pipe. The answer is 0 or an error number; ETIMEDOUT when nothing comes.
int waitUntilReadable(int file) noexcept {
    pollfd request{file, POLLIN, 0};
    const int ready = ::poll(&request, 1, patienceInMilliseconds);
    if (ready < 0) {
        return errno == EINTR ? 0 : errno;
    }
    return ready > 0 ? 0 : ETIMEDOUT;
}

}  // namespace

MSPCFileDescriptor::MSPCFileDescriptor(MSPCFileDescriptor&& other) noexcept
    : _number(std::exchange(other._number, -1)) {
}

MSPCFileDescriptor& MSPCFileDescriptor::operator=(MSPCFileDescriptor&& other) noexcept {
    std::swap(_number, other._number);
    return *this;
}

int MSPCFileDescriptor::write(std::string_view bytes) const noexcept {
    while (!bytes.empty()) {
        const auto written = ::write(_number, bytes.data(), bytes.size());
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (written == 0) {
            return EIO;
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

int MSPCFileDescriptor::read(char* buffer, std::size_t capacity, std::size_t& count) const noexcept {
    for (;;) {
        const auto got = ::read(_number, buffer, capacity);
        if (got >= 0) {
            count = static_cast<std::size_t>(got);
            return 0;
        }
        const int error = errno == EAGAIN ? waitUntilReadable(_number) : errno;
        if (error != 0 && error != EINTR) {
            return error;
        }
    }
}

int MSPCFileDescriptor::syncFileSystem() const noexcept {
    while (::syncfs(_number) != 0) {
        if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

int MSPCFileDescriptor::release() noexcept {
    return std::exchange(_number, -1);
}

int MSPCFileDescriptor::close() noexcept {
    if (!isOpen()) {
        return 0;
    }
    // The number is free again whatever close answers, so it is never tried twice.
    const bool failed = ::close(std::exchange(_number, -1)) != 0;
    return failed && errno != EINTR ? errno : 0;
}

std::string MSPCSystemErrorText(int error) {
    return std::generic_category().message(error);
}
