#include "MSPCNewDiskFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "MSPCAtomicFile.h"
#include "MSPCFilesIn.h"
#include "MSPCFolderCopy.h"
#include "MSPCPath.h"
#include "MSPCRemoval.h"
#include "MSPCSignalsBlocked.h"

namespace {

// 0 when anything has that name in a folder, a link that points nowhere too; else the error number, ENOENT mostly.
int errorOfLookUp(int folder, const char* name) {
    struct stat status {};
    return ::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

int errorOfRename(int folder, const std::string& from, const std::string& to, unsigned flags) {
    return ::renameat2(folder, from.c_str(), folder, to.c_str(), flags) == 0 ? 0 : errno;
}

// Old kernels and file systems of the network know no more than plain renaming.
bool isUnknownToFileSystem(int error) {
    return error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
}

}  // namespace

MSPCNewDiskFolder::MSPCNewDiskFolder(std::string path, bool replacesOld)
    : _path(std::move(path)),
      _name(lastPathComponent(_path)),
      _replacesOld(replacesOld),
      _parent(MSPCOpenFolderOf(_path)),
      _error(_parent.isOpen() ? 0 : errno),
      _lock(_parent.number()) {
    if (_path.find('\0') != std::string::npos) {
        _error = ENOENT;  // it would reach the system cut off there and name something else
    }
    if (_error == 0) {
        keepName();
    }
}

void MSPCNewDiskFolder::keepName() {
    _isNameTaken = isInTheWay();
    if (_isNameTaken || _error != 0) {
        return;
    }
    const auto answer = _lock.keep(_name);
    switch (answer) {
        case MSPCNameLock::Answer::Kept:
            // The last one who kept the name may have given it since it was found free.
            _isNameTaken = isInTheWay();
            break;
        case MSPCNameLock::Answer::KeptByOther:
            // Of several runs that replace one document the last one wins, as if they had come one after the other.
            _isNameTaken = !_replacesOld;
            break;
        case MSPCNameLock::Answer::NotPossible:
            break;  // whether the name is still free shows at the end
    }
    if (answer != MSPCNameLock::Answer::Kept && !_isNameTaken) {
        static_cast<void>(_lock.keepNumbered(_name));
    }
}

bool MSPCNewDiskFolder::isInTheWay() {
    const int error = errorOfLookUp(_parent.number(), _name.c_str());
    if (error == 0) {
        return !_replacesOld || !MSPCIsRemovable(_parent.number(), _name.c_str());
    }
    _error = error == ENOENT ? 0 : error;
    return false;
}

std::optional<std::string> MSPCNewDiskFolder::copyContent(const std::string& from) {
    MSPCFolderCopy copy(from);
    if (auto failure = copy.list()) {
        return failure;
    }
    const int error = _error != 0 ? _error : makeStage(copy.mode());
    if (error != 0) {
        return "'" + _path + "': " + MSPCSystemErrorText(error);
    }
    return copy.copyInto(_folder.number());
}

int MSPCNewDiskFolder::makeStage(unsigned mode) {
    return _stage.createUnderTemporaryName(_parent.number(), [this, mode](const char* name) {
        _lock.note(name);
        if (::mkdirat(_parent.number(), name, mode) != 0) {
            return errno;
        }
        const int error = openStage(name);
        if (error != 0) {
            ::unlinkat(_parent.number(), name, AT_REMOVEDIR);
        }
        return error;
    });
}

int MSPCNewDiskFolder::openStage(const char* name) {
    _folder = MSPCFileDescriptor(::openat(_parent.number(), name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!_folder.isOpen()) {
        return errno;
    }
    // Until it is locked, it looks like one of a dead run.
    const bool isLocked = MSPCNameLock::lock(_folder) || errno != EWOULDBLOCK;
    return isLocked && isOurs(name) ? 0 : EEXIST;
}

// Whether the hidden name still stands for what was made, as far as that can be told.
bool MSPCNewDiskFolder::isOurs(const char* stage) const {
    return MSPCNameLock::isNamed(_parent.number(), stage, _folder) || !MSPCNameLock::isLocal(_parent.number());
}

std::optional<std::string> MSPCNewDiskFolder::readFile(const std::string& path, std::string* failure) const {
    return MSPCReadFileIn(_folder.number(), lastPathComponent(path), failure);
}

std::optional<std::string> MSPCNewDiskFolder::writeAtomically(const std::string& path,
                                                              const std::function<void(MSPCByteWriter&)>& produce) {
    // Where nothing was copied, the folder begins with its first file.
    int error = _error;
    if (error == 0 && !_folder.isOpen()) {
        error = makeStage(0777);
    }
    if (error != 0) {
        return MSPCSystemErrorText(error);
    }
    MSPCAtomicFile file(_folder.number(), lastPathComponent(path));
    produce(file);
    return file.commit();
}

std::optional<std::string> MSPCNewDiskFolder::appear(bool& isTaken) {
    int error = isOurs(_stage.path().c_str()) ? 0 : ESTALE;
    if (error == 0) {
        error = _replacesOld ? replaceOld() : takeFreeName();
    }
    const bool isFixed = error == EPERM || error == EACCES || error == EBUSY;
    isTaken = error == EEXIST || (_replacesOld && isFixed);
    return error == 0 ? std::nullopt : std::optional(MSPCSystemErrorText(error));
}

void MSPCNewDiskFolder::setPath(const std::string& path) {
    _path = path;
    _name = lastPathComponent(path);
    _replacesOld = false;
}

int MSPCNewDiskFolder::takeFreeName() {
    const int error = errorOfRename(_parent.number(), _stage.path(), _name, RENAME_NOREPLACE);
    if (isUnknownToFileSystem(error)) {
        return takeFreeNameByAFolder();
    }
    if (error == 0) {
        _stage.finish();
    }
    return error;
}

// Making a folder decides who has the name; renaming onto a folder works only while that is empty.
int MSPCNewDiskFolder::takeFreeNameByAFolder() {
    MSPCUnfinishedItem taken(MSPCUnfinishedItem::Removal::OnlyWhenEmpty);
    int error = taken.create(_parent.number(), _name, [this](const char* name) {
        return ::mkdirat(_parent.number(), name, 0777) == 0 ? 0 : errno;
    });
    if (error == 0) {
        error = errorOfRename(_parent.number(), _stage.path(), _name, 0);
        if (error == 0) {
            taken.finish();
            _stage.finish();
        }
    }
    return error == ENOTEMPTY ? EEXIST : error;
}

int MSPCNewDiskFolder::replaceOld() {
    // What is there may come and go meanwhile: other runs replace it as well.
    constexpr int mostAttempts = 1'000;
    int error = EEXIST;
    for (int attempt = 0; attempt < mostAttempts && (error == EEXIST || error == ENOENT); ++attempt) {
        error = takeFreeName();
        if (error == EEXIST) {
            error = exchange();
        }
    }
    return error;
}

int MSPCNewDiskFolder::exchange() {
    const int error = errorOfRename(_parent.number(), _stage.path(), _name, RENAME_EXCHANGE);
    if (error == 0) {
        removeReplaced(_stage);  // now it has the hidden name
        return 0;
    }
    return isUnknownToFileSystem(error) || error == EXDEV ? setOldAside() : error;
}

int MSPCNewDiskFolder::setOldAside() {
    _lock.note("");  // a kill meanwhile could leave the only copy of a document under a hidden name: no run removes it
    MSPCUnfinishedItem aside;
    const int error = renameOldAndTakeItsName(aside);
    if (!aside.path().empty()) {
        _lock.note(aside.path());
        removeReplaced(aside);
    }
    _lock.note(_stage.path());
    return error;
}

int MSPCNewDiskFolder::renameOldAndTakeItsName(MSPCUnfinishedItem& aside) {
    const MSPCSignalsBlocked blocked;  // or the old one could be removed before the new one stands
    int error = aside.createUnderTemporaryName(_parent.number(), [this](const char* hidden) {
        const bool isFree = errorOfLookUp(_parent.number(), hidden) == ENOENT;
        return isFree ? errorOfRename(_parent.number(), _name, hidden, 0) : EEXIST;
    });
    if (error == EXDEV) {
        // A folder in a lower layer of a layered file system cannot be renamed.
        return MSPCRemoveItem(_parent.number(), _name.c_str()) ? takeFreeName() : EBUSY;
    }
    if (error != 0) {
        return error;
    }
    error = takeFreeName();
    const bool isReplaced = error == 0 || error == EEXIST;
    if (!isReplaced && errorOfRename(_parent.number(), aside.path(), _name, 0) == 0) {
        aside.finish();
    }
    return error;
}

void MSPCNewDiskFolder::removeReplaced(MSPCUnfinishedItem& replaced) {
    const auto hidden = pathByAppendingComponent(pathByDeletingLastComponent(_path), replaced.path());
    if (!replaced.remove()) {
        _remains = hidden;
    }
}
