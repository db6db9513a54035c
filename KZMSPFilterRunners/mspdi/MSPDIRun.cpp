#include "MSPDIRun.h"

#include <ostream>

#include "MSPCMessage.h"

void MSPDIRun::couldNotLook(std::string_view file, std::string_view reason) {
    err << "mspdi: " << (file.empty() ? "an empty name" : MSPCShownText(file).view()) << ": "
        << MSPCShownText(reason).view() << '\n';
    status = MSPDIStatus::CouldNotLook;
}

void MSPDIRun::couldNotRun(std::string_view reason) {
    err << "mspdi: " << MSPCShownText(reason).view() << '\n';
    status = MSPDIStatus::CouldNotLook;
}

void MSPDIRun::warn(std::string_view file, std::string_view warning) {
    if (!isQuiet) {
        err << "mspdi: " << MSPCShownText(file).view() << ": " << MSPCShownText(warning).view() << '\n';
    }
}

std::string MSPDIRun::emphasized(std::string_view text) const {
    return isColored ? "\x1B[1m" + std::string(text) + "\x1B[0m" : std::string(text);
}
