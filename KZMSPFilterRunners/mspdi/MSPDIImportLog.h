#pragma once

#include <optional>
#include <string>
#include <vector>

class MSPCFileSystem;

// Why the importer's log must not be added to a file: it would spoil a plan that is to be imported, or a document, the
// template for instance, whichever links lead there. None where it may be. All paths are absolute.
[[nodiscard]] std::optional<std::string> MSPDIObstacleToLog(const std::string& log,
                                                            const std::vector<std::string>& plans,
                                                            const MSPCFileSystem& fileSystem);
