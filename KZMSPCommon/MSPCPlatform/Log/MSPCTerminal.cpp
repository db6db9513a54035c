#include "MSPCTerminal.h"

#include <unistd.h>

#include <cstdlib>
#include <string_view>

bool MSPCIsStandardOutputTerminal() {
    const auto* kind = std::getenv("TERM");
    return ::isatty(STDOUT_FILENO) == 1 && kind != nullptr && *kind != '\0' && std::string_view(kind) != "dumb";
}
