#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "MSPCFileDescriptor.h"
#include "MSPCFileSystem.h"
#include "MSPCUnfinishedItem.h"

// A file that is written under a temporary name in the folder of its final one and takes the final name in one step.
// Without a successful `commit` the temporary file goes with this object and the final name is untouched.
class MSPCAtomicFile final : public MSPCByteWriter {
public:
    // `name` is that of a file in an open folder, which outlives this object.
    MSPCAtomicFile(int folder, std::string name);

    // A failure is kept for `commit`; what is written after it is dropped.
    void write(std::string_view bytes) override;
    // Writes out everything and gives the file its name. None, or the description of the first failure. Whether the
    // machine's power fails now is another matter: see `MSPCFileSystem::synchronize`.
    [[nodiscard]] std::optional<std::string> commit();
    // The same for a name that nothing has; `isTaken` says that something has it.
    [[nodiscard]] std::optional<std::string> commitNew(bool& isTaken);

private:
    void writeOut(std::string_view bytes);
    [[nodiscard]] std::optional<std::string> finishedBy(const std::function<int()>& takeName);
    [[nodiscard]] int takeFreeName() const;

    int _folder;
    std::string _name;
    MSPCUnfinishedItem _temporary;
    MSPCFileDescriptor _file;
    std::string _collected;
    int _error = 0;
};
