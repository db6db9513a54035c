#pragma once

#include <filesystem>
#include <map>
#include <string>

// What a test folder holds: every file, link and folder by its path below the folder, with its content.
using FolderContent = std::map<std::string, std::string>;

// Everything below a folder except what is below `left`.
[[nodiscard]] FolderContent contentOf(const std::filesystem::path& folder, const std::filesystem::path& left = {});
// The first difference between two contents, told for a person; empty when there is none.
[[nodiscard]] std::string differenceOf(const FolderContent& before, const FolderContent& after);

// Judges bundles by the template and by a bundle of the same plan made without any fault.
class BundleCheck {
public:
    BundleCheck(const std::filesystem::path& kdzxTemplate, const std::filesystem::path& complete);

    // What is wrong with a bundle whose import may have been broken off: a file that is neither the template's nor one
    // of the complete bundle's, whole and well-formed. Empty when nothing is.
    [[nodiscard]] std::string complaintAboutRemains(const std::filesystem::path& bundle) const;
    // What is wrong with a bundle that must be complete.
    [[nodiscard]] std::string complaintAboutComplete(const std::filesystem::path& bundle) const;

private:
    FolderContent _template;
    FolderContent _complete;
};
