#pragma once

#include <functional>
#include <string>
#include <string_view>

// The program's hidden names: ".MSPDIImport-<middle>.tmp". What a killed process leaves behind bears one.
[[nodiscard]] std::string MSPCHiddenName(std::string_view middle);
[[nodiscard]] bool MSPCIsHiddenName(std::string_view name);
// Whether a name is that of an unfinished item, of this process or another: ".MSPDIImport-<process>-<number>.tmp".
[[nodiscard]] bool MSPCIsTemporaryName(std::string_view name);

// A file or folder that does not count yet: it goes with this object, or with the process when a signal ends that,
// unless it has been finished before.
class MSPCUnfinishedItem {
public:
    enum class Removal {
        WithContent,    // links are removed, not followed
        OnlyWhenEmpty,  // a folder into which somebody put something stays
    };

    explicit MSPCUnfinishedItem(Removal removal = Removal::WithContent) noexcept : _removal(removal) {}
    ~MSPCUnfinishedItem();
    MSPCUnfinishedItem(const MSPCUnfinishedItem&) = delete;
    MSPCUnfinishedItem& operator=(const MSPCUnfinishedItem&) = delete;

    // Makes the item, once: `make` answers 0 or the system's error number, and so does this. The path counts from
    // `folder`, an open folder that outlives the item; without one from the current folder.
    [[nodiscard]] int create(int folder, const std::string& path, const std::function<int(const char*)>& make);
    [[nodiscard]] int create(const std::string& path, const std::function<int(const char*)>& make);
    // The same under a hidden name that nothing else in `folder` has: on EEXIST the next name is tried. Answers 0 or
    // the error number of the last attempt.
    [[nodiscard]] int createUnderTemporaryName(int folder, const std::function<int(const char*)>& make);
    // The path of the item; empty when there is none.
    [[nodiscard]] const std::string& path() const noexcept { return _path; }
    // Removes the item now; false when something of it is left.
    bool remove() noexcept;
    // From now on the item stays, or has gone its own way.
    void finish() noexcept;

    // Removes all unfinished items of the process. For signal handlers that end it: nothing may be done with the items
    // afterwards.
    static void removeAll() noexcept;

private:
    bool removeNow() const noexcept;

    Removal _removal;
    int _folder = -1;
    std::string _path;
    MSPCUnfinishedItem* _next = nullptr;  // of the process's unfinished items
};
