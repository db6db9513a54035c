#pragma once

#include <string>

#include "MSPCFileDescriptor.h"
#include "MSPCUnfinishedItem.h"

// A name in an open folder that one process keeps for itself while nothing has it yet: a hidden, locked file
// ".MSPDIImport-<name>.tmp" beside it, which notes the hidden item that is being made for the name. The system takes
// the lock off when the process ends, however it ends, so a name is never lost to a dead run, and whoever takes the
// lock over removes what the dead one noted. The file goes with this object.
//
// Where locks are not seen by everybody who may write there (file systems of the network), where the name is too long,
// or where the file cannot be had, nothing is kept, and whoever gives the name first has it.
class MSPCNameLock {
public:
    // The folder outlives this object.
    explicit MSPCNameLock(int folder) noexcept : _folder(folder) {}

    enum class Answer {
        Kept,         // until this object goes
        KeptByOther,  // by a process that lives
        NotPossible
    };
    [[nodiscard]] Answer keep(const std::string& name);
    // Keeps "<name>.<number>", the first that nobody keeps: no name, but a place for the note of a process that makes
    // something for a name which it cannot keep.
    [[nodiscard]] Answer keepNumbered(const std::string& name);
    // Notes the hidden item in the folder that is being made, or nothing with an empty text.
    void note(const std::string& item) const;

    // Removes the lock with that hidden name in a folder and what it notes, when it is one of this user's and its
    // process is dead. Nothing happens otherwise.
    static void removeIfDead(int folder, const char* hidden) noexcept;

    // Whether the folder lies on a file system of this machine, where locks are seen by everybody and the numbers of
    // items tell them apart.
    [[nodiscard]] static bool isLocal(int folder) noexcept;
    // Keeps an open item for this process, if nobody has it; false when somebody has.
    [[nodiscard]] static bool lock(const MSPCFileDescriptor& item) noexcept;
    // Whether a name in a folder stands for the open item.
    [[nodiscard]] static bool isNamed(int folder, const char* name, const MSPCFileDescriptor& item) noexcept;

private:
    [[nodiscard]] int openLocked(const char* name);

    int _folder;
    MSPCFileDescriptor _file;
    MSPCUnfinishedItem _item;
};
