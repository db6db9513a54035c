#include "MSPCDesktop.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace {

// What the opener says is no result of this program: it reads and writes nothing.
class QuietActions {
public:
    QuietActions() : _isMade(posix_spawn_file_actions_init(&_actions) == 0) {
        _isQuiet = _isMade &&
                   posix_spawn_file_actions_addopen(&_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0) == 0 &&
                   posix_spawn_file_actions_addopen(&_actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0) == 0 &&
                   posix_spawn_file_actions_adddup2(&_actions, STDOUT_FILENO, STDERR_FILENO) == 0;
    }
    ~QuietActions() {
        if (_isMade) {
            posix_spawn_file_actions_destroy(&_actions);
        }
    }
    QuietActions(const QuietActions&) = delete;
    QuietActions& operator=(const QuietActions&) = delete;

    // A null pointer where they could not be made.
    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return _isQuiet ? &_actions : nullptr; }

private:
    posix_spawn_file_actions_t _actions{};
    bool _isMade;
    bool _isQuiet = false;
};

}  // namespace

bool MSPCOpenOnDesktop(const std::string& path) {
    const QuietActions actions;
    std::string program = "xdg-open";
    std::string file = path;
    const std::array<char*, 3> arguments = {program.data(), file.data(), nullptr};
    pid_t child = 0;
    if (actions.get() == nullptr ||
        posix_spawnp(&child, program.c_str(), actions.get(), nullptr, arguments.data(), environ) != 0) {
        return false;
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return false;
        }
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}
