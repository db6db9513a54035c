#include "MSPCJournal.h"

#include <fcntl.h>
#include <unistd.h>

#include "MSPCOwnItems.h"

namespace {

bool isLastLineCutOff(int file) {
    const auto size = ::lseek(file, 0, SEEK_END);
    char last = '\n';
    return size > 0 && ::pread(file, &last, 1, size - 1) == 1 && last != '\n';
}

}  // namespace

std::unique_ptr<MSPCJournal> MSPCJournal::open(int folder, const std::string& name, std::string& failure) {
    MSPCFileDescriptor file;
    int error = MSPCOpenOwnFile(folder, name, O_RDWR | O_CREAT | O_APPEND, file);
    if (error == 0 && isLastLineCutOff(file.number())) {
        error = file.write("\n");
    }
    if (error != 0) {
        failure = MSPCSystemErrorText(error);
        return nullptr;
    }
    return std::make_unique<MSPCJournal>(std::move(file));
}

std::optional<std::string> MSPCJournal::append(std::string_view line) {
    const int error = _file.write(std::string(line) + '\n');
    return error == 0 ? std::nullopt : std::optional(MSPCSystemErrorText(error));
}
