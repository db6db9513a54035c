#pragma once

#include <string>

#include "MSPCFileDescriptor.h"
#include "MSPCFileSystem.h"
#include "MSPCNameLock.h"
#include "MSPCUnfinishedItem.h"

// A new folder on the disk. All that is done in it and with it goes through descriptors of the folder itself and of the
// one around it, which are opened once. Where the file system cannot exchange two names in one step, what is replaced
// is set aside under a hidden name first; where it cannot be moved either, it is removed first.
class MSPCNewDiskFolder final : public MSPCNewFolder {
public:
    MSPCNewDiskFolder(std::string path, bool replacesOld);

    // Whether the name was taken when this object was made; then nothing can be done with it.
    [[nodiscard]] bool isNameTaken() const noexcept { return _isNameTaken; }

    [[nodiscard]] std::optional<std::string> readFile(const std::string& path,
                                                      std::string* failure = nullptr) const override;
    [[nodiscard]] std::optional<std::string> copyContent(const std::string& from) override;
    [[nodiscard]] std::optional<std::string> writeAtomically(
        const std::string& path, const std::function<void(MSPCByteWriter&)>& produce) override;
    [[nodiscard]] std::optional<std::string> appear(bool& isTaken) override;
    void setPath(const std::string& path) override;
    [[nodiscard]] std::string remainsOfReplaced() const override { return _remains; }

private:
    void keepName();
    [[nodiscard]] bool isInTheWay();
    [[nodiscard]] int makeStage(unsigned mode);
    [[nodiscard]] int openStage(const char* name);
    [[nodiscard]] bool isOurs(const char* stage) const;
    [[nodiscard]] int takeFreeName();
    [[nodiscard]] int takeFreeNameByAFolder();
    [[nodiscard]] int replaceOld();
    [[nodiscard]] int exchange();
    [[nodiscard]] int setOldAside();
    [[nodiscard]] int renameOldAndTakeItsName(MSPCUnfinishedItem& aside);
    void removeReplaced(MSPCUnfinishedItem& replaced);

    std::string _path;
    std::string _name;
    bool _replacesOld;
    MSPCFileDescriptor _parent;
    bool _isNameTaken = false;
    int _error = 0;  // the first one, for whoever asks next
    MSPCNameLock _lock;
    MSPCUnfinishedItem _stage;   // the growing folder
    MSPCFileDescriptor _folder;  // the same, open
    std::string _remains;
};
