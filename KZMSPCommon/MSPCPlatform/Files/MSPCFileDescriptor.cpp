#include "MSPCFileDescriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace {

constexpr std::chrono::milliseconds patienceForNextByte{5'000};
constexpr std::chrono::milliseconds patienceForAll{15'000};

}  // namespace

MSPCFileDescriptor::MSPCFileDescriptor(MSPCFileDescriptor&& other) noexcept
    : _number(std::exchange(other._number, -1)), _waited(other._waited) {
}

MSPCFileDescriptor& MSPCFileDescriptor::operator=(MSPCFileDescriptor&& other) noexcept {
    std::swap(_number, other._number);
    std::swap(_waited, other._waited);
    return *this;
}

// Waits for bytes of a pipe. The answer is 0 or an error number; ETIMEDOUT when nothing comes, or when all the waiting
// together has been too long: a byte now and then would hold the program for ever.
int MSPCFileDescriptor::waitUntilReadable() const noexcept {
    using namespace std::chrono;
    const auto patience = std::min(patienceForNextByte, patienceForAll - _waited);
    if (patience <= milliseconds::zero()) {
        return ETIMEDOUT;
    }
    const auto start = steady_clock::now();
    pollfd request{_number, POLLIN, 0};
    const int ready = ::poll(&request, 1, static_cast<int>(patience.count()));
    const int error = errno;
    _waited += ceil<milliseconds>(steady_clock::now() - start);
    if (ready < 0) {
        return error == EINTR ? 0 : error;
    }
    return ready > 0 ? 0 : ETIMEDOUT;
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
        const int error = errno == EAGAIN ? waitUntilReadable() : errno;
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
