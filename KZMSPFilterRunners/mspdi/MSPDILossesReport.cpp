#include "MSPDILossesReport.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>
#include <ostream>

#include "MSPCMessage.h"
#include "MSPDIJSON.h"

namespace {

using JSON = nlohmann::ordered_json;

// A text from a plan on one line, as people may see it, and not much longer than a line.
std::string shown(std::string_view text) {
    constexpr std::size_t longest = 100;
    auto end = std::min(text.size(), longest);
    while (end < text.size() && end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
        --end;  // not within a character
    }
    return std::string(MSPCShownText(text.substr(0, end)).view()) + (end < text.size() ? "..." : "");
}

std::string placeOf(const MSPDIPlace& place) {
    std::string text = "    ";
    if (!place.name.empty()) {
        text += fmt::format("{} (UID {}): ", shown(place.name), shown(place.uid));
    } else if (!place.uid.empty()) {
        text += fmt::format("UID {}: ", shown(place.uid));
    }
    return text + shown(place.value) + "  " + std::string(MSPCShownText(place.path).view()) + "\n";
}

JSON jsonOf(const MSPDILoss& loss) {
    auto where = JSON::array();
    for (const auto& place : loss.where) {
        where.push_back({{"path", place.path}, {"uid", place.uid}, {"name", place.name}, {"value", place.value}});
    }
    return {{"kind", loss.kind},
            {"count", loss.count},
            {"element", loss.element},
            {"what", loss.what},
            {"where", std::move(where)}};
}

JSON reasonOf(const MSPDIAccount& account) {
    return account.refusal ? JSON(account.refusal->sentence()) : JSON(nullptr);
}

}  // namespace

void MSPDIWriteLosses(const std::string& plan, const MSPDIAccount& account, MSPDIRun& run) {
    auto& out = run.out;
    if (account.refusal) {
        out << run.emphasized("Refused by the importer") << ": " << account.refusal->sentence() << "\n\n";
    }
    for (const auto& loss : account.losses) {
        out << run.emphasized(fmt::format("{} x {}", loss.count, loss.kind)) << ": " << loss.what << "\n";
        for (const auto& place : loss.where) {
            out << placeOf(place);
        }
        if (loss.where.size() < loss.count) {
            out << fmt::format("    ... and {} more (--all shows them)\n", loss.count - loss.where.size());
        }
    }
    out << MSPCShownText(plan).view() << ": " << account.total() << " leaves";
    for (std::size_t fate = 0; fate < account.leaves.size(); ++fate) {
        out << ", " << account.leaves[fate] << ' ' << MSPDIFateNames[fate];
    }
    out << '\n';
}

void MSPDIWriteLossesAsJSON(const std::string& plan, const MSPDIAccount& account, const MSPDIFatesByPath* fates,
                            std::ostream& out) {
    JSON leaves = {{"total", account.total()}};
    for (std::size_t fate = 0; fate < account.leaves.size(); ++fate) {
        leaves[std::string(MSPDIFateNames[fate])] = account.leaves[fate];
    }
    auto losses = JSON::array();
    for (const auto& loss : account.losses) {
        losses.push_back(jsonOf(loss));
    }
    JSON json = {{"plan", plan},
                 {"importable", !account.refusal},
                 {"reason", reasonOf(account)},
                 {"leaves", std::move(leaves)},
                 {"losses", std::move(losses)}};
    if (fates != nullptr) {
        auto byPath = JSON::object();
        // Paths differ, so that nothing has to be looked up.
        auto& entries = static_cast<JSON::object_t::Container&>(byPath.get_ref<JSON::object_t&>());
        entries.reserve(fates->size());
        for (const auto& [path, fate] : *fates) {
            entries.emplace_back(path, MSPDIFateNames[MSPDIFateIndex(fate)]);
        }
        json["fates"] = std::move(byPath);
    }
    MSPDIWriteJSON(json, out);
}
