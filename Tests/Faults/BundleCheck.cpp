#include "BundleCheck.h"

#include "BundleMask.h"
#include "ProgramRun.h"
#include "StrictXML.h"

namespace fs = std::filesystem;

namespace {

std::string contentOfItem(const fs::directory_entry& entry) {
    if (entry.is_symlink()) {
        return "link to " + fs::read_symlink(entry.path()).native();
    }
    if (entry.is_regular_file()) {
        return "file of " + bytesOf(entry.path());
    }
    return entry.is_directory() ? "folder" : "neither file, folder nor link";
}

FolderContent maskedContentOf(const fs::path& bundle) {
    auto content = contentOf(bundle);
    const auto masks = scenarioMasks(bundle);
    for (auto& [path, bytes] : content) {
        bytes = maskedDocument(std::move(bytes), masks);
    }
    return content;
}

}  // namespace

FolderContent contentOf(const fs::path& folder, const fs::path& left) {
    FolderContent content;
    for (auto entry = fs::recursive_directory_iterator(folder); entry != fs::recursive_directory_iterator(); ++entry) {
        if (entry->path() == left) {
            entry.disable_recursion_pending();
        } else {
            content[entry->path().lexically_relative(folder)] = contentOfItem(*entry);
        }
    }
    return content;
}

std::string differenceOf(const FolderContent& before, const FolderContent& after) {
    for (const auto& [path, content] : before) {
        const auto found = after.find(path);
        if (found == after.end()) {
            return "'" + path + "' is missing";
        }
        if (found->second != content) {
            return "'" + path + "' has changed";
        }
    }
    for (const auto& [path, content] : after) {
        if (!before.contains(path)) {
            return "'" + path + "' is new";
        }
    }
    return {};
}

BundleCheck::BundleCheck(const fs::path& kdzxTemplate, const fs::path& complete)
    : _template(contentOf(kdzxTemplate)), _complete(maskedContentOf(complete)) {
}

std::string BundleCheck::complaintAboutRemains(const fs::path& bundle) const {
    const auto masked = maskedContentOf(bundle);
    for (const auto& [path, content] : contentOf(bundle)) {
        if (const auto found = _template.find(path); found != _template.end() && found->second == content) {
            continue;
        }
        const auto found = _complete.find(path);
        if (found == _complete.end()) {
            return "'" + path + "' belongs to no bundle";
        }
        if (found->second != masked.at(path)) {
            return "'" + path + "' is neither the template's nor complete";
        }
        if (const auto complaint = strictXMLComplaint(bundle / path); !complaint.empty()) {
            return "'" + path + "' " + complaint;
        }
    }
    return {};
}

std::string BundleCheck::complaintAboutComplete(const fs::path& bundle) const {
    const auto difference = differenceOf(_complete, maskedContentOf(bundle));
    return difference.empty() ? complaintAboutRemains(bundle) : difference;
}
