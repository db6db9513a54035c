#include "MSPDIInputList.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <new>

#include "MSPCByteStreams.h"
#include "MSPCCharacters.h"
#include "MSPCException.h"
#include "MSPCFileSystem.h"

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t longestLineEnd = 3;
constexpr std::array<std::string_view, 5> lineEnds{"\n", "\r", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"};

// The length of the line end at the start of a text; 0 when there is none.
std::size_t lineEndLength(std::string_view text) {
    const auto* found = std::ranges::find_if(lineEnds, [text](auto lineEnd) { return text.starts_with(lineEnd); });
    return found == lineEnds.end() ? 0 : found->size();
}

}  // namespace

std::vector<std::string> MSPDILinesOfText(std::string_view text) {
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    std::vector<std::string> lines(1);
    while (!text.empty()) {
        if (const auto length = lineEndLength(text); length != 0) {
            lines.emplace_back();
            text.remove_prefix(length);
        } else {
            lines.back() += text.front();
            text.remove_prefix(1);
        }
    }
    return lines;
}

bool MSPDIForEachLine(MSPCByteSource& source, const std::function<void(const std::string&)>& take) {
    constexpr std::size_t pieceSize = 64 * 1024;
    std::string piece(pieceSize, '\0');
    std::string rest;  // what has come and is no whole line yet
    std::size_t at = 0;
    for (bool isFirst = true, isAtEnd = false; !isAtEnd;) {
        const auto count = source.read(piece.data(), piece.size());
        if (!count) {
            return false;
        }
        rest.append(piece, 0, *count);
        isAtEnd = *count == 0;
        if (isFirst && rest.size() >= byteOrderMark.size()) {
            rest.erase(0, rest.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
            isFirst = false;
        }
        std::size_t start = 0;
        // A line end of several bytes may have come in part.
        while (isAtEnd ? at < rest.size() : !isFirst && at + longestLineEnd <= rest.size()) {
            const auto length = lineEndLength(std::string_view(rest).substr(at));
            if (length == 0) {
                ++at;
                continue;
            }
            const auto line = rest.substr(start, at - start);
            if (!MSPCIsUTF8(line)) {
                return false;
            }
            take(line);
            start = at += length;
        }
        rest.erase(0, start);
        at -= start;
    }
    if (!MSPCIsUTF8(rest)) {
        return false;
    }
    take(rest);
    return true;
}

bool MSPDIIsInputEntry(std::string_view line) {
    return !line.empty() && !line.starts_with("::");
}

std::vector<std::string> MSPDIReadInputList(const std::string& path, const MSPCFileSystem& fileSystem) {
    if (!fileSystem.leadsToAnything(path) || fileSystem.isDirectory(path)) {
        throw FileNotFoundException(fmt::format("Input list not found or it is a directory: {}", path));
    }
    const auto text = fileSystem.readFile(path);
    if (!text || !MSPCIsUTF8(*text)) {
        throw FileNotFoundException(fmt::format("Input list file could not be read or empty: {}", path));
    }
    try {
        return MSPDICheckedLines(MSPDILinesOfText(*text), path);
    } catch (const std::bad_alloc&) {
        return MSPDICheckedLines({}, path);  // lines that do not fit into the memory are none
    }
}

std::vector<std::string> MSPDICheckedLines(std::vector<std::string> lines, const std::string& path) {
    if (lines.empty()) {
        throw FileNotFoundException(fmt::format("Input list could not be built or empty: {}", path));
    }
    return lines;
}

void MSPDICheckInputFiles(const std::vector<std::string>& inputFiles) {
    if (inputFiles.empty()) {
        throw MSPCInternalInconsistency("Failed to build input files list.");
    }
}
