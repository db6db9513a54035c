#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "MSPCFileDescriptor.h"

// A program to run, and what it gets.
struct MSPCChildCommand {
    std::vector<std::string> arguments;              // the first one is the program, which is looked for in PATH
    std::string input;                               // its standard input
    std::map<std::string, std::string> environment;  // set beside the variables of this process, or instead of them
    int kept = -1;  // an open file that it keeps open, and all that it starts; none when it is below 0
};

// Another program, run as a child process, and the lines that come from it. It is killed when this process ends,
// however it ends; what it has started itself lives on.
class MSPCChildProgram {
public:
    enum class Pipe { Output, Errors, Notes };
    using TakeLine = std::function<void(Pipe pipe, const std::string& line)>;

    // What the program can open as a third place to write to, beside its standard output and standard error.
    static constexpr const char* NotesPath = "/dev/fd/3";

    // A null pointer where no process can be had, with the system's description in `failure`. A program that does not
    // exist is told by its exit status.
    [[nodiscard]] static std::unique_ptr<MSPCChildProgram> start(const MSPCChildCommand& command, std::string& failure);
    // Kills the program where it is still there.
    ~MSPCChildProgram();
    MSPCChildProgram(const MSPCChildProgram&) = delete;
    MSPCChildProgram& operator=(const MSPCChildProgram&) = delete;

    // Takes the lines that have come, without their line feeds; waits for them so long at most. False when the program
    // has ended and all that it had written is taken.
    [[nodiscard]] bool takeLines(std::chrono::milliseconds wait, const TakeLine& take);
    // Sends it SIGHUP.
    void hangUp() const;
    // How it ended, as shells tell it: its exit status, 128 and the number of the signal that ended it, or 127 where
    // there is no such program. For after its end.
    [[nodiscard]] int status() const { return _status; }

    // Whether there is a process of that number.
    [[nodiscard]] static bool isAlive(int process);

private:
    struct Source {
        MSPCFileDescriptor pipe;
        std::string received;
    };

    MSPCChildProgram(int process, std::array<Source, 3> sources) : _process(process), _sources(std::move(sources)) {}
    void waitForBytes(std::chrono::milliseconds wait) const;
    void takeFrom(Pipe pipe, const TakeLine& take);
    [[nodiscard]] bool hasEnded();

    int _process;
    int _status = -1;
    std::array<Source, 3> _sources;
};
