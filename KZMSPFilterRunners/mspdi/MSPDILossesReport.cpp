#include "MSPDILossesReport.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>
#include <ostream>

#include "MSPCMessage.h"
#include "MSPDIInWords.h"
#include "MSPDIJSON.h"
#include "MSPDIMendForLoss.h"
#include "MSPDIValueWords.h"

namespace {

using JSON = nlohmann::ordered_json;

// What was mended is told whole: its end says where.
std::string shownValue(const MSPDILoss& loss, const MSPDIPlace& place) {
    return loss.kind == "overwritten-by-repair" ? std::string(MSPCShownText(place.value).view())
                                                : MSPDIValueInWords(place);
}

std::string placeOf(const MSPDILoss& loss, const MSPDIPlace& place) {
    std::string text = "    ";
    if (!place.uid.empty() || !place.name.empty()) {
        text += fmt::format("{} (UID {}): ", place.name.empty() ? "(no name)" : MSPDIShownValue(place.name),
                            MSPDIShownValue(place.uid));
    }
    return text + shownValue(loss, place) + "  " + MSPDIShownPath(place.path) + "\n";
}

void writeText(std::string_view key, std::string_view text, MSPDIJSONWriter& writer) {
    writer.key(key);
    writer.text(text);
}

// There may be hundreds of thousands.
void writePlace(const MSPDILoss& loss, const MSPDIPlace& place, MSPDIJSONWriter& writer) {
    writer.beginObject();
    writeText("path", place.path, writer);
    writeText("uid", place.uid, writer);
    writeText("name", place.name, writer);
    writeText("value", place.value, writer);
    writeText("words", shownValue(loss, place), writer);
    writer.endObject();
}

void writeLoss(const MSPDILoss& loss, MSPDIJSONWriter& writer) {
    writer.beginObject();
    writeText("kind", loss.kind, writer);
    writer.key("count");
    writer.value(loss.count);
    writeText("element", loss.element, writer);
    writeText("what", loss.what, writer);
    const auto* step = MSPDIMendStepForLoss(loss.kind);
    writer.key("step");
    writer.value(step == nullptr ? JSON(nullptr) : JSON(step->name));
    writer.key("where");
    writer.beginArray();
    for (const auto& place : loss.where) {
        writePlace(loss, place, writer);
    }
    writer.endArray();
    writer.endObject();
}

JSON leavesOf(const MSPDIAccount& account) {
    JSON leaves = {{"total", account.total()}};
    for (std::size_t fate = 0; fate < account.leaves.size(); ++fate) {
        leaves[std::string(MSPDIFateNames[fate])] = account.leaves[fate];
    }
    return leaves;
}

void writeFates(const MSPDIFatesByPath& fates, MSPDIJSONWriter& writer) {
    writer.beginObject();
    fates.forEach([&writer, arePlain = fates.arePlain()](std::string_view path, MSPDIFate fate) {
        const auto name = MSPDIFateNames[MSPDIFateIndex(fate)];
        if (arePlain) {
            writer.plainMember(path, name);
        } else {
            writeText(path, name, writer);
        }
    });
    writer.endObject();
}

JSON reasonOf(const MSPDIAccount& account) {
    return account.refusal ? JSON(account.refusal->sentence()) : JSON(nullptr);
}

}  // namespace

void MSPDIWriteLosses(const std::string& plan, const MSPDIAccount& account, MSPDIRun& run) {
    auto& out = run.out;
    if (account.refusal) {
        out << run.emphasized("Refused by the importer") << ": " << MSPDIReasonInWords(*account.refusal) << "\n\n";
    }
    for (const auto& loss : account.losses) {
        out << run.emphasized(fmt::format("{} x {}", loss.count, loss.kind)) << ": " << loss.what << "\n";
        for (const auto& place : loss.where) {
            out << placeOf(loss, place);
        }
        if (loss.where.size() < loss.count) {
            out << fmt::format("    ... and {} more (--all shows them)\n", loss.count - loss.where.size());
        }
        if (const auto* step = MSPDIMendStepForLoss(loss.kind)) {
            out << fmt::format("    mspdi mend --only {} saves what it can of it in a copy\n", step->name);
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
    MSPDIJSONWriter writer(out);
    writer.beginObject();
    writeText("plan", plan, writer);
    writer.key("importable");
    writer.value(!account.refusal);
    writer.key("reason");
    writer.value(reasonOf(account));
    writer.key("leaves");
    writer.value(leavesOf(account));
    writer.key("losses");
    writer.beginArray();
    for (const auto& loss : account.losses) {
        writeLoss(loss, writer);
    }
    writer.endArray();
    if (fates != nullptr) {
        writer.key("fates");
        writeFates(*fates, writer);
    }
    writer.endObject();
    writer.finish();
}
