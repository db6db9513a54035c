#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class MSPCByteSource;
class MSPCFileSystem;

// The lines of a text, split at every line feed, carriage return, U+0085, U+2028 and U+2029; so a CR LF pair has an
// empty line between its halves, and an empty text is one empty line. A byte-order mark at the start is no part of the
// first line. Lines are not trimmed.
[[nodiscard]] std::vector<std::string> MSPDILinesOfText(std::string_view text);

// Tells each line of a text that comes piece by piece, split in the same way; so a list of any length takes no memory.
// False where the text cannot be read, or is no UTF-8, as soon as that is found.
[[nodiscard]] bool MSPDIForEachLine(MSPCByteSource& source, const std::function<void(const std::string&)>& take);

// Whether a line names an input file: it is not empty and does not begin with "::", which marks a comment.
[[nodiscard]] bool MSPDIIsInputEntry(std::string_view line);

// All lines of a list file, entries or not. Raises FileNotFoundException with
//   "Input list not found or it is a directory: <path>"
//   "Input list file could not be read or empty: <path>"   also when it is not UTF-8
//   "Input list could not be built or empty: <path>"
[[nodiscard]] std::vector<std::string> MSPDIReadInputList(const std::string& path, const MSPCFileSystem& fileSystem);

// The lines, unless there are none: then raises FileNotFoundException "Input list could not be built or empty: <path>".
[[nodiscard]] std::vector<std::string> MSPDICheckedLines(std::vector<std::string> lines, const std::string& path);

// Raises MSPCInternalInconsistency "Failed to build input files list." when there is nothing to go through.
void MSPDICheckInputFiles(const std::vector<std::string>& inputFiles);
