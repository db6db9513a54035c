#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <string>

// A pseudo-terminal: programs write to `device`, and `shown` reads what a screen would get.
class ScopedTerminal {
public:
    explicit ScopedTerminal(unsigned short columns) : _controller(::posix_openpt(O_RDWR | O_NOCTTY)) {
        EXPECT_GE(_controller, 0);
        EXPECT_EQ(::grantpt(_controller), 0);
        EXPECT_EQ(::unlockpt(_controller), 0);
        device = ::open(::ptsname(_controller), O_RDWR | O_NOCTTY);
        EXPECT_GE(device, 0);
        termios settings{};
        ::tcgetattr(device, &settings);
        ::cfmakeraw(&settings);  // a line feed stays one byte
        ::tcsetattr(device, TCSANOW, &settings);
        const winsize size{24, columns, 0, 0};
        ::ioctl(device, TIOCSWINSZ, &size);
    }
    ~ScopedTerminal() {
        ::close(device);
        ::close(_controller);
    }
    ScopedTerminal(const ScopedTerminal&) = delete;
    ScopedTerminal& operator=(const ScopedTerminal&) = delete;

    // What was written since the last call.
    [[nodiscard]] std::string shown() const {
        std::string text;
        std::array<char, 4096> buffer{};
        for (pollfd request{_controller, POLLIN, 0}; ::poll(&request, 1, 0) == 1;) {
            const auto count = ::read(_controller, buffer.data(), buffer.size());
            if (count <= 0) {
                break;
            }
            text.append(buffer.data(), static_cast<std::size_t>(count));
        }
        return text;
    }

    int device = -1;

private:
    int _controller;
};
