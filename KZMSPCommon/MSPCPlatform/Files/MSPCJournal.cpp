#include "MSPCJournal.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "MSPCOwnItems.h"

namespace {

constexpr std::size_t blockSize = 64 * 1024;

std::uint64_t sizeOf(const MSPCFileDescriptor& file) {
    const auto size = ::lseek(file.number(), 0, SEEK_END);
    return size > 0 ? static_cast<std::uint64_t>(size) : 0;
}

bool isLastLineCutOff(const MSPCFileDescriptor& file) {
    const auto size = sizeOf(file);
    char last = '\n';
    return size > 0 && ::pread(file.number(), &last, 1, static_cast<off_t>(size - 1)) == 1 && last != '\n';
}

// Appends what the file has from a place on to a text, at most so much; 0 or the system's error number, `count` is 0 at
// the end.
int readFrom(const MSPCFileDescriptor& file, std::uint64_t place, std::size_t most, std::string& text,
             std::size_t& count) {
    const auto size = text.size();
    text.resize(size + most);
    ssize_t got = 0;
    do {
        got = ::pread(file.number(), text.data() + size, most, static_cast<off_t>(place));
    } while (got < 0 && errno == EINTR);
    const int error = got < 0 ? errno : 0;
    count = got < 0 ? 0 : static_cast<std::size_t>(got);
    text.resize(size + count);
    return error;
}

}  // namespace

MSPCJournal::MSPCJournal(MSPCFileDescriptor file) : _file(std::move(file)), _end(sizeOf(_file)) {
}

std::unique_ptr<MSPCJournal> MSPCJournal::open(int folder, const std::string& name, std::string& failure) {
    MSPCFileDescriptor file;
    int error = MSPCOpenOwnFile(folder, name, O_RDWR | O_CREAT | O_APPEND, file);
    if (error == 0 && isLastLineCutOff(file)) {
        error = file.write("\n");
    }
    if (error != 0) {
        failure = MSPCSystemErrorText(error);
        return nullptr;
    }
    return std::make_unique<MSPCJournal>(std::move(file));
}

std::unique_ptr<MSPCJournal> MSPCJournal::openToRead(const std::string& path, std::string& failure) {
    MSPCFileDescriptor file;
    if (const int error = MSPCOpenOwnFile(AT_FDCWD, path, O_RDONLY, file); error != 0) {
        failure = MSPCSystemErrorText(error);
        return nullptr;
    }
    return std::make_unique<MSPCJournal>(std::move(file));
}

std::optional<std::string> MSPCJournal::append(std::string_view line) {
    const int error = _file.write(std::string(line) + '\n');
    _end = sizeOf(_file);  // a part of a line may be there where that failed
    return error == 0 ? std::nullopt : std::optional(MSPCSystemErrorText(error));
}

std::string MSPCJournal::lineAt(Place place) const {
    constexpr std::size_t mostLines = 1024;  // are shorter
    std::string text;
    std::size_t count = 1;
    for (std::size_t looked = 0; count > 0; looked = text.size()) {
        if (readFrom(_file, place + looked, looked == 0 ? mostLines : blockSize, text, count) != 0) {
            return {};
        }
        if (const auto feed = text.find('\n', looked); feed != std::string::npos) {
            text.resize(feed);
            return text;
        }
    }
    return text;
}

std::optional<std::string> MSPCJournal::forEachLine(const std::function<void(Place, std::string_view)>& take) const {
    std::string text;
    Place place = 0;  // of the text's beginning
    for (std::size_t looked = 0, count = 1;; looked = text.size()) {
        if (const int error = readFrom(_file, place + looked, blockSize, text, count); error != 0) {
            return MSPCSystemErrorText(error);
        }
        std::size_t start = 0;
        for (auto feed = text.find('\n', looked); feed != std::string::npos; feed = text.find('\n', start)) {
            take(place + start, std::string_view(text).substr(start, feed - start));
            start = feed + 1;
        }
        text.erase(0, start);
        place += start;
        if (count == 0) {
            if (!text.empty()) {
                take(place, text);
            }
            return std::nullopt;
        }
    }
}
