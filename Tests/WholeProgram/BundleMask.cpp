#include "BundleMask.h"

#include <regex>

#include "ProgramRun.h"

namespace fs = std::filesystem;

void replaceAll(std::string& text, const std::string& piece, const std::string& replacement) {
    for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + replacement.size())) {
        text.replace(at, piece.size(), replacement);
    }
}

ScenarioMasks scenarioMasks(const fs::path& bundle) {
    static const std::regex root(R"(<scenario [^>]*\bid="([^"]+)\")");
    ScenarioMasks masks;
    for (const auto& entry : fs::directory_iterator(bundle)) {
        const auto name = entry.path().filename().string();
        if (std::smatch match; name != "__TOC.xml" && name.ends_with(".xml")) {
            const auto text = bytesOf(entry.path());
            if (std::regex_search(text, match, root)) {
                masks[match[1]] = "(id of " + name + ")";
            }
        }
    }
    return masks;
}

std::string maskedDocument(std::string text, const ScenarioMasks& masks) {
    static const std::regex creation(R"(<!--  \d{4}-\d\d-\d\d \d\d:\d\d:\d\d \+0000: Kadenza)");
    for (const auto& [id, mask] : masks) {
        replaceAll(text, id, mask);
    }
    return std::regex_replace(text, creation, "<!--  (date): Kadenza");
}
