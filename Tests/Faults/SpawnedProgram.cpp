#include "SpawnedProgram.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>

namespace {

using Clock = std::chrono::steady_clock;

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (auto& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

// Reads until the other end is closed; false when that takes too long.
bool readAll(int file, std::string& text) {
    const auto deadline = Clock::now() + std::chrono::seconds(30);
    std::array<char, 64 * 1024> buffer{};
    for (;;) {
        pollfd request{file, POLLIN, 0};
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0 || poll(&request, 1, static_cast<int>(left)) == 0) {
            return false;
        }
        const auto count = read(file, buffer.data(), buffer.size());
        if (count <= 0) {
            return true;
        }
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

}  // namespace

SpawnedProgram::SpawnedProgram(const Options& options) {
    std::array<int, 2> ends{-1, -1};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    _process = fork();
    if (_process == 0) {
        startProgram(options, ends[1]);
        _exit(127);
    }
    EXPECT_GT(_process, 0);
    close(ends[1]);
    _errors = ends[0];
}

SpawnedProgram::~SpawnedProgram() {
    if (_process > 0) {
        kill(_process, SIGKILL);
        waitpid(_process, nullptr, 0);
    }
    close(_errors);
}

void SpawnedProgram::startProgram(const Options& options, int errors) const {
    std::vector<std::string> words{KZMSP_PROGRAM};
    words.insert(words.end(), options.arguments.begin(), options.arguments.end());
    std::vector<std::string> settings;
    for (const auto& [name, value] : options.environment) {
        settings.push_back(name + "=" + value);
    }
    auto wordPointers = pointersTo(words);
    auto settingPointers = pointersTo(settings);
    const int nothing = open("/dev/null", O_RDWR);
    const int log = options.logFile.empty()
                        ? errors
                        : open(options.logFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (chdir(options.folder.c_str()) == 0 && dup2(nothing, STDIN_FILENO) >= 0 && dup2(nothing, STDOUT_FILENO) >= 0 &&
        dup2(log, STDERR_FILENO) >= 0) {
        close(nothing);
        options.prepare();
        execve(KZMSP_PROGRAM, wordPointers.data(), settingPointers.data());
    }
}

void SpawnedProgram::send(int signal) const {
    kill(_process, signal);
}

bool SpawnedProgram::hasEnded() const {
    siginfo_t information{};
    return waitid(P_PID, static_cast<id_t>(_process), &information, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           information.si_pid == _process;
}

ProgramEnd SpawnedProgram::wait() {
    ProgramEnd end;
    // The pipe is closed by the process's end, also where nothing is written to it.
    if (!readAll(_errors, end.log)) {
        ADD_FAILURE() << "the program does not end";
        send(SIGKILL);
    }
    int state = 0;
    EXPECT_EQ(waitpid(_process, &state, 0), _process);
    _process = -1;
    end.status = WIFEXITED(state) ? WEXITSTATUS(state) : -1;
    end.signal = WIFSIGNALED(state) ? WTERMSIG(state) : 0;
    return end;
}
