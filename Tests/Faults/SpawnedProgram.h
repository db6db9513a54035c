#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

// How a run of the built program ended.
struct ProgramEnd {
    int status = -1;  // the exit status; -1 when a signal ended the program
    int signal = 0;   // the signal that did
    std::string log;  // standard error, unless it went to a file
};

// A run of the built program in a process of its own, started by the constructor. A run that nobody waited for is
// killed at the end.
class SpawnedProgram {
public:
    struct Options {
        std::vector<std::string> arguments;
        std::map<std::string, std::string> environment;
        std::filesystem::path folder;           // in which the program runs
        std::filesystem::path logFile;          // takes standard error; a pipe does where this is empty
        std::function<void()> prepare = [] {};  // in the new process, before the program starts
    };

    explicit SpawnedProgram(const Options& options);
    ~SpawnedProgram();
    SpawnedProgram(const SpawnedProgram&) = delete;
    SpawnedProgram& operator=(const SpawnedProgram&) = delete;

    [[nodiscard]] pid_t id() const { return _process; }
    void send(int signal) const;
    // Whether the program has ended by itself or by a signal.
    [[nodiscard]] bool hasEnded() const;
    // Waits for the end, half a minute at most; what still runs then is killed and fails the test.
    ProgramEnd wait();

private:
    void startProgram(const Options& options, int errors) const;

    pid_t _process = -1;
    int _errors = -1;  // the reading end of the pipe
};
