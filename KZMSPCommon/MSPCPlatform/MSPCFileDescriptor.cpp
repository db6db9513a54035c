#include "MSPCFileDescriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

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
        if (errno != EINTR) {
            return errno;
        }
    }
}

int MSPCFileDescriptor::sync() const noexcept {
    while (::fsync(_number) != 0) {
        if (errno == EINVAL) {
            return 0;
        }
        if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
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
