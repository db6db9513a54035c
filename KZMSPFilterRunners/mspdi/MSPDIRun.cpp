#include "MSPDIRun.h"

#include <algorithm>
#include <ostream>

namespace {

// A name or a reason from outside, without what would end the line or command a terminal.
std::string onOneLine(std::string_view text) {
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(),
        [](char character) { return static_cast<unsigned char>(character) < ' ' || character == '\x7F'; }, ' ');
    return line;
}

}  // namespace

void MSPDIRun::couldNotLook(std::string_view file, std::string_view reason) {
    err << "mspdi: " << onOneLine(file) << ": " << onOneLine(reason) << '\n';
    status = MSPDIStatus::CouldNotLook;
}

std::string MSPDIRun::emphasized(std::string_view text) const {
    return isColored ? "\x1B[1m" + std::string(text) + "\x1B[0m" : std::string(text);
}
