#include "BundleMask.h"

#include "MSPCRegex.h"
#include "ProgramRun.h"

namespace fs = std::filesystem;

void replaceAll(std::string& text, const std::string& piece, const std::string& replacement) {
    for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + replacement.size())) {
        text.replace(at, piece.size(), replacement);
    }
}

ScenarioMasks scenarioMasks(const fs::path& bundle) {
    static const MSPCRegex root(R"re(<scenario [^>]*id="([^"]+)")re");
    ScenarioMasks masks;
    for (const auto& entry : fs::directory_iterator(bundle)) {
        const auto name = entry.path().filename().string();
        if (name != "__TOC.xml" && name.ends_with(".xml")) {
            const auto text = bytesOf(entry.path());
            if (const auto match = root.firstMatch(text, 2)) {
                masks[std::string(*match->at(1))] = "(id of " + name + ")";
            }
        }
    }
    return masks;
}

std::string maskedDocument(std::string text, const ScenarioMasks& masks) {
    static const MSPCRegex creation(R"(<!--  [0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2} \+0000: Kadenza)");
    for (const auto& [id, mask] : masks) {
        replaceAll(text, id, mask);
    }
    if (const auto match = creation.firstMatch(text, 1)) {
        const auto start = static_cast<std::size_t>(match->front()->data() - text.data());
        text.replace(start, match->front()->size(), "<!--  (date): Kadenza");
    }
    return text;
}
