#pragma once

#include <string>
#include <string_view>

#include "MSPDIMemoryFileSystem.h"
#include "MSPDIReadOnlyFileSystem.h"

class MSPCProgress;

// The machine's file system for one import. A plan, or a template, may lie in memory instead; how far files are read is
// told to whoever waits; and where the new folder has appeared is kept.
class MSPDIImportFileSystem final : public MSPDIReadOnlyFileSystem {
public:
    // All three outlive this object. `memory` reads the machine's files as well.
    MSPDIImportFileSystem(MSPCFileSystem& machine, const MSPDIMemoryFileSystem& memory, MSPCProgress& progress)
        : MSPDIReadOnlyFileSystem(static_cast<const MSPCFileSystem&>(memory)),  // itself, and not a copy of its base
          _machine(machine),
          _memory(memory),
          _progress(progress) {}

    // What files are read for from now on; at first "Reading".
    void setDoing(std::string_view doing) { _doing = doing; }
    // The path of the new folder that has appeared; empty before.
    [[nodiscard]] const std::string& newDocument() const { return _newDocument; }
    // Whether a file of a new folder was read, as an import does when it has read the plan.
    [[nodiscard]] bool hasReadTemplate() const { return _hasReadTemplate; }

    [[nodiscard]] std::unique_ptr<MSPCByteSource> openFile(const std::string& path) const override;
    [[nodiscard]] std::unique_ptr<MSPCNewFolder> newFolder(const std::string& path, bool replacesOld) override;
    [[nodiscard]] std::optional<std::string> createFolder(const std::string& path) override;
    [[nodiscard]] std::optional<std::string> writeAtomically(
        const std::string& path, const std::function<void(MSPCByteWriter&)>& produce) override;

private:
    class NewFolder;
    class WatchedSource;

    MSPCFileSystem& _machine;
    const MSPDIMemoryFileSystem& _memory;
    MSPCProgress& _progress;
    std::string _doing = "Reading";
    std::string _newDocument;
    mutable bool _hasReadTemplate = false;
};
