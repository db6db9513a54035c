#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "MSPCUnfinishedItem.h"

// One copy of a folder with all its content. The new folder's name is taken first, by making an empty folder; the copy
// grows under a temporary name beside it and then replaces the empty folder, so no half copy is ever seen under the
// name. Whatever a failed copy made goes with this object.
class MSPCFolderCopy {
public:
    MSPCFolderCopy(std::string from, std::string to);

    // None, or what failed: "'<path>': <the system's description>".
    [[nodiscard]] std::optional<std::string> run();
    // Whether `run` failed because something had the new folder's name.
    [[nodiscard]] bool existedAlready() const { return _existedAlready; }

private:
    struct Item {
        std::string name;  // below the folder, with a slash in front; empty for the folder itself
        std::filesystem::file_type type;
        unsigned mode;
    };

    [[nodiscard]] std::optional<std::string> listItems();
    [[nodiscard]] std::optional<std::string> addItem(const std::string& path,
                                                     const std::filesystem::file_status& status);
    [[nodiscard]] std::optional<std::string> takeName();
    [[nodiscard]] std::optional<std::string> makeStage();
    [[nodiscard]] std::optional<std::string> copyItems() const;
    [[nodiscard]] std::optional<std::string> giveName();
    [[nodiscard]] int copyItem(const Item& item) const;

    std::string _from;
    std::string _to;
    std::vector<Item> _items;  // a folder comes before what is in it
    MSPCUnfinishedItem _takenName{MSPCUnfinishedItem::Removal::OnlyWhenEmpty};
    MSPCUnfinishedItem _stage;  // the growing copy
    bool _existedAlready = false;
};
