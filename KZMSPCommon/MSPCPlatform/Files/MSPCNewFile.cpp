#include "MSPCNewFile.h"

#include <cerrno>

#include "MSPCAtomicFile.h"
#include "MSPCFilesIn.h"
#include "MSPCPath.h"

std::optional<std::string> MSPCWriteNewFile(const std::string& path, std::string_view bytes, bool& isTaken) {
    isTaken = false;
    if (path.find('\0') != std::string::npos) {
        return MSPCSystemErrorText(ENOENT);  // it would reach the system cut off there and name something else
    }
    const MSPCFileDescriptor folder(MSPCOpenFolderOf(path));
    if (!folder.isOpen()) {
        return MSPCSystemErrorText(errno);
    }
    MSPCAtomicFile file(folder.number(), lastPathComponent(path));
    file.write(bytes);
    return file.commitNew(isTaken);
}
