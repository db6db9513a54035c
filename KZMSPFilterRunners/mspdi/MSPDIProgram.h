#pragma once

#include <iosfwd>
#include <string>
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
};

// Runs the program with these arguments, without the program's own name, and gives its exit status. What is wrong with
// the arguments is told in one line on `err`.
[[nodiscard]] int MSPDIProgram(const std::vector<std::string>& arguments, const MSPCServices& services,
                               const MSPDIOutput& output);
