#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "PlanGenerator.h"
#include "ProcessTiming.h"

// What the command line of the measurements says.
struct Setup {
    std::string program;
    std::string kdzxTemplate;
    std::string floor;
    std::string linkedOnly;
    std::filesystem::path scratch;
    int pairs = 7;
    std::string only;                    // part of the names of the sections that are wanted
    std::int64_t largestSize = 300'000;  // of the plans whose growth is measured
    bool isHuge = false;
};

// A kind of plan that has targets against the floor.
struct Row {
    std::string_view name;
    PlanOptions options;
    double maxTimeRatio;
    double maxMemoryRatio;
};

// A generated plan in a file that goes away with this object.
class PlanFile {
public:
    PlanFile(const Setup& setup, const PlanOptions& options);
    PlanFile(const PlanFile&) = delete;
    PlanFile& operator=(const PlanFile&) = delete;
    ~PlanFile();

    [[nodiscard]] std::string path() const { return _path.string(); }
    [[nodiscard]] double megabytes() const { return static_cast<double>(std::filesystem::file_size(_path)) / 1e6; }

private:
    std::filesystem::path _path;
};

// Puts another text in the place of one that a plan has; that it has it counts as a target.
enum class ReplacedPieces { First, All };
void replaceInPlan(const std::string& path, std::string_view piece, std::string_view other, ReplacedPieces pieces);

// The folder that imports write to, as an empty one.
[[nodiscard]] std::filesystem::path emptiedOutput(const Setup& setup);

// One import by the program; a failed one counts as a missed target.
[[nodiscard]] ProcessFigures timedImport(const Setup& setup, const std::string& plan);

// Prints whether a target is met and remembers it.
void verdict(bool isMet, std::string_view target);
[[nodiscard]] bool areAllTargetsMet();
