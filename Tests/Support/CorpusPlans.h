#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// The plans of many programs that are kept beside the checkout, or where KZMSP_CORPUS says.
inline std::filesystem::path corpusFolder(const std::filesystem::path& source) {
    const char* named = std::getenv("KZMSP_CORPUS");
    return named != nullptr ? std::filesystem::path(named) : source.parent_path() / "shared" / "corpus";
}

// Their paths in order; none without that folder.
inline std::vector<std::filesystem::path> corpusPlans(const std::filesystem::path& source) {
    std::vector<std::filesystem::path> plans;
    const auto folder = corpusFolder(source);
    if (std::filesystem::is_directory(folder)) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().extension() == ".xml") {
                plans.push_back(entry.path());
            }
        }
    }
    std::sort(plans.begin(), plans.end());
    return plans;
}

inline std::string corpusBytes(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}
