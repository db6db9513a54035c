#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "MSPCServices.h"

// The exit statuses of every subcommand.
enum class MSPDIStatus {
    NothingToTell = 0,
    SomethingToTell = 1,
    CouldNotLook = 2,  // no such file, no plan, wrong arguments
};

// What one run of the program has to do with: the outside world, where results go, and how they are to be told. Made by
// `MSPDIProgram`; a subcommand sets the status.
struct MSPDIRun {
    const MSPCServices& services;
    std::ostream& out;  // results, and nothing else
    std::ostream& err;  // everything else
    bool isColored = false;
    std::string
        installedTemplate{};  // where the empty document of the installation would be; empty where none is known
    bool isJSON = false;
    bool isQuiet = false;
    // Shows a line below all others on the terminal, or takes it away (an empty text); none where there is no terminal.
    std::function<void(std::string_view)> showStatus{};
    MSPDIStatus status = MSPDIStatus::NothingToTell;

    // One line on `err`, "mspdi: <file>: <reason>", and the status for it. What could begin another line or drive a
    // terminal stands in either as an escape.
    void couldNotLook(std::string_view file, std::string_view reason);
    // The same for what is about no file, or about one that the reason names: "mspdi: <reason>".
    void couldNotRun(std::string_view reason);
    // The same line, about a file that was looked at; nothing where the run is to be quiet.
    void warn(std::string_view file, std::string_view warning);
    // The text between the codes of a terminal for bold letters, where colour is wanted; else the text itself.
    [[nodiscard]] std::string emphasized(std::string_view text) const;
};
