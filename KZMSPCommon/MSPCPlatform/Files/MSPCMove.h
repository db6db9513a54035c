#pragma once

#include <optional>
#include <string>

// Moves a folder to a name that nothing has, in one step and within one file system. None, or the system's description
// of the failure; `isTaken` says that something has the name (it is cleared otherwise), a link that points nowhere too.
[[nodiscard]] std::optional<std::string> MSPCMoveToFreeName(const std::string& from, const std::string& to,
                                                            bool& isTaken);
