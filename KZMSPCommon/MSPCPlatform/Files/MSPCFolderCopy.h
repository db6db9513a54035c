#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "MSPCFileDescriptor.h"

// One copy of a folder's content into another folder. Links are copied as links, and none is followed on the way to
// what is made: every folder is made and opened from the one above it. Every copied file and folder is made readable
// and writable by its owner. A file that grows meanwhile is copied as long as it was when it was opened.
class MSPCFolderCopy {
public:
    explicit MSPCFolderCopy(std::string from);

    // Finds out what is to be copied, before anything is made. What is neither file, folder nor link is refused and
    // never opened; what has one of the program's hidden names is no part of the folder. Answers none, or what failed:
    // "'<path>': <the system's description>".
    [[nodiscard]] std::optional<std::string> list();
    // The permissions that the copy of the folder itself should get.
    [[nodiscard]] unsigned mode() const { return _items.front().mode | 0700U; }
    // Copies the content into an open folder, which is empty. Answers none, or what failed.
    [[nodiscard]] std::optional<std::string> copyInto(int target);

private:
    struct Item {
        std::string name;  // below the folder, with a slash in front; empty for the folder itself
        std::filesystem::file_type type;
        unsigned mode;
    };
    struct OpenFolder {
        std::string name;
        MSPCFileDescriptor folder;
    };

    [[nodiscard]] std::optional<std::string> addItem(const std::string& path,
                                                     const std::filesystem::file_status& status);
    [[nodiscard]] int copyItem(const Item& item, int target);
    [[nodiscard]] int makeFolder(const Item& item, int parent, const char* name);
    [[nodiscard]] int folderOf(const std::string& name, int target);

    std::string _from;
    std::vector<Item> _items;        // a folder comes before what is in it
    std::vector<OpenFolder> _above;  // the copies of the folders around the item that is copied
};
