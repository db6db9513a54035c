#pragma once

#include <optional>
#include <string>
#include <vector>

class MSPCFileSystem;

// The absolute path of the folder that a bundle is written to: the one given on the command line, else the input file's
// own. `inputPath` is standardized, and may be relative as the folder may be; the failures show them so. Raises
//   MSPCInternalInconsistency "*** ERROR: Failed to get directory from input path: <input path>"
//   FileNotFoundException "Output directoty not found: <folder>"   when it is missing or no folder
[[nodiscard]] std::string MSPDIOutputFolder(const std::string& inputPath,
                                            const std::optional<std::string>& outputFolder,
                                            const MSPCFileSystem& fileSystem);

// The path of the bundle for an input file: "Plan.XML" gives "<folder>/Plan.kdzx", with the input's extension included
// "<folder>/Plan.xml.kdzx".
[[nodiscard]] std::string MSPDIBundlePath(const std::string& folder, const std::string& inputPath,
                                          bool includesInputExtension);

// Whether removing `destination` would take `needed` away: it leads to the same file or folder or into it, through
// links too.
[[nodiscard]] bool MSPDIWouldBeRemoved(const std::string& needed, const std::string& destination,
                                       const MSPCFileSystem& fileSystem);

// Whether a new bundle may take the place of what is there: without the template or the input nothing would be left to
// import. `needed` are their paths.
[[nodiscard]] bool MSPDIMayBeReplaced(const std::string& bundlePath, const std::vector<std::string>& needed,
                                      const MSPCFileSystem& fileSystem);
