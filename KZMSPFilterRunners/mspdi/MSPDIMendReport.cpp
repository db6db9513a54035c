#include "MSPDIMendReport.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>
#include <ostream>

#include "MSPCMessage.h"
#include "MSPCPath.h"
#include "MSPDIInWords.h"
#include "MSPDIJSON.h"

namespace {

using JSON = nlohmann::ordered_json;

std::string shown(const std::string& text) {
    return std::string(MSPCShownText(text).view());
}

void writeStep(const MSPDIMendDone& done, MSPDIRun& run) {
    const auto& step = *MSPDIMendStepNamed(done.step);
    run.out << run.emphasized(fmt::format("{} x {}", done.count, step.name)) << ": " << step.what << '\n';
    for (const auto& place : done.where) {
        run.out << "    " << shown(place) << '\n';
    }
    if (!done.where.empty() && done.where.size() < done.count) {
        run.out << fmt::format("    ... and {} more\n", done.count - done.where.size());
    }
    run.out << "    Lost or invented: " << step.price << '\n';
}

void writeLeft(const MSPDIMended& mended, MSPDIRun& run) {
    for (const auto& left : mended.left) {
        run.out << run.emphasized("Left as it is") << fmt::format(": {} x {}: {}\n", left.count, left.step, left.why);
    }
}

// What else became of the bytes; empty where nothing did.
std::string_view conversionOf(const MSPDIMended& mended) {
    if (mended.isRepaired) {
        return "The copy is written anew as UTF-8: the markup of the plan had to be repaired, or brought entities.\n";
    }
    return mended.isConverted ? "The copy is in UTF-8; the plan was in another encoding.\n" : "";
}

// Plans are told by their names.
std::string_view conditionOf(const std::string& path) {
    const auto extension = lowerCased(pathExtension(path));
    return extension == "xml" || extension == "mspxml" ? "" : " under a name that ends in .xml";
}

std::string_view nameOf(MSPDIMendVerdict verdict) {
    switch (verdict) {
        case MSPDIMendVerdict::ImportsAsIs:
            return "imports";
        case MSPDIMendVerdict::Mended:
            return "mended";
        case MSPDIMendVerdict::NotMendable:
            break;
    }
    return "not-mendable";
}

}  // namespace

void MSPDIWriteMend(const std::string& plan, const MSPDIMended& mended, const std::optional<std::string>& path,
                    MSPDIRun& run) {
    auto& out = run.out;
    if (!mended.damage.empty()) {
        out << run.emphasized("Warning") << ": " << shown(MSPDIWarningInWords(mended.damage)) << '\n';
    }
    switch (mended.verdict) {
        case MSPDIMendVerdict::ImportsAsIs:
            writeLeft(mended, run);
            out << shown(plan) << ": imports as it is; nothing was done\n";
            return;
        case MSPDIMendVerdict::NotMendable:
            out << shown(plan) << ": " << run.emphasized("cannot be mended") << ": " << shown(mended.obstacle) << '\n';
            return;
        case MSPDIMendVerdict::Mended:
            break;
    }
    if (mended.refusal) {
        out << run.emphasized("Refused by the importer") << ": " << shown(MSPDIReasonInWords(*mended.refusal))
            << "\n\n";
    }
    for (const auto& done : mended.steps) {
        writeStep(done, run);
    }
    writeLeft(mended, run);
    out << conversionOf(mended);
    out << (path ? shown(*path) + fmt::format(": the mended copy, which imports{}\n", conditionOf(*path))
                 : shown(plan) + ": a copy mended like this would import; nothing was written\n");
}

void MSPDIWriteMendAsJSON(const std::string& plan, const MSPDIMended& mended, const std::optional<std::string>& path,
                          std::ostream& out) {
    auto steps = JSON::array();
    for (const auto& done : mended.steps) {
        const auto& step = *MSPDIMendStepNamed(done.step);
        steps.push_back({{"step", step.name},
                         {"count", done.count},
                         {"what", step.what},
                         {"price", step.price},
                         {"where", done.where}});
    }
    auto leftAsItIs = JSON::array();
    for (const auto& left : mended.left) {
        leftAsItIs.push_back({{"step", left.step}, {"count", left.count}, {"why", left.why}});
    }
    const JSON json = {{"plan", plan},
                       {"verdict", nameOf(mended.verdict)},
                       {"reason", mended.refusal ? JSON(mended.refusal->sentence()) : JSON(nullptr)},
                       {"obstacle", mended.obstacle.empty() ? JSON(nullptr) : JSON(mended.obstacle)},
                       {"steps", std::move(steps)},
                       {"left", std::move(leftAsItIs)},
                       {"damage", mended.damage.empty() ? JSON(nullptr) : JSON(mended.damage)},
                       {"converted", mended.isConverted},
                       {"repaired", mended.isRepaired},
                       {"mended", path ? JSON(*path) : JSON(nullptr)}};
    MSPDIWriteJSON(json, out);
}

std::string MSPDIMendedName(const std::string& plan, int attempt) {
    const auto stem = pathByDeletingExtension(plan);
    return attempt == 0 ? stem + ".mended.xml" : fmt::format("{}.mended-{}.xml", stem, attempt);
}
