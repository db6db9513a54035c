#include "ProgramRun.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>

#include "RunAgain.h"

namespace fs = std::filesystem;

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (auto& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

bool redirect(int descriptor, const std::string& path, int flags) {
    const int opened = open(path.c_str(), flags, 0600);
    return opened >= 0 && dup2(opened, descriptor) >= 0;
}

double secondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

}  // namespace

ProgramResult runProgram(const std::vector<std::string>& arguments, const fs::path& folder,
                         const std::map<std::string, std::string>& environment) {
    rememberRun(arguments, folder, environment);
    std::vector<std::string> words{KZMSP_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> settings;
    for (const auto& [name, value] : environment) {
        settings.push_back(name + "=" + value);
    }
    auto wordPointers = pointersTo(words);
    auto settingPointers = pointersTo(settings);
    const auto output = folder.string() + ".stdout";
    const auto errors = folder.string() + ".stderr";

    const pid_t child = fork();
    if (child == 0) {
        if (chdir(folder.c_str()) == 0 && redirect(STDIN_FILENO, "/dev/null", O_RDONLY) &&
            redirect(STDOUT_FILENO, output, O_WRONLY | O_CREAT | O_TRUNC) &&
            redirect(STDERR_FILENO, errors, O_WRONLY | O_CREAT | O_TRUNC)) {
            execve(KZMSP_PROGRAM, wordPointers.data(), settingPointers.data());
        }
        _exit(127);
    }
    int state = 0;
    EXPECT_GT(child, 0);
    rusage usage{};
    EXPECT_EQ(wait4(child, &state, 0, &usage), child);
    return {WIFEXITED(state) ? WEXITSTATUS(state) : -1,
            WIFSIGNALED(state) ? WTERMSIG(state) : 0,
            bytesOf(output),
            bytesOf(errors),
            secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime),
            usage.ru_maxrss};
}

std::string bytesOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    EXPECT_TRUE(stream) << file;
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string testNameOf(std::string name) {
    std::replace_if(
        name.begin(), name.end(), [](unsigned char character) { return std::isalnum(character) == 0; }, '_');
    return name;
}
