#include "ImportRun.h"

#include <fmt/format.h>

#include <cstdio>

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
