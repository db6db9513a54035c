#include "RunAgain.h"

#include <gtest/gtest.h>

#include <deque>
#include <iostream>
#include <string_view>

namespace {

constexpr std::size_t KeptRuns = 3;

std::deque<std::string>& runs() {
    static std::deque<std::string> commands;
    return commands;
}

class RunsOfFailures final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo& /*test*/) override { runs().clear(); }
    void OnTestEnd(const testing::TestInfo& test) override {
        if (!test.result()->Failed()) {
            return;
        }
        for (const auto& command : runs()) {
            std::cout << "To run it again:\n  " << command << "\n";
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
    runs().push_back(commandOfRun(arguments, folder, environment));
    if (runs().size() > KeptRuns) {
        runs().pop_front();
    }
}
