#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

struct MSPCServices;

// Where a run of the program writes.
struct MSPDIOutput {
    std::ostream& out;
    std::ostream& err;
    bool isColored = false;
    // Whether whoever read `out` has left, as `head` does: then it is nothing to tell that the rest cannot be written.
    bool (*isReaderGone)() = [] { return false; };
    // Where the empty document of the installation would be; empty where none is known.
    std::string installedTemplate{};
    // Shows a line below all others on the terminal, or takes it away (an empty text); none where there is no terminal.
    std::function<void(std::string_view)> showStatus{};
};

// Runs the program with these arguments, without the program's own name, and gives its exit status. What is wrong with
// the arguments is told in one line on `err`.
[[nodiscard]] int MSPDIProgram(const std::vector<std::string>& arguments, const MSPCServices& services,
                               const MSPDIOutput& output);
