#pragma once

#include <memory>
#include <optional>
#include <string>

#include "MSPDIReadOnlyFileSystem.h"

// The machine's file system for the import of one plan, which works out the digest of the plan while that is read:
// reading it once more for that would take a tenth of the time of a small import.
class MSPDIReadingWithDigest final : public MSPDIReadOnlyFileSystem {
public:
    // `machine` outlives this object. The plan's path is the one by which it is opened.
    MSPDIReadingWithDigest(MSPCFileSystem& machine, std::string plan)
        : MSPDIReadOnlyFileSystem(machine), _machine(machine), _plan(std::move(plan)) {}

    // The digest of what was read the first time that the plan was opened and read to its end, as records keep it;
    // empty before that.
    [[nodiscard]] const std::string& digest() const { return _digest; }

    [[nodiscard]] std::unique_ptr<MSPCByteSource> openFile(const std::string& path) const override;
    [[nodiscard]] std::unique_ptr<MSPCNewFolder> newFolder(const std::string& path, bool replacesOld) override;
    [[nodiscard]] std::optional<std::string> createFolder(const std::string& path) override;
    void removeEmptyFolder(const std::string& path) override;
    [[nodiscard]] std::optional<std::string> writeAtomically(
        const std::string& path, const std::function<void(MSPCByteWriter&)>& produce) override;
    [[nodiscard]] std::optional<std::string> synchronize(const std::set<std::string>& folders) override;

private:
    class Source;

    MSPCFileSystem& _machine;
    std::string _plan;
    mutable std::string _digest;
};
