#include "RunAgain.h"

#include <gtest/gtest.h>

#include <deque>
#include <iostream>
#include <mutex>
#include <string_view>
#include <utility>

namespace {

constexpr std::size_t KeptRuns = 3;

// The last runs of the present test, which may have several at once.
class Runs {
public:
    void clear() {
        const std::scoped_lock lock(_mutex);
        _commands.clear();
    }
    void add(std::string command) {
        const std::scoped_lock lock(_mutex);
        _commands.push_back(std::move(command));
        if (_commands.size() > KeptRuns) {
            _commands.pop_front();
        }
    }
    void show() {
        const std::scoped_lock lock(_mutex);
        for (const auto& command : _commands) {
            std::cout << "To run it again:\n  " << command << "\n";
        }
    }

private:
    std::mutex _mutex;
    std::deque<std::string> _commands;
};

Runs& runs() {
    static Runs kept;
    return kept;
}

class RunsOfFailures final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo& /*test*/) override { runs().clear(); }
    void OnTestEnd(const testing::TestInfo& test) override {
        if (test.result()->Failed()) {
            runs().show();
        }
    }
};

std::string inQuotes(std::string_view word) {
    std::string text("'");
    for (const char character : word) {
        text.append(character == '\'' ? std::string("'\\''") : std::string(1, character));
    }
    return text.append("'");
}

}  // namespace

std::string commandOfRun(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                         const std::map<std::string, std::string>& environment) {
    std::string command("cd ");
    command.append(inQuotes(folder.string())).append(" && env -i");
    for (const auto& [name, value] : environment) {
        command.append(" ").append(inQuotes(name + "=" + value));
    }
    command.append(" ").append(inQuotes(KZMSP_PROGRAM));
    for (const auto& argument : arguments) {
        command.append(" ").append(inQuotes(argument));
    }
    return command;
}

void rememberRun(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                 const std::map<std::string, std::string>& environment) {
    // gtest owns its listeners.
    static const auto* const listener = [] {
        auto* const added = new RunsOfFailures;
        testing::UnitTest::GetInstance()->listeners().Append(added);
        return added;
    }();
    static_cast<void>(listener);
    runs().add(commandOfRun(arguments, folder, environment));
}
