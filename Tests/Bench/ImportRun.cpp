#include "ImportRun.h"

#include <fmt/format.h>

#include <cstdio>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

bool allTargetsMet = true;

}  // namespace

PlanFile::PlanFile(const Setup& setup, const PlanOptions& options) : _path(setup.scratch / "plan.xml") {
    std::FILE* const file = std::fopen(_path.c_str(), "wb");
    generatePlan(options, [file](std::string_view piece) { std::fwrite(piece.data(), 1, piece.size(), file); });
    std::fclose(file);
}

PlanFile::~PlanFile() {
    fs::remove(_path);
}

fs::path emptiedOutput(const Setup& setup) {
    const auto output = setup.scratch / "out";
    fs::remove_all(output);
    fs::create_directories(output);
    return output;
}

ProcessFigures timedImport(const Setup& setup, const std::string& plan) {
    const auto figures =
        timedRun({setup.program, "--template-path", setup.kdzxTemplate, plan, emptiedOutput(setup).string()});
    if (figures.exitStatus != 0) {
        fmt::print("    import ended with exit status {}\n", figures.exitStatus);
        allTargetsMet = false;
    }
    return figures;
}

void verdict(bool isMet, std::string_view target) {
    allTargetsMet = allTargetsMet && isMet;
    fmt::print("    {} {}\n", isMet ? "met:   " : "MISSED:", target);
    std::fflush(stdout);
}

bool areAllTargetsMet() {
    return allTargetsMet;
}

void replaceInPlan(const std::string& path, std::string_view piece, std::string_view other, ReplacedPieces pieces) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    std::string replaced;
    std::size_t copied = 0;
    auto found = bytes.find(piece);
    if (found == std::string::npos) {
        verdict(false, fmt::format("'{}' is in the plan", piece));
        return;
    }
    while (found != std::string::npos) {
        replaced.append(bytes, copied, found - copied).append(other);
        copied = found + piece.size();
        found = pieces == ReplacedPieces::All ? bytes.find(piece, copied) : std::string::npos;
    }
    std::ofstream(path, std::ios::binary | std::ios::trunc) << replaced.append(bytes, copied);
}
