#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

// An open file of the system, closed when its owner goes. Operations answer with 0 or the system's error number and
// go on after an interruption by a signal.
class MSPCFileDescriptor {
public:
    explicit MSPCFileDescriptor(int number = -1) noexcept : _number(number) {}
    ~MSPCFileDescriptor() { static_cast<void>(close()); }
    MSPCFileDescriptor(MSPCFileDescriptor&& other) noexcept;
    MSPCFileDescriptor& operator=(MSPCFileDescriptor&& other) noexcept;

    [[nodiscard]] int number() const noexcept { return _number; }
    [[nodiscard]] bool isOpen() const noexcept { return _number >= 0; }

    // Writes all the bytes.
    [[nodiscard]] int write(std::string_view bytes) const noexcept;
    // Reads up to `capacity` bytes; `count` is 0 at the end of the file. A pipe opened with O_NONBLOCK is given five
    // seconds for its next byte and fifteen for all of them together, then the answer is ETIMEDOUT.
    [[nodiscard]] int read(char* buffer, std::size_t capacity, std::size_t& count) const noexcept;
    // Brings everything to the disk that was written to the file system which holds this file.
    [[nodiscard]] int syncFileSystem() const noexcept;
    // Leaves closing to the caller.
    [[nodiscard]] int release() noexcept;
    // Closes now; nothing happens when it is closed already.
    int close() noexcept;

private:
    [[nodiscard]] int waitUntilReadable() const noexcept;

    int _number;
    mutable std::chrono::milliseconds _waited{0};  // for a pipe's bytes, so far
};

// The system's description of an error number: "No space left on device".
[[nodiscard]] std::string MSPCSystemErrorText(int error);
