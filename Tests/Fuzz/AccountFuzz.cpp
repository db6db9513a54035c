// A plan's bytes, and what `mspdi losses` tells of it: that it could not look, or an account of every leaf that adds
// up.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "CountedSteps.h"
#include "DocumentSteps.h"
#include "FuzzWorld.h"
#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPCURL.h"
#include "MSPCXMLDocument.h"
#include "MSPDILossesCommand.h"
#include "MSPDIRun.h"

namespace {

using JSON = nlohmann::json;

const std::string Plan = "/home/me/Plan.xml";

struct Told {
    int status = 0;
    std::string out;
    std::string err;
};

// The subcommand alone: the options of all others take a fifth of the time of a small plan.
Told toldBy(const std::string& arguments, FuzzWorld& world) {
    std::ostringstream out;
    std::ostringstream err;
    MSPDIRun run{world.services, out, err};
    CLI::App program;
    MSPDIAddLossesCommand(program, run);
    program.parse(arguments);
    return {static_cast<int>(run.status), out.str(), err.str()};
}

// The elements below this one that hold no others.
std::size_t leavesBelow(const MSPCXMLNode& element) {
    std::size_t count = 0;
    for (auto child = element.firstChild(); child; child = child.nextSibling()) {
        if (child.isElement()) {
            count += std::max<std::size_t>(leavesBelow(child), 1);
        }
    }
    return count;
}

// The project itself is one where it is empty.
std::size_t leavesOfPlan(FuzzWorld& world) {
    const auto plan =
        newXmlDocFromUrl(MSPCURL::fileURL(Plan, false), MSPCXMLContent::DataOnly, world.fileSystem, world.log);
    return std::max<std::size_t>(leavesBelow(plan.root()), 1);
}

void requireThatLeavesAddUp(const JSON& told, std::size_t leavesInPlan) {
    const auto total = told.at("leaves").at("total").get<std::size_t>();
    std::size_t sum = 0;
    std::map<std::string, std::size_t> counts;
    for (const auto& [fate, count] : told.at("leaves").items()) {
        if (fate != "total") {
            sum += count.get<std::size_t>();
            counts[fate] = count.get<std::size_t>();
        }
    }
    require(counts.size() == 6 && sum == total, "the six counts add up to the total");
    require(total == leavesInPlan, "every leaf of the plan is counted");
    require(told.at("fates").size() == total, "every leaf has one fate");
    for (const auto& fate : told.at("fates")) {
        require(counts[fate.get<std::string>()]-- > 0, "no fate has more leaves than are counted");
    }
}

void requireThatLossesAddUp(const JSON& told) {
    for (const auto& loss : told.at("losses")) {
        require(loss.at("count") > 0 && loss.at("where").size() == loss.at("count"), "every loss has its places");
    }
}

bool hasOnlyLinesOfText(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char character) {
        const auto code = static_cast<unsigned char>(character);
        return (code < ' ' && code != '\n') || code == 0x7F;
    });
}

void requireThatItAddsUp(const Told& answer, FuzzWorld& world) {
    const auto told = JSON::parse(answer.out);
    requireThatLeavesAddUp(told, leavesOfPlan(world));
    requireThatLossesAddUp(told);
    const bool isRefused = !told.at("importable").get<bool>();
    require(isRefused == !told.at("reason").is_null(), "a refusal has its reason");
    const bool hasSomething = isRefused || !told.at("losses").empty();
    require((answer.status == 1) == hasSomething, "the status tells whether there is a loss");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzWorld world;
    world.fileSystem.addFile(Plan, std::string(textOf(bytes, size)));
    const bool isJSON = size % 2 == 0;
    const CountedSteps steps;
    const auto answer = toldBy(isJSON ? "losses --all Plan.xml --json" : "losses --all Plan.xml", world);
    // The plan is read twice.
    if (const auto more = stepsBeyondBytes(std::string(textOf(bytes, size)))) {
        requireStepsThatGrowWith(size + answer.out.size(), steps.count(), {1'000'000 + 2 * *more, 200});
    }
    if (answer.status == 2) {
        const auto lines = std::count(answer.err.begin(), answer.err.end(), '\n');
        require(answer.out.empty() && lines == 1, "one line gives the reason");
    } else if (isJSON) {
        requireThatItAddsUp(answer, world);
    }
    require(hasOnlyLinesOfText(answer.out) && hasOnlyLinesOfText(answer.err), "no plan commands a terminal");
    return 0;
}
