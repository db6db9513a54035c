// make-plan: writes a generated MSPDI plan to standard output.
#include <fmt/format.h>

#include <charconv>
#include <cstdio>
#include <span>
#include <string_view>

#include "PlanGenerator.h"

namespace {

constexpr std::string_view usage =
    "Usage: make-plan [--tasks N] [--seed N] [--timephased RECORDS_PER_ASSIGNMENT] [--split PERCENT]\n"
    "                 [--baselines 0..11] [--shape NAME] > plan.xml\n"
    "Shapes: ordinary flat late-nesting star-links one-resource one-busy-task reversed-assignments\n"
    "        many-custom-fields material-per-task duplicate-uids alternate-baselines all-split\n";

template <typename Number>
bool readNumber(std::string_view text, Number& number) {
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    return read.ec == std::errc() && read.ptr == text.data() + text.size();
}

bool readOption(std::string_view name, std::string_view value, PlanOptions& options) {
    if (name == "--tasks") {
        return readNumber(value, options.tasks);
    }
    if (name == "--seed") {
        return readNumber(value, options.seed);
    }
    if (name == "--timephased") {
        return readNumber(value, options.timephasedRecords);
    }
    if (name == "--split") {
        return readNumber(value, options.splitPercent);
    }
    if (name == "--baselines") {
        return readNumber(value, options.baselines);
    }
    if (name == "--shape") {
        const auto shape = planShapeNamed(value);
        options.shape = shape.value_or(options.shape);
        return shape.has_value();
    }
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    const std::span arguments(argv, static_cast<std::size_t>(argc));
    PlanOptions options;
    for (std::size_t i = 1; i < arguments.size(); i += 2) {
        if (i + 1 == arguments.size() || !readOption(arguments[i], arguments[i + 1], options)) {
            fmt::print(stderr, "{}", usage);
            return 1;
        }
    }
    generatePlan(options, [](std::string_view piece) { std::fwrite(piece.data(), 1, piece.size(), stdout); });
    return std::ferror(stdout) != 0 ? 1 : 0;
}
