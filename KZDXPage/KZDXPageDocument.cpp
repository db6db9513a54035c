#include "KZDXPageDocument.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <string_view>

namespace {

std::optional<KZDXPageOpenScenario> openScenario(KZDXFiles& files, const KZDXEntry& entry, std::string& failure) {
    if (!entry.staysInBundle()) {
        failure = fmt::format("the file '{}' of scenario '{}' is none of the bundle", entry.filename, entry.name);
        return std::nullopt;
    }
    auto file = KZDXXMLFile::readFrom(files, std::string(entry.filename), failure);
    if (!file) {
        return std::nullopt;
    }
    KZDXPageOpenScenario scenario{std::string(entry.name), std::make_unique<KZDXXMLFile>(std::move(*file)), nullptr};
    scenario.content = std::make_unique<KZDXPageScenario>(scenario.file->root());
    return scenario;
}

}  // namespace

std::optional<KZDXPageDocument> KZDXPageDocument::open(KZDXFiles& files, std::string& failure) {
    const auto names = files.names(failure);
    if (!names) {
        return std::nullopt;
    }
    if (std::find(names->begin(), names->end(), KZDXContentsName) == names->end()) {
        failure = fmt::format("no bundle: it holds no {}", KZDXContentsName);
        return std::nullopt;
    }
    auto contents = KZDXXMLFile::readFrom(files, std::string(KZDXContentsName), failure);
    if (!contents) {
        return std::nullopt;
    }
    KZDXPageDocument document;
    document.contents = std::make_unique<KZDXContents>(std::move(*contents));
    const auto& entries = document.contents->entries();
    const auto* actual = document.contents->entryNamed(KZDXActualScenario);
    actual = actual == nullptr && !entries.empty() ? &entries.front() : actual;
    if (actual == nullptr) {
        failure = "it has no scenario";
        return std::nullopt;
    }
    auto opened = openScenario(files, *actual, failure);
    if (!opened) {
        return std::nullopt;
    }
    document.actual = std::move(*opened);
    std::set<std::string_view> shown = {actual->filename};
    for (const auto& entry : entries) {
        if (&entry == actual) {
            continue;
        }
        std::string reason;
        if (!shown.insert(entry.filename).second) {
            document.notes.push_back(fmt::format("left out: the file '{}' of scenario '{}' is another one's, too",
                                                 entry.filename, entry.name));
        } else if (auto baseline = openScenario(files, entry, reason)) {
            document.baselines.push_back(std::move(*baseline));
        } else {
            document.notes.push_back("left out: " + reason);
        }
    }
    return document;
}
