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
#include "MSPDIMemoryImport.h"
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

std::size_t bytesOfDocument(FuzzWorld& world) {
    std::size_t bytes = 0;
    for (const auto& [name, content] : MSPDIImportInMemory(Plan, world.services).bundle) {
        bytes += content.size();
    }
    return bytes;
}

// With what was read, twice, with what was told, and with the document that was made to find it out: an absence of a
// thousand years makes many events of a few bytes. That is asked for only where it decides.
void requireStepsThatGrow(const std::string& plan, std::size_t bytesTold, std::uint64_t taken, FuzzWorld& world) {
    const auto more = stepsBeyondBytes(plan);
    if (!more) {
        return;
    }
    const StepBound bound{1'000'000 + 2 * *more, 200};
    auto bytes = plan.size() + bytesTold;
    if (taken > bound.ofAny + bound.ofByte * bytes) {
        bytes += bytesOfDocument(world);
    }
    requireStepsThatGrowWith(bytes, taken, bound);
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
    requireStepsThatGrow(std::string(textOf(bytes, size)), answer.out.size(), steps.count(), world);
    if (answer.status == 2) {
        const auto lines = std::count(answer.err.begin(), answer.err.end(), '\n');
        require(answer.out.empty() && lines == 1, "one line gives the reason");
    } else if (isJSON) {
        requireThatItAddsUp(answer, world);
    }
    require(hasOnlyLinesOfText(answer.out) && hasOnlyLinesOfText(answer.err), "no plan commands a terminal");
    return 0;
}
