#include "MSPDIPlansToMigrate.h"

#include <set>

#include "MSPCException.h"
#include "MSPCFileSystem.h"
#include "MSPCPath.h"
#include "MSPDIInputList.h"

namespace {

class Finder {
public:
    Finder(const MSPCFileSystem& fileSystem, bool keepsTree, std::string outputFolder)
        : _fileSystem(fileSystem), _keepsTree(keepsTree), _outputFolder(std::move(outputFolder)) {}

    void takeList(const std::string& path) {
        for (const auto& line : MSPDIReadInputList(path, _fileSystem)) {
            if (MSPDIIsInputEntry(line)) {
                add(_fileSystem.absolutePath(line), _outputFolder);
            }
        }
    }

    // `output` is where documents of plans right in the folder are to be.
    void takeFolder(const std::string& folder, const std::string& output) {
        std::string failure;
        const auto names = _fileSystem.namesIn(folder, &failure);
        if (!names) {
            _found.obstacle = folder + ": " + failure;
            return;
        }
        for (const auto& name : *names) {
            const auto path = pathByAppendingComponent(folder, name);
            const auto extension = lowerCased(pathExtension(name));
            if (!_fileSystem.isDirectory(path)) {
                if (extension == "xml" || extension == "mspxml") {
                    add(path, output);
                }
            } else if (extension != "kdzx" && !name.starts_with('.') && !isLink(path)) {
                takeFolder(path, _keepsTree ? pathByAppendingComponent(output, name) : output);
            }
        }
    }

    MSPDIPlansToMigrate take() { return std::move(_found); }

private:
    void add(std::string path, const std::string& folder) {
        if (_known.insert(path).second) {
            _found.plans.push_back({std::move(path), folder});
        }
    }

    // A link may lead back to where it is.
    [[nodiscard]] bool isLink(const std::string& path) const {
        const auto parent = _fileSystem.resolvedPath(pathByDeletingLastComponent(path));
        return _fileSystem.resolvedPath(path) != pathByAppendingComponent(parent, lastPathComponent(path));
    }

    const MSPCFileSystem& _fileSystem;
    bool _keepsTree;
    std::string _outputFolder;
    std::set<std::string> _known;
    MSPDIPlansToMigrate _found;
};

}  // namespace

MSPDIPlansToMigrate MSPDIFindPlans(const std::string& listOrFolder, bool keepsTree, const std::string& outputFolder,
                                   const MSPCFileSystem& fileSystem) {
    const auto path = fileSystem.absolutePath(listOrFolder);
    Finder finder(fileSystem, keepsTree, outputFolder);
    if (path.empty() || !fileSystem.leadsToAnything(path)) {
        return {{}, listOrFolder + ": no such list or folder"};
    }
    if (fileSystem.isDirectory(path)) {
        finder.takeFolder(path, outputFolder);
        return finder.take();
    }
    if (keepsTree) {
        return {{}, listOrFolder + ": --keep-tree takes a folder, not a list"};
    }
    const auto extension = lowerCased(pathExtension(path));
    if (extension == "xml" || extension == "mspxml") {
        return {{}, listOrFolder + ": a plan, not a list; mspdi import takes it"};
    }
    try {
        finder.takeList(path);
    } catch (const FileNotFoundException&) {
        return {{}, listOrFolder + ": it cannot be read as a list in UTF-8"};
    }
    return finder.take();
}
