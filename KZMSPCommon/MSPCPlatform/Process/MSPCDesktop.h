#pragma once

#include <string>

// Lets the desktop open a file with the program that it has for its kind (`xdg-open`), without waiting for that program
// to end. False where there is no such desktop, or it does not take the file.
[[nodiscard]] bool MSPCOpenOnDesktop(const std::string& path);
